#include "Sink.h"

#include "Failures.h"
#include "Interrupt.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace VarnelAPI::Forms::cli {
namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

Sink::Sink() : m_Stream(stdout), m_Terminal(Terminal::of(stdout)) {}

Sink::Sink(const std::string& path) : m_Stream(nullptr), m_Path(path), m_Part(path + ".XXXXXX") {
    const int descriptor = mkstemp(m_Part.data());
    if (descriptor < 0) {
        fail(path + " can't be made");
    }
    Interrupt::leaveNothingOf(m_Part);
    // As any file that the user makes: mkstemp is stricter.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
    m_Stream = fdopen(descriptor, "wb");
}

Sink::~Sink() {
    if (m_Stream != stdout && m_Stream != nullptr) {
        std::fclose(m_Stream);
        unlink(m_Part.c_str());
    }
}

void Sink::check(bool isWritten) const {
    if (!isWritten) {
        if (errno == EPIPE && m_Path.empty()) {
            throw ReaderGone();
        }
        fail((m_Path.empty() ? "standard output" : m_Path) + " can't be written");
    }
}

void Sink::write(const std::string& text) {
    check(std::fwrite(text.data(), 1, text.size(), m_Stream) == text.size());
}

void Sink::close() {
    check(std::fflush(m_Stream) == 0);
    if (m_Path.empty()) {
        return;
    }
    const bool isWhole = fsync(fileno(m_Stream)) == 0;
    const bool isClosed = std::fclose(m_Stream) == 0;
    m_Stream = nullptr;
    if (!isWhole || !isClosed || rename(m_Part.c_str(), m_Path.c_str()) != 0) {
        const int error = errno;
        unlink(m_Part.c_str());
        errno = error;
        check(false);
    }
    Interrupt::leaveNothingOf({});
}

} // namespace VarnelAPI::Forms::cli
