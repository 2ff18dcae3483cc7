#pragma once

#include <VarnelAPI/Forms/detail/Export.h>

#include <chrono>
#include <functional>
#include <memory>

namespace VarnelAPI::Forms::transport {

/// When and how often a call is sent again, given to `CallOptions::retry`.
/// @code
/// client = client->with(transport::CallOptions().retry({}));
/// @endcode
///
/// Reading and deleting are repeated after: no connection, one that broke off or a time-out before the answer's header
/// was there, and 408, 429, 502, 503, 504. The caller gets the last failure, whose text says how many attempts there
/// were. A 404 of a deletion that was repeated is its success.
///
/// A pause is never begun that would not end before the deadline of the call.
struct RetryPolicy {
    /// How often the call is sent at most, with the first time.
    int attempts = 4;
    /// The pause before the second attempt ...
    std::chrono::milliseconds firstPause{500};
    /// ... by how much each further one is longer ...
    double growth = 2;
    /// ... and the longest. A Retry-After of the service makes a pause longer, up to this, and none shorter.
    std::chrono::milliseconds longestPause{30000};
    /// The share of a pause that is left to chance, from 0 to 1, so that many clients don't come back all at once.
    double jitter = 0.5;
    /// Counted from the call. A pause is never begun that would not end before.
    std::chrono::milliseconds totalTime{120000};
    /// Whether inserts, updates and uploads are repeated too, and what else `callApi` sends with a method other than
    /// GET, HEAD, OPTIONS and DELETE. An attempt whose answer was lost may have taken effect: an insert may then make a
    /// second instance, and an update be refused by a 409 for what it did itself, whose text says so. A body that is a
    /// stream which can't seek is sent once nevertheless.
    bool changes = false;
};

/// The time that pauses and tokens go by: replace it by `CallOptions::clock` to test a program without waiting. Calls
/// use it from any thread.
class VARNEL_FORMS_API Clock {
public:
    Clock();
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock();

    /// What durations are measured by.
    virtual std::chrono::steady_clock::time_point now() = 0;
    /// What dates of the service and of tokens are compared to.
    virtual std::chrono::system_clock::time_point date() = 0;
    /// A number of [0, 1) by chance.
    virtual double chance() = 0;
    /// Calls `then` once after `pause`, in any thread, and doesn't wait. What it returns, called in any thread,
    /// tries to make it not happen.
    virtual std::function<void()> after(std::chrono::milliseconds pause, std::function<void()> then) = 0;
};

/// The clock of calls for which none was chosen. Its pauses are timers on the task library's pool.
VARNEL_FORMS_API std::shared_ptr<Clock> systemClock();

} // namespace VarnelAPI::Forms::transport
