#pragma once

#include <VarnelAPI/Forms/transport/CallOptions.h>
#include <VarnelAPI/Forms/transport/Observer.h>

#include <map>

namespace VarnelAPI::Forms::transport::detail {

/// What a `CallOptions` holds. Empty is what was not wished.
struct Wishes {
    std::optional<pplx::cancellation_token> token;
    std::optional<std::chrono::milliseconds> deadline;
    std::function<void(const Progress&)> onProgress;
    std::function<void(unsigned short, const web::http::http_headers&)> onResponse;
    std::map<utility::string_t, utility::string_t> headers;
    utility::string_t path;
    std::function<void(const uint8_t*, std::size_t)> sink;

    std::optional<RetryPolicy> retry;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<Credentials> credentials;
    std::shared_ptr<Observer> observer;
    std::function<utility::string_t()> traceparent;

    bool saves() const { return !path.empty() || sink; }
    /// Whether a call must be watched while it is on its way.
    bool concernTransfer() const {
        return token || deadline || onProgress || onResponse || saves() || concernAttempts();
    }
    /// Whether one request may not be all there is to do, or to tell.
    bool concernAttempts() const { return (retry && retry->attempts > 1) || credentials || isObserved(); }
    bool isObserved() const { return observer && observer->m_Recorder; }
};

/// The headers that calls with these options have, made now.
/// @throws std::invalid_argument for a trace context that is none.
std::map<utility::string_t, utility::string_t> headersOf(const Wishes& wishes);

/// Sets a header in place of those of the same name in any spelling.
void replaceHeader(std::map<utility::string_t, utility::string_t>& headers, const utility::string_t& name,
                   const utility::string_t& value);

} // namespace VarnelAPI::Forms::transport::detail
