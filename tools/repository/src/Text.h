#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace VarnelAPI::Forms::repository {

inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Names of schemas, classes and properties may have any letter: every byte beyond ASCII counts as part of one.
inline bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

inline bool isNamePart(char c) {
    return isNameStart(c) || isDigit(c);
}

/// The parts between separators: at least one, perhaps empty.
inline std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

} // namespace VarnelAPI::Forms::repository
