#include "Interrupt.h"

#include "Terminal.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <mutex>
#include <thread>

#include <unistd.h>

namespace VarnelAPI::Forms::cli {
namespace {

struct State {
    pplx::cancellation_token_source source;
    std::atomic<int> exitCode{0};
    std::mutex mutex;
    std::string unfinished;
};

/// Never freed: a thread uses it to the end.
State& state() {
    static auto& all = *new State;
    return all;
}

} // namespace

void Interrupt::watch() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    state();
    std::thread([signals] {
        int signal = 0;
        sigwait(&signals, &signal);
        state().exitCode = 128 + signal;
        std::thread([] { state().source.cancel(); }).detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        restoreEcho();
        const std::lock_guard<std::mutex> lock(state().mutex);
        if (!state().unfinished.empty()) {
            unlink(state().unfinished.c_str());
        }
        _exit(state().exitCode);
    }).detach();
}

pplx::cancellation_token Interrupt::token() {
    return state().source.get_token();
}

void Interrupt::wait() {
    while (state().exitCode == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

int Interrupt::exitCode() {
    return state().exitCode;
}

void Interrupt::leaveNothingOf(const std::string& path) {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().unfinished = path;
}

} // namespace VarnelAPI::Forms::cli
