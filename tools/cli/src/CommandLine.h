#pragma once

#include <string>
#include <vector>

namespace VarnelAPI::Forms::cli {

/// Reads the command line and does what it says.
/// @param arguments without the name of the program.
/// @return how the process ends.
int run(std::vector<std::string> arguments);

} // namespace VarnelAPI::Forms::cli
