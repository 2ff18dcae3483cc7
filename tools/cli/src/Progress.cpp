#include "Progress.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <mutex>

namespace VarnelAPI::Forms::cli {

namespace {

std::mutex mutex;
/// How long the line is that is shown.
std::size_t shown = 0;

} // namespace

Progress::Progress(std::string what) : m_What(std::move(what)) {}

void Progress::takeAway() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (shown > 0) {
        std::cerr << '\r' << std::string(shown, ' ') << '\r' << std::flush;
        shown = 0;
    }
}

std::string Progress::amount(std::uint64_t count) const {
    if (!m_What.empty()) {
        return std::to_string(count);
    }
    constexpr std::array<const char*, 4> units{" B", " KB", " MB", " GB"};
    std::size_t unit = 0;
    std::uint64_t tenths = count * 10;
    for (; tenths >= 10000 && unit + 1 < units.size(); ++unit) {
        tenths /= 1000;
    }
    const std::string fraction = unit == 0 ? std::string() : "." + std::to_string(tenths % 10);
    return std::to_string(tenths / 10) + fraction + units[unit];
}

void Progress::show(std::uint64_t count, const std::optional<std::uint64_t>& total) {
    const auto now = std::chrono::steady_clock::now();
    const std::lock_guard<std::mutex> lock(mutex);
    if (!m_Terminal.isTerminal || now < m_Next) {
        return;
    }
    m_Next = now + std::chrono::milliseconds(100);
    std::string text = amount(count);
    if (total && *total > 0) {
        const std::size_t length = m_Terminal.width < 60 ? 8 : 20;
        const double part = std::min(1.0, static_cast<double>(count) / static_cast<double>(*total));
        const auto full = static_cast<std::size_t>(static_cast<double>(length) * part);
        text = "[" + std::string(full, '#') + std::string(length - full, '.') + "] " + text + " of " + amount(*total);
    }
    text = clipped(text + (m_What.empty() ? "" : " " + m_What), m_Terminal.width - 1);
    const std::size_t width = widthOf(text);
    std::cerr << '\r' << text << std::string(shown > width ? shown - width : 0, ' ') << std::flush;
    shown = std::max(shown, width);
}

} // namespace VarnelAPI::Forms::cli
