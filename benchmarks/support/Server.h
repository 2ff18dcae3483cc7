#pragma once

#include <chrono>
#include <string>

namespace bench {

/// How long the late bodies take.
constexpr std::chrono::milliseconds lateDelay{1000};

/// What the locations that operations take make the server answer.
namespace locations {
constexpr const char* issue = "issue";             // 200 and one issue, whatever the path
constexpr const char* issueClosing = "closing";    // the same, and the server closes the connection
constexpr const char* list = "list";               // 200 and the list of issues
constexpr const char* attachments = "attachments"; // a list of attachments
constexpr const char* custom = "custom";           // a list of issues with custom properties
constexpr const char* largeList = "largelist";     // the list of issues, over and over
constexpr const char* file = "file";               // 200 and the file's bytes
constexpr const char* large = "large";             // 200 and so many bytes
constexpr const char* late = "late";               // as `issue`, the body after the delay
constexpr const char* lateFailure = "late500";     // the same with status 500
constexpr const char* lateOtherType = "latehtml";  // the same as text/html
} // namespace locations

constexpr std::size_t largeSize = std::size_t{256} << 20U;

/// Runs the server in this process: prints its port, and serves until the end of the standard input. A request's body
/// is read and dropped.
/// @param authorities the folder of its certificate, if it is to speak TLS; else empty.
[[noreturn]] void serve(const std::string& authorities);

/// Starts `serve` in a process of its own, so that its work is not counted as ours; returns its URL. It ends with this
/// process.
const std::string& serverUrl();

/// The same over TLS. From the first call on, the process trusts as many authorities as systems do, that of the server
/// among them, by the environment variable SSL_CERT_FILE.
const std::string& tlsServerUrl();

} // namespace bench
