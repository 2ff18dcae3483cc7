#pragma once

#include <regex.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

namespace forms_test {

inline std::string textOfFile(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// What the first group of `pattern`, an extended POSIX one, matches in the library's public headers below `folder`:
/// what the headers declare, to compare with what the tests cover.
inline std::set<std::string> declaredIn(const std::string& folder, const std::string& pattern) {
    std::set<std::string> names;
    regex_t regex;
    if (regcomp(&regex, pattern.c_str(), REG_EXTENDED) != 0) {
        throw std::invalid_argument(pattern);
    }
    for (const auto& entry : std::filesystem::directory_iterator(FORMS_TEST_HEADERS + ("/" + folder))) {
        const std::string text = textOfFile(entry.path());
        regmatch_t groups[2];
        for (const char* at = text.c_str(); regexec(&regex, at, 2, groups, 0) == 0; at += groups[0].rm_eo) {
            names.emplace(at + groups[1].rm_so, at + groups[1].rm_eo);
        }
    }
    regfree(&regex);
    return names;
}

} // namespace forms_test
