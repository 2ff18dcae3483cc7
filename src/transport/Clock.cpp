#include <VarnelAPI/Forms/transport/RetryPolicy.h>

#include "Pool.h"

#include <random>

namespace VarnelAPI::Forms::transport {

namespace {

class SystemClock final : public Clock {
public:
    std::chrono::steady_clock::time_point now() override { return std::chrono::steady_clock::now(); }
    std::chrono::system_clock::time_point date() override { return std::chrono::system_clock::now(); }
    double chance() override {
        thread_local std::minstd_rand random{std::random_device{}()};
        return std::uniform_real_distribution<double>()(random);
    }
    std::function<void()> after(std::chrono::milliseconds pause, std::function<void()> then) override {
        return detail::afterPause(pause, std::move(then));
    }
};

} // namespace

Clock::Clock() = default;
Clock::~Clock() = default;

std::shared_ptr<Clock> systemClock() {
    static const auto clock = std::make_shared<SystemClock>();
    return clock;
}

} // namespace VarnelAPI::Forms::transport
