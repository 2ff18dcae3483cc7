#pragma once

#include <string>

namespace CLI {
class App;
}

namespace VarnelAPI::Forms::cli {

/// The manual page, in the language of man, made of the help.
std::string manualPage(const CLI::App& app);

} // namespace VarnelAPI::Forms::cli
