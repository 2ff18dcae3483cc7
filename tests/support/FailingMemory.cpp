#include "FailingMemory.h"

#include <cstdlib>
#include <new>

namespace forms_test {
namespace {

thread_local bool isFailing = false;
thread_local bool isOnce = false;
thread_local uint64_t left = 0;
thread_local uint64_t failed = 0;

bool isRefused() {
    if (!isFailing) {
        return false;
    }
    // At the first that fails it is 1, and stays 0 from then on.
    const bool refused = left == 1 || (left == 0 && !isOnce);
    left -= left != 0 ? 1 : 0;
    failed += refused ? 1 : 0;
    return refused;
}

} // namespace

void FailingMemory::fail(uint64_t nth, How how) {
    isOnce = how == How::Once;
    left = nth;
    failed = 0;
    isFailing = true;
}

void FailingMemory::mend() {
    isFailing = false;
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
