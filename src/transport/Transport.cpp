#include <VarnelAPI/Forms/transport/Transport.h>

#include "HeaderTimeout.h"

namespace VarnelAPI::Forms::transport {

using web::http::http_request;
using web::http::http_response;
using web::http::client::http_client;
using web::http::client::http_client_config;

namespace {

class FreshConnections final : public Transport {
public:
    pplx::task<http_response> send(const web::uri& base, const http_client_config& settings, http_request request,
                                   const pplx::cancellation_token& token) override {
        return http_client(base, detail::limitingWaitForHeader(settings)).request(std::move(request), token);
    }
};

} // namespace

Transport::Transport() = default;
Transport::~Transport() = default;

std::shared_ptr<Transport> freshConnections() {
    static const auto transport = std::make_shared<FreshConnections>();
    return transport;
}

} // namespace VarnelAPI::Forms::transport
