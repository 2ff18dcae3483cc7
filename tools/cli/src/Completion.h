#pragma once

#include "Options.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace VarnelAPI::Forms::cli {

/// What the shell evaluates to complete commands.
std::string completionScript(const std::string& shell);

/// What may stand in place of the last of the words, which follow the name of the program.
std::vector<std::string> complete(const CLI::App& app, Options options, std::vector<std::string> words);

} // namespace VarnelAPI::Forms::cli
