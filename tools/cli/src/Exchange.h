#pragma once

#include <VarnelAPI/Forms/transport/Transport.h>

#include <functional>
#include <set>
#include <string>

namespace VarnelAPI::Forms::cli {

/// Whether bodies of this type, whose case does not matter, are JSON.
bool isJson(const std::string& contentType);

/// A transport that tells of each request and answer, without secrets, before it goes to another one; or instead.
class Exchange : public transport::Transport {
public:
    using Tell = std::function<void(const std::string& text)>;

    /// @param secretHeaders in lower case: those whose values are not told.
    /// @param isDry whether requests are told with their bodies, and end with NothingSent.
    Exchange(Tell tell, std::set<std::string> secretHeaders, bool isDry);

    pplx::task<web::http::http_response> send(const web::uri& base,
                                              const web::http::client::http_client_config& settings,
                                              web::http::http_request request,
                                              const pplx::cancellation_token& token) override;

private:
    const Tell m_Tell;
    const std::set<std::string> m_SecretHeaders;
    const bool m_IsDry;
    const std::shared_ptr<Transport> m_Next = transport::freshConnections();
};

} // namespace VarnelAPI::Forms::cli
