#pragma once

#include "Routes.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace VarnelAPI::Forms::repository {

struct HttpRequest {
    std::string method;
    /// Path and query as they came.
    std::string target;
    Headers headers;
    std::string body;
    /// Whether it comes from a loopback address.
    bool isLocal = false;

    /// The value of a header, or "".
    std::string header(std::string_view name) const;
    std::string_view path() const;
    /// Without the question mark.
    std::string_view query() const;
};

/// A reply, and how it is to be sent.
struct HttpAnswer {
    explicit HttpAnswer(Reply theReply) : reply(std::move(theReply)) {}

    Reply reply;
    std::chrono::milliseconds delay{0};
    bool isStall = false;
    bool isReset = false;
    std::optional<std::size_t> truncateAfter;
    std::size_t dripBytes = 0;
    std::chrono::milliseconds dripPause{0};
};

/// What requests are given to. Its members are called from threads of the server and must not block.
class HttpService {
public:
    virtual ~HttpService() = default;
    /// Looks at the head of a request before its body is read.
    /// @return a reply to refuse it
    virtual std::optional<Reply> refuse(const HttpRequest& head) = 0;
    /// Calls back once, from any thread.
    virtual void serve(HttpRequest request, std::function<void(HttpAnswer)> answer) = 0;
    /// Notes a request that was refused before it was read whole.
    virtual void note(const HttpRequest& head, const Reply& reply) = 0;
};

struct HttpOptions {
    std::string host;
    int port = 0;
    std::size_t maxBodyBytes = 0;
    std::string certificate;
    std::string key;
    std::chrono::milliseconds requestTimeout{30000};
};

/// Speaks HTTP/1.1 on threads of its own. Connections take no thread while they wait, so that slow ones hold up nobody.
class HttpServer {
public:
    /// Listens; what comes waits until it starts.
    /// @throws std::runtime_error with a text fit for a user
    HttpServer(const HttpOptions& options, HttpService& service);
    /// Calls stop.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    int port() const;
    /// Serves from now on.
    void start();
    /// Lets go of the answers that are held back or slowed down: delayed ones are sent, stalled connections closed.
    void release();
    /// Closes connections once their request is answered, and all after two seconds.
    void stop();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace VarnelAPI::Forms::repository
