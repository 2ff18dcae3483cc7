#include "support/ServiceTest.h"
#include "support/TlsService.h"

#include <VarnelAPI/Forms/kit.h>

namespace forms_test {
namespace {

namespace kit = VarnelAPI::Forms::kit;
using kit::Failure;
using kit::Trouble;

class ErrorsTest : public ServiceTest {
protected:
    /// How reading an issue from `url` fails.
    std::exception_ptr failureAt(const std::string& url) {
        configuration->setBaseUrl(url);
        try {
            api::BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("L", "i").get();
        } catch (...) {
            return std::current_exception();
        }
        return nullptr;
    }
    std::exception_ptr failureBy(const Reply& reply) {
        server.reply(reply);
        return failureAt(server.url());
    }
};

/// The failure without its message: the trouble of it, and whether it passes.
std::string troubleOf(const std::exception_ptr& error) {
    const Failure failure(error);
    EXPECT_EQ(failure.status(), 0);
    EXPECT_EQ(failure.payload(), nullptr);
    try {
        std::rethrow_exception(error);
    } catch (const web::http::http_exception& known) {
        for (const auto trouble : {Trouble::refused, Trouble::noSuchHost, Trouble::certificate, Trouble::timedOut,
                                   Trouble::brokenOff, Trouble::canceled}) {
            EXPECT_EQ(known.error_code() == trouble, failure.trouble() == trouble);
        }
    }
    return utility::conversions::to_utf8string(failure.sentence()) + (failure.isTemporary() ? " (for now)" : "");
}

TEST_F(ErrorsTest, TellRefusalsInTheServicesWords) {
    const std::string payload = R"({"errorId":"E","errorMessage":"No issue of that id","errorDescription":"i"})";
    const auto error = failureBy(Reply::json(payload, 404, "Not Found"));
    const Failure failure(error, "Loading the issue");
    EXPECT_EQ(failure.sentence(), "Loading the issue failed with status 404 (Not Found): No issue of that id (i)");
    EXPECT_EQ(Failure(error).sentence().substr(0, 50), "get_DynamicSchemaBaseClass_instanceId failed with ");
    EXPECT_EQ(failure.status(), 404);
    EXPECT_EQ(failure.payload()->getErrorId(), "E");
    EXPECT_FALSE(failure.isTemporary());
    EXPECT_FALSE(failure.trouble());
    // The content is as it was, for those who share it: unread, or read to some place.
    try {
        std::rethrow_exception(error);
    } catch (const api::ApiException& known) {
        EXPECT_EQ(known.getContent()->get(), '{');
        EXPECT_EQ(Failure(known).payload()->getErrorId(), "E");
        EXPECT_EQ(bytesOf(*known.getContent()), payload.substr(1));
        EXPECT_EQ(Failure(known).payload()->getErrorId(), "E");
        EXPECT_EQ(known.getContent()->get(), EOF);
    }
    const auto sentence = [this](const Reply& reply) { return Failure(failureBy(reply), "It").sentence(); };
    EXPECT_EQ(sentence(Reply::json(R"({"errorDescription":"d"})", 400, "Bad")), "It failed with status 400 (Bad): d");
    EXPECT_EQ(sentence(Reply::json(R"({"errorMessage":"d","errorDescription":"d"})", 400, "Bad")),
              "It failed with status 400 (Bad): d");
    EXPECT_EQ(sentence(Reply::json(R"({"errorMessage":"m"})", 400, "Bad")), "It failed with status 400 (Bad): m");
    EXPECT_EQ(sentence(Reply::json(R"({"other":1})", 400, "Bad")), "It failed with status 400 (Bad)");
    EXPECT_EQ(Failure(failureBy(Reply::json(R"({"other":1})", 400, "Bad"))).payload(), nullptr);
    const Failure lone(failureBy(Reply::json(R"({"errorId":"E"})", 400, "Bad")));
    ASSERT_NE(lone.payload(), nullptr);
    EXPECT_EQ(lone.payload()->getErrorId(), "E");
    EXPECT_EQ(sentence(Reply::json(R"({"errorId":"E"})", 400, "Bad")), "It failed with status 400 (Bad)");
    EXPECT_EQ(sentence(Reply::json("{}", 404, "")), "It failed with status 404");
    EXPECT_EQ(sentence(Reply::of(502, "Bad", "Content-Type: text/html\r\n", "<p>")), "It failed with status 502 (Bad)");
    EXPECT_EQ(sentence(Reply::json("[1]", 400, "Bad")), "It failed with status 400 (Bad)");
    EXPECT_EQ(sentence(Reply::of(200, "OK", "Content-Type: text/html\r\n", "<p>")),
              "It failed with status 500 (unexpected response type: text/html)");
}

TEST_F(ErrorsTest, TellWhetherTheServiceIsBusy) {
    for (const int status : {408, 429, 502, 503, 504}) {
        EXPECT_TRUE(Failure(failureBy(Reply::json("{}", status, "x"))).isTemporary()) << status;
    }
    for (const int status : {400, 401, 403, 404, 409, 413, 500, 501}) {
        EXPECT_FALSE(Failure(failureBy(Reply::json("{}", status, "x"))).isTemporary()) << status;
    }
}

TEST_F(ErrorsTest, TellWhatBecameOfTheConnection) {
    const std::string nobody = RecordingServer().url();
    EXPECT_EQ(troubleOf(failureAt(nobody)), "The call failed: no connection to the service could be made (for now)");
    EXPECT_EQ(troubleOf(failureAt("http://no-such-host.invalid")).substr(0, 17), "The call failed: ");
    EXPECT_EQ(troubleOf(failureBy(Reply{{}, Reply::Ending::Reset})),
              "The call failed: the connection broke off (for now)");
    const TlsService tls;
    EXPECT_EQ(troubleOf(failureAt(tls.url())), "The call failed: the service's certificate is not accepted");
    EXPECT_EQ(troubleOf(failureBy(Reply::raw("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n{"))).substr(0, 17),
              "The call failed: ");
    configuration->getHttpConfig().set_timeout(std::chrono::milliseconds(300));
    EXPECT_EQ(troubleOf(failureBy(Reply::raw("").endingWith(Reply::Ending::KeepOpen))),
              "The call failed: there was no answer in time (for now)");
    pplx::cancellation_token_source source;
    source.cancel();
    client = client->with(transport::CallOptions().cancelOn(source.get_token()));
    EXPECT_EQ(troubleOf(failureAt(server.url())), "The call failed: it was canceled");
    const auto unreached = "The call failed: no connection to the service could be made (for now)";
    const auto broken = "The call failed: the connection broke off (for now)";
    for (const auto& [code, sentence] : std::vector<std::pair<int, std::string>>{
             {1, "The call failed: no host of that name is known"}, // as the resolver says it
             {2, unreached},
             {EHOSTUNREACH, unreached},
             {ENETUNREACH, unreached},
             {ECONNRESET, broken},
             {ECONNABORTED, broken},
             {EPIPE, broken},
             {EPROTO, "The call failed: odd (for now)"}}) {
        EXPECT_EQ(troubleOf(std::make_exception_ptr(web::http::http_exception(code, "odd"))), sentence) << code;
    }
}

TEST_F(ErrorsTest, TellOfAnyOtherException) {
    EXPECT_EQ(troubleOf(std::make_exception_ptr(web::http::http_exception("odd"))), "The call failed: odd (for now)");
    EXPECT_EQ(Failure(failureBy(Reply::json("no JSON")), "It").sentence().substr(0, 11), "It failed: ");
    EXPECT_EQ(Failure(std::domain_error("mine"), "It").sentence(), "It failed: mine");
    EXPECT_FALSE(Failure(std::domain_error("mine")).isTemporary());
    EXPECT_EQ(Failure(std::make_exception_ptr(7)).sentence(), "The call failed for an unknown reason");
    EXPECT_EQ(messageOf<std::invalid_argument>([] { Failure(std::exception_ptr{}); }),
              "there is no exception to explain");
    EXPECT_EQ(Failure(api::ApiException(500, "error calling it", nullptr), "It").sentence(),
              "It failed with status 500 (error calling it)");
    EXPECT_TRUE(std::error_code(ETIMEDOUT, std::system_category()) == Trouble::timedOut);
    EXPECT_EQ(Failure(api::ApiException(400, "conflict: of parameters", nullptr), "It").sentence(),
              "It failed with status 400 (conflict: of parameters)");
    EXPECT_STREQ(kit::make_error_condition(Trouble::refused).category().name(), "trouble on the way to the service");
    EXPECT_FALSE(std::make_error_code(std::errc::timed_out) == Trouble::refused);
    EXPECT_FALSE(std::error_code(110, std::iostream_category()) == Trouble::timedOut);
    EXPECT_NE(std::error_condition(Trouble::timedOut), std::error_condition(Trouble::refused));
}

} // namespace
} // namespace forms_test
