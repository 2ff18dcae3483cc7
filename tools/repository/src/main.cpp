#include "VarnelRepository/Server.h"

#include <CLI/CLI.hpp>

#include <atomic>
#include <chrono>
#include <csignal>
#include <exception>
#include <iostream>
#include <thread>

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
    app.add_option("--database", options.database, "Database file, made when missing; in memory when not given");
    app.add_option("--host", options.host, "Address to listen at")->capture_default_str();
    app.add_option("--base-path", options.basePath, "Path in front of /sv1.2");
    CLI11_PARSE(app, argc, argv);

    std::signal(SIGINT, wantStop);
    std::signal(SIGTERM, wantStop);
    VarnelAPI::Forms::repository::Server server(options);
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
