#if !defined(_WIN32)
#include <boost/asio/steady_timer.hpp>
#endif

#include "Pool.h"

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#if defined(_WIN32)
#include <windows.h>

#include <map>
#include <mutex>
#include <system_error>
#else
#include <pplx/threadpool.h>
#endif

#include <memory>

namespace VarnelAPI::Forms::transport::detail {

void runInPool(std::function<void()> work) {
    auto held = std::make_unique<std::function<void()>>(std::move(work));
    const auto run = [](void* raw) {
        const std::unique_ptr<std::function<void()>> taken(static_cast<std::function<void()>*>(raw));
        (*taken)();
    };
    pplx::get_ambient_scheduler()->schedule(run, held.get());
    static_cast<void>(held.release()); // It is the pool's now.
}

#if defined(_WIN32)

namespace {

/// The pauses that are not over, by number: the system may call back for one that has just been ended.
struct Pauses {
    struct Pause {
        PTP_TIMER timer;
        std::function<void()> then;
    };
    std::mutex mutex;
    std::map<ULONG_PTR, Pause> pending;
    ULONG_PTR last = 0;

    /// Never destroyed: threads of the system's pool outlive static objects.
    static Pauses& instance() {
        static auto* const pauses = new Pauses;
        return *pauses;
    }
    /// Whoever takes a pause out runs it, or lets it go.
    std::function<void()> take(ULONG_PTR number) {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto found = pending.find(number);
        if (found == pending.end()) {
            return nullptr;
        }
        auto then = std::move(found->second.then);
        CloseThreadpoolTimer(found->second.timer);
        pending.erase(found);
        return then;
    }
};

void CALLBACK onPauseOver(PTP_CALLBACK_INSTANCE /*instance*/, void* number, PTP_TIMER /*timer*/) {
    if (const auto then = Pauses::instance().take(reinterpret_cast<ULONG_PTR>(number))) {
        then();
    }
}

} // namespace

std::function<void()> afterPause(std::chrono::milliseconds pause, std::function<void()> then) {
    constexpr ULONGLONG ticksPerMillisecond = 10000;
    Pauses& pauses = Pauses::instance();
    const std::lock_guard<std::mutex> lock(pauses.mutex);
    const ULONG_PTR number = ++pauses.last;
    const PTP_TIMER timer = CreateThreadpoolTimer(&onPauseOver, reinterpret_cast<void*>(number), nullptr);
    if (timer == nullptr) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "a timer");
    }
    pauses.pending[number] = {timer, std::move(then)};
    // Negative means: from now.
    const ULONGLONG due = 0 - static_cast<ULONGLONG>(std::max<int64_t>(pause.count(), 0)) * ticksPerMillisecond;
    FILETIME when;
    when.dwLowDateTime = static_cast<DWORD>(due);
    when.dwHighDateTime = static_cast<DWORD>(due >> 32U);
    SetThreadpoolTimer(timer, &when, 0, 0);
    return [number] { Pauses::instance().take(number); };
}

#else

std::function<void()> afterPause(std::chrono::milliseconds pause, std::function<void()> then) {
    auto timer = std::make_shared<boost::asio::steady_timer>(crossplat::threadpool::shared_instance().service(), pause);
    timer->async_wait([then = std::move(then)](const boost::system::error_code& error) {
        if (!error) {
            then();
        }
    });
    return [timer] { timer->cancel(); };
}

#endif

} // namespace VarnelAPI::Forms::transport::detail
