#pragma once

#include <chrono>
#include <functional>

namespace VarnelAPI::Forms::transport::detail {

/// Runs `work`, which must not throw, in a thread of the task library's pool.
void runInPool(std::function<void()> work);

/// Runs `then`, which must not throw, in a thread of a pool when the pause is over. No thread waits for that.
/// @return what ends the pause at once, so that `then` doesn't run any more. It does nothing once `then` has begun.
std::function<void()> afterPause(std::chrono::milliseconds pause, std::function<void()> then);

} // namespace VarnelAPI::Forms::transport::detail
