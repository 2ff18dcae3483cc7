#pragma once

#include "Terminal.h"

#include <cstdio>
#include <string>

namespace VarnelAPI::Forms::cli {

/// Where results go: standard output, or a file that gets its name when it is whole.
class Sink {
public:
    /// Standard output.
    Sink();
    /// A file, under a name of its own beside it until `close`.
    /// @throws std::system_error if it can't be made.
    explicit Sink(const std::string& path);
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    /// Leaves nothing of a file that was not closed.
    ~Sink();

    const Terminal& terminal() const { return m_Terminal; }

    /// @throws ReaderGone if nobody reads standard output any more, std::system_error if it can't be written.
    void write(const std::string& text);
    /// All is written. Throws as `write` does.
    void close();

private:
    void check(bool isWritten) const;

    std::FILE* m_Stream;
    Terminal m_Terminal;
    std::string m_Path;
    std::string m_Part;
};

} // namespace VarnelAPI::Forms::cli
