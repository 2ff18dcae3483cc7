#include "Http.h"

#include "Inflate.h"
#include "ServiceError.h"

#include <boost/asio.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;
using boost::system::error_code;

constexpr std::size_t maxTargetBytes = 8192;
constexpr std::uint32_t maxHeadBytes = 64 * 1024;
constexpr std::size_t pieceBytes = 16 * 1024;
/// Beyond this many, the connection that has been waiting for its client the longest is closed for a new one.
constexpr std::size_t maxConnections = 1000;
constexpr int threadCount = 2;
constexpr std::chrono::seconds patience{2};
/// How long a client that was refused may go on sending before it must read the answer.
constexpr std::chrono::seconds drainTime{5};
constexpr std::size_t bytesPerSecond = 1024 * 1024;

/// The bytes of bodies that all connections hold together.
class Budget {
public:
    explicit Budget(std::size_t limit) : m_limit(limit) {}

    class Share {
    public:
        explicit Share(Budget& budget) : m_budget(budget) {}
        ~Share() { set(0); }
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;
        /// False when all hold too much then.
        bool set(std::size_t bytes) {
            const std::size_t before = m_bytes;
            m_bytes = bytes;
            return (m_budget.m_held += bytes - before) <= m_budget.m_limit || bytes <= before;
        }

    private:
        Budget& m_budget;
        std::size_t m_bytes = 0;
    };

private:
    std::size_t m_limit;
    std::atomic<std::size_t> m_held{0};
};

class Connection;

/// What connections share.
struct Shared {
    Shared(HttpService& theService, const HttpOptions& options)
        : service(theService), maxBodyBytes(options.maxBodyBytes), requestTimeout(options.requestTimeout),
          budget(4 * std::max(options.maxBodyBytes, std::size_t{16} * 1024 * 1024)) {}

    void add(Connection* connection);
    void remove(Connection* connection);
    /// Those that are in use; without a lock held, as the last owner of one must not have it.
    std::vector<std::shared_ptr<Connection>> all();

    HttpService& service;
    const std::size_t maxBodyBytes;
    const std::chrono::milliseconds requestTimeout;
    Budget budget;
    std::atomic<bool> isStopping{false};
    std::mutex mutex;
    std::condition_variable isEmpty;
    std::set<Connection*> connections;
};

/// One connection. Except where said otherwise, members are called in turn, by its executor.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    explicit Connection(Shared& shared) : m_shared(shared), m_share(shared.budget) {}
    virtual ~Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    virtual void start() = 0;
    // From any thread:
    virtual void release() = 0;
    virtual void closeWhenAnswered() = 0;
    virtual void closeNow() = 0;
    /// When it began to wait for its client; nothing while it serves a request.
    std::chrono::steady_clock::rep waitsSince() const { return m_waitsSince; }

protected:
    void setWaiting(bool isWaiting) {
        m_waitsSince = isWaiting ? std::chrono::steady_clock::now().time_since_epoch().count() : 0;
    }

    Shared& m_shared;
    Budget::Share m_share;

private:
    std::atomic<std::chrono::steady_clock::rep> m_waitsSince{0};
};

void Shared::add(Connection* connection) {
    bool isFull = false;
    {
        const std::lock_guard lock(mutex);
        isFull = connections.size() >= maxConnections;
        connections.insert(connection);
    }
    std::shared_ptr<Connection> longest;
    for (auto& one : isFull ? all() : std::vector<std::shared_ptr<Connection>>()) {
        const auto since = one->waitsSince();
        if (since != 0 && (longest == nullptr || since < longest->waitsSince())) {
            longest = std::move(one);
        }
    }
    if (longest != nullptr) {
        longest->closeNow();
    }
}

void Shared::remove(Connection* connection) {
    const std::lock_guard lock(mutex);
    connections.erase(connection);
    isEmpty.notify_all();
}

std::vector<std::shared_ptr<Connection>> Shared::all() {
    std::vector<std::shared_ptr<Connection>> result;
    const std::lock_guard lock(mutex);
    for (Connection* connection : connections) {
        if (auto owned = connection->weak_from_this().lock()) {
            result.push_back(std::move(owned));
        }
    }
    return result;
}

