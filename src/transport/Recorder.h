#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>
#include <VarnelAPI/Forms/transport/Observer.h>

#include <deque>
#include <mutex>

namespace VarnelAPI::Forms::transport::detail {

/// Hands events to an observer's function, one after the other, in the task library's pool.
class Recorder : public std::enable_shared_from_this<Recorder> {
public:
    Recorder(Observer::Function function, const std::set<utility::string_t>& headers,
             std::set<utility::string_t> query);

    void record(CallEvent event);

    /// What may be shown of the headers of an answer, and of the query of a URL.
    std::map<utility::string_t, utility::string_t> shown(const web::http::http_headers& headers) const;
    std::map<utility::string_t, utility::string_t> shown(const utility::string_t& query) const;

private:
    void drain();

    const Observer::Function m_Function;
    /// In lower case.
    std::set<utility::string_t> m_Headers;
    const std::set<utility::string_t> m_Query;
    std::mutex m_Mutex;
    std::deque<CallEvent> m_Events;
    bool m_IsDraining = false;
};

} // namespace VarnelAPI::Forms::transport::detail
