#pragma once

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace forms_test {

inline std::string textOfFile(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// What the first group of `pattern` matches in the library's public headers below `folder`:
/// what the headers declare, to compare with what the tests cover.
std::set<std::string> declaredIn(const std::string& folder, const std::string& pattern);

} // namespace forms_test