using PlainStream = beast::tcp_stream;
using TlsStream = beast::ssl_stream<beast::tcp_stream>;

template <class Stream>
class ConnectionOn final : public Connection {
    static constexpr bool isTls = std::is_same_v<Stream, TlsStream>;

public:
    template <class... Arguments>
    explicit ConnectionOn(Shared& shared, tcp::socket socket, Arguments&... arguments)
        : Connection(shared), m_stream(std::move(socket), arguments...), m_timer(m_stream.get_executor()) {
        error_code ignored;
        m_isLocal = lowest().socket().remote_endpoint(ignored).address().is_loopback();
        lowest().socket().set_option(tcp::no_delay(true), ignored);
        shared.add(this);
    }
    ~ConnectionOn() override { m_shared.remove(this); }

    void start() override {
        inTurn([this] {
            setWaiting(true);
            if constexpr (isTls) {
                limitTime(m_shared.requestTimeout);
                m_stream.async_handshake(asio::ssl::stream_base::server,
                                         bound([this](error_code error) { error ? close() : readHead(); }));
            } else {
                readHead();
            }
        });
    }

    void release() override {
        inTurn([this] {
            if (m_isHeld) {
                m_isReleased = true;
                m_timer.cancel();
            }
        });
    }

    void closeWhenAnswered() override {
        inTurn([this] {
            if (waitsSince() != 0) {
                close();
            } else if (m_isHeld) {
                m_isReleased = true;
                m_timer.cancel();
            }
        });
    }

    void closeNow() override {
        inTurn([this] { close(); });
    }

private:
    beast::tcp_stream& lowest() { return beast::get_lowest_layer(m_stream); }

    /// A handler that keeps the connection.
    template <class Handler>
    auto bound(Handler handler) {
        return [self = shared_from_this(), handler](auto... arguments) { handler(arguments...); };
    }

    template <class Action>
    void inTurn(Action action) {
        asio::post(m_stream.get_executor(), [self = shared_from_this(), action] { action(); });
    }

    void stopTimer() {
        ++m_timing; // a wait that has ended already is not for what comes next
        m_timer.cancel();
    }

    void close() {
        stopTimer();
        error_code ignored;
        lowest().socket().close(ignored);
    }

    /// From now on the client has so long; then what it is waited for fails.
    void limitTime(std::chrono::milliseconds time) {
        stopTimer();
        m_isLate = false;
        m_timer.expires_after(time);
        m_timer.async_wait(bound([this, timing = m_timing](error_code error) {
            if (!error && timing == m_timing) {
                m_isLate = true;
                lowest().cancel();
            }
        }));
    }

    void readHead() {
        if (m_shared.isStopping) {
            return close();
        }
        m_request = {};
        m_share.set(0);
        m_parser.emplace();
        m_parser->header_limit(maxHeadBytes);
        m_parser->body_limit(m_shared.maxBodyBytes);
        setWaiting(true);
        limitTime(m_shared.requestTimeout);
        http::async_read_header(m_stream, m_buffer, *m_parser,
                                bound([this](error_code error, std::size_t /*bytes*/) { takeHead(error); }));
    }

