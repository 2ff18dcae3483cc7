#include "Conversion.h"

#include "Streams.h"

#include <cmath>

namespace VarnelAPI::Forms::model::detail {

using utility::conversions::to_utf8string;

std::shared_ptr<std::istream> requiredData(const std::shared_ptr<HttpContent>& content) {
    auto data = required(content, "the content")->getData();
    if (!data) {
        throw std::invalid_argument("the content \"" + to_utf8string(content->getName()) + "\" has no data stream");
    }
    bufferOf(*data);
    return data;
}

std::string requiredBytes(const std::shared_ptr<HttpContent>& content) {
    return readAll(*requiredData(content));
}

void refuseControlCharacters(const utility::string_t& text, const std::string& what) {
    static const utility::string_t refused(_XPLATSTR("\r\n\0"), 3);
    if (text.find_first_of(refused) != utility::string_t::npos) {
        throw std::invalid_argument(what + " holds CR, LF or NUL");
    }
}

utility::string_t dateText(const utility::datetime& date) {
    constexpr utility::datetime::interval_type last = 2650467743999990000; // 9999-12-31T23:59:59.999Z
    if (date.to_interval() > last) {
        throw std::out_of_range("a date after 9999-12-31T23:59:59.999Z can't be written");
    }
    return date.to_string(utility::datetime::ISO_8601);
}

utility::string_t partPrefix(utility::string_t namePrefix) {
    if (!namePrefix.empty() && namePrefix.back() != _XPLATSTR('.')) {
        namePrefix += _XPLATSTR('.');
    }
    return namePrefix;
}

web::json::value parseJson(const utility::string_t& text) {
    // The HTTP library sets this locale itself only when it has read the first token, which may be a number.
    const utility::details::scoped_c_thread_locale locale;
    return decoding([&text] { return web::json::value::parse(text); });
}

void requireFinite(double number) {
    if (!std::isfinite(number)) {
        throw std::invalid_argument("a number that is infinite or not a number can't be written as JSON");
    }
}

void requireFinite(const web::json::value& json) {
    if (json.is_double()) {
        requireFinite(json.as_double());
    } else if (json.is_array()) {
        for (const auto& element : json.as_array()) {
            requireFinite(element);
        }
    } else if (json.is_object()) {
        for (const auto& field : json.as_object()) {
            requireFinite(field.second);
        }
    }
}

} // namespace VarnelAPI::Forms::model::detail
