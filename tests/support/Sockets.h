#pragma once

/// The sockets of POSIX, as far as the tests use them, and what Windows has in their place.

#ifdef _WIN32

#include <winsock2.h>

#include <ws2tcpip.h>

#include <system_error>

namespace forms_test {

using Socket = SOCKET;
using Size = int;     // what was sent or received
using SendSize = int; // what is to be
constexpr int noSignal = 0;

/// Windows wants to be told that there will be sockets.
struct SocketsStarted {
    SocketsStarted() {
        WSADATA data;
        WSAStartup(MAKEWORD(2, 2), &data);
    }
};
inline Socket openSocket(int type) {
    static const SocketsStarted started;
    return socket(AF_INET, type, 0);
}
inline Socket acceptWithoutBlocking(Socket listener) {
    const Socket connection = accept(listener, nullptr, nullptr);
    u_long on = 1;
    ioctlsocket(connection, FIONBIO, &on);
    return connection;
}
inline bool isOpen(Socket socket) {
    return socket != INVALID_SOCKET;
}
inline int poll(pollfd* polled, unsigned count, int milliseconds) {
    return WSAPoll(polled, count, milliseconds);
}
inline void closeSocket(Socket socket) {
    closesocket(socket);
}
inline void setOption(Socket socket, int level, int option, const void* value, socklen_t size) {
    setsockopt(socket, level, option, static_cast<const char*>(value), size);
}
inline std::system_error socketError(const char* what) {
    return {WSAGetLastError(), std::system_category(), what};
}

} // namespace forms_test

#else

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace forms_test {

using Socket = int;
using Size = ssize_t;
using SendSize = std::size_t;
constexpr int noSignal = MSG_NOSIGNAL;

inline Socket openSocket(int type) {
    return socket(AF_INET, type | SOCK_CLOEXEC, 0);
}
inline Socket acceptWithoutBlocking(Socket listener) {
    return accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}
inline bool isOpen(Socket socket) {
    return socket >= 0;
}
inline void closeSocket(Socket socket) {
    close(socket);
}
inline void setOption(Socket socket, int level, int option, const void* value, socklen_t size) {
    setsockopt(socket, level, option, value, size);
}
inline std::system_error socketError(const char* what) {
    return {errno, std::generic_category(), what};
}

} // namespace forms_test

#endif