    void takeHead(error_code error) {
        const bool hasBegun = m_parser->got_some();
        const auto& head = m_parser->get();
        m_request.method = std::string(head.method_string());
        m_request.target = std::string(head.target());
        m_request.isLocal = m_isLocal;
        for (const auto& field : head) {
            m_request.headers.emplace_back(std::string(field.name_string()), std::string(field.value()));
        }
        if (m_isLate && error && hasBegun) {
            return refuse(errorReply(408, "The head of the request did not come in time"));
        }
        if (error == http::error::header_limit || error == http::error::buffer_overflow) {
            return refuse(m_request.target.empty() ? tooLongTarget()
                                                   : errorReply(431, "At most " + std::to_string(maxHeadBytes) +
                                                                         " bytes of headers are accepted"));
        }
        if (error == http::error::body_limit) {
            return refuse(tooLargeBody());
        }
        if (error && error.category() == http::make_error_code(http::error::bad_method).category() &&
            error != http::error::end_of_stream && error != http::error::partial_message) {
            return refuse(errorReply(400, "The request is not HTTP: " + error.message()));
        }
        if (error) {
            return close(); // the client is gone
        }
        if (m_request.target.size() > maxTargetBytes) {
            return refuse(tooLongTarget());
        }
        // Also an empty one: the parser takes it for no body, and what follows for the next request.
        if (const auto coding = head.find(http::field::transfer_encoding);
            coding != head.end() && !beast::iequals(coding->value(), "chunked")) {
            return refuse(
                errorReply(501, "The Transfer-Encoding \"" + std::string(coding->value()) + "\" is not chunked"));
        }
        if (std::optional<Reply> reply = m_shared.service.refuse(m_request)) {
            return refuse(std::move(*reply), m_parser->is_done());
        }
        if (!m_parser->is_done() && beast::iequals(head[http::field::expect], "100-continue")) {
            static constexpr std::string_view goOn = "HTTP/1.1 100 Continue\r\n\r\n";
            asio::async_write(
                m_stream, asio::buffer(goOn.data(), goOn.size()),
                bound([this](error_code failed, std::size_t /*bytes*/) { failed ? close() : readBody(); }));
        } else {
            readBody();
        }
    }

    static Reply tooLongTarget() {
        return errorReply(414, "At most " + std::to_string(maxTargetBytes) + " bytes of address are accepted");
    }
    Reply tooLargeBody() const {
        return errorReply(413, "At most " + std::to_string(m_shared.maxBodyBytes) + " bytes are accepted");
    }

    void readBody() {
        if (m_parser->is_done()) {
            return serve();
        }
        m_piece.resize(pieceBytes);
        m_parser->get().body().data = m_piece.data();
        m_parser->get().body().size = m_piece.size();
        m_parser->get().body().more = true;
        m_parser->eager(true);
        limitTime(m_shared.requestTimeout);
        parsePiece();
    }

    /// Parses what was read already, and reads on until the piece is full or the body ends. `http::async_read` would do
    /// that, but what the parser throws for a trailer that is too long would leave its handlers, and end the program.
    void parsePiece() {
        error_code error;
        try {
            m_buffer.consume(m_parser->put(m_buffer.data(), error));
        } catch (const std::length_error&) {
            error = http::error::header_limit;
        }
        if (error ? error != http::error::need_more : m_parser->is_done()) {
            return takePiece(error);
        }
        if (m_buffer.size() == m_buffer.max_size()) {
            return takePiece(http::error::header_limit);
        }
        m_stream.async_read_some(m_buffer.prepare(std::min(m_buffer.max_size() - m_buffer.size(), pieceBytes)),
                                 bound([this](error_code failed, std::size_t bytes) {
                                     m_buffer.commit(bytes);
                                     failed ? takePiece(failed) : parsePiece();
                                 }));
    }

    void takePiece(error_code error) {
        if (error == http::error::need_buffer) {
            error = {};
        }
        if (error && m_isLate) {
            return refuse(errorReply(408, "The body of the request did not come in time"));
        }
        if (error == http::error::body_limit) {
            return refuse(tooLargeBody());
        }
        if (error == http::error::bad_chunk || error == http::error::bad_chunk_extension ||
            error == http::error::bad_line_ending || error == http::error::bad_field ||
            error == http::error::bad_value || error == http::error::header_limit) {
            return refuse(errorReply(400, "The body is not HTTP: " + error.message()));
        }
        if (error) {
            return close();
        }
        m_request.body.append(m_piece.data(), m_piece.size() - m_parser->get().body().size);
        if (!m_share.set(m_request.body.size())) {
            return refuse(errorReply(503, "The requests under way take too much memory"));
        }
        readBody();
    }

