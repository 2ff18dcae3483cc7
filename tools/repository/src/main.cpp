#include "VarnelRepository/Server.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <exception>
#include <iostream>
#include <limits>
#include <thread>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace {

std::atomic<bool> isStopWanted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void wantStop(int /*signal*/) {
    isStopWanted = true;
}

} // namespace

int main(int argc, char** argv) try {
    VarnelAPI::Forms::repository::ServerOptions options;
    CLI::App app("Serves a local forms and issues repository over HTTP until it is interrupted.",
                 "varnel-forms-repository");
    app.add_option("--port", options.port, "Port to listen on; 0 takes any free one")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--database", options.database, "Database file, made when missing; a temporary one when not given");
    app.add_option("--host", options.host, "Address to listen at")->capture_default_str();
    app.add_option("--base-path", options.basePath, "Path in front of /sv1.2");
    std::string token;
    int calls = 0;
    int seconds = 0;
    CLI::Option* tokenOption =
        app.add_option("--token", token, "Bearer token that requests must show; none by default");
    app.add_option("--token-calls", calls, "How many requests the token is good for")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()))
        ->needs(tokenOption);
    app.add_option("--token-seconds", seconds, "How long the token is good")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()))
        ->needs(tokenOption);
    app.add_option("--certificate", options.certificate, "PEM file of a certificate, for https");
    app.add_option("--key", options.key, "PEM file of its key");
    std::string seed;
    app.add_option("--seed", seed, "File to fill the repository from; see its README");
    app.add_flag("--control", options.hasControl, "Serve /_control, for programs on this machine");
    CLI11_PARSE(app, argc, argv);

    std::signal(SIGINT, wantStop);
    std::signal(SIGTERM, wantStop);
#ifndef _WIN32
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is an error of the request
    rlimit descriptors{};
    if (getrlimit(RLIMIT_NOFILE, &descriptors) == 0) {
        descriptors.rlim_cur = std::min<rlim_t>(descriptors.rlim_max, 4096); // each connection takes one
        setrlimit(RLIMIT_NOFILE, &descriptors);
    }
#endif
    if (!token.empty()) {
        options.tokens.push_back({token, calls, std::chrono::seconds(seconds)});
    }
    VarnelAPI::Forms::repository::Server server(options);
    if (!seed.empty()) {
        server.seed(seed);
    }
    std::cout << server.url() << std::endl;
    while (!isStopWanted) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    server.stop();
    return 0;
} catch (const std::exception& error) {
    std::cerr << "varnel-forms-repository: " << error.what() << '\n';
    return 1;
}
