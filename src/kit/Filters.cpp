#include <VarnelAPI/Forms/kit/Filters.h>

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/model/ModelBase.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace VarnelAPI::Forms::kit::detail {

using utility::string_t;
using utility::conversions::to_string_t;

namespace {

const utility::char_t null[] = _XPLATSTR("null");

/// Whether a name in an expression would end there.
bool endsName(utility::char_t character) {
    const auto code = static_cast<std::make_unsigned_t<utility::char_t>>(character);
    return code <= 0x20 || code == 0x7F || string_t(_XPLATSTR("'\"(),")).find(character) != string_t::npos;
}

string_t parenthesised(const string_t& text) {
    return _XPLATSTR("(") + text + _XPLATSTR(")");
}

} // namespace

string_t literal(const string_t& value) {
    string_t text(1, _XPLATSTR('\''));
    for (const auto character : value) {
        text.append(character == _XPLATSTR('\'') ? 2 : 1, character);
    }
    return text + _XPLATSTR('\'');
}

string_t literal(bool value) {
    return api::ApiClient::parameterToString(value);
}

string_t literal(int64_t value) {
    return api::ApiClient::parameterToString(value);
}

string_t literal(uint64_t value) {
    return to_string_t(std::to_string(value));
}

string_t literal(double value) {
    return model::ModelBase::toJson(value).serialize();
}

string_t literal(const utility::datetime& value) {
    return value.is_initialized() ? api::ApiClient::parameterToString(value) : null;
}

string_t name(Key key) {
    if (key.empty() || std::any_of(key.begin(), key.end(), endsName)) {
        throw std::invalid_argument("\"" + utility::conversions::to_utf8string(string_t(key)) +
                                    "\" can't be the name of a property in an expression");
    }
    return string_t(key);
}

string_t comparison(Key key, const utility::char_t* op, const string_t& value) {
    const string_t sign = op;
    if (value == null && sign != _XPLATSTR("eq") && sign != _XPLATSTR("ne")) {
        throw std::invalid_argument("a date never set, or null, is neither before nor after anything");
    }
    return name(key) + _XPLATSTR(' ') + sign + _XPLATSTR(' ') + value;
}

string_t call(const utility::char_t* function, Key key, const string_t& text) {
    return function + parenthesised(name(key) + _XPLATSTR(',') + text);
}

string_t joined(Bond bond, const string_t& left, Bond leftBond, const string_t& right, Bond rightBond) {
    return (leftBond < bond ? parenthesised(left) : left) +
           (bond == Bond::All ? _XPLATSTR(" and ") : _XPLATSTR(" or ")) +
           (rightBond < bond ? parenthesised(right) : right);
}

string_t negated(const string_t& condition) {
    return _XPLATSTR("not ") + parenthesised(condition);
}

} // namespace VarnelAPI::Forms::kit::detail