    void serve() {
        stopTimer();
        setWaiting(false);
        m_piece = {};
        m_isHead = m_request.method == "HEAD";
        m_keepAlive = m_parser->get().keep_alive();
        try {
            m_request.body =
                inflated(std::move(m_request.body), m_request.header("Content-Encoding"), m_shared.maxBodyBytes);
        } catch (const ServiceError& error) {
            Reply reply = errorReply(error.status(), error.what());
            m_shared.service.note(m_request, reply);
            return send(HttpAnswer(std::move(reply)));
        }
        m_shared.service.serve(std::move(m_request), [this, self = shared_from_this()](HttpAnswer answer) {
            asio::post(m_stream.get_executor(),
                       [this, self, held = std::move(answer)]() mutable { send(std::move(held)); });
        });
    }

    /// Answers before the request was read, and then ends the connection unless it was.
    void refuse(Reply reply, bool isRead = false) {
        stopTimer();
        setWaiting(false);
        m_isHead = m_request.method == "HEAD";
        m_keepAlive = isRead && m_parser->get().keep_alive();
        m_shared.service.note(m_request, reply);
        send(HttpAnswer(std::move(reply)));
    }

    /// Calls it after a time, or at once when answers are let go.
    template <class Next>
    void hold(std::chrono::steady_clock::duration time, Next next) {
        if (m_isReleased || time == std::chrono::steady_clock::duration::zero()) {
            return next();
        }
        m_isHeld = true;
        stopTimer();
        m_timer.expires_after(time);
        m_timer.async_wait(bound([this, next](error_code /*error*/) {
            m_isHeld = false;
            next();
        }));
    }

    void send(HttpAnswer answer) {
        m_isReleased = m_shared.isStopping;
        m_answer.emplace(std::move(answer));
        if (!m_share.set(m_answer->reply.body.size())) {
            m_answer.emplace(errorReply(503, "The answers under way take too much memory"));
        }
        if (m_answer->isStall) {
            return hold(std::chrono::hours(24), [this] { close(); });
        }
        hold(m_answer->delay, [this] { sendHead(); });
    }

    void sendHead() {
        Reply& reply = m_answer->reply;
        if (m_answer->isReset && !m_answer->truncateAfter) {
            return reset();
        }
        const bool hasNone = reply.status == 204 || reply.status == 304;
        m_keepAlive = m_keepAlive && !m_shared.isStopping && !m_answer->truncateAfter;
        const auto hasHeader = [&](std::string_view name) {
            return std::any_of(reply.headers.begin(), reply.headers.end(), [&](const auto& header) {
                return beast::iequals(header.first, beast::string_view(name.data(), name.size()));
            });
        };
        if (!reply.contentType.empty() && !hasHeader("Content-Type")) {
            reply.headers.emplace_back("Content-Type", reply.contentType);
        }
        if (!hasNone && !hasHeader("Content-Length")) {
            reply.headers.emplace_back("Content-Length", std::to_string(reply.body.size()));
        }
        if (!m_keepAlive) {
            reply.headers.emplace_back("Connection", "close");
        }
        const http::status known = http::int_to_status(static_cast<unsigned>(reply.status));
        const std::string reason = known == http::status::unknown ? "" : std::string(http::obsolete_reason(known));
        m_head = "HTTP/1.1 " + std::to_string(reply.status) + " " + reason + "\r\n";
        for (const auto& [name, value] : reply.headers) {
            m_head += name + ": " + value + "\r\n";
        }
        m_head += "\r\n";
        m_sent = 0;
        m_length = m_isHead || hasNone ? 0 : std::min(reply.body.size(), m_answer->truncateAfter.value_or(SIZE_MAX));
        sendPart(m_head.size());
    }

