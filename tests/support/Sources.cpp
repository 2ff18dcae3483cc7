#include "Sources.h"

#include <regex>

namespace forms_test {

std::set<std::string> declaredIn(const std::string& folder, const std::string& pattern) {
    std::set<std::string> names;
    const std::regex regex(pattern);
    for (const auto& entry : std::filesystem::directory_iterator(FORMS_TEST_HEADERS + ("/" + folder))) {
        const std::string text = textOfFile(entry.path());
        for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
            names.insert(match->str(1));
        }
    }
    return names;
}

} // namespace forms_test
