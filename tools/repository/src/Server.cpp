#include "VarnelRepository/Server.h"

#include "Http.h"
#include "Service.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace VarnelAPI::Forms::repository {
namespace {

HttpOptions httpOptions(const ServerOptions& options) {
    return {options.host, options.port, options.maxBodyBytes, options.certificate, options.key, options.requestTimeout};
}

} // namespace

class Server::Impl {
public:
    explicit Impl(const ServerOptions& options)
        : m_options(options), m_service(options), m_http(httpOptions(options), m_service) {
        m_service.onRelease([this] { m_http.release(); });
        m_http.start();
    }
    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void stop() {
        m_http.stop();
        m_service.stop();
    }

    std::string url() const {
        const std::string& host = m_options.host;
        const bool isIpv6 = host.find(':') != std::string::npos;
        return (m_options.certificate.empty() ? "http://" : "https://") + (isIpv6 ? "[" + host + "]" : host) + ":" +
               std::to_string(m_http.port()) + m_service.basePath();
    }

    Service& service() { return m_service; }
    int port() const { return m_http.port(); }

private:
    ServerOptions m_options;
    Service m_service;
    HttpServer m_http;
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

FaultId Server::inject(const Fault& fault) {
    return m_impl->service().faults().inject(fault);
}
FaultState Server::fault(FaultId id) const {
    const std::vector<FaultState> all = faults();
    const auto found = std::find_if(all.begin(), all.end(), [&](const FaultState& state) { return state.id == id; });
    if (found == all.end()) {
        throw std::out_of_range("There is no fault " + std::to_string(id));
    }
    return *found;
}
std::vector<FaultState> Server::faults() const {
    return m_impl->service().faults().all();
}
void Server::clearFaults() {
    m_impl->service().clearFaults();
}

std::vector<LoggedRequest> Server::requests() const {
    return m_impl->service().log().all();
}
void Server::clearRequests() {
    m_impl->service().log().clear();
}

void Server::addToken(const Token& token) {
    m_impl->service().tokens().add(token);
}

void Server::reset() {
    m_impl->service().reset();
}
void Server::seed(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    stream.peek(); // which a folder fails
    if (!stream.is_open() || stream.bad()) {
        throw std::runtime_error("Can't read the seed \"" + file + "\"");
    }
    stream.clear(); // of the end of an empty one
    seedText({std::istreambuf_iterator<char>(stream), {}});
}
void Server::seedText(const std::string& text) {
    m_impl->service().store().seed(text);
}
std::string Server::dump() const {
    return m_impl->service().store().dump();
}

} // namespace VarnelAPI::Forms::repository
