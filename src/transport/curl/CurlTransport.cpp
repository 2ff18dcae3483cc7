#include "CurlTransfer.h"

#include <stdexcept>

namespace VarnelAPI::Forms::transport {

using web::http::http_request;
using web::http::http_response;
using web::http::client::http_client;
using web::http::client::http_client_config;

namespace {

void refuseNegative(const CurlOptions& options) {
    for (const long long limit :
         {static_cast<long long>(options.connectTimeout.count()), static_cast<long long>(options.stallTime.count()),
          static_cast<long long>(options.stallBytesPerSecond), static_cast<long long>(options.connections),
          static_cast<long long>(options.connectionsPerHost), static_cast<long long>(options.idleConnections),
          static_cast<long long>(options.idleTime.count())}) {
        if (limit < 0) {
            throw std::invalid_argument("a limit of the transport is negative");
        }
    }
}

/// What there is no way to honour.
void refuseSettings(const http_client_config& settings) {
    if (settings.proxy().is_auto_discovery()) {
        throw std::invalid_argument("the curl transport can't discover a proxy; name it");
    }
#if !defined(_WIN32)
    if (!settings.is_tlsext_sni_enabled()) {
        throw std::invalid_argument("the curl transport can't keep the server's name out of TLS");
    }
#endif
}

} // namespace

CurlTransport::CurlTransport(const CurlOptions& options) {
    refuseNegative(options);
    m_Loop = detail::CurlLoop::start(options);
}

CurlTransport::~CurlTransport() {
    m_Loop->close();
}

pplx::task<http_response> CurlTransport::send(const web::uri& base, const http_client_config& settings,
                                              http_request request, const pplx::cancellation_token& token) {
    refuseSettings(settings);
    if (token.is_canceled()) {
        return pplx::task_from_exception<http_response>(
            detail::curlFailure(std::errc::operation_canceled, "the request was canceled"));
    }
    if (!settings.oauth2()) {
        return std::make_shared<detail::CurlTransfer>(m_Loop, base, settings, std::move(request))->start(token);
    }
    // The HTTP library's own stages authorize the request, and ours comes in place of its last one.
    http_client stages(base, settings);
    stages.add_handler([loop = m_Loop, base, settings, token](const http_request& authorized,
                                                              const std::shared_ptr<web::http::http_pipeline_stage>&) {
        return std::make_shared<detail::CurlTransfer>(loop, base, settings, authorized)->start(token);
    });
    return stages.request(request, token);
}

} // namespace VarnelAPI::Forms::transport
