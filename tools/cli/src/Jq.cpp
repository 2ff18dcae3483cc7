#include "Jq.h"

#include "Failures.h"

#include <cstdint>

extern "C" {
#include <jq.h>
}

namespace VarnelAPI::Forms::cli {
namespace {

std::string textOf(jv value) {
    std::string text(jv_string_value(value), static_cast<std::size_t>(jv_string_length_bytes(jv_copy(value))));
    jv_free(value);
    return text;
}

} // namespace

void Jq::Teardown::operator()(jq_state* state) const {
    jq_teardown(&state);
}

Jq::Jq(const std::string& expression) : m_State(jq_init()) {
    if (!m_State) {
        throw std::bad_alloc();
    }
    std::string trouble;
    jq_set_error_cb(
        m_State.get(),
        [](void* out, jv message) {
            auto& text = *static_cast<std::string*>(out);
            text += text.empty() ? textOf(jq_format_error(message)) : (jv_free(message), "");
        },
        &trouble);
    const bool isGood = jq_compile(m_State.get(), expression.c_str()) != 0;
    jq_set_error_cb(
        m_State.get(), [](void*, jv message) { jv_free(message); }, nullptr);
    if (!isGood) {
        throw Usage("jq does not understand " + expression + " (" + trouble.substr(0, trouble.find('\n')) + ")");
    }
}

std::vector<std::string> Jq::run(const Json& value) const {
    const std::string text = toText(value);
    jq_start(m_State.get(), jv_parse_sized(text.data(), static_cast<int>(text.size())), 0);
    std::vector<std::string> results;
    for (;;) {
        jv result = jq_next(m_State.get());
        if (!jv_is_valid(result)) {
            if (!jv_invalid_has_msg(jv_copy(result))) {
                jv_free(result);
                return results;
            }
            throw Told("jq failed: " + textOf(jq_format_error(jv_invalid_get_msg(result))));
        }
        results.push_back(jv_get_kind(result) == JV_KIND_STRING ? textOf(result) : textOf(jv_dump_string(result, 0)));
    }
}

} // namespace VarnelAPI::Forms::cli
