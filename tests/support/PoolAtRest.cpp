#include <gtest/gtest.h>
#include <pplx/pplxtasks.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace {

/// What the library still does after a caller has its result is done in the thread pool, and what the pool hasn't
/// begun when the process ends is dropped, which AddressSanitizer calls a leak. So the tests end with the pool at rest.
class PoolAtRest final : public testing::Environment {
    static constexpr int threads = 40; // the HTTP library's default
    static constexpr int rounds = 8;   // more than one continuation may follow the other

    struct Meeting {
        std::mutex mutex;
        std::condition_variable complete;
        int missing = threads;

        void arrive(int arriving) {
            std::unique_lock<std::mutex> lock(mutex);
            missing -= arriving;
            if (missing == 0) {
                complete.notify_all();
            }
            complete.wait_for(lock, std::chrono::seconds(2), [this] { return missing == 0; });
        }
    };

    /// Everything that was waiting has been done when all threads have come here at once.
    static void meet() {
        const auto meeting = std::make_shared<Meeting>();
        for (int thread = 0; thread < threads; ++thread) {
            pplx::create_task([meeting] { meeting->arrive(1); });
        }
        meeting->arrive(0);
    }

    void TearDown() override {
        for (int round = 0; round < rounds; ++round) {
            meet();
        }
    }
};

[[maybe_unused]] const auto* const atRest = testing::AddGlobalTestEnvironment(new PoolAtRest);

} // namespace
