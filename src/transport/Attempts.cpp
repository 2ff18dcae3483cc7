#include "Attempts.h"

#include "Continuation.h"
#include "Redirects.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <typeinfo>

namespace VarnelAPI::Forms::transport::detail {

using std::chrono::milliseconds;
using utility::conversions::to_string_t;
using web::http::http_exception;
using web::http::http_response;

namespace {

/// The HTTP library passes on what its resolver says of a host that it can't find, now or ever, as a number of the
/// system's.
bool isUnresolved(const std::error_code& code) {
    return code.category() == utility::details::platform_category() && (code.value() == 1 || code.value() == 2);
}

/// Whether the service may be reached again soon.
bool isPassing(const std::error_code& code) {
    constexpr std::array<std::errc, 10> passing{std::errc::host_unreachable, std::errc::network_unreachable,
                                                std::errc::network_down,     std::errc::connection_refused,
                                                std::errc::connection_reset, std::errc::connection_aborted,
                                                std::errc::network_reset,    std::errc::broken_pipe,
                                                std::errc::not_connected,    std::errc::timed_out};
    return std::any_of(passing.begin(), passing.end(), [&](std::errc errc) { return code == errc; }) ||
           isUnresolved(code);
}

bool isPassing(web::http::status_code status) {
    constexpr std::array<web::http::status_code, 5> passing{408, 429, 502, 503, 504};
    return std::find(passing.begin(), passing.end(), status) != passing.end();
}

/// How long the service asks to wait: 0 if it doesn't, or not in a way that can be understood.
milliseconds retryAfter(const http_response& response, Clock& clock) {
    utility::string_t text;
    if (!response.headers().match(web::http::header_names::retry_after, text) || text.empty()) {
        return milliseconds(0);
    }
    if (text.find_first_not_of(_XPLATSTR("0123456789")) == utility::string_t::npos) {
        constexpr std::size_t digits = 9; // which is more than any cap
        return text.size() > digits ? milliseconds::max() : std::chrono::seconds(std::stol(text));
    }
    const auto date = utility::datetime::from_string(text, utility::datetime::RFC_1123);
    if (!date.is_initialized()) {
        return milliseconds(0);
    }
    constexpr int64_t secondsTo1970 = 11644473600, ticksPerMillisecond = 10000;
    const milliseconds at(static_cast<int64_t>(date.to_interval()) / ticksPerMillisecond - secondsTo1970 * 1000);
    return at - std::chrono::duration_cast<milliseconds>(clock.date().time_since_epoch());
}

std::error_code codeOf(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const http_exception& error) {
        return error.error_code();
    } catch (...) {
        return std::make_error_code(std::errc::io_error); // what it says is not for everybody
    }
}

bool canRewind(const RequestParts& parts) {
    try {
        return parts.rewind();
    } catch (...) {
        return false; // a stream of the caller's that throws
    }
}

/// What becomes of the last answer of a call.
pplx::task<http_response> handOver(CallControl& control, const http_response& response,
                                   const std::shared_ptr<ResponseBuffer>& buffer, const OnResponse& onResponse) {
    const http_response own = control.arrived(response, buffer);
    auto next = onResponse(own, buffer);
    control.finishAfter(response);
    return next;
}

} // namespace

Attempts::Attempts(Call call, OnResponse onResponse)
    : m_Call(std::move(call)), m_Uri(m_Call.request.request_uri()), m_Parts(m_Call.request),
      m_OnResponse(std::move(onResponse)), m_Clock(m_Call.control->wishes().clock) {
    m_Call.request = {};
    m_Clock = m_Clock ? m_Clock : systemClock();
    m_Start = m_Clock->now();
    m_CanRepeat = canRewind(m_Parts);
    if (m_Call.control->wishes().isObserved()) {
        m_Recorder = m_Call.control->wishes().observer->m_Recorder;
        const web::uri url = web::uri_builder(m_Call.base).append(m_Uri).to_uri();
        static std::atomic<uint64_t> calls{0};
        m_Event.call = ++calls;
        m_Event.operation = m_Call.operation;
        m_Event.method = m_Parts.method;
        m_Event.path = url.path();
        m_Event.query = m_Recorder->shown(url.query());
        m_Event.bytesSent = m_Parts.headers.content_length();
        m_Event.started = m_Clock->date();
    }
}

void Attempts::begin() {
    record(CallEvent::Kind::Started, nullptr);
    try {
        prepare();
    } catch (...) {
        record(CallEvent::Kind::Ended, std::current_exception());
        throw;
    }
}

