#include "FailingMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace forms_test {
namespace {

enum class State { Whole, FailingHere, FailingElsewhere };

std::atomic<State> state{State::Whole};
std::atomic<bool> isOnce{false};
std::atomic<uint64_t> left{0};
std::atomic<uint64_t> failed{0};
thread_local bool isHere = false;

bool isRefused() {
    const State now = state.load();
    if (now == State::Whole || isHere != (now == State::FailingHere)) {
        return false;
    }
    // At the first that fails it is 1, and stays 0 from then on.
    uint64_t seen = left.load();
    while (seen != 0 && !left.compare_exchange_weak(seen, seen - 1)) {
    }
    const bool refused = seen == 1 || (seen == 0 && !isOnce);
    failed += refused ? 1 : 0;
    return refused;
}

} // namespace

void FailingMemory::fail(uint64_t nth, How how, Where where) {
    mend();
    isHere = true;
    isOnce = how == How::Once;
    left = nth;
    failed = 0;
    state = where == Where::Here ? State::FailingHere : State::FailingElsewhere;
}

void FailingMemory::mend() {
    state = State::Whole;
    isHere = false;
}

uint64_t FailingMemory::failures() {
    return failed;
}

} // namespace forms_test

void* operator new(std::size_t size) {
    void* const block = forms_test::isRefused() ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
