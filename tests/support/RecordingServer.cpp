#include "RecordingServer.h"

#include <strings.h>

#include <algorithm>
#include <sstream>

namespace forms_test {

using namespace std::chrono_literals;

namespace {

void check(bool well, const char* what) {
    if (!well) {
        throw socketError(what);
    }
}

/// A socket on a free port of 127.0.0.1, and its address.
std::pair<Socket, sockaddr_in> localSocket(int type) {
    const Socket local = openSocket(type);
    check(isOpen(local), "socket");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    check(bind(local, reinterpret_cast<sockaddr*>(&address), size) == 0, "bind");
    check(getsockname(local, reinterpret_cast<sockaddr*>(&address), &size) == 0, "getsockname");
    return {local, address};
}

/// Wine's HTTP client keeps connections for later clients, and does not notice that they were closed.
#ifdef _WIN32
constexpr auto connectionHeader = "Connection: close\r\n";
#else
constexpr auto connectionHeader = "";
#endif

} // namespace

std::string Request::header(const std::string& name) const {
    std::string joined;
    for (const auto& [key, value] : headers) {
        if (strcasecmp(key.c_str(), name.c_str()) == 0) {
            joined += (joined.empty() ? "" : "|") + value;
        }
    }
    return joined;
}

bool Request::has(const std::string& name) const {
    return std::any_of(headers.begin(), headers.end(),
                       [&](const auto& header) { return strcasecmp(header.first.c_str(), name.c_str()) == 0; });
}

Reply Reply::of(int status, const std::string& reason, const std::string& headers, const std::string& body) {
    return raw("HTTP/1.1 " + std::to_string(status) + " " + reason + "\r\n" + headers + connectionHeader +
               "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
}

Reply Reply::json(const std::string& body, int status, const std::string& reason) {
    return of(status, reason, "Content-Type: application/json\r\n", body);
}

Reply Reply::chunked(const std::vector<std::string>& chunks) {
    std::ostringstream bytes;
    bytes << "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n" << std::hex;
    for (const auto& chunk : chunks) {
        bytes << chunk.size() << "\r\n" << chunk << "\r\n";
    }
    bytes << "0\r\n\r\n";
    return raw(bytes.str());
}

Reply Reply::redirect(int status, const std::string& location) {
    return of(status, "Elsewhere", "Location: " + location + "\r\n", "");
}

Reply Reply::then(std::chrono::milliseconds pause, const std::string& bytes, std::size_t times) const {
    Reply longer = *this;
    longer.pieces.push_back({bytes, pause, times});
    return longer;
}

Reply Reply::endingWith(Ending how) const {
    Reply other = *this;
    other.ending = how;
    return other;
}

RecordingServer::RecordingServer(std::string basePath) : m_BasePath(std::move(basePath)) {
    sockaddr_in address{};
    std::tie(m_Stop, address) = localSocket(SOCK_DGRAM);
    check(connect(m_Stop, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0, "connect");
    std::tie(m_Listener, address) = localSocket(SOCK_STREAM);
    check(listen(m_Listener, 512) == 0, "listen");
    m_Port = ntohs(address.sin_port);
    m_Acceptor = std::thread([this] { acceptConnections(); });
}

RecordingServer::~RecordingServer() {
    ::send(m_Stop, "!", 1, 0); // to itself
    m_Acceptor.join();
    for (auto& connection : m_Connections) {
        connection.join();
    }
    closeSocket(m_Listener);
    closeSocket(m_Stop);
}

void RecordingServer::reply(Reply reply) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Replies.push_back(std::make_shared<const Reply>(std::move(reply)));
}

void RecordingServer::replyAlways(Reply reply) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Always = std::make_shared<const Reply>(std::move(reply));
}

std::size_t RecordingServer::connections() const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Accepted;
}

std::vector<Request> RecordingServer::requests() const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Requests;
}

Request RecordingServer::takeRequest() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    const std::size_t count = m_Requests.size() - m_Taken;
    m_Taken = m_Requests.size();
    if (count != 1) {
        m_Errors.push_back(std::to_string(count) + " requests where one was expected");
        return {};
    }
    return m_Requests.back();
}

bool RecordingServer::waitForRequests(std::size_t count) const {
    std::unique_lock<std::mutex> lock(m_Mutex);
    return m_Arrived.wait_for(lock, patience, [&] { return m_Requests.size() >= count; });
}

bool RecordingServer::waitForReplies(std::size_t count) const {
    std::unique_lock<std::mutex> lock(m_Mutex);
    return m_Arrived.wait_for(lock, patience, [&] { return m_Replied >= count; });
}

bool RecordingServer::waitForCloses(std::size_t count) const {
    std::unique_lock<std::mutex> lock(m_Mutex);
    return m_Arrived.wait_for(lock, patience, [&] { return m_Closed >= count; });
}

std::vector<std::string> RecordingServer::takeErrors() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return std::exchange(m_Errors, {});
}

void RecordingServer::error(const std::string& text) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Errors.push_back(text);
}

