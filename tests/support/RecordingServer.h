#pragma once

#include "Sockets.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace forms_test {

/// One request, as its bytes came in.
struct Request {
    std::string method;
    std::string target;
    /// In order, with the spelling of the wire.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    /// The value of the header of exactly this name, in any case; all values, joined by "|", if it came repeatedly.
    std::string header(const std::string& name) const;
    bool has(const std::string& name) const;
};

/// What the server does with one request: bytes as they stand, in pieces, and an ending. Any broken reply can be said
/// in this way.
struct Reply {
    enum class Ending {
        /// Ends the connection in order, after the last piece.
        Close,
        /// Breaks it off (RST).
        Reset,
        /// Leaves it open, for the next request or for a client that waits in vain.
        KeepOpen,
    };
    struct Piece {
        std::string bytes;
        std::chrono::milliseconds pauseBefore{0};
        /// How often the piece is sent, with its pause each time.
        std::size_t times = 1;
    };
    std::vector<Piece> pieces;
    Ending ending = Ending::Close;

    /// A whole reply with a Content-Length. `headers` are whole lines, each ended by CR LF.
    static Reply of(int status, const std::string& reason, const std::string& headers, const std::string& body);
    static Reply json(const std::string& body, int status = 200, const std::string& reason = "OK");
    static Reply raw(const std::string& bytes) { return Reply{{Piece{bytes}}}; }
    /// A JSON reply whose body comes in these chunks; none of them may be empty.
    static Reply chunked(const std::vector<std::string>& chunks);
    static Reply redirect(int status, const std::string& location);

    Reply then(std::chrono::milliseconds pause, const std::string& bytes, std::size_t times = 1) const;
    Reply endingWith(Ending how) const;
};

/// An HTTP server of plain sockets on a free port of 127.0.0.1, for tests that must see the exact bytes of requests and
/// send exact bytes back. Any number of connections at once; nothing waits longer than `patience`; it stops in its
/// destructor, whatever its clients do.
///
/// It is mounted under a base path, so that a request that lost the path is noticed: that one, and one that no reply
/// was scripted for, is answered with status 599 and is an error of the server.
class RecordingServer {
public:
    explicit RecordingServer(std::string basePath = "/base");
    ~RecordingServer();
    RecordingServer(const RecordingServer&) = delete;
    RecordingServer& operator=(const RecordingServer&) = delete;

    static constexpr std::chrono::seconds patience{20};

    /// "http://127.0.0.1:port" and the base path.
    std::string url() const { return origin() + m_BasePath; }
    std::string origin() const { return "http://127.0.0.1:" + std::to_string(m_Port); }

    /// Scripts the reply to the next request that has none yet.
    void reply(Reply reply);
    /// Scripts the reply to every request that finds the queue empty.
    void replyAlways(Reply reply);

    /// From now on, requests are recorded without their bodies, which then take no memory.
    void forgetBodies() { m_ForgetsBodies = true; }

    /// How many connections came in so far.
    std::size_t connections() const;
    /// All requests so far.
    std::vector<Request> requests() const;
    /// The only request since the last call of this function; an error if there were more, or none.
    Request takeRequest();
    /// Waits until `count` requests came in; whether they did.
    bool waitForRequests(std::size_t count) const;
    /// Waits until `count` replies were sent to their end; whether they were.
    bool waitForReplies(std::size_t count) const;

    /// Waits until clients closed `count` connections; whether they did.
    bool waitForCloses(std::size_t count) const;

    /// What went wrong in the view of the server. Looking at it clears it.
    std::vector<std::string> takeErrors();

private:
    void acceptConnections();
    void serve(Socket connection);
    bool readRequest(Socket connection, std::string& buffer, Request& request);
    std::shared_ptr<const Reply> replyTo(const Request& request);
    bool send(Socket connection, const Reply& reply);
    bool waitFor(Socket socket, short events, std::chrono::milliseconds limit) const;
    bool waitForStop(std::chrono::milliseconds limit) const;
    void error(const std::string& text);

    std::string m_BasePath;
    Socket m_Listener;
    /// Has something to read when the server is to stop.
    Socket m_Stop;
    int m_Port = 0;
    std::atomic<bool> m_ForgetsBodies{false};
    mutable std::mutex m_Mutex;
    mutable std::condition_variable m_Arrived;
    std::deque<std::shared_ptr<const Reply>> m_Replies;
    std::shared_ptr<const Reply> m_Always;
    std::vector<Request> m_Requests;
    std::size_t m_Taken = 0;
    std::size_t m_Replied = 0;
    std::vector<std::string> m_Errors;
    std::size_t m_Accepted = 0;
    std::size_t m_Closed = 0;
    std::list<std::thread> m_Connections;
    std::thread m_Acceptor;
};

} // namespace forms_test
