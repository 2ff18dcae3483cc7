#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace VarnelAPI::Forms::cli {

/// What is known of where a stream goes.
struct Terminal {
    bool isTerminal = false;
    bool hasColours = false;
    std::size_t width = 80;

    static Terminal of(std::FILE* stream);

    /// The text set off, where there are colours.
    std::string bold(const std::string& text) const;
    std::string dim(const std::string& text) const;
};

/// The text on one line, without anything that a terminal would obey: blanks for what breaks lines, U+FFFD for other
/// control characters, for those that turn the direction of writing, and for what is no UTF-8.
std::string harmless(const std::string& text);

/// How many columns the text takes on a terminal.
std::size_t widthOf(const std::string& text);

/// The text in so many columns at most, with an ellipsis where it was cut.
std::string clipped(const std::string& text, std::size_t width);

/// A date of JSON ("2026-01-31T12:00:00Z") in local time and short; any other text as it is.
std::string localTime(const std::string& text);

/// Asks on the terminal, and reads a line from it; without echo for secrets.
std::string ask(const std::string& question, bool isSecret = false);
/// Lets the terminal echo again, if it did not because of `ask`. For who ends the process meanwhile.
void restoreEcho();

} // namespace VarnelAPI::Forms::cli
