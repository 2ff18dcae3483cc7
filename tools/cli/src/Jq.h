#pragma once

#include "Json.h"

#include <memory>
#include <string>
#include <vector>

struct jq_state;

namespace VarnelAPI::Forms::cli {

/// An expression of jq.
class Jq {
public:
    /// @throws Usage if it can't be understood.
    explicit Jq(const std::string& expression);

    /// What it makes of a value, one text for each result: those of texts are the texts themselves, others are JSON.
    /// @throws Told in jq's words if it fails.
    std::vector<std::string> run(const Json& value) const;

private:
    struct Teardown {
        void operator()(jq_state* state) const;
    };
    std::unique_ptr<jq_state, Teardown> m_State;
};

} // namespace VarnelAPI::Forms::cli
