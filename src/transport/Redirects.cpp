#include "Redirects.h"

#include "RequestParts.h"

#if !defined(_WIN32)
#include <openssl/crypto.h>
#endif

#include <algorithm>
#include <array>
#include <vector>

namespace VarnelAPI::Forms::transport::detail {

using web::http::header_names;
using web::http::http_request;
using web::http::http_response;
using web::http::methods;
using web::http::status_codes;
using web::http::client::http_client_config;

namespace {

#if !defined(_WIN32)
/// When the process ends, OpenSSL would take away by itself what calls in flight still use, and they would crash.
[[maybe_unused]] const int keptToTheEnd = OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
#endif

constexpr web::http::status_code permanentRedirect = 308;

bool sameOrigin(const web::uri& a, const web::uri& b) {
    const auto port = [](const web::uri& uri) {
        return uri.port() > 0 ? uri.port() : uri.scheme() == _XPLATSTR("https") ? 443 : 80;
    };
    // Both are normalized: scheme and host in lower case.
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

/// The settings without what authorizes their owner. That of OAuth can be set, but not taken away again.
http_client_config withoutCredentials(const http_client_config& settings) {
    http_client_config kept;
    kept.set_proxy(settings.proxy());
    kept.set_timeout(settings.timeout<std::chrono::microseconds>());
    if (!settings.is_default_chunksize()) {
        kept.set_chunksize(settings.chunksize());
    }
    kept.set_request_compressed_response(settings.request_compressed_response());
    kept.set_max_redirects(settings.max_redirects());
    kept.set_https_to_http_redirects(settings.https_to_http_redirects());
    kept.set_nativehandle_options(
        [settings](web::http::client::native_handle handle) { settings.invoke_nativehandle_options(handle); });
    kept.set_nativesessionhandle_options(
        [settings](web::http::client::native_handle handle) { settings._invoke_nativesessionhandle_options(handle); });
#if defined(_WIN32)
    kept.set_buffer_request(settings.buffer_request());
#else
    kept.set_ssl_context_callback(settings.get_ssl_context_callback());
    kept.set_tlsext_sni_enabled(settings.is_tlsext_sni_enabled());
#endif
    kept.set_validate_certificates(settings.validate_certificates());
    return kept;
}

/// One request and the redirects it has followed.
class Redirecting {
public:
    /// The request is not sent yet.
    Redirecting(const Call& first, OnResponse onResponse)
        : m_Next(first),
          m_Parts(first.request), m_Visited{web::uri_builder(first.base).append(first.request.request_uri()).to_uri()},
          m_OnResponse(std::move(onResponse)) {
        m_Next.request = {};
    }

    /// What becomes of the response itself, or of the one that it redirects to.
    pplx::task<http_response> operator()(const http_response& response, const std::shared_ptr<ResponseBuffer>& buffer) {
        const web::uri target = targetOf(response);
        if (target.is_empty()) {
            return m_OnResponse(response, buffer);
        }
        if (m_Private && !sameOrigin(m_Visited.back(), target)) {
            // Once another host was involved, nothing private comes back: not even a redirect to the first one.
            m_Private = false;
            m_Next.settings = withoutCredentials(m_Next.settings);
        }
        m_Visited.push_back(target);
        discardBody(response);
        Call next = m_Next;
        next.base = target;
        next.request = nextRequest(response.status_code());
        return exchange(std::move(next), *this);
    }

private:
    web::uri targetOf(const http_response& response) const {
        constexpr std::array<web::http::status_code, 5> redirections{
            status_codes::MovedPermanently, status_codes::Found, status_codes::SeeOther,
            status_codes::TemporaryRedirect, permanentRedirect};
        const auto status = response.status_code();
        utility::string_t location;
        if (std::find(redirections.begin(), redirections.end(), status) == redirections.end() ||
            !response.headers().match(header_names::location, location) || !web::uri::validate(location) ||
            m_Visited.size() > m_Next.maxRedirects) {
            return {};
        }
        // The fragment is for who reads the response: it is never sent. Nor is a name with a password.
        const web::uri target =
            web::uri_builder(m_Visited.back().resolve_uri(location)).set_user_info({}).set_fragment({}).to_uri();
        const bool leavesTls = m_Visited.back().scheme() == _XPLATSTR("https") && target.scheme() == _XPLATSTR("http");
        const bool isHttp =
            (target.scheme() == _XPLATSTR("http") || target.scheme() == _XPLATSTR("https")) && !target.host().empty();
        // As texts: to compare URIs decodes them, which throws for a "%" that encodes nothing.
        const bool isLoop = std::any_of(m_Visited.begin(), m_Visited.end(), [&target](const web::uri& visited) {
            return visited.to_string() == target.to_string();
        });
        return !isHttp || isLoop || (leavesTls && !m_Next.settings.https_to_http_redirects()) ? web::uri() : target;
    }

    http_request nextRequest(web::http::status_code status) {
        const bool repeats = status == status_codes::TemporaryRedirect || status == permanentRedirect;
        const bool becomesGet = !repeats && (status == status_codes::SeeOther ? m_Parts.method != methods::HEAD
                                                                              : m_Parts.method == methods::POST);
        if (becomesGet) {
            m_Parts.method = methods::GET;
            m_Parts.body = {};
        }
        web::http::http_headers kept;
        for (const auto& [name, value] : m_Parts.headers) {
            if (keeps(name, becomesGet)) {
                kept.add(name, value);
            }
        }
        m_Parts.rewind();
        http_request next = m_Parts.make(kept);
        m_Parts.headers = next.headers();
        return next;
    }

    bool keeps(const utility::string_t& header, bool becomesGet) const {
        const auto is = [&header](const utility::string_t& name) { return utility::details::str_iequal(header, name); };
        if (is(header_names::host) || is(header_names::content_length)) {
            return false;
        }
        const bool describesBody = is(header_names::content_type);
        return becomesGet ? !describesBody && (m_Private || is(header_names::accept) || is(header_names::user_agent))
                          : m_Private || describesBody || is(header_names::accept) || is(header_names::user_agent);
    }

    /// How the next request is sent: all but its parts.
    Call m_Next;
    RequestParts m_Parts;
    std::vector<web::uri> m_Visited;
    OnResponse m_OnResponse;
    bool m_Private = true;
};

} // namespace

pplx::task<http_response> follow(Call call, OnResponse onResponse) {
    if (call.maxRedirects != 0) {
        onResponse = Redirecting(call, std::move(onResponse));
    }
    return exchange(std::move(call), std::move(onResponse));
}

} // namespace VarnelAPI::Forms::transport::detail
