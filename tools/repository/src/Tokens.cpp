#include "Tokens.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>

namespace VarnelAPI::Forms::repository {

void Tokens::reset(const std::vector<Token>& tokens) {
    {
        const std::lock_guard lock(m_mutex);
        m_tokens.clear();
    }
    for (const Token& token : tokens) {
        add(token);
    }
}

void Tokens::add(const Token& token) {
    const auto isVisible = [](char c) { return c > ' ' && c < 0x7F; };
    if (token.value.empty() || !std::all_of(token.value.begin(), token.value.end(), isVisible)) {
        throw std::invalid_argument("A token is visible ASCII without blanks");
    }
    if (token.calls < 0 || token.lifetime.count() < 0) {
        throw std::invalid_argument("A token is not good for less than nothing");
    }
    using Time = std::chrono::steady_clock;
    const std::lock_guard lock(m_mutex);
    m_tokens[token.value] = {token.calls != 0, token.calls,
                             token.lifetime.count() == 0 ? Time::time_point::max() : Time::now() + token.lifetime};
}

Tokens::Verdict Tokens::use(const std::string& authorization) {
    const std::lock_guard lock(m_mutex);
    if (m_tokens.empty()) {
        return Verdict::Good;
    }
    constexpr std::string_view scheme = "bearer ";
    const auto isEqual = [](char given, char lower) {
        return std::tolower(static_cast<unsigned char>(given)) == lower;
    };
    if (authorization.size() < scheme.size() ||
        !std::equal(scheme.begin(), scheme.end(), authorization.begin(),
                    [&](char lower, char given) { return isEqual(given, lower); })) {
        return Verdict::Missing;
    }
    const auto found = m_tokens.find(authorization.substr(scheme.size()));
    if (found == m_tokens.end() || std::chrono::steady_clock::now() >= found->second.end ||
        (found->second.isCounted && found->second.callsLeft == 0)) {
        return Verdict::Bad;
    }
    found->second.callsLeft -= found->second.isCounted ? 1 : 0;
    return Verdict::Good;
}

} // namespace VarnelAPI::Forms::repository
