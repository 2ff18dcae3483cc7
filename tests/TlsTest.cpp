#include "support/ServiceTest.h"
#include "support/TlsService.h"

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
}

} // namespace
} // namespace forms_test