/// Waits for the socket; false if the time is over or the server stops.
bool RecordingServer::waitFor(Socket socket, short events, std::chrono::milliseconds limit) const {
    pollfd polled[] = {{m_Stop, POLLIN, 0}, {socket, events, 0}};
    return poll(polled, 2, static_cast<int>(limit.count())) > 0 && polled[0].revents == 0;
}

/// Waits that long; true, and at once, if the server stops.
bool RecordingServer::waitForStop(std::chrono::milliseconds limit) const {
    pollfd polled = {m_Stop, POLLIN, 0};
    return poll(&polled, 1, static_cast<int>(limit.count())) > 0;
}

void RecordingServer::acceptConnections() {
    while (waitFor(m_Listener, POLLIN, 24h)) {
        const Socket connection = acceptWithoutBlocking(m_Listener);
        if (isOpen(connection)) {
            {
                const std::lock_guard<std::mutex> lock(m_Mutex);
                ++m_Accepted;
            }
            m_Connections.emplace_back([this, connection] { serve(connection); });
        }
    }
}

void RecordingServer::serve(Socket connection) {
    std::string buffer;
    Request request;
    bool open = true;
    while (open && readRequest(connection, buffer, request)) {
        const auto reply = replyTo(request);
        open = send(connection, *reply) && reply->ending == Reply::Ending::KeepOpen;
        if (reply->ending == Reply::Ending::Reset) {
            const linger hard{1, 0};
            setOption(connection, SOL_SOCKET, SO_LINGER, &hard, sizeof(hard));
        }
    }
    closeSocket(connection);
}

bool RecordingServer::readRequest(Socket connection, std::string& buffer, Request& request) {
    const auto readMore = [&] {
        char block[16384];
        if (!waitFor(connection, POLLIN, patience)) {
            return false;
        }
        const Size size = recv(connection, block, sizeof(block), 0);
        buffer.append(block, size > 0 ? static_cast<std::size_t>(size) : 0);
        if (size == 0) {
            const std::lock_guard<std::mutex> lock(m_Mutex);
            ++m_Closed;
            m_Arrived.notify_all();
        }
        return size > 0;
    };
    std::size_t end = 0;
    while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
        if (!readMore()) {
            if (!buffer.empty()) {
                error("a request broke off: " + buffer);
            }
            return false;
        }
    }
    request = {};
    std::istringstream head(buffer.substr(0, end + 2));
    buffer.erase(0, end + 4);
    std::string line;
    std::getline(head, line);
    std::istringstream(line) >> request.method >> request.target;
    while (std::getline(head, line)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos || line.back() != '\r') {
            error("a header line that is none: " + line);
            return false;
        }
        const std::size_t value = std::min(line.find_first_not_of(' ', colon + 1), line.size() - 1);
        request.headers.emplace_back(line.substr(0, colon), line.substr(value, line.size() - 1 - value));
    }
    if (request.has("Transfer-Encoding")) {
        error("a request of unknown length");
        return false;
    }
    const std::string length = request.header("Content-Length");
    std::size_t size = length.empty() ? 0 : std::stoul(length);
    while (buffer.size() < size) {
        if (m_ForgetsBodies) {
            size -= buffer.size();
            buffer.clear();
        }
        if (!readMore()) {
            error("a request's body broke off");
            return false;
        }
    }
    request.body = m_ForgetsBodies ? "" : buffer.substr(0, size);
    buffer.erase(0, size);
    return true;
}

std::shared_ptr<const Reply> RecordingServer::replyTo(const Request& request) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Requests.push_back(request);
    m_Arrived.notify_all();
    const bool mounted = request.target.rfind(m_BasePath + "/", 0) == 0;
    if (mounted && !m_Replies.empty()) {
        auto next = std::move(m_Replies.front());
        m_Replies.pop_front();
        return next;
    }
    if (mounted && m_Always) {
        return m_Always;
    }
    const std::string problem = mounted ? "no reply was scripted for " : "the base path is missing in ";
    m_Errors.push_back(problem + request.method + " " + request.target);
    return std::make_shared<const Reply>(
        Reply::of(599, "Test Failure", "Content-Type: text/plain\r\n", m_Errors.back()));
}

/// Whether the client was still there to the end.
bool RecordingServer::send(Socket connection, const Reply& reply) {
    for (const auto& piece : reply.pieces) {
        for (std::size_t i = 0; i < piece.times; ++i) {
            if (piece.pauseBefore > 0ms) {
                waitForStop(piece.pauseBefore);
            }
            std::size_t sent = 0;
            while (sent < piece.bytes.size()) {
                if (!waitFor(connection, POLLOUT, patience)) {
                    return false;
                }
                const std::size_t step = std::min(piece.bytes.size() - sent, std::size_t{1} << 20U);
                const Size size = ::send(connection, piece.bytes.data() + sent, static_cast<SendSize>(step), noSignal);
                if (size < 0) {
                    return false;
                }
                sent += static_cast<std::size_t>(size);
            }
        }
    }
    const std::lock_guard<std::mutex> lock(m_Mutex);
    ++m_Replied;
    m_Arrived.notify_all();
    return true;
}

} // namespace forms_test
