#pragma once

#include "RecordingServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>

namespace forms_test {

/// A socket on a free port of 127.0.0.1 that waits for connections, and accepts them when it is told to.
class Listener {
public:
    explicit Listener(int backlog = 8) {
        m_Address.sin_family = AF_INET;
        m_Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval patience{RecordingServer::patience.count(), 0};
        const int window = 65536;
        EXPECT_EQ(setsockopt(m_Listener, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience)), 0);
        EXPECT_EQ(setsockopt(m_Listener, SOL_SOCKET, SO_RCVBUF, &window, sizeof(window)), 0);
        EXPECT_EQ(bind(m_Listener, m_Plain, m_Size) + listen(m_Listener, backlog), 0);
        EXPECT_EQ(getsockname(m_Listener, m_Plain, &m_Size), 0);
    }
    ~Listener() {
        close(m_Listener);
        close(m_Waiting);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::string url(const std::string& scheme = "http") const {
        return scheme + "://127.0.0.1:" + std::to_string(ntohs(m_Address.sin_port));
    }
    /// One more connection that waits to be accepted. Without a backlog, all further ones can't even connect.
    void keepOneWaiting() { EXPECT_EQ(connect(m_Waiting, m_Plain, m_Size), 0); }
    /// Accepts one connection, and reads it in steps, each after a pause, to its end or until so many bytes came in;
    /// then, after one more pause, sends the answer.
    void readSlowly(std::chrono::milliseconds pause, std::size_t step, std::size_t total, const std::string& answer) {
        const int connection = accepted();
        std::string block(step, '\0');
        ssize_t got = 1;
        for (std::size_t received = 0; got > 0 && received < total; received += static_cast<std::size_t>(got)) {
            std::this_thread::sleep_for(pause);
            got = recv(connection, block.data(), std::min(step, total - received), MSG_WAITALL);
        }
        std::this_thread::sleep_for(pause);
        send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
        shutdown(connection, SHUT_WR);
        while (recv(connection, block.data(), step, 0) > 0) {
        }
        close(connection);
    }

    /// The next connection.
    int accepted() const { return accept(m_Listener, nullptr, nullptr); }

private:
    sockaddr_in m_Address{};
    socklen_t m_Size = sizeof(m_Address);
    sockaddr* m_Plain = reinterpret_cast<sockaddr*>(&m_Address);
    int m_Listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_Waiting = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

} // namespace forms_test
