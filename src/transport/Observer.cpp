#include "Pool.h"
#include "Recorder.h"

namespace VarnelAPI::Forms::transport {

namespace detail {

namespace {

const utility::char_t redacted[] = _XPLATSTR("REDACTED");

utility::string_t lowerCase(utility::string_t text) {
    utility::details::inplace_tolower(text);
    return text;
}

} // namespace

Recorder::Recorder(Observer::Function function, const std::set<utility::string_t>& headers,
                   std::set<utility::string_t> query)
    : m_Function(std::move(function)), m_Query(std::move(query)) {
    for (const auto& name : headers) {
        m_Headers.insert(lowerCase(name));
    }
}

void Recorder::record(CallEvent event) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Events.push_back(std::move(event));
    if (!m_IsDraining) {
        runInPool([self = shared_from_this()] { self->drain(); });
        m_IsDraining = true;
    }
}

void Recorder::drain() {
    std::unique_lock<std::mutex> lock(m_Mutex);
    while (!m_Events.empty()) {
        const CallEvent event = std::move(m_Events.front());
        m_Events.pop_front();
        lock.unlock();
        try {
            m_Function(event);
        } catch (...) {
            // It is none of the call's.
        }
        lock.lock();
    }
    m_IsDraining = false;
}

std::map<utility::string_t, utility::string_t> Recorder::shown(const web::http::http_headers& headers) const {
    std::map<utility::string_t, utility::string_t> shown;
    for (const auto& [name, value] : headers) {
        const utility::string_t key = lowerCase(name);
        shown[key] = m_Headers.count(key) != 0 ? value : redacted;
    }
    return shown;
}

std::map<utility::string_t, utility::string_t> Recorder::shown(const utility::string_t& query) const {
    std::map<utility::string_t, utility::string_t> shown;
    for (auto& [name, value] : web::uri::split_query(query)) {
        shown[name] = m_Query.count(name) != 0 ? value : redacted;
    }
    return shown;
}

} // namespace detail

Observer::Observer(Function function, const std::set<utility::string_t>& namedHeaders,
                   const std::set<utility::string_t>& namedQuery)
    : m_Recorder(function ? std::make_shared<detail::Recorder>(std::move(function), namedHeaders, namedQuery)
                          : nullptr) {}
Observer::~Observer() = default;

} // namespace VarnelAPI::Forms::transport
