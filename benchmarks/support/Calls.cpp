#include "Calls.h"

#include "Server.h"

namespace bench {

namespace {

using VarnelAPI::Forms::api::ApiClient;
using VarnelAPI::Forms::api::ApiConfiguration;
using VarnelAPI::Forms::api::BaseClassApi;
using web::http::http_request;
using web::http::http_response;
using web::http::client::http_client;
using web::json::value;

constexpr const char* userAgent = "benchmark";
constexpr const char* credentials = "Bearer 0123456789abcdef0123456789abcdef";
constexpr const char* selection = "_Subject,Status";

} // namespace

std::shared_ptr<ApiClient> clientOf(const std::string& url,
                                    const std::shared_ptr<VarnelAPI::Forms::transport::Transport>& transport) {
    auto configuration = std::make_shared<ApiConfiguration>();
    configuration->setBaseUrl(url);
    configuration->setUserAgent(userAgent);
    configuration->getDefaultHeaders()["Authorization"] = credentials;
    configuration->setTransport(transport);
    return std::make_shared<ApiClient>(configuration);
}

http_request requestOf(const web::http::method& method, const std::string& path, const char* accept) {
    http_request request(method);
    request.headers().add("Accept", accept);
    request.headers().add("Authorization", credentials);
    request.headers().add("User-Agent", userAgent);
    request.set_request_uri(web::uri("/sv1.2/Repositories/Varnel.Forms--" + path));
    return request;
}

pplx::task<http_response> sent(http_client client, const http_request& request) {
    return client.request(request).then([](const http_response& response) {
        if (response.status_code() != web::http::status_codes::OK) {
            throw web::http::http_exception("unexpected status");
        }
        return response;
    });
}

pplx::task<value> getByHand(const http_client& client) {
    http_request request = requestOf(web::http::methods::GET, "issue/DynamicSchema/BaseClass/1/", "application/json");
    request.set_request_uri(
        web::uri_builder(request.request_uri()).append_query("$select", std::string(selection)).to_uri());
    return sent(client, request)
        .then([](const http_response& response) { return response.extract_string(); })
        .then([](const std::string& text) { return value::parse(text); });
}

Operation getting(std::size_t count, const std::shared_ptr<ApiClient>& client) {
    return atOnce(count, [api = std::make_shared<BaseClassApi>(client)] {
        return api->get_DynamicSchemaBaseClass_instanceId(locations::issue, "1", std::string(selection));
    });
}

} // namespace bench
