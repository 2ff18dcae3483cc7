#include "support/Listener.h"
#include "support/ServiceTest.h"
#include "support/TlsService.h"

#if defined(FORMS_TEST_CURL)
#include <VarnelAPI/Forms/transport/CurlTransport.h>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/stream.hpp>
#endif

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>

/// Calls over TLS, and redirects into and out of it.
namespace forms_test {
namespace {

class TlsTest : public ServiceTest {
protected:
    auto status(const std::string& url) {
        configuration->setBaseUrl(url);
        return client->callApi("/x", "GET", {}, nullptr, configuration->getDefaultHeaders(), {}, {}, "")
            .get()
            .status_code();
    }

    TlsService service;
};

TEST_F(TlsTest, RefusesAnUnknownCertificateUnlessToldOtherwise) {
    messageOf<web::http::http_exception>([this] { status(service.url()); });
    configuration->getHttpConfig().set_validate_certificates(false);
    EXPECT_EQ(status(service.url()), 200);
    EXPECT_EQ(service.authorization(), "Bearer t");
    EXPECT_EQ(status(service.url("localhost")), 200) << "which its certificate does not name";
    api::SchemaApi schemas(client);
    EXPECT_EQ(schemas.select_SchemasSchema("L").get()->toJson().serialize(), "{}");
}

TEST_F(TlsTest, LeavesTlsOnlyWhenAllowedAndTakesNothingPrivateEitherWay) {
    configuration->getHttpConfig().set_validate_certificates(false);
    service.redirectTo(server.url() + "/plain");
    EXPECT_EQ(status(service.url()), 302);
    EXPECT_TRUE(server.requests().empty());

    configuration->getHttpConfig().set_https_to_http_redirects(true);
    server.reply(Reply::of(200, "OK", "", ""));
    EXPECT_EQ(status(service.url()), 200);
    const Request plain = server.takeRequest();
    EXPECT_EQ(plain.target, "/base/plain");
    EXPECT_FALSE(plain.has("Authorization"));

    service.redirectTo("");
    server.reply(Reply::redirect(302, service.url() + "/x"));
    int contexts = 0;
    configuration->getHttpConfig().set_ssl_context_callback([&contexts](auto&) { ++contexts; });
    EXPECT_EQ(status(server.url()), 200);
    EXPECT_EQ(service.authorization(), "");
    EXPECT_EQ(contexts, 1) << "it may hold the authorities to trust";

    service.redirectTo(server.url() + "/plain");
    server.reply(Reply::redirect(302, service.url() + "/x"));
    server.reply(Reply::of(200, "OK", "", ""));
    EXPECT_EQ(status(server.url()), 200) << "what is allowed is allowed elsewhere, too";
}

TEST_F(TlsTest, KnowsTheAuthoritiesThatItIsToldOf) {
    namespace fs = std::filesystem;
    const fs::path folder = testing::TempDir() + "forms-tls-" + std::to_string(getpid());
    const auto remover = std::shared_ptr<void>(nullptr, [&folder](auto) { fs::remove_all(folder); });
    const fs::path hashed = folder / "hashed", empty = folder / "empty", file = folder / "file.pem";
    fs::create_directories(hashed);
    fs::create_directories(empty);
    std::ofstream(hashed / service.hashedName()) << service.certificate();
    std::ofstream(file) << service.certificate();
    const auto refuses = [this](const std::string& url) { messageOf<web::http::http_exception>([&] { status(url); }); };
    setenv("SSL_CERT_FILE", file.c_str(), 1);
    configuration->setTransport(chosenTransport());
    EXPECT_EQ(status(service.url()), 200);
    refuses(service.url("localhost")); // which its certificate does not name
#if defined(FORMS_TEST_CURL)
    const auto over = [this](const fs::path& ca, const fs::path& cas, transport::CurlOptions::Tls minimum) {
        transport::CurlOptions options;
        options.caFile = ca;
        options.caFolder = cas;
        options.minimumTls = minimum;
        configuration->setTransport(std::make_shared<transport::CurlTransport>(options));
    };
    using Tls = transport::CurlOptions::Tls;
    over("", empty, Tls::V1_2);
    refuses(service.url());
    unsetenv("SSL_CERT_FILE"); // whose authorities one's own take the place of
    over("", hashed, Tls::V1_3);
    EXPECT_EQ(status(service.url()), 200);
    service.speakAtMost(TLS1_2_VERSION);
    over(file, "", Tls::V1_2);
    EXPECT_EQ(status(service.url()), 200);
    over(file, "", Tls::V1_3);
    refuses(service.url());
    service.speakAtMost(TLS1_1_VERSION);
    over(file, "", Tls::V1_2);
    refuses(service.url());
#endif
    unsetenv("SSL_CERT_FILE");
}

TEST_F(TlsTest, ShowsTheCertificateThatItIsGiven) {
    configuration->getHttpConfig().set_validate_certificates(false);
    service.requireCertificate();
    messageOf<web::http::http_exception>([this] { status(service.url()); });
    int shown = 0;
    configuration->getHttpConfig().set_ssl_context_callback([&](boost::asio::ssl::context& context) {
        ++shown;
        context.use_certificate(boost::asio::buffer(service.certificate()), boost::asio::ssl::context::pem);
        context.use_private_key(boost::asio::buffer(service.key()), boost::asio::ssl::context::pem);
    });
    EXPECT_EQ(status(service.url()), 200);
    EXPECT_EQ(status(service.url()), 200);
    EXPECT_EQ(shown, 2) << "no connection is shared by who may be somebody else";
}

TEST_F(TlsTest, TellsOfTheNativeHandle) {
    using Handle = web::http::client::native_handle;
    auto& settings = configuration->getHttpConfig();
    settings.set_validate_certificates(false);
    int handles = 0;
    settings.set_nativehandle_options([&handles](Handle) { ++handles; });
    EXPECT_EQ(status(service.url()), 200);
    EXPECT_EQ(handles, 1);
#if defined(FORMS_TEST_CURL)
    // With curl, what is told to the TLS of the handle would hold for nobody.
    const std::function<void(SSL*)> changes[] = {[](SSL* tls) { SSL_set_options(tls, SSL_OP_NO_TLSv1_2); },
                                                 [](SSL* tls) { SSL_set_verify(tls, SSL_VERIFY_PEER, nullptr); },
                                                 [](SSL* tls) { SSL_set_tlsext_host_name(tls, "own.test"); }};
    for (std::size_t i = 0; isOverCurl() && i < std::size(changes); ++i) {
        settings.set_nativehandle_options([&change = changes[i]](Handle handle) {
            using Stream = boost::asio::ssl::stream<boost::asio::ip::tcp::socket&>;
            change(static_cast<Stream*>(handle)->native_handle());
        });
        configuration->setTransport(chosenTransport());
        messageOf<std::invalid_argument>([this] { status(service.url()); });
    }
#endif
}

TEST_F(TlsTest, ReachesAnAddressOfIpv6) {
    if (!isOverCurl()) {
        GTEST_SKIP() << "the HTTP library looks for a host whose name has the brackets";
    }
    const TlsService six("::1");
    auto& settings = configuration->getHttpConfig();
    settings.set_validate_certificates(false);
    int handles = 0;
    settings.set_nativehandle_options([&handles](auto) { ++handles; });
    EXPECT_EQ(status(six.url("[::1]")), 200);
    EXPECT_EQ(handles, 1);
}

TEST_F(TlsTest, TakesNoAnswerThatBreaksOffForAWholeOne) {
    configuration->getHttpConfig().set_validate_certificates(false);
    service.breakOff();
    configuration->setBaseUrl(service.url());
    api::SchemaApi schemas(client);
    const auto text = messageOf<web::http::http_exception>([&] { schemas.select_SchemasSchema("L").get(); });
    EXPECT_NE(text, "");
}

/// Is a proxy for one connection, to this host, and gives the header that asked for it.
std::string tunnel(const Listener& listener) {
    const int inner = listener.accepted(), outer = openSocket(SOCK_STREAM);
    std::string head;
    for (char c = 0; head.find("\r\n\r\n") == std::string::npos && recv(inner, &c, 1, 0) == 1;) {
        head += c;
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(std::atoi(head.c_str() + head.find(':') + 1)));
    EXPECT_EQ(connect(outer, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    const std::string answer = "HTTP/1.1 200 Connected\r\n\r\n";
    send(inner, answer.data(), answer.size(), noSignal);
    for (bool open = true; open;) {
        pollfd polled[] = {{inner, POLLIN, 0}, {outer, POLLIN, 0}};
        open = poll(polled, 2, 20000) > 0;
        for (int from = 0; open && from < 2; ++from) {
            char block[4096];
            const Size size = polled[from].revents != 0 ? recv(polled[from].fd, block, sizeof(block), 0) : 0;
            open = polled[from].revents == 0 || size > 0;
            send(polled[1 - from].fd, block, static_cast<SendSize>(std::max<Size>(size, 0)), noSignal);
        }
    }
    closeSocket(inner);
    closeSocket(outer);
    return head;
}

TEST_F(TlsTest, TunnelsThroughAProxy) {
    // The HTTP library never frees the credentials that it decrypts.
    turnLeakCheckOff();
    const Listener listener;
    web::web_proxy proxy(listener.url());
    proxy.set_credentials({"user", "secret"});
    configuration->getHttpConfig().set_proxy(proxy);
    configuration->getHttpConfig().set_validate_certificates(false);
    auto head = std::async(std::launch::async, [&] { return tunnel(listener); });
    EXPECT_EQ(status(service.url()), 200);
    EXPECT_EQ(service.authorization(), "Bearer t");
    configuration->setTransport(nullptr); // nobody keeps the connection
    const std::string asked = head.get();
    EXPECT_EQ(asked.substr(0, asked.find('\r')), "CONNECT " + service.url().substr(8) + " HTTP/1.1");
    EXPECT_NE(asked.find("\r\nProxy-Authorization: Basic dXNlcjpzZWNyZXQ=\r\n"), std::string::npos) << asked;
    EXPECT_EQ(asked.find("Bearer"), std::string::npos) << asked;
}

} // namespace
} // namespace forms_test
