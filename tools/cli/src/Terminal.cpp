#include "Terminal.h"

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <array>
#include <atomic>
#include <clocale>
#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <iostream>
#include <optional>
#include <string_view>

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace VarnelAPI::Forms::cli {
namespace {

constexpr const char* replacement = "\xef\xbf\xbd"; // U+FFFD

/// Calls `use` with each character and its bytes; with U+FFFD for bytes that are no UTF-8.
template <class Use>
void eachCharacter(const std::string& text, Use use) {
    std::mbstate_t state{};
    for (std::size_t i = 0; i < text.size();) {
        wchar_t character = 0;
        const std::size_t length = std::mbrtowc(&character, text.data() + i, text.size() - i, &state);
        if (length == 0 || length > text.size() - i || character > 0x10ffff) {
            state = {};
            use(length == 0 ? L'\0' : L'\xfffd', std::string(length == 0 ? "" : replacement));
            i += 1;
        } else {
            use(character, text.substr(i, length));
            i += length;
        }
    }
}

bool isObeyed(wchar_t c) {
    return c < 0x20 || (c >= 0x7f && c < 0xa0) || (c >= 0x200e && c <= 0x200f) || (c >= 0x2028 && c <= 0x202e) ||
           (c >= 0x2066 && c <= 0x2069);
}

std::atomic<bool> isSilent{false};
termios loud{};

} // namespace

Terminal Terminal::of(std::FILE* stream) {
    Terminal terminal;
    terminal.isTerminal = isatty(fileno(stream)) != 0;
    const char* type = std::getenv("TERM");
    const char* noColour = std::getenv("NO_COLOR");
    terminal.hasColours = terminal.isTerminal && (noColour == nullptr || *noColour == '\0') && type != nullptr &&
                          std::string_view(type) != "dumb" && *type != '\0';
    winsize size{};
    if (terminal.isTerminal && ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        terminal.width = size.ws_col;
    }
    return terminal;
}

std::string Terminal::bold(const std::string& text) const {
    return hasColours ? "\x1b[1m" + text + "\x1b[0m" : text;
}

std::string Terminal::dim(const std::string& text) const {
    return hasColours ? "\x1b[2m" + text + "\x1b[0m" : text;
}

std::string harmless(const std::string& text) {
    std::string out;
    eachCharacter(text, [&](wchar_t character, const std::string& bytes) {
        const bool isBreak = character == L'\n' || character == L'\r' || character == L'\t';
        out += isBreak ? " " : isObeyed(character) ? replacement : bytes;
    });
    return out;
}

std::size_t widthOf(const std::string& text) {
    std::size_t width = 0;
    eachCharacter(text, [&](wchar_t character, const std::string&) {
        const int columns = wcwidth(character);
        width += columns > 0 ? static_cast<std::size_t>(columns) : 0;
    });
    return width;
}

std::string clipped(const std::string& text, std::size_t width) {
    if (widthOf(text) <= width) {
        return text;
    }
    std::string out;
    std::size_t used = 1; // by the ellipsis
    bool isFull = width == 0;
    eachCharacter(text, [&](wchar_t character, const std::string& bytes) {
        const int columns = wcwidth(character);
        used += columns > 0 ? static_cast<std::size_t>(columns) : 0;
        isFull = isFull || used > width;
        out += isFull ? "" : bytes;
    });
    return width == 0 ? out : out + "\xe2\x80\xa6";
}

std::string localTime(const std::string& text) {
    constexpr std::string_view form = "2026-01-31T12:00:00";
    if (text.size() <= form.size() || text.size() > form.size() + 10 || text[4] != '-' || text[10] != 'T') {
        return text;
    }
    const auto date = utility::datetime::from_string(text, utility::datetime::ISO_8601);
    if (!date.is_initialized()) {
        return text;
    }
    // Seconds since 1970: dates count 100 ns since 1601.
    const auto seconds = static_cast<std::time_t>(date.to_interval() / 10'000'000) - std::time_t{11'644'473'600};
    std::tm local{};
    std::array<char, 32> out{};
    if (localtime_r(&seconds, &local) == nullptr ||
        std::strftime(out.data(), out.size(), "%Y-%m-%d %H:%M", &local) == 0) {
        return text;
    }
    return out.data();
}

std::string ask(const std::string& question, bool isSecret) {
    // Before the question, so that no answer is too early for it.
    if (isSecret && tcgetattr(STDIN_FILENO, &loud) == 0) {
        termios silent = loud;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        isSilent = true;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    std::cerr << question << std::flush;
    std::string line;
    std::getline(std::cin, line);
    if (isSilent) {
        restoreEcho();
        std::cerr << '\n';
    }
    return line;
}

void restoreEcho() {
    if (isSilent.exchange(false)) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &loud);
    }
}

} // namespace VarnelAPI::Forms::cli
