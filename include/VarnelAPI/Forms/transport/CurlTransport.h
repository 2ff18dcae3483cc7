#pragma once

#include <VarnelAPI/Forms/transport/Transport.h>

#include <chrono>

#if defined(_WIN32) && defined(VARNEL_FORMS_CURL_BUILDING)
#define VARNEL_FORMS_CURL_API __declspec(dllexport)
#elif defined(_WIN32)
#define VARNEL_FORMS_CURL_API
#else
#define VARNEL_FORMS_CURL_API __attribute__((visibility("default")))
#endif

namespace VarnelAPI::Forms::transport {

namespace detail {
class CurlLoop;
} // namespace detail

/// What a `CurlTransport` does beyond the settings of each call.
struct CurlOptions {
    /// Whether HTTP/2 is spoken over TLS, where the service offers it. Without TLS it never is.
    bool http2 = true;
    /// Whether calls whose settings say nothing of a proxy use the one that the environment names (`https_proxy`,
    /// `no_proxy` ..., by libcurl's rules).
    bool proxyFromEnvironment = false;

    /// The certificates to trust, a PEM file; empty for those of the system (SSL_CERT_FILE is heeded).
    utility::string_t caFile;
    /// The same as a folder of hashed files. It is read anew for each connection, which takes time.
    utility::string_t caFolder;
    /// The oldest version of TLS that is spoken.
    enum class Tls { V1_2, V1_3 };
    Tls minimumTls = Tls::V1_2;

    /// For connecting, TLS included; 0 for the time-out of the settings, which always holds too.
    std::chrono::milliseconds connectTimeout{0};
    /// A transfer that carries less than so many bytes a second ...
    long stallBytesPerSecond = 0;
    /// ... for so long, has failed; 0 for no such limit.
    std::chrono::seconds stallTime{0};

    /// Connections at once, all together and to one host; further calls wait for one, and the time-out doesn't. 0 for
    /// no limit.
    long connections = 0;
    long connectionsPerHost = 0;
    /// How many connections are kept while nobody needs them, and how long; 0 of either for none.
    long idleConnections = 16;
    std::chrono::seconds idleTime{60};
    /// How many bytes the header of an answer may have. A line of more than 100 KB is always refused.
    std::size_t headerSize = std::size_t{1} << 20U;
};

/// Sends by libcurl, on connections that are kept for those who share the transport object, and for nobody else: over
/// TLS a call then costs a small part of what it costs on a fresh connection. It is a component of its own: link
/// `VarnelForms::Curl`.
/// @code
/// configuration->setTransport(std::make_shared<transport::CurlTransport>());
/// @endcode
///
/// Only requests that may be repeated unseen (GET, HEAD, OPTIONS, PUT, with a body that can be read again) are sent on
/// kept connections, which the service may close just then: libcurl sends them again. All others get a fresh
/// connection, which is kept afterwards.
///
/// Each object has one thread, for input and output, from its making to the end of the last call, or of the process.
/// Failures have codes that compare to `std::errc`. The settings of a call are honoured, but for these, which are
/// refused in the call with std::invalid_argument: server names that are kept out of TLS, and proxies that are to be
/// discovered. docs/behaviour.md says where it differs from the other transport.
class VARNEL_FORMS_CURL_API CurlTransport final : public Transport {
public:
    /// @throws std::invalid_argument for a negative limit, and std::system_error if the thread can't be started.
    explicit CurlTransport(const CurlOptions& options = {});
    /// Calls in flight go on. Idle connections are closed.
    ~CurlTransport() override;

    pplx::task<web::http::http_response> send(const web::uri& base,
                                              const web::http::client::http_client_config& settings,
                                              web::http::http_request request,
                                              const pplx::cancellation_token& token) override;

private:
    std::shared_ptr<detail::CurlLoop> m_Loop;
};

} // namespace VarnelAPI::Forms::transport
