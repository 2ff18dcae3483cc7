#pragma once

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace forms_test {

inline std::string textOfFile(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// What the first group of `pattern` matches in the library's public headers below `folder`: what the headers declare,
/// to compare with what the tests cover.
inline std::set<std::string> declaredIn(const std::string& folder, const std::string& pattern) {
    std::set<std::string> names;
    const std::regex regex(pattern);
    for (const auto& entry : std::filesystem::directory_iterator(FORMS_TEST_HEADERS + ("/" + folder))) {
        const std::string text = textOfFile(entry.path());
        for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
            names.insert((*match)[1]);
        }
    }
    return names;
}

} // namespace forms_test
