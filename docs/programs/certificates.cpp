#include "Setting.h"

#include <VarnelAPI/Forms/transport/CurlTransport.h>

using namespace VarnelAPI::Forms;

namespace {

// [curl]
void trustOver(api::ApiConfiguration& configuration, const utility::string_t& pemFile) {
    transport::CurlOptions options;
    options.caFile = pemFile; // instead of those of the system
    configuration.setTransport(std::make_shared<transport::CurlTransport>(options));
}
// [curl]

// [fresh]
void trust(api::ApiConfiguration& configuration, const std::string& pemFile) {
    // Besides those of the system. It is called for each connection.
    configuration.getHttpConfig().set_ssl_context_callback(
        [pemFile](boost::asio::ssl::context& context) { context.load_verify_file(pemFile); });
}
// [fresh]

} // namespace

/// The certificate and its key are the arguments.
int main(int argc, char* argv[]) {
    if (argc != 3) {
        return 2;
    }
    repository::ServerOptions options;
    options.certificate = argv[1];
    options.key = argv[2];
    Setting here(options);
    here.configuration->setBaseUrl(
        utility::conversions::to_string_t("https://localhost:" + std::to_string(here.server.port())));
    const api::BaseClassApi issues(here.client);
    const auto count = [&] {
        try {
            std::cout << kit::total(issues.count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get() << '\n';
        } catch (const web::http::http_exception& error) {
            std::cout << (error.error_code() == kit::Trouble::certificate ? "not trusted" : error.what()) << '\n';
        }
    };
    count();
    trust(*here.configuration, argv[1]);
    count();
    auto plain = web::http::client::http_client_config();
    here.configuration->setHttpConfig(plain);
    here.configuration->setTransport(std::make_shared<transport::CurlTransport>());
    count();
    trustOver(*here.configuration, utility::conversions::to_string_t(argv[1]));
    count();
    return here.printed("not trusted\n3\nnot trusted\n3\n");
}
