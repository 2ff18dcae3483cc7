#include "VarnelRepository/Server.h"

#include "Routes.h"
#include "Store.h"

#include <httplib.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace VarnelAPI::Forms::repository {
namespace {

/// Each connection holds a worker while it lasts, also between requests.
constexpr std::size_t workerCount = 32;

void send(Reply reply, httplib::Response& response) {
    response.status = reply.status;
    response.body = std::move(reply.body);
    if (!reply.contentType.empty()) {
        response.set_header("Content-Type", reply.contentType);
    }
    if (!reply.allow.empty()) {
        response.set_header("Allow", reply.allow);
    }
}

bool hasBody(const httplib::Request& request) {
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

} // namespace

class Server::Impl {
public:
    explicit Impl(const ServerOptions& options)
        : m_store(options.database), m_routes(m_store, options.basePath), m_host(options.host),
          m_maxBodyBytes(options.maxBodyBytes) {
        configure();
        m_port = options.port == 0                             ? m_server.bind_to_any_port(m_host)
                 : m_server.bind_to_port(m_host, options.port) ? options.port
                                                               : -1;
        if (m_port <= 0) {
            const std::string where = options.port == 0 ? "" : " on port " + std::to_string(options.port);
            throw std::runtime_error("Can't listen at " + m_host + where + ": the port is in use or not permitted");
        }
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        while (!m_server.is_running()) { // stop() before this point would be lost
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void stop() {
        if (m_thread.joinable()) {
            m_server.stop();
            m_thread.join();
        }
    }

    int port() const { return m_port; }

    std::string url() const {
        const bool isIpv6 = m_host.find(':') != std::string::npos;
        return "http://" + (isIpv6 ? "[" + m_host + "]" : m_host) + ":" + std::to_string(m_port) + m_routes.basePath();
    }

private:
    void configure() {
        m_server.set_socket_options([](socket_t socket) {
            // The default would also set SO_REUSEPORT, which lets two servers share a port without a word.
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&yes), sizeof yes);
        });
        m_server.new_task_queue = [] { return new httplib::ThreadPool(workerCount); };
        m_server.set_tcp_nodelay(true);
        m_server.set_keep_alive_timeout(1);
        m_server.set_keep_alive_max_count(1000);
        m_server.set_read_timeout(30);
        m_server.set_write_timeout(30);
        m_server.set_payload_max_length(m_maxBodyBytes);

        // Requests without a body are answered here, of whatever method. The others go on to the handlers below, which
        // read the body themselves: a DELETE without one would otherwise wait for the connection's end.
        m_server.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            // The HTTP library would cut a part out of any response, an error or a 201 too. Range may be ignored.
            const_cast<httplib::Request&>(request).ranges.clear();
            if (!hasBody(request) || !takesBody(request.method)) {
                send(m_routes.handle(request.method, request.target, ""), response);
                return httplib::Server::HandlerResponse::Handled;
            }
            // A form is stored as it came; under its own type the HTTP library would take it apart.
            const_cast<httplib::Request&>(request).headers.erase("Content-Type");
            return httplib::Server::HandlerResponse::Unhandled;
        });
        const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                                     const httplib::ContentReader& reader) { answerBody(request, response, reader); };
        const char* anyPath = "[^]*"; // unlike ".*" this takes line ends too
        m_server.Post(anyPath, withBody).Put(anyPath, withBody).Patch(anyPath, withBody).Delete(anyPath, withBody);

        // What the HTTP library refuses by itself gets an error payload too.
        m_server.set_error_handler(
            httplib::Server::Handler([](const httplib::Request& /*request*/, httplib::Response& response) {
                if (response.body.empty()) {
                    send(errorReply(response.status, "The request is not acceptable HTTP"), response);
                }
            }));
    }

    static bool takesBody(const std::string& method) {
        return method == "POST" || method == "PUT" || method == "PATCH" || method == "DELETE";
    }

    void answerBody(const httplib::Request& request, httplib::Response& response,
                    const httplib::ContentReader& reader) {
        std::string body;
        bool isTooLarge = false;
        const bool isRead = reader([&](const char* data, std::size_t length) {
            // A chunked body tells its size only as it comes. The rest is read and dropped, so that the connection
            // stands at the next request.
            isTooLarge = isTooLarge || length > m_maxBodyBytes - body.size();
            if (!isTooLarge) {
                body.append(data, length);
            }
            return true;
        });
        if (isTooLarge || response.status == 413) {
            send(errorReply(413, "At most " + std::to_string(m_maxBodyBytes) + " bytes are accepted"), response);
        } else if (isRead) {
            send(m_routes.handle(request.method, request.target, body), response);
        } else {
            send(errorReply(response.status >= 400 ? response.status : 400, "The body can't be read"), response);
        }
    }

    Store m_store;
    Routes m_routes;
    std::string m_host;
    std::size_t m_maxBodyBytes;
    int m_port = -1;
    httplib::Server m_server;
    std::thread m_thread;
};

Server::Server(const ServerOptions& options) : m_impl(std::make_unique<Impl>(options)) {}
Server::~Server() = default;
int Server::port() const {
    return m_impl->port();
}
std::string Server::url() const {
    return m_impl->url();
}
void Server::stop() {
    m_impl->stop();
}

} // namespace VarnelAPI::Forms::repository
