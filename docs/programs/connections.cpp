#include "Setting.h"

#include <VarnelAPI/Forms/transport/CurlTransport.h>

using namespace VarnelAPI::Forms;

namespace {

// [kept]
std::shared_ptr<api::ApiClient> connect(const utility::string_t& url) {
    transport::CurlOptions options;
    options.connectionsPerHost = 8;
    options.idleTime = std::chrono::seconds(30);
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(url);
    configuration->setTransport(std::make_shared<transport::CurlTransport>(options));
    return std::make_shared<api::ApiClient>(configuration);
}
// [kept]

// [proxy]
void useProxy(api::ApiConfiguration& configuration, const utility::string_t& url, const utility::string_t& user,
              const utility::string_t& password) {
    web::web_proxy proxy((web::uri(url)));
    proxy.set_credentials(web::credentials(user, password));
    configuration.getHttpConfig().set_proxy(proxy);
}
// [proxy]

} // namespace

int main() {
    Setting here;
    const auto client = connect(here.configuration->getBaseUrl());
    for (int i = 0; i < 3; ++i) {
        std::cout << kit::total(api::BaseClassApi(client).count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get();
    }
    // There is no proxy, so a call fails on its way to it.
    useProxy(*client->getConfiguration(), _XPLATSTR("http://127.0.0.1:1"), _XPLATSTR("me"), _XPLATSTR("secret"));
    try {
        api::BaseClassApi(client).count_DynamicSchemaBaseClass(_XPLATSTR("tower")).get();
    } catch (const web::http::http_exception& error) {
        std::cout << (error.error_code() == kit::Trouble::refused ? "\nno connection" : error.what()) << '\n';
    }
    return here.printed("333\nno connection\n");
}
