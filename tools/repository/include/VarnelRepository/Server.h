#pragma once

#include "VarnelRepository/Fault.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// What callers may show as "Authorization: Bearer VALUE".
struct Token {
    std::string value; ///< Any text without blanks.
    /// How many requests it is good for; 0 does not limit it.
    int calls = 0;
    /// How long it is good, from when it is added; 0 does not limit it.
    std::chrono::milliseconds lifetime{0};
};

/// How a server is to be.
struct ServerOptions {
    std::string host = "127.0.0.1"; ///< The address to listen on.
    /// 0 takes any free port; Server::port() tells which.
    int port = 0;
    /// SQLite file, made when missing; ":memory:" keeps everything in a temporary file that goes with the server.
    std::string database = ":memory:";
    /// Path in front of "/sv1.2", for example "/gateway".
    std::string basePath;
    /// Larger request bodies are answered 413.
    std::size_t maxBodyBytes = std::size_t{256} * 1024 * 1024;
    /// Without tokens no credentials are checked.
    std::vector<Token> tokens;
    /// PEM files; both make it serve https.
    std::string certificate;
    std::string key;
    /// Whether "/_control" is there, for callers on the loopback address. Off, there is no such path.
    bool hasControl = false;
    /// How many requests the log keeps; older ones are dropped, also when their texts take more than 8 MiB.
    std::size_t loggedRequests = 10000;
    /// How long a request may take to come in: its head, and every 16 KiB of its body.
    std::chrono::milliseconds requestTimeout{30000};
};

/// A request as it was served. Those for "/_control" and for pages are not logged.
struct LoggedRequest {
    /// Counts from 1, also over those that were dropped.
    std::uint64_t number = 0;
    /// When it was answered.
    std::chrono::system_clock::time_point time;
    std::string method;
    /// Without the query, as it came.
    std::string path;
    std::string query;
    std::vector<std::pair<std::string, std::string>> headers;
    std::size_t requestBytes = 0;
    /// 0 when the answer was withheld.
    int status = 0;
    /// Of the answer's body, as far as it was to be sent.
    std::size_t answerBytes = 0;
    /// Whether it changed what is stored.
    bool tookEffect = false;
    /// The fault that it met, or 0.
    FaultId fault = 0;
};

/// A running repository: it serves from construction to stop() on threads of its own. All members may be called from
/// any thread, and while requests are served.
class Server {
public:
    /// Returns once requests are answered.
    /// @throws std::runtime_error with a text fit for a user: the port is taken, the database, certificate or key can't
    ///     be used.
    explicit Server(const ServerOptions& options = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    int port() const; ///< The port that it listens on.
    /// Base URL for clients: "http://host:port" followed by the base path, without a final slash.
    std::string url() const;
    /// Finishes the requests under way, for at most two seconds, and closes all connections.
    void stop();

    /// Makes requests fail from now on; see Fault.
    /// @throws std::invalid_argument when the fault can't be met, or contradicts itself
    FaultId inject(const Fault& fault);
    /// What became of a fault so far.
    /// @throws std::out_of_range when there is no such fault
    FaultState fault(FaultId id) const;
    /// All faults, in the order in which they were injected.
    std::vector<FaultState> faults() const;
    /// Removes all faults; requests that are held back by one are let go.
    void clearFaults();

    /// What was served, in the order of the answers.
    std::vector<LoggedRequest> requests() const;
    void clearRequests();

    /// Makes another token good, or one good again.
    void addToken(const Token& token);

    /// As after construction: nothing stored, no fault, an empty log, the tokens of the options, new. Requests under
    /// way take effect before it or after it, as a whole.
    /// @throws std::runtime_error when the database failed; then nothing stored was changed
    void reset();
    /// Adds what a seed file holds, all of it or nothing; the README describes the format.
    /// @throws std::runtime_error saying what is wrong with the file, or that the database failed
    void seed(const std::string& file);
    /// The same of a text.
    void seedText(const std::string& text);
    /// All that is stored, files included, as the text of a seed: seeding it after a reset gives the same again.
    /// @throws std::runtime_error when the database failed
    std::string dump() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace VarnelAPI::Forms::repository
