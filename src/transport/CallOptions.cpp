#include "Wishes.h"

#include <cpprest/asyncrt_utils.h>

#include <algorithm>
#include <stdexcept>

namespace VarnelAPI::Forms::transport {

namespace detail {

void replaceHeader(std::map<utility::string_t, utility::string_t>& headers, const utility::string_t& name,
                   const utility::string_t& value) {
    for (auto entry = headers.begin(); entry != headers.end();) {
        entry = utility::details::str_iequal(entry->first, name) ? headers.erase(entry) : std::next(entry);
    }
    headers[name] = value;
}

namespace {

bool isTraceContext(const utility::string_t& text) {
    const utility::string_t form = _XPLATSTR("00-xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx-xxxxxxxxxxxxxxxx-xx");
    const auto isId = [&](std::size_t begin, std::size_t size) {
        return text.substr(begin, size).find_first_not_of(_XPLATSTR('0')) != utility::string_t::npos;
    };
    constexpr std::size_t trace = 3, traceSize = 32, parent = 36, parentSize = 16;
    return std::equal(form.begin(), form.end(), text.begin(), text.end(),
                      [](auto expected, auto given) {
                          const bool isHex = (given >= '0' && given <= '9') || (given >= 'a' && given <= 'f');
                          return expected == 'x' ? isHex : given == expected;
                      }) &&
           isId(trace, traceSize) && isId(parent, parentSize);
}

} // namespace

std::map<utility::string_t, utility::string_t> headersOf(const Wishes& wishes) {
    auto headers = wishes.headers;
    const utility::string_t context = wishes.traceparent ? wishes.traceparent() : utility::string_t();
    if (!context.empty()) {
        if (!isTraceContext(context)) {
            throw std::invalid_argument("the trace context \"" + utility::conversions::to_utf8string(context) +
                                        "\" is none");
        }
        replaceHeader(headers, _XPLATSTR("traceparent"), context);
    }
    return headers;
}

const Wishes& wishesOf(const CallOptions& options) {
    return *options.m_Wishes;
}

} // namespace detail

CallOptions::CallOptions() : m_Wishes(std::make_shared<detail::Wishes>()) {}
CallOptions::CallOptions(const CallOptions&) = default;
CallOptions& CallOptions::operator=(const CallOptions&) = default;
CallOptions::~CallOptions() = default;

/// Copies share their wishes until one of them changes.
detail::Wishes& CallOptions::change() {
    if (m_Wishes.use_count() != 1) {
        m_Wishes = std::make_shared<detail::Wishes>(*m_Wishes);
    }
    return *m_Wishes;
}

CallOptions& CallOptions::cancelOn(const pplx::cancellation_token& token) {
    change().token = token;
    return *this;
}

CallOptions& CallOptions::deadline(std::chrono::milliseconds limit) {
    if (limit.count() <= 0) {
        throw std::invalid_argument("the deadline of a call must be longer than 0");
    }
    change().deadline = limit;
    return *this;
}

CallOptions& CallOptions::onProgress(std::function<void(const Progress&)> observer) {
    change().onProgress = std::move(observer);
    return *this;
}

CallOptions& CallOptions::onResponse(std::function<void(unsigned short, const web::http::http_headers&)> observer) {
    change().onResponse = std::move(observer);
    return *this;
}

CallOptions& CallOptions::header(const utility::string_t& name, const utility::string_t& value) {
    detail::replaceHeader(change().headers, name, value);
    return *this;
}

CallOptions& CallOptions::saveTo(const utility::string_t& path) {
    if (path.empty()) {
        throw std::invalid_argument("the path to save to is empty");
    }
    change().path = path;
    change().sink = nullptr;
    return *this;
}

CallOptions& CallOptions::saveTo(std::function<void(const uint8_t*, std::size_t)> sink) {
    if (!sink) {
        throw std::invalid_argument("the sink to save to is empty");
    }
    change().sink = std::move(sink);
    change().path.clear();
    return *this;
}

CallOptions& CallOptions::retry(const RetryPolicy& policy) {
    constexpr std::chrono::milliseconds none{0};
    if (policy.attempts < 1 || !(policy.growth >= 1) || !(policy.jitter >= 0 && policy.jitter <= 1) ||
        policy.firstPause < none || policy.longestPause < none || policy.totalTime < none) {
        throw std::invalid_argument(
            "a retry policy needs an attempt, a growth of at least 1, a jitter from 0 to 1, and "
            "no negative time");
    }
    change().retry = policy;
    return *this;
}

CallOptions& CallOptions::clock(std::shared_ptr<Clock> value) {
    change().clock = std::move(value);
    return *this;
}

CallOptions& CallOptions::credentials(std::shared_ptr<Credentials> value) {
    change().credentials = std::move(value);
    return *this;
}

CallOptions& CallOptions::observer(std::shared_ptr<Observer> value) {
    change().observer = std::move(value);
    return *this;
}

CallOptions& CallOptions::traceparent(std::function<utility::string_t()> context) {
    change().traceparent = std::move(context);
    return *this;
}

CallOptions CallOptions::over(const CallOptions& others) const {
    CallOptions both(others);
    detail::Wishes& all = both.change();
    const detail::Wishes& own = *m_Wishes;
    all.token = own.token ? own.token : all.token;
    all.deadline = own.deadline ? own.deadline : all.deadline;
    all.onProgress = own.onProgress ? own.onProgress : all.onProgress;
    all.onResponse = own.onResponse ? own.onResponse : all.onResponse;
    all.retry = own.retry ? own.retry : all.retry;
    all.credentials = own.credentials ? own.credentials : all.credentials;
    all.observer = own.observer ? own.observer : all.observer;
    all.traceparent = own.traceparent ? own.traceparent : all.traceparent;
    all.clock = own.clock ? own.clock : all.clock;
    if (own.saves()) {
        all.path = own.path;
        all.sink = own.sink;
    }
    for (const auto& [name, value] : own.headers) {
        detail::replaceHeader(all.headers, name, value);
    }
    return both;
}

} // namespace VarnelAPI::Forms::transport