    /// Sends the head, when there is one still, and the part of the body that is due.
    void sendPart(std::size_t headBytes) {
        const bool isDripped = m_answer->dripBytes != 0 && !m_isReleased;
        const std::size_t part =
            std::min(m_length - m_sent, isDripped ? headBytes != 0 ? 0 : m_answer->dripBytes : SIZE_MAX);
        limitTime(m_shared.requestTimeout + std::chrono::milliseconds(part / (bytesPerSecond / 1000)));
        // Not an array: of two in one asio keeps what was sent, empty, and over TLS nothing would be sent after that.
        const std::vector<asio::const_buffer> buffers{asio::buffer(m_head.data(), headBytes),
                                                      asio::buffer(m_answer->reply.body.data() + m_sent, part)};
        asio::async_write(m_stream, buffers, bound([this, part](error_code error, std::size_t /*bytes*/) {
                              stopTimer();
                              m_sent += part;
                              if (error) {
                                  return close();
                              }
                              if (m_sent < m_length) {
                                  return hold(m_answer->dripPause, [this] { sendPart(0); });
                              }
                              if (m_answer->isReset) {
                                  reset();
                              } else if (m_keepAlive) {
                                  readHead();
                              } else if (m_answer->truncateAfter) {
                                  finishPlainly();
                              } else {
                                  finish();
                              }
                          }));
    }

    void reset() {
        error_code ignored;
        lowest().socket().set_option(asio::socket_base::linger(true, 0), ignored);
        close();
    }

    void finish() {
        if constexpr (isTls) {
            limitTime(patience);
            m_stream.async_shutdown(bound([this](error_code /*error*/) { finishPlainly(); }));
        } else {
            finishPlainly();
        }
    }

    /// Tells the client that nothing more comes, and reads what it still sends: with input unread the connection would
    /// be reset, and the answer lost.
    void finishPlainly() {
        m_answer.reset();
        m_share.set(0);
        setWaiting(true);
        error_code ignored;
        lowest().socket().shutdown(tcp::socket::shutdown_send, ignored);
        if (m_shared.isStopping && m_parser->is_done()) {
            return close();
        }
        m_piece.resize(pieceBytes);
        limitTime(drainTime);
        drain();
    }

    void drain() {
        lowest().socket().async_read_some(asio::buffer(m_piece), bound([this](error_code error, std::size_t /*bytes*/) {
                                              if (error || m_isLate || m_shared.isStopping) {
                                                  return close();
                                              }
                                              drain();
                                          }));
    }

    Stream m_stream;
    asio::steady_timer m_timer;
    beast::flat_buffer m_buffer{maxHeadBytes + pieceBytes};
    std::optional<http::request_parser<http::buffer_body>> m_parser;
    std::vector<char> m_piece;
    HttpRequest m_request;
    std::optional<HttpAnswer> m_answer;
    std::string m_head;
    std::size_t m_sent = 0;
    std::size_t m_length = 0;
    unsigned m_timing = 0;
    bool m_isLocal = false;
    bool m_isLate = false;
    bool m_isHeld = false;
    bool m_isReleased = false;
    bool m_isHead = false;
    bool m_keepAlive = false;
};

} // namespace

std::string HttpRequest::header(std::string_view name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&](const auto& one) {
        return beast::iequals(one.first, beast::string_view(name.data(), name.size()));
    });
    return found == headers.end() ? "" : found->second;
}

std::string_view HttpRequest::path() const {
    return std::string_view(target).substr(0, target.find('?'));
}

std::string_view HttpRequest::query() const {
    const std::size_t question = target.find('?');
    return question == std::string::npos ? std::string_view() : std::string_view(target).substr(question + 1);
}

class HttpServer::Impl {
public:
    Impl(const HttpOptions& options, HttpService& service)
        : m_shared(service, options), m_acceptor(asio::make_strand(m_io)), m_pause(m_acceptor.get_executor()) {
        if (!options.certificate.empty() || !options.key.empty()) {
            useTls(options);
        }
        listen(options);
    }

    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void start() {
        asio::post(m_acceptor.get_executor(), [this] { accept(); });
        for (int i = 0; i < threadCount; ++i) {
            m_threads.emplace_back([this] { m_io.run(); });
        }
    }

    int port() const { return m_port; }

    void release() {
        for (const auto& connection : m_shared.all()) {
            connection->release();
        }
    }

