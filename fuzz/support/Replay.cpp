#include "support/Fuzz.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <unistd.h>

/// Runs a fuzz target without a fuzzer: over every seed, and over as many mutations of them as asked for,
/// the same in every run.

namespace {

/// The input that runs now, for the last words of a run that ends in a finding.
std::string current;

extern "C" void tellInput(int) {
    const char text[] = "\nThe input was:\n";
    // What could be done about a failure to write?
    [[maybe_unused]] auto written = write(STDERR_FILENO, text, sizeof(text) - 1);
    written = write(STDERR_FILENO, current.data(), current.size());
    // The signal is back to its default, and comes again on return.
}

void run(const std::string& input) {
    current = input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(current.data()), current.size());
}

std::string mutated(std::string bytes, const std::vector<std::string>& seeds, std::mt19937& random) {
    const auto below = [&random](std::size_t bound) { return bound == 0 ? 0 : random() % bound; };
    for (std::size_t times = 1 + below(4); times != 0; --times) {
        const std::size_t at = below(bytes.size() + 1);
        const std::size_t length = below(16);
        switch (below(5)) {
        case 0:
            bytes.erase(at, length);
            break;
        case 1:
            bytes.insert(at, 1, static_cast<char>(below(256)));
            break;
        case 2:
            bytes.insert(at, bytes.substr(below(bytes.size()), length));
            break;
        case 3:
            if (at < bytes.size()) {
                bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
            }
            break;
        default:
            const std::string& other = seeds[below(seeds.size())];
            bytes = bytes.substr(0, at) + other.substr(below(other.size()));
        }
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s SEEDS-DIRECTORY MUTATIONS\n", argv[0]);
        return 2;
    }
    std::signal(SIGABRT, tellInput);
    std::vector<std::string> seeds;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1], missing)) {
        std::ostringstream bytes;
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        seeds.push_back(bytes.str());
    }
    if (seeds.empty()) {
        std::fprintf(stderr, "no seeds in %s\n", argv[1]);
        return 1;
    }
    // The order of a directory is not the same everywhere.
    std::sort(seeds.begin(), seeds.end());
    run("");
    for (const auto& input : seeds) {
        run(input);
    }
    std::mt19937 random;
    const unsigned long mutations = std::strtoul(argv[2], nullptr, 10);
    for (unsigned long i = 0; i < mutations; ++i) {
        run(mutated(seeds[random() % seeds.size()], seeds, random));
    }
    std::printf("%zu files, %lu mutations\n", seeds.size(), mutations);
    return 0;
}
