#include "CommandLine.h"
#include "Interrupt.h"

#include <clocale>
#include <csignal>
#include <cstring>
#include <exception>
#include <iostream>

namespace {

/// The list of processes is there for everybody: what may be a secret goes from it.
void hideHeaders(int argc, char** argv) {
    constexpr const char* option = "--header";
    const std::size_t length = std::strlen(option);
    for (int i = 1; i < argc; ++i) {
        char* value = std::strcmp(argv[i], option) == 0 && i + 1 < argc                      ? argv[++i]
                      : std::strncmp(argv[i], option, length) == 0 && argv[i][length] == '=' ? argv[i] + length + 1
                                                                                             : nullptr;
        if (value != nullptr) {
            std::memset(value, '*', std::strlen(value));
        }
    }
}

} // namespace

int main(int argc, char** argv) try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    hideHeaders(argc, argv);
    std::setlocale(LC_CTYPE, "C.UTF-8"); // how wide characters are
    std::signal(SIGPIPE, SIG_IGN);       // a closed pipe is an error of writing
    VarnelAPI::Forms::cli::Interrupt::watch();
    const int code = VarnelAPI::Forms::cli::run(arguments);
    std::cout.flush();
    return code;
} catch (const std::exception& error) {
    std::cerr << "varnel-forms: " << error.what() << '\n';
    return 1;
}
