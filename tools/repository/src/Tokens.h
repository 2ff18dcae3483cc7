#pragma once

#include "VarnelRepository/Server.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// The tokens that are good. Safe from any thread.
class Tokens {
public:
    explicit Tokens(const std::vector<Token>& tokens) { reset(tokens); }

    void reset(const std::vector<Token>& tokens);
    void add(const Token& token);

    enum class Verdict { Good, Missing, Bad };
    /// Looks at an Authorization header, and counts the use of a token. Without any tokens everything is good.
    Verdict use(const std::string& authorization);

private:
    struct State {
        bool isCounted = false;
        int callsLeft = 0;
        std::chrono::steady_clock::time_point end;
    };

    std::mutex m_mutex;
    std::map<std::string, State> m_tokens;
};

} // namespace VarnelAPI::Forms::repository