void Attempts::prepare() {
    if (const auto& credentials = m_Call.control->wishes().credentials) {
        const auto authorize = [](Attempts& self, const TokenStore::Issued& issued) {
            self.m_Parts.headers[web::http::header_names::authorization] = issued.header;
            self.m_Token = issued.number;
        };
        const int number = wait();
        if (number == 0) {
            fail(m_Call.control->failure());
            return;
        }
        const auto issued =
            credentials->m_Store->get(m_RefusedToken, m_Clock->date(),
                                      [weak = weak_from_this(), number, authorize](const TokenStore::Issued& later,
                                                                                   const std::exception_ptr& failure) {
                                          const auto self = weak.lock();
                                          if (self && self->resume(number)) {
                                              self->guarded([&] {
                                                  if (failure) {
                                                      std::rethrow_exception(failure);
                                                  }
                                                  authorize(*self, later);
                                                  self->attempt();
                                              });
                                          }
                                      });
        if (!issued || !resume(number)) {
            return;
        }
        authorize(*this, *issued);
    }
    attempt();
}

void Attempts::attempt() {
    m_HasAnswer = false;
    m_IsRefused = false;
    m_Pause.reset();
    m_Call.control->countAttempt();
    m_AttemptStart = m_Clock->now();
    Call call = m_Call;
    call.request = m_Parts.make(m_Parts.headers);
    call.request.set_request_uri(m_Uri);
    const auto self = shared_from_this();
    const auto sent =
        follow(std::move(call), [self](const http_response& response, const std::shared_ptr<ResponseBuffer>& buffer) {
            return self->arrived(response, buffer);
        });
    continued(sent, [self](const Ended& task) { self->guarded([&] { self->ended(task); }); });
}

pplx::task<http_response> Attempts::arrived(const http_response& response,
                                            const std::shared_ptr<ResponseBuffer>& buffer) {
    m_HasAnswer = true;
    m_Pause = pauseAfter(response);
    if (m_Recorder) {
        learn(response.status_code(), response.headers(), buffer);
        record(CallEvent::Kind::Attempted, nullptr);
    }
    if (!m_Pause) {
        return handOver(*m_Call.control, response, buffer, m_OnResponse);
    }
    discardBody(response);
    // While the body of this attempt may still be read, it can't be rewound.
    return m_Parts.hasBody() ? whole(response) : pplx::task_from_result(response);
}

void Attempts::ended(const Ended& task) {
    const Pause pause = pauseAfter(task);
    const int number = pause ? wait() : 0;
    if (number == 0) {
        settle(task);
        return;
    }
    if (m_IsRefused) {
        next(number);
        return;
    }
    m_Call.control->repeat();
    auto endPause = m_Clock->after(*pause, [weak = weak_from_this(), number] {
        if (const auto self = weak.lock()) {
            self->next(number);
        }
    });
    std::unique_lock<std::mutex> lock(m_Mutex);
    if (m_IsWaiting && m_Waits == number && !m_IsStopped) {
        m_EndPause = std::move(endPause);
    } else if (m_IsStopped) {
        lock.unlock();
        endPause();
    }
}

void Attempts::next(int number) {
    if (!resume(number)) {
        return;
    }
    guarded([this] {
        if (!m_Parts.rewind()) {
            throw http_exception(_XPLATSTR("the body can't be read once more"));
        }
        prepare();
    });
}

int Attempts::wait() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (m_IsStopped) {
        return 0;
    }
    m_IsWaiting = true;
    return ++m_Waits;
}

bool Attempts::resume(int number) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (m_IsStopped || !m_IsWaiting || m_Waits != number) {
        return false;
    }
    m_EndPause = nullptr;
    m_IsWaiting = false;
    return true;
}

template <class Work>
void Attempts::guarded(Work work) {
    try {
        work();
    } catch (...) {
        fail(std::current_exception());
    }
}

bool Attempts::stop(const std::exception_ptr& failure) {
    std::unique_lock<std::mutex> lock(m_Mutex);
    m_IsStopped = true;
    const auto endPause = std::exchange(m_EndPause, nullptr);
    const bool isWaiting = m_IsWaiting;
    lock.unlock();
    if (endPause) {
        endPause();
    }
    record(CallEvent::Kind::Ended, failure);
    return isWaiting;
}

void Attempts::settle(const Ended& task) {
    try {
        task.get();
    } catch (...) {
        fail(std::current_exception());
        return;
    }
    record(CallEvent::Kind::Ended, nullptr);
    m_Call.control->settle(task);
}