    void stop() {
        if (m_shared.isStopping.exchange(true)) {
            return;
        }
        asio::post(m_acceptor.get_executor(), [this] {
            error_code ignored;
            m_acceptor.close(ignored);
            m_pause.cancel();
        });
        for (const auto& connection : m_shared.all()) {
            connection->closeWhenAnswered();
        }
        {
            std::unique_lock lock(m_shared.mutex);
            m_shared.isEmpty.wait_for(lock, patience, [this] { return m_shared.connections.empty(); });
        }
        for (const auto& connection : m_shared.all()) {
            connection->closeNow();
        }
        m_work.reset();
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }

private:
    void useTls(const HttpOptions& options) {
        if (options.certificate.empty() || options.key.empty()) {
            throw std::runtime_error("https needs both a certificate and its key");
        }
        for (const auto& [what, file] :
             {std::pair("certificate", options.certificate), std::pair("key", options.key)}) {
            if (!std::ifstream(file)) { // for which TLS has no words
                throw std::runtime_error(std::string("Can't use the ") + what + " \"" + file + "\": it can't be read");
            }
        }
        m_tls.emplace(asio::ssl::context::tls_server);
        m_tls->set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 |
                           asio::ssl::context::no_tlsv1_1);
        error_code error;
        m_tls->use_certificate_chain_file(options.certificate, error);
        if (error) {
            throw std::runtime_error("Can't use the certificate \"" + options.certificate + "\": " + error.message());
        }
        m_tls->use_private_key_file(options.key, asio::ssl::context::pem, error);
        if (error) {
            throw std::runtime_error("Can't use the key \"" + options.key + "\": " + error.message());
        }
    }

    void listen(const HttpOptions& options) {
        try {
            const tcp::endpoint endpoint =
                *tcp::resolver(m_io).resolve(options.host, std::to_string(options.port)).begin();
            m_acceptor.open(endpoint.protocol());
#ifndef _WIN32
            // There it would let two servers share a port without a word.
            m_acceptor.set_option(tcp::acceptor::reuse_address(true));
#endif
            m_acceptor.bind(endpoint);
            m_acceptor.listen();
            m_port = m_acceptor.local_endpoint().port();
        } catch (const boost::system::system_error& error) {
            const std::string where = options.port == 0 ? "" : " on port " + std::to_string(options.port);
            const std::string why =
                error.code() == asio::error::address_in_use ? "the port is in use" : error.code().message();
            throw std::runtime_error("Can't listen at " + options.host + where + ": " + why);
        }
    }

    void accept() {
        m_acceptor.async_accept(asio::make_strand(m_io), [this](error_code error, tcp::socket socket) {
            if (m_shared.isStopping || !m_acceptor.is_open()) {
                return;
            }
            if (error) {
                // Out of descriptors, perhaps: others are closed meanwhile.
                m_pause.expires_after(std::chrono::milliseconds(50));
                m_pause.async_wait([this](error_code) { accept(); });
                return;
            }
            std::shared_ptr<Connection> connection;
            if (m_tls) {
                connection = std::make_shared<ConnectionOn<TlsStream>>(m_shared, std::move(socket), *m_tls);
            } else {
                connection = std::make_shared<ConnectionOn<PlainStream>>(m_shared, std::move(socket));
            }
            connection->start();
            accept();
        });
    }

    Shared m_shared;
    std::optional<asio::ssl::context> m_tls;
    asio::io_context m_io{threadCount}; // owns connections, which use what is above
    asio::executor_work_guard<asio::io_context::executor_type> m_work{m_io.get_executor()};
    tcp::acceptor m_acceptor;
    asio::steady_timer m_pause;
    int m_port = 0;
    std::vector<std::thread> m_threads;
};

HttpServer::HttpServer(const HttpOptions& options, HttpService& service)
    : m_impl(std::make_unique<Impl>(options, service)) {}
HttpServer::~HttpServer() = default;
int HttpServer::port() const {
    return m_impl->port();
}
void HttpServer::start() {
    m_impl->start();
}
void HttpServer::release() {
    m_impl->release();
}
void HttpServer::stop() {
    m_impl->stop();
}

} // namespace VarnelAPI::Forms::repository
