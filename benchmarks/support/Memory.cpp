#include "Memory.h"

#include <malloc.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>
#include <thread>

namespace {

// Off while times are taken: counting would slow down most what allocates most.
std::atomic<bool> counting{false};
std::atomic<int64_t> live{0};
std::atomic<int64_t> peak{0};

void* count(void* block) {
    const int64_t now = live += static_cast<int64_t>(malloc_usable_size(block));
    int64_t seen = peak.load();
    while (now > seen && !peak.compare_exchange_weak(seen, now)) {
    }
    return block;
}

} // namespace

void* operator new(std::size_t size) {
    void* block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return counting.load(std::memory_order_relaxed) ? count(block) : block;
}

void operator delete(void* block) noexcept {
    if (counting.load(std::memory_order_relaxed)) {
        live -= static_cast<int64_t>(malloc_usable_size(block));
    }
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

namespace bench {

int64_t peakOf(const std::function<void()>& operation) {
    // What earlier operations left to other threads, such as closing connections, is over by then.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    live = 0;
    peak = 0;
    counting = true;
    operation();
    counting = false;
    return peak;
}

namespace {

/// A line of the process's status, which says so many kB.
int64_t statusBytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != name) {
    }
    int64_t kilobytes = 0;
    status >> kilobytes;
    return kilobytes * 1024;
}

} // namespace

int64_t growthOf(const std::function<void()>& operation) {
    std::ofstream("/proc/self/clear_refs") << "5"; // the peak begins anew
    const int64_t before = statusBytes("VmRSS:");
    operation();
    return statusBytes("VmHWM:") - before;
}

int64_t residentPeakOf(const std::function<void()>& operation) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    malloc_trim(0);
    return growthOf(operation);
}

int64_t liveBytes() {
    counting = true;
    return live;
}

} // namespace bench
