#include "Server.h"

#include "Data.h"
#include "ScratchFolder.h"
#include "Tls.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace bench {

namespace {

[[noreturn]] void failed(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// A connection, with or without TLS.
class Connection {
public:
    Connection(int socket, SSL_CTX* context) : m_Socket(socket) {
        if (context != nullptr) {
            m_Tls.reset(SSL_new(context));
            SSL_set_fd(m_Tls.get(), socket);
        }
    }
    ~Connection() {
        m_Tls.reset();
        ::close(m_Socket);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool accept() const { return !m_Tls || SSL_accept(m_Tls.get()) == 1; }
    /// What came, and was at most so much; 0 at the end.
    std::size_t receive(char* block, std::size_t size) const {
        const ssize_t got =
            m_Tls ? SSL_read(m_Tls.get(), block, static_cast<int>(size)) : ::recv(m_Socket, block, size, 0);
        return got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    bool send(const std::string& text) const {
        const char* data = text.data();
        for (std::size_t left = text.size(); left != 0;) {
            const ssize_t sent = m_Tls ? SSL_write(m_Tls.get(), data, static_cast<int>(left))
                                       : ::send(m_Socket, data, left, MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            data += sent;
            left -= static_cast<std::size_t>(sent);
        }
        return true;
    }

private:
    int m_Socket;
    std::unique_ptr<SSL, decltype(&SSL_free)> m_Tls{nullptr, SSL_free};
};

/// The text between two others, or an empty one.
std::string between(const std::string& text, const std::string& before, const std::string& after) {
    const auto begin = text.find(before);
    if (begin == std::string::npos) {
        return {};
    }
    const auto from = begin + before.size();
    return text.substr(from, text.find(after, from) - from);
}

/// Answers one request; false if the connection is to be closed then.
bool answer(const Connection& connection, const std::string& requestHead) {
    const std::string location = between(requestHead, "Varnel.Forms--", "/");
    const bool isLarge = location == locations::large;
    const bool isFile = location == locations::file || isLarge;
    const std::string& body = isFile                               ? fileBytes()
                              : location == locations::list        ? issueListText()
                              : location == locations::attachments ? attachmentListText()
                              : location == locations::custom      ? customListText()
                              : location == locations::largeList   ? largeListText()
                                                                   : issueText();
    const bool late = location.compare(0, 4, locations::late) == 0;
    const bool closing = location == locations::issueClosing;
    std::string text = std::string("HTTP/1.1 ") + (location == locations::lateFailure ? "500 Failure" : "200 OK") +
                       "\r\nContent-Type: " +
                       (isFile                                 ? "application/octet-stream"
                        : location == locations::lateOtherType ? "text/html"
                                                               : "application/json") +
                       "\r\nContent-Length: " + std::to_string(isLarge ? largeSize : body.size()) +
                       (closing ? "\r\nConnection: close" : "") + "\r\n\r\n";
    if (body.size() < 4096 && !late) {
        return connection.send(text + body) && !closing;
    }
    if (!connection.send(text)) {
        return false;
    }
    if (late) {
        std::this_thread::sleep_for(lateDelay);
    }
    for (std::size_t sent = 0; isLarge && sent + fileSize < largeSize; sent += fileSize) {
        if (!connection.send(body)) {
            return false;
        }
    }
    return connection.send(body);
}

void serveConnection(int socket, const std::shared_ptr<SSL_CTX>& context) {
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const Connection connection(socket, context.get());
    std::array<char, 65536> block{};
    std::string received;
    for (bool open = connection.accept(); open;) {
        const auto headEnd = received.find("\r\n\r\n");
        if (headEnd == std::string::npos) {
            const std::size_t got = connection.receive(block.data(), block.size());
            open = got != 0;
            received.append(block.data(), got);
            continue;
        }
        const std::string head = received.substr(0, headEnd);
        received.erase(0, headEnd + 4);
        const std::string length = between(head, "Content-Length:", "\r\n"); // a blank may follow
        std::size_t left = length.empty() ? 0 : std::stoul(length);
        const auto take = std::min(left, received.size());
        received.erase(0, take);
        for (left -= take; open && left != 0;) {
            const std::size_t got = connection.receive(block.data(), std::min(left, block.size()));
            open = got != 0;
            left -= got;
        }
        open = open && answer(connection, head);
    }
}

/// Starts this program as a server, with these arguments, and gives its port.
int started(const std::string& authorities) {
    // A fresh image, not only a fork: valgrind leaves it alone.
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    std::array<int, 2> lifeline{};
    std::array<int, 2> output{};
    if (::pipe2(lifeline.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) {
        failed("can't make a pipe");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        failed("can't start the server");
    }
    if (child == 0) {
        ::dup2(lifeline[0], STDIN_FILENO);
        ::dup2(output[1], STDOUT_FILENO);
        ::execl(self.c_str(), self.c_str(), "--serve", authorities.c_str(), nullptr);
        std::_Exit(EXIT_FAILURE);
    }
    // The writing end of the lifeline stays open as long as this process lives.
    ::close(lifeline[0]);
    ::close(output[1]);
    int port = 0;
    std::FILE* stream = ::fdopen(output[0], "r");
    if (stream == nullptr || std::fscanf(stream, "%d", &port) != 1) {
        throw std::runtime_error("the server did not start");
    }
    std::fclose(stream);
    return port;
}

} // namespace

void serve(const std::string& authorities) {
    const auto context = authorities.empty() ? nullptr : serverContext(authorities);
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // With the window that the system begins with, a large upload would mostly wait for the window to open.
    const int window = 1 << 22;
    ::setsockopt(listener, SOL_SOCKET, SO_RCVBUF, &window, sizeof window);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (listener < 0 || ::bind(listener, generic, size) != 0 || ::listen(listener, 4096) != 0 ||
        ::getsockname(listener, generic, &size) != 0) {
        failed("can't listen");
    }
    std::printf("%d\n", ntohs(address.sin_port));
    std::fflush(stdout);
    std::thread([] {
        char byte = 0;
        while (::read(STDIN_FILENO, &byte, 1) > 0) {
        }
        std::_Exit(EXIT_SUCCESS);
    }).detach();
    for (;;) {
        const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            failed("can't accept");
        }
        std::thread(serveConnection, socket, context).detach();
    }
}

const std::string& serverUrl() {
    static const std::string url = "http://127.0.0.1:" + std::to_string(started(""));
    return url;
}

const std::string& tlsServerUrl() {
    static const ScratchFolder folder;
    static const std::string url = [] {
        makeAuthorities(folder.path());
        ::setenv("SSL_CERT_FILE", (folder.path() / bundleFile).c_str(), 1);
        return "https://127.0.0.1:" + std::to_string(started(folder.path()));
    }();
    return url;
}

} // namespace bench
