#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace VarnelAPI::Forms::repository {

struct ServerOptions {
    std::string host = "127.0.0.1";
    /// 0 takes any free port; Server::port() tells which.
    int port = 0;
    /// SQLite file, made when missing; ":memory:" keeps everything in memory.
    std::string database = ":memory:";
    /// Path in front of "/sv1.2", for example "/gateway".
    std::string basePath;
    /// Larger request bodies are answered 413.
    std::size_t maxBodyBytes = std::size_t{256} * 1024 * 1024;
};

/// A running repository: it serves from construction to stop() on threads of its own.
class Server {
public:
    /// Returns once requests are answered.
    /// @throws std::runtime_error with a text fit for a user: the port is taken, the database can't be used.
    explicit Server(const ServerOptions& options = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    int port() const;
    /// Base URL for clients: "http://host:port" followed by the base path, without a final slash.
    std::string url() const;
    /// Finishes the requests under way; idle kept connections are closed within a second.
    void stop();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace VarnelAPI::Forms::repository
