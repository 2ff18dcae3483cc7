#pragma once

#include "Terminal.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace VarnelAPI::Forms::cli {

/// A bar on the terminal behind standard error, for what takes longer than a moment; nothing where there is no
/// terminal. There is one at a time, which any thread may use.
class Progress {
public:
    /// @param what it counts: "issues", or an empty text for bytes.
    explicit Progress(std::string what = {});
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { takeAway(); }

    /// Takes away what is shown, to make room for other lines.
    static void takeAway();
    void show(std::uint64_t count, const std::optional<std::uint64_t>& total);

private:
    std::string amount(std::uint64_t count) const;

    const std::string m_What;
    const Terminal m_Terminal = Terminal::of(stderr);
    std::chrono::steady_clock::time_point m_Next = std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
};

} // namespace VarnelAPI::Forms::cli