void Attempts::fail(const std::exception_ptr& failure) noexcept {
    record(CallEvent::Kind::Ended, failure);
    auto told = failure;
    atTheEnd([&] {
        try {
            std::rethrow_exception(failure);
        } catch (const http_exception& error) {
            const auto after = m_Call.control->afterAttempts(m_Call.effect == Effect::Changes);
            if (!after.empty() && typeid(error) == typeid(http_exception)) {
                told = std::make_exception_ptr(http_exception(error.error_code(), to_string_t(error.what()) + after));
            }
        }
    });
    m_Call.control->fail(told);
}

Attempts::Pause Attempts::pauseAfter(const http_response& response) {
    if (response.status_code() == web::http::status_codes::Unauthorized && m_Token != 0 && m_RefusedToken == 0 &&
        m_CanRepeat) {
        m_RefusedToken = m_Token;
        m_IsRefused = true;
        return milliseconds(0);
    }
    return isPassing(response.status_code()) ? pauseOf(retryAfter(response, *m_Clock)) : std::nullopt;
}

Attempts::Pause Attempts::pauseAfter(const Ended& task) {
    try {
        task.get();
    } catch (...) {
        if (!m_HasAnswer) {
            if (m_Recorder) {
                learn(0, {}, nullptr);
            }
            record(CallEvent::Kind::Attempted, std::current_exception());
            const auto code = codeOf(std::current_exception());
            return isPassing(code) ? pauseOf(milliseconds(0)) : std::nullopt;
        }
    }
    return m_Pause;
}

void Attempts::learn(web::http::status_code status, const web::http::http_headers& headers,
                     const std::shared_ptr<ResponseBuffer>& buffer) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Event.status = status;
    m_Event.headers = m_Recorder->shown(headers);
    m_Event.requestId.clear();
    headers.match(_XPLATSTR("X-Request-Id"), m_Event.requestId);
    m_Received = buffer;
}

void Attempts::record(CallEvent::Kind kind, const std::exception_ptr& failure) noexcept {
    if (!m_Recorder) {
        return;
    }
    using std::chrono::duration_cast;
    using std::chrono::microseconds;
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (std::exchange(m_IsEnded, m_IsEnded || kind == CallEvent::Kind::Ended)) {
        return;
    }
    atTheEnd([&] { // Without memory there is no event.
        CallEvent event = m_Event;
        event.kind = kind;
        event.attempt = m_Call.control->attempts();
        event.error = failure ? codeOf(failure) : std::error_code();
        event.took = duration_cast<microseconds>(m_Clock->now() -
                                                 (kind == CallEvent::Kind::Attempted ? m_AttemptStart : m_Start));
        event.bytesReceived = kind == CallEvent::Kind::Ended && m_Received ? m_Received->taken() : 0;
        m_Recorder->record(std::move(event));
    });
}

Attempts::Pause Attempts::pauseOf(milliseconds asked) const {
    const Wishes& wishes = m_Call.control->wishes();
    const int repeats = m_Call.control->repeats();
    if (!wishes.retry || repeats + 1 >= wishes.retry->attempts || !m_CanRepeat ||
        (m_Call.effect == Effect::Changes && !wishes.retry->changes)) {
        return std::nullopt;
    }
    const RetryPolicy& policy = *wishes.retry;
    const double grown = static_cast<double>(policy.firstPause.count()) * std::pow(policy.growth, repeats);
    const double own =
        std::min(grown, static_cast<double>(policy.longestPause.count())) * (1 - policy.jitter * m_Clock->chance());
    const milliseconds pause = std::min(std::max(milliseconds(std::llround(own)), asked), policy.longestPause);
    const auto limit = std::min(policy.totalTime, wishes.deadline.value_or(milliseconds::max()));
    const auto past = std::chrono::duration_cast<milliseconds>(m_Clock->now() - m_Start);
    return pause < limit - past ? Pause(pause) : std::nullopt;
}

pplx::task<http_response> send(Call call, OnResponse onResponse) {
    const auto control = call.control;
    if (!control) {
        return follow(std::move(call), std::move(onResponse));
    }
    if (control->wishes().concernAttempts()) {
        return control->run(std::make_shared<Attempts>(std::move(call), std::move(onResponse)));
    }
    return control->run([&] {
        return follow(std::move(call),
                      [control, then = std::move(onResponse)](const http_response& response,
                                                              const std::shared_ptr<ResponseBuffer>& buffer) {
                          return handOver(*control, response, buffer, then);
                      });
    });
}

} // namespace VarnelAPI::Forms::transport::detail
