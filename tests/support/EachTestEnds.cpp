#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <string_view>

namespace {

/// A call that never comes to an end would hold its test for ever. Such a test fails, and its process ends.
class EachTestEnds final : public testing::EmptyTestEventListener {
    static constexpr unsigned seconds = 100; // less than CTest waits

    void OnTestStart(const testing::TestInfo&) override {
        std::signal(SIGALRM, [](int) {
            constexpr std::string_view text = "The test does not end.\n";
            _exit(write(STDERR_FILENO, text.data(), text.size()) < 0 ? 2 : 1);
        });
        alarm(seconds);
    }
    void OnTestEnd(const testing::TestInfo&) override { alarm(0); }
};

[[maybe_unused]] const bool listens = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new EachTestEnds);
    return true;
}();

} // namespace
