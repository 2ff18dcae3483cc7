#include "ResponseText.h"

#include <stdexcept>

namespace VarnelAPI::Forms::api::detail {

using utility::conversions::to_string_t;

namespace {

/// The value of the charset parameter, or an empty text.
utility::string_t charsetOf(const utility::string_t& contentType) {
    const utility::string_t parameter = _XPLATSTR("charset=");
    std::size_t begin = 0;
    while ((begin = contentType.find(_XPLATSTR(';'), begin)) != utility::string_t::npos) {
        begin = contentType.find_first_not_of(_XPLATSTR(" \t"), begin + 1);
        if (begin == utility::string_t::npos) {
            break;
        }
        if (utility::details::str_iequal(contentType.substr(begin, parameter.size()), parameter)) {
            begin = contentType.find_first_not_of(_XPLATSTR('"'), begin + parameter.size());
            const auto end = contentType.find_first_of(_XPLATSTR("\"; \t"), begin);
            return begin == utility::string_t::npos ? utility::string_t() : contentType.substr(begin, end - begin);
        }
    }
    return {};
}

utility::string_t decodeUtf16(const std::string& bytes, bool bigEndian) {
    if (bytes.size() % 2 != 0) {
        throw std::range_error("UTF-16 text of half a character");
    }
    utf16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        text.push_back(static_cast<utf16char>(bigEndian ? first << 8U | second : second << 8U | first));
    }
    return to_string_t(text);
}

} // namespace

bool isUtf8(const utility::string_t& contentType) {
    const utility::string_t charset = charsetOf(contentType);
    return charset.empty() || utility::details::str_iequal(charset, _XPLATSTR("utf-8"));
}

utility::string_t decodeText(std::string bytes, const utility::string_t& contentType) {
    const utility::string_t charset = charsetOf(contentType);
    const auto is = [&charset](const utility::char_t* name) { return utility::details::str_iequal(charset, name); };
    if (is(_XPLATSTR("iso-8859-1"))) {
        return to_string_t(utility::conversions::latin1_to_utf8(bytes));
    }
    if (is(_XPLATSTR("utf-16"))) {
        // Its byte order mark says which way; without one it is big-endian.
        const bool littleEndian = bytes.compare(0, 2, "\xFF\xFE") == 0;
        const bool hasMark = littleEndian || bytes.compare(0, 2, "\xFE\xFF") == 0;
        return decodeUtf16(bytes.substr(hasMark ? 2 : 0), !littleEndian);
    }
    if (is(_XPLATSTR("utf-16le")) || is(_XPLATSTR("utf-16be"))) {
        return decodeUtf16(bytes, is(_XPLATSTR("utf-16be")));
    }
    return to_string_t(std::move(bytes));
}

} // namespace VarnelAPI::Forms::api::detail
