#pragma once

#include <VarnelAPI/Forms/transport/CurlTransport.h>

// The HTTP library defines the word as nothing, and clang then can't read how libcurl asks for the attribute.
#pragma push_macro("dllimport")
#undef dllimport
#include <curl/curl.h>
#pragma pop_macro("dllimport")

#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <unordered_set>
#include <vector>

namespace VarnelAPI::Forms::transport::detail {

class CurlTransfer;

/// The thread of one transport, and what it works on. `begin`, `post` and `close` are for other threads, all else for
/// that one.
class CurlLoop : public std::enable_shared_from_this<CurlLoop> {
public:
    using Clock = std::chrono::steady_clock;

    /// @throws std::system_error if the thread can't be started.
    static std::shared_ptr<CurlLoop> start(const CurlOptions& options);
    explicit CurlLoop(const CurlOptions& options);
    ~CurlLoop();
    CurlLoop(const CurlLoop&) = delete;
    CurlLoop& operator=(const CurlLoop&) = delete;

    const CurlOptions& options() const { return m_Options; }
    void begin(std::shared_ptr<CurlTransfer> transfer);
    void post(std::function<void()> work);
    /// Ends the thread when no transfer is left.
    void close();

    /// When an end is told: at once, or when all that came before it was written.
    enum class End { AtOnce, AfterWriting };
    /// Takes a transfer out that ended, or is to end, with this failure, if any.
    void take(const std::shared_ptr<CurlTransfer>& transfer, std::exception_ptr failure,
              End end = End::AtOnce) noexcept;
    /// A transfer that was taken out still waits for what is being written, or no longer does.
    void waits(bool isWaiting) noexcept { m_Waiting += isWaiting ? 1 : -1; }

private:
    static void haltAll();
    void halt();
    void work();
    void add(const std::shared_ptr<CurlTransfer>& transfer);
    void runPosted();
    void takeEnded();
    void takeLate();

    const CurlOptions m_Options;
    CURLM* m_Multi = nullptr;
    std::atomic<std::thread::id> m_Thread{};
    std::promise<void> m_End;
    std::shared_future<void> m_Ended{m_End.get_future()};
    std::mutex m_Mutex;
    std::vector<std::function<void()>> m_Posted;
    std::unordered_set<std::shared_ptr<CurlTransfer>> m_Active;
    int m_Waiting = 0;
    /// No transfer is late before.
    Clock::time_point m_Earliest = Clock::time_point::max();
    /// Whether transfers may have been streams of one connection, since there were none.
    bool m_MayShare = false;
    std::atomic<bool> m_IsClosing{false};
    std::atomic<bool> m_IsHalted{false};
};

} // namespace VarnelAPI::Forms::transport::detail
