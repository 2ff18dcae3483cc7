#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <string>

namespace VarnelAPI::Forms::cli {

/// Ctrl-C, and being asked to end: whatever the program does then, it ends within a second.
class Interrupt {
public:
    /// To be called before any thread is started: from then on SIGINT and SIGTERM cancel `token`, and end the process
    /// with 128 and the number of the signal if it hasn't ended by itself 0.7 s later.
    static void watch();
    /// Canceled by the first signal.
    static pplx::cancellation_token token();
    /// Waits for a signal.
    static void wait();
    /// 128 and the number of the signal; 0 if there was none.
    static int exitCode();
    /// A file that the end of the process must not leave behind; an empty text for none.
    static void leaveNothingOf(const std::string& path);
};

} // namespace VarnelAPI::Forms::cli
