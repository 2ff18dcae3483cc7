#include "Server.h"

#include "Data.h"

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
#include <stdexcept>
#include <system_error>
#include <thread>

namespace bench {

namespace {

[[noreturn]] void failed(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

bool sendAll(int socket, const char* data, std::size_t size) {
    while (size != 0) {
        const ssize_t sent = ::send(socket, data, size, MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        data += sent;
        size -= static_cast<std::size_t>(sent);
    }
    return true;
}

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
bool answer(int socket, const std::string& requestHead) {
    const std::string location = between(requestHead, "Varnel.Forms--", "/");
    const std::string& body = location == locations::file   ? fileBytes()
                              : location == locations::list ? issueListText()
                                                            : issueText();
    const bool late = location.compare(0, 4, locations::late) == 0;
    const bool closing = location == locations::issueClosing;
    std::string text = std::string("HTTP/1.1 ") + (location == locations::lateFailure ? "500 Failure" : "200 OK") +
                       "\r\nContent-Type: " +
                       (location == locations::file            ? "application/octet-stream"
                        : location == locations::lateOtherType ? "text/html"
                                                               : "application/json") +
                       "\r\nContent-Length: " + std::to_string(body.size()) + (closing ? "\r\nConnection: close" : "") +
                       "\r\n\r\n";
    if (late) {
        if (!sendAll(socket, text.data(), text.size())) {
            return false;
        }
        std::this_thread::sleep_for(lateDelay);
        return sendAll(socket, body.data(), body.size());
    }
    if (body.size() < 4096) {
        text += body;
        return sendAll(socket, text.data(), text.size()) && !closing;
    }
    return sendAll(socket, text.data(), text.size()) && sendAll(socket, body.data(), body.size());
}

void serveConnection(int socket) {
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::array<char, 65536> block{};
    std::string received;
    for (bool open = true; open;) {
        const auto headEnd = received.find("\r\n\r\n");
        if (headEnd == std::string::npos) {
            const ssize_t got = ::recv(socket, block.data(), block.size(), 0);
            open = got > 0;
            received.append(block.data(), open ? static_cast<std::size_t>(got) : 0);
            continue;
        }
        const std::string head = received.substr(0, headEnd);
        received.erase(0, headEnd + 4);
        const std::string length = between(head, "Content-Length: ", "\r\n");
        std::size_t left = length.empty() ? 0 : std::stoul(length);
        const auto take = std::min(left, received.size());
        received.erase(0, take);
        for (left -= take; open && left != 0;) {
            const ssize_t got = ::recv(socket, block.data(), std::min(left, block.size()), 0);
            open = got > 0;
            left -= open ? static_cast<std::size_t>(got) : 0;
        }
        open = open && answer(socket, head);
    }
    ::close(socket);
}

} // namespace

void serve() {
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
        std::thread(serveConnection, socket).detach();
    }
}

const std::string& serverUrl() {
    static const std::string url = [] {
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
            ::execl(self.c_str(), self.c_str(), "--serve", nullptr);
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
        return "http://127.0.0.1:" + std::to_string(port);
    }();
    return url;
}

} // namespace bench
