#pragma once

#include "VarnelRepository/Server.h"

#include <deque>
#include <mutex>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// The requests that were served last. Safe from any thread.
class RequestLog {
public:
    explicit RequestLog(std::size_t limit) : m_limit(limit) {}

    /// Gives it its number and time.
    void add(LoggedRequest request) {
        const std::lock_guard lock(m_mutex);
        request.number = ++m_last;
        request.time = std::chrono::system_clock::now();
        m_bytes += bytesOf(request);
        m_requests.push_back(std::move(request));
        while (m_requests.size() > m_limit || m_bytes > maxBytes) {
            m_bytes -= bytesOf(m_requests.front());
            m_requests.pop_front();
        }
    }
    std::vector<LoggedRequest> all() const {
        const std::lock_guard lock(m_mutex);
        return {m_requests.begin(), m_requests.end()};
    }
    void clear() {
        const std::lock_guard lock(m_mutex);
        m_requests.clear();
        m_bytes = 0;
        m_last = 0;
    }

private:
    /// What the texts of all may take together: a hundred of the longest, or tens of thousands of usual ones.
    static constexpr std::size_t maxBytes = std::size_t{8} * 1024 * 1024;

    static std::size_t bytesOf(const LoggedRequest& request) {
        std::size_t bytes = request.path.size() + request.query.size();
        for (const auto& [name, value] : request.headers) {
            bytes += name.size() + value.size() + sizeof(request.headers[0]);
        }
        return bytes;
    }

    const std::size_t m_limit;
    mutable std::mutex m_mutex;
    std::deque<LoggedRequest> m_requests;
    std::size_t m_bytes = 0;
    std::uint64_t m_last = 0;
};

} // namespace VarnelAPI::Forms::repository
