#include <VarnelAPI/Forms/kit/Time.h>

#include <stdexcept>

namespace VarnelAPI::Forms::kit {

namespace {

using Clock = std::chrono::system_clock;
/// What a date counts.
using Ticks = std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>;

/// From 1601-01-01, where dates begin, to 1970-01-01, where the clock does.
constexpr Ticks untilEpoch = std::chrono::hours(24 * 134774);

} // namespace

std::optional<Clock::time_point> toTimePoint(const utility::datetime& date) {
    if (!date.is_initialized()) {
        return std::nullopt;
    }
    const auto sinceEpoch = Ticks(static_cast<int64_t>(date.to_interval())) - untilEpoch;
    constexpr auto first = std::chrono::ceil<Ticks>(Clock::duration::min());
    constexpr auto last = std::chrono::floor<Ticks>(Clock::duration::max());
    if (sinceEpoch < first || sinceEpoch > last) {
        throw std::out_of_range("the date is too far from today for the system's clock: " +
                                utility::conversions::to_utf8string(date.to_string(utility::datetime::ISO_8601)));
    }
    return Clock::time_point(std::chrono::duration_cast<Clock::duration>(sinceEpoch));
}

utility::datetime toDatetime(const std::optional<Clock::time_point>& time) {
    if (!time) {
        return {};
    }
    const auto ticks = std::chrono::floor<Ticks>(time->time_since_epoch()) + untilEpoch;
    if (ticks <= Ticks::zero()) {
        throw std::out_of_range("the time is before the first date, 1601-01-01T00:00:00.0000001Z");
    }
    return utility::datetime::from_interval(static_cast<uint64_t>(ticks.count()));
}

} // namespace VarnelAPI::Forms::kit
