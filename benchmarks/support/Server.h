#pragma once

#include <chrono>
#include <string>

namespace bench {

/// How long the late bodies take.
constexpr std::chrono::milliseconds lateDelay{1000};

/// What the locations that operations take make the server answer.
namespace locations {
constexpr const char* issue = "issue";            // 200 and one issue, whatever the path
constexpr const char* issueClosing = "closing";   // the same, and the server closes the connection
constexpr const char* list = "list";              // 200 and the list of issues
constexpr const char* file = "file";              // 200 and the file's bytes
constexpr const char* late = "late";              // as `issue`, the body after the delay
constexpr const char* lateFailure = "late500";    // the same with status 500
constexpr const char* lateOtherType = "latehtml"; // the same as text/html
} // namespace locations

/// Runs the server in this process: prints its port, and serves until the end of the standard input. A request's body
/// is read and dropped.
[[noreturn]] void serve();

/// Starts `serve` in a process of its own, so that its work is not counted as ours; returns its URL. It ends with this
/// process.
const std::string& serverUrl();

} // namespace bench
