#include "CurlTransfer.h"

#include <pplx/threadpool.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

namespace VarnelAPI::Forms::transport::detail {

namespace {

/// All loops of the process. It is never destroyed: threads may still run when static objects go.
struct Loops {
    std::mutex mutex;
    std::vector<std::weak_ptr<CurlLoop>> all;
    static Loops& instance() {
        static auto* const loops = new Loops;
        return *loops;
    }
};

constexpr std::chrono::milliseconds longestWait{60000};

/// libcurl forgets at times, when it reads several streams of HTTP/2 from one connection, to tell that what it read for
/// one of them while it worked on another waits there (seen with 7.88.1). It is found when all are looked at.
constexpr std::chrono::milliseconds longestWaitAmongStreams{50};

} // namespace

CurlLoop::CurlLoop(const CurlOptions& options) : m_Options(options) {
    static const CURLcode initialized = curl_global_init(CURL_GLOBAL_ALL);
    m_Multi = initialized == CURLE_OK ? curl_multi_init() : nullptr;
    if (m_Multi == nullptr) {
        throw std::bad_alloc();
    }
    // Unless told, libcurl keeps four times the transfers in flight, and so few when all have ended.
    curl_multi_setopt(m_Multi, CURLMOPT_MAXCONNECTS, std::max(options.idleConnections, 1L));
    curl_multi_setopt(m_Multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, options.connections);
    curl_multi_setopt(m_Multi, CURLMOPT_MAX_HOST_CONNECTIONS, options.connectionsPerHost);
    curl_multi_setopt(m_Multi, CURLMOPT_PIPELINING, static_cast<long>(CURLPIPE_MULTIPLEX));
}

CurlLoop::~CurlLoop() {
    curl_multi_cleanup(m_Multi);
}

std::shared_ptr<CurlLoop> CurlLoop::start(const CurlOptions& options) {
    auto loop = std::make_shared<CurlLoop>(options);
    // At the end of the process the threads must stop before the pool goes in which they schedule continuations. What
    // was registered last runs first, so the pool must be there before.
    crossplat::threadpool::shared_instance();
    [[maybe_unused]] static const int registered = std::atexit(&haltAll);
    Loops& loops = Loops::instance();
    const std::lock_guard<std::mutex> lock(loops.mutex);
    const auto isGone = [](const std::weak_ptr<CurlLoop>& other) { return other.expired(); };
    loops.all.erase(std::remove_if(loops.all.begin(), loops.all.end(), isGone), loops.all.end());
    loops.all.push_back(loop);
    std::thread([loop] { loop->work(); }).detach();
    return loop;
}

void CurlLoop::haltAll() {
    Loops& loops = Loops::instance();
    const std::lock_guard<std::mutex> lock(loops.mutex);
    for (const auto& weak : loops.all) {
        if (const auto loop = weak.lock()) {
            loop->halt();
            // Transfers stay as they are: to settle them now would be too late.
            static auto* const left = new std::vector<std::shared_ptr<CurlLoop>>;
            left->push_back(loop);
        }
    }
}

void CurlLoop::halt() {
    m_IsHalted = true;
    curl_multi_wakeup(m_Multi);
    if (std::this_thread::get_id() != m_Thread) { // else a callback ends the process
        m_Ended.wait();
    }
}

void CurlLoop::close() {
    m_IsClosing = true;
    curl_multi_wakeup(m_Multi);
}

void CurlLoop::post(std::function<void()> work) {
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Posted.push_back(std::move(work));
    }
    curl_multi_wakeup(m_Multi);
}

void CurlLoop::begin(std::shared_ptr<CurlTransfer> transfer) {
    post([this, transfer = std::move(transfer)] { add(transfer); });
}

void CurlLoop::add(const std::shared_ptr<CurlTransfer>& transfer) {
    transfer->begins();
    try {
        m_Active.insert(transfer);
    } catch (...) {
        transfer->ends(std::current_exception(), End::AtOnce);
        return;
    }
    m_MayShare = m_MayShare || (m_Options.http2 && m_Active.size() > 1);
    m_Earliest = std::min(m_Earliest, transfer->isLateAt());
    curl_easy_setopt(transfer->handle(), CURLOPT_PRIVATE, transfer.get());
    if (curl_multi_add_handle(m_Multi, transfer->handle()) != CURLM_OK) {
        take(transfer, curlFailure(std::errc::not_enough_memory, "the request can't be started"));
    }
}

void CurlLoop::take(const std::shared_ptr<CurlTransfer>& transfer, std::exception_ptr failure, End end) noexcept {
    const auto kept = transfer; // NOLINT(performance-unnecessary-copy-initialization): it may be that of the set
    if (m_Active.erase(kept) != 0) {
        curl_multi_remove_handle(m_Multi, kept->handle());
        kept->ends(std::move(failure), end);
    }
}

void CurlLoop::runPosted() {
    std::vector<std::function<void()>> posted;
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        posted.swap(m_Posted);
    }
    for (const auto& work : posted) {
        work();
    }
}

void CurlLoop::takeEnded() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_Multi, &left)) {
        if (message->msg == CURLMSG_DONE) {
            CurlTransfer* transfer = nullptr;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
            const CURLcode code = message->data.result;
            take(transfer->shared_from_this(), transfer->failureOf(code), End::AfterWriting);
        }
    }
}

void CurlLoop::takeLate() {
    const auto now = Clock::now();
    if (now < m_Earliest) {
        return;
    }
    std::vector<std::shared_ptr<CurlTransfer>> late;
    try {
        late.reserve(m_Active.size());
    } catch (...) {
        return; // There may be memory for it in the next round.
    }
    m_Earliest = Clock::time_point::max();
    for (const auto& transfer : m_Active) {
        if (transfer->isLateAt() <= now) {
            late.push_back(transfer);
        } else {
            m_Earliest = std::min(m_Earliest, transfer->isLateAt());
        }
    }
    for (const auto& transfer : late) {
        take(transfer, curlFailure(std::errc::timed_out, "the service was silent for longer than the time-out"));
    }
}

void CurlLoop::work() {
    m_Thread = std::this_thread::get_id();
    for (;;) {
        const bool isClosing = m_IsClosing; // Whatever was posted before that is begun.
        runPosted();
        if (m_IsHalted || (isClosing && m_Active.empty() && m_Waiting == 0)) {
            break;
        }
        int running = 0;
        curl_multi_perform(m_Multi, &running);
        takeEnded();
        takeLate();
        m_MayShare = m_MayShare && !m_Active.empty();
        const auto longest = m_MayShare ? longestWaitAmongStreams : longestWait;
        const auto wait = m_Earliest == Clock::time_point::max()
                              ? longest
                              : std::chrono::duration_cast<std::chrono::milliseconds>(m_Earliest - Clock::now());
        const auto bounded = std::clamp<std::chrono::milliseconds>(wait + std::chrono::milliseconds(1), {}, longest);
        curl_multi_poll(m_Multi, nullptr, 0, static_cast<int>(bounded.count()), nullptr);
    }
    m_End.set_value();
}

} // namespace VarnelAPI::Forms::transport::detail
