#include "support/ServiceTest.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/unicast.hpp>

namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;

/// In UTF-8, as the tests write them.
using Texts = std::map<std::string, std::string>;
using Files = std::map<std::string, std::shared_ptr<HttpContent>>;

std::map<utility::string_t, utility::string_t> native(const Texts& texts) {
    std::map<utility::string_t, utility::string_t> natives;
    for (const auto& [name, value] : texts) {
        natives.emplace(text(name), text(value));
    }
    return natives;
}
std::map<utility::string_t, std::shared_ptr<HttpContent>> native(const Files& files) {
    std::map<utility::string_t, std::shared_ptr<HttpContent>> natives;
    for (const auto& [name, file] : files) {
        natives.emplace(text(name), file);
    }
    return natives;
}

TEST(Configuration, StartsEmptyAndKeepsWhatItIsGiven) {
    ApiConfiguration configuration;
    EXPECT_EQ(configuration.getBaseUrl() + configuration.getUserAgent() + configuration.getApiKey("any"_t), "");
    EXPECT_TRUE(configuration.getDefaultHeaders().empty());
    EXPECT_EQ(configuration.getHttpConfig().timeout(), std::chrono::seconds(30));
    EXPECT_EQ(configuration.getHttpConfig().max_redirects(), 10U);
    configuration.setApiKey("a"_t, "1"_t);
    configuration.setApiKey("a"_t, "2"_t);
    EXPECT_EQ(configuration.getApiKey("a"_t), "2");
    EXPECT_EQ(configuration.getApiKey("A"_t), "");
    web::http::client::http_client_config settings;
    settings.set_timeout(std::chrono::seconds(7));
    configuration.setHttpConfig(settings);
    configuration.getHttpConfig().set_chunksize(1000);
    const ApiConfiguration copy = configuration;
    EXPECT_EQ(copy.getHttpConfig().timeout(), std::chrono::seconds(7));
    EXPECT_EQ(copy.getHttpConfig().chunksize(), 1000U);
    EXPECT_EQ(copy.getApiKey("a"_t), "2");
}

TEST(Exception, CarriesCodeMessageHeadersAndContent) {
    auto headers = native({{"A", "1"}});
    const auto content = std::make_shared<std::istringstream>("payload");
    const auto raise = [&] { throw ApiException(404, "nicht gefunden: ü"_t, headers, content); };
    try {
        raise();
    } catch (const web::http::http_exception& base) {
        EXPECT_STREQ(base.what(), "nicht gefunden: ü");
        EXPECT_EQ(base.error_code(), std::error_code(404, utility::details::platform_category()));
        auto copy = dynamic_cast<const ApiException&>(base);
        headers["A"_t] = "changed"_t;
        EXPECT_EQ(copy.getHeaders(), native({{"A", "1"}}));
        EXPECT_EQ(copy.getContent(), content);
    }
    ApiException bare(400, "text"_t, nullptr);
    EXPECT_EQ(bare.getContent(), nullptr);
    EXPECT_TRUE(bare.getHeaders().empty());
}

TEST(ParameterToString, WritesEachType) {
    EXPECT_EQ(ApiClient::parameterToString("a b/ü"_t), "a b/ü");
    EXPECT_EQ(ApiClient::parameterToString(_XPLATSTR("a literal, no bool")), "a literal, no bool");
    EXPECT_EQ(ApiClient::parameterToString(int32_t{-7}), "-7");
    EXPECT_EQ(ApiClient::parameterToString(int64_t{-5000000000}), "-5000000000");
    EXPECT_EQ(ApiClient::parameterToString(1.5F), "1.500000");
    EXPECT_EQ(ApiClient::parameterToString(2.5), "2.500000");
    EXPECT_EQ(ApiClient::parameterToString(1e20), "100000000000000000000.000000");
    EXPECT_EQ(ApiClient::parameterToString(true) + ApiClient::parameterToString(false), "truefalse");
    EXPECT_EQ(ApiClient::parameterToString(
                  utility::datetime::from_string("2024-02-29T12:00:00.5Z"_t, utility::datetime::ISO_8601)),
              "2024-02-29T12:00:00.5Z");
}

class ClientTest : public ServiceTest {
protected:
    ClientTest() { configuration->getDefaultHeaders().clear(); }

    auto call(const std::string& path, const std::string& method, const Texts& query = {},
              const std::shared_ptr<IHttpBody>& body = nullptr, const Texts& headers = {}, const Texts& form = {},
              const Files& files = {}, const std::string& contentType = "application/json") {
        return client->callApi(text(path), text(method), native(query), body, native(headers), native(form),
                               native(files), text(contentType));
    }

    /// The one request that a call of these parts makes. The boundary of a multipart body is written as B in it.
    template <class... Parts>
    Request requestOf(const Parts&... parts) {
        server.reply(Reply::of(200, "OK", "", ""));
        EXPECT_EQ(call(parts...).get().status_code(), 200);
        Request request = server.takeRequest();
        EXPECT_EQ(request.has("Content-Length") ? request.header("Content-Length") : "0",
                  std::to_string(request.body.size()));
        const std::string type = request.header("Content-Type");
        if (const auto at = type.find("boundary="); at != std::string::npos) {
            const std::string boundary = type.substr(at + 9);
            EXPECT_EQ(boundary.size(), 36U);
            for (auto found = request.body.find(boundary); found != std::string::npos;
                 found = request.body.find(boundary)) {
                request.body.replace(found, boundary.size(), "B");
            }
        }
        return request;
    }
};

TEST_F(ClientTest, SendsMethodPathQueryAndHeaders) {
    const Request request = requestOf("/p/q?fixed=1", "PATCH", Texts{{"b", "2 &"}, {"a", "1/ü"}}, nullptr,
                                      Texts{{"X-Two", "2"}, {"X-One", "1"}, {"X-Text", "a ü  \"b;"}});
    EXPECT_EQ(request.method, "PATCH");
    EXPECT_EQ(request.target, "/base/p/q?fixed=1&a=1/%C3%BC&b=2%20%26");
    EXPECT_EQ(request.header("X-One") + request.header("X-Two"), "12");
    EXPECT_EQ(request.header("X-Text"), "a ü  \"b;");
    EXPECT_EQ(requestOf("/p", "GET", Texts(), nullptr, Texts{{"X-a", "1"}, {"x-A", "2"}}).header("X-A"), "1, 2");
    EXPECT_EQ(request.header("User-Agent"), "forms-test/1");
    EXPECT_FALSE(request.has("Content-Type"));
    EXPECT_EQ(request.body, "");
    EXPECT_EQ(requestOf("/p", "GET", Texts(), nullptr, Texts{{"user-agent", "own"}}).header("User-Agent"), "own");
    configuration->setUserAgent(""_t);
    configuration->getDefaultHeaders()["X-Default"_t] = "only the operations add it"_t;
    configuration->setApiKey("X-Key"_t, "never sent"_t);
    const Request second = requestOf("/p", "GET");
    EXPECT_EQ(second.header("User-Agent"), "");
    EXPECT_FALSE(second.has("X-Default") || second.has("X-Key"));
}

TEST_F(ClientTest, SendsEachKindOfBody) {
    const auto file = ModelBase::toHttpContent("not this name"_t, "bytes"_t, "text/plain"_t);
    file->setFileName("f.txt"_t);
    const Texts none, form{{"b", "2 &ü"}, {"a", "1"}};
    const std::string json = "application/json", multipart = "multipart/form-data";
    const std::string urlencoded = "application/x-www-form-urlencoded; charset=utf-8";
    const std::string textParts = "--B\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\n1"
                                  "\r\n--B\r\nContent-Disposition: form-data; name=\"b\"\r\n\r\n2 &ü";
    const std::string filePart = "--B\r\nContent-Disposition: form-data; name=\"f\"; filename=\"f.txt\"\r\n"
                                 "Content-Type: text/plain\r\n\r\nbytes";
    const struct {
        std::shared_ptr<IHttpBody> body;
        Texts form;
        Files files;
        std::string type;
        std::string sentType;
        std::string sentBody;
    } rows[] = {
        {std::make_shared<JsonBody>(web::json::value::string("ü"_t)), none, {}, json, json, "\"ü\""},
        {std::make_shared<BinaryBody>("\0\xFF", 2), none, {}, "a/b; c=d", "a/b; c=d", std::string("\0\xFF", 2)},
        {std::make_shared<BinaryBody>("", 0), none, {}, "a/b", "a/b", ""},
        {nullptr, form, {}, json, json, R"({"a":"1","b":"2 &ü"})"},
        {nullptr, {{"a", ""}}, {}, json, json, R"({"a":""})"},
        {nullptr, {{"a", ""}}, {}, "text/plain", urlencoded, "a="},
        {nullptr, none, {}, json, "", ""},
        {nullptr, form, {}, multipart, multipart, textParts + "\r\n--B--\r\n"},
        {nullptr, none, {}, multipart, multipart, "\r\n--B--\r\n"},
        {nullptr, form, {{"f", file}}, multipart, multipart, textParts + "\r\n" + filePart + "\r\n--B--\r\n"},
        {nullptr, none, {{"f", file}}, multipart, multipart, filePart + "\r\n--B--\r\n"},
        {nullptr, form, {}, "text/plain", urlencoded, "a=1&b=2%20%26%C3%BC"},
        {nullptr, form, {}, "Application/JSON", urlencoded, "a=1&b=2%20%26%C3%BC"},
        {nullptr, none, {}, "text/plain", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type + " " + row.sentBody);
        const Request request = requestOf("/p", "POST", none, row.body, none, row.form, row.files, row.type);
        EXPECT_EQ(request.header("Content-Type").substr(0, request.header("Content-Type").find("; boundary=")),
                  row.sentType);
        EXPECT_EQ(request.body, row.sentBody);
    }
    EXPECT_EQ(file->getName(), "not this name");
}

TEST_F(ClientTest, SendsWhatABodyThatSeeksInItsStreamWrote) {
    struct Seeking final : IHttpBody {
        void writeTo(std::ostream& stream) override {
            stream << stream.tellp() << "????:" << stream.tellp();
            stream.seekp(1).put('#') << stream.tellp(); // Over what is there; the rest stays.
            stream.seekp(-1, std::ios::end) << "end";   // From within on, beyond it.
            stream.seekp(-4, std::ios::cur) << "m" << stream.tellp();
            stream.seekp(0, std::ios::end) << stream.tellp();
            stream << std::boolalpha;
            for (const auto which : {std::ios::out, std::ios::in}) {
                stream << (stream.rdbuf()->pubseekpos(2, which) == std::streampos(2));
            }
            for (const std::streamoff nowhere : {-1000, 1000}) {
                stream << stream.seekp(nowhere, std::ios::cur).fail();
                stream.clear();
                stream << stream.fail();
            }
        }
    };
    Seeking body;
    std::ostringstream expected;
    body.writeTo(expected);
    EXPECT_EQ(requestOf("/p", "POST", Texts(), std::make_shared<Seeking>()).body, expected.str());
}

TEST_F(ClientTest, LetsAContentTypeAmongTheHeadersWin) {
    const auto body = std::make_shared<JsonBody>(web::json::value(1));
    EXPECT_EQ(requestOf("/p", "POST", Texts(), body, Texts{{"content-type", "own/type"}}).header("Content-Type"),
              "own/type");
}

TEST_F(ClientTest, RefusesConflictsOfParametersInTheCall) {
    const auto body = std::make_shared<JsonBody>(web::json::value(1));
    const Files files{{"f", ModelBase::toHttpContent("f"_t, "x"_t)}};
    const Texts none, form{{"a", "1"}};
    const std::string withForm = "400 Cannot have body and form params|no content";
    const std::string withFiles = "400 Cannot have body and file params|no content";
    const std::string notMultipart =
        "400 Operations with file parameters must be called with multipart/form-data|no content";
    EXPECT_EQ(apiErrorOf([&] { call("/p", "POST", none, body, none, form); }), withForm);
    EXPECT_EQ(apiErrorOf([&] { call("/p", "POST", none, body, none, form, files); }), withForm);
    EXPECT_EQ(apiErrorOf([&] { call("/p", "POST", none, body, none, none, files); }), withFiles);
    EXPECT_EQ(apiErrorOf([&] { call("/p", "POST", none, nullptr, none, form, files); }), notMultipart);
    EXPECT_EQ(apiErrorOf([&] { call("/p", "POST", none, nullptr, none, none, files, "Multipart/form-data"); }),
              notMultipart);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(ClientTest, RefusesInTheCallWhatCantBeSent) {
    const Texts none;
    for (const std::string& bad : {std::string("a\r"), std::string("a\nX: 1"), std::string("a\0", 2)}) {
        const auto refused = [&](const Texts& headers, const std::string& method, const std::string& type) {
            return messageOf<std::invalid_argument>(
                [&] { call("/p", method, none, nullptr, headers, none, {}, type); });
        };
        EXPECT_EQ(refused({{"X-Name", bad}}, "GET", "t"), "the header \"X-Name\" holds CR, LF or NUL");
        EXPECT_EQ(refused({{bad, "x"}}, "GET", "t"),
                  ("the name of the header \"" + bad + "\" holds CR, LF or NUL").c_str());
        EXPECT_EQ(refused({}, "GET", bad), "the header \"Content-Type\" holds CR, LF or NUL");
        EXPECT_EQ(refused({}, bad, "t"), "the method holds CR, LF or NUL");
        configuration->setUserAgent(text(bad));
        EXPECT_EQ(refused({}, "GET", "t"), "the header \"User-Agent\" holds CR, LF or NUL");
        configuration->setUserAgent("fine"_t);
    }
    for (const std::string method : {"", "GET /other", "GET\t"}) {
        EXPECT_EQ(messageOf<std::invalid_argument>([&] { call("/p", method); }),
                  ("the method \"" + method + "\" is not one word").c_str());
    }
    for (const std::string name : {"", "X Y", "X\tY", "X: Y", "X:Y"}) {
        EXPECT_EQ(messageOf<std::invalid_argument>([&] {
                      call("/p", "GET", none, nullptr, {{name, "1"}});
                  }),
                  "the name of the header \"" + name + "\" is not one word");
    }
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { call("/p#f", "GET"); }),
              "the path \"/p#f\" has a fragment; percent-encode \"#\"");
    messageOf<std::invalid_argument>([&] { call("//evil.example/p", "GET"); });
    messageOf<std::invalid_argument>([&] { call("http://evil.example/p", "GET"); });
    messageOf<web::uri_exception>([&] { call("/a b", "GET"); });
    const auto sendFile = [&](const std::shared_ptr<HttpContent>& file) {
        call("/p", "POST", none, nullptr, none, none, {{"f", file}}, "multipart/form-data");
    };
    messageOf<std::invalid_argument>([&] { sendFile(nullptr); });
    messageOf<std::invalid_argument>([&] { sendFile(std::make_shared<HttpContent>()); });
    EXPECT_TRUE(server.requests().empty());
    struct Unwritten final : IHttpBody {
        void writeTo(std::ostream&) override { throw std::logic_error("the body was written"); }
    };
    messageOf<std::logic_error>([&] { call("/p", "POST", none, std::make_shared<Unwritten>()); });
    struct TooLong final : IHttpBody {
        void writeTo(std::ostream& stream) override { stream.write("x", std::numeric_limits<std::streamsize>::max()); }
    };
    messageOf<std::length_error>([&] { call("/p", "POST", none, std::make_shared<TooLong>()); });
    for (const std::string url : {"", "no url", "ftp://127.0.0.1"}) {
        configuration->setBaseUrl(text(url));
        EXPECT_THROW(call("/p", "GET"), std::exception) << url;
    }
    messageOf<std::invalid_argument>([&] { call("/a b", "POST", none, std::make_shared<Unwritten>()); });
    client->setConfiguration(nullptr);
    messageOf<std::invalid_argument>([&] { call("/p", "GET"); });
}

TEST_F(ClientTest, NeedsTheBodyOnlyDuringTheCall) {
    server.reply(Reply::of(200, "OK", "", ""));
    auto file = ModelBase::toHttpContent("f"_t, "x"_t);
    auto task = call("/p", "POST", {}, nullptr, {}, {}, {{"f", file}}, "multipart/form-data");
    EXPECT_EQ(file.use_count(), 1);
    file->setData(nullptr);
    client = std::make_shared<ApiClient>(nullptr);
    configuration->setBaseUrl(""_t);
    EXPECT_EQ(task.get().status_code(), 200);
}

/// A file whose reading fails somewhere, opened when it is asked for.
class FailingFile final : public HttpContent {
public:
    explicit FailingFile(std::size_t good) : m_Good(good) {}
    std::shared_ptr<std::istream> getData() const override {
        struct Buffer final : std::streambuf {
            explicit Buffer(std::size_t size) : bytes(size, 'x') { setg(bytes.data(), bytes.data(), &bytes[size]); }
            int_type underflow() override { throw std::runtime_error("the disk is gone"); }
            std::string bytes;
        };
        struct Stream final : std::istream {
            explicit Stream(std::size_t size) : std::istream(nullptr), buffer(size) { rdbuf(&buffer); }
            Buffer buffer;
        };
        return std::make_shared<Stream>(m_Good);
    }
    utility::string_t getFileName() const override { return "own.txt"_t; }

private:
    std::size_t m_Good;
};

TEST_F(ClientTest, SendsWhatAFileYieldsAndTheRestOfTheBody) {
    constexpr std::size_t block = 16384;
    for (const std::size_t good : {std::size_t{0}, std::size_t{1}, block - 1, block, 2 * block + 10}) {
        const Request request = requestOf("/p", "POST", Texts(), nullptr, Texts(), Texts{{"after", "rest"}},
                                          Files{{"f", std::make_shared<FailingFile>(good)},
                                                {"g", ModelBase::toHttpContent("g"_t, text(std::string(block, 'y')))}},
                                          "multipart/form-data");
        EXPECT_EQ(request.body, "--B\r\nContent-Disposition: form-data; name=\"after\"\r\n\r\nrest\r\n--B\r\n"
                                "Content-Disposition: ; name=\"f\"; filename=\"own.txt\"\r\n\r\n" +
                                    std::string(good, 'x') +
                                    "\r\n--B\r\nContent-Disposition: form-data; name=\"g\"\r\n\r\n" +
                                    std::string(block, 'y') + "\r\n--B--\r\n");
    }
}

TEST_F(ClientTest, SendsADirectoryAsAnEmptyFile) {
    // It opens like a file, claims to be as large as can be, and can't be read.
    const auto directory = ModelBase::toHttpContent("f"_t, ""_t);
    directory->setData(std::make_shared<std::ifstream>(testing::TempDir()));
    const Request request = requestOf("/p", "POST", Texts(), nullptr, Texts(), Texts{{"after", "rest"}},
                                      Files{{"f", directory}}, "multipart/form-data");
    EXPECT_EQ(request.body, "--B\r\nContent-Disposition: form-data; name=\"after\"\r\n\r\nrest\r\n--B\r\n"
                            "Content-Disposition: form-data; name=\"f\"\r\n\r\n\r\n--B--\r\n");
}

TEST_F(ClientTest, ReadsTheBodyInAllItsWays) {
    const auto readToEnd = [this] {
        concurrency::streams::container_buffer<std::string> target;
        soon(call("/p", "GET").get().body().read_to_end(target));
        return target.collection();
    };
    const std::string block(100000, 'x');
    server.reply(Reply::of(200, "OK", "", block));
    EXPECT_EQ(readToEnd(), block);
    server.reply(Reply::chunked({"[1,", "2]"}));
    EXPECT_EQ(call("/p", "GET").get().extract_json().get().serialize(), "[1,2]");
    // One that broke off must not look like one that has ended.
    server.reply(Reply::raw("HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\n").then({}, block));
    messageOf<web::http::http_exception>([&] { readToEnd(); });
    server.reply(Reply::raw("HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\n").then({}, block));
    messageOf<web::http::http_exception>([&] { call("/p", "GET").get().extract_vector().get(); });
}

TEST_F(ClientTest, OpensAConnectionForEachCallAndClosesIt) {
    if (isOverCurl()) {
        GTEST_SKIP() << "it keeps connections";
    }
    for (std::size_t calls = 1; calls <= 3; ++calls) {
        server.reply(Reply::of(200, "OK", "", "x").endingWith(Reply::Ending::KeepOpen));
        EXPECT_EQ(call("/p", "GET").get().extract_string(true).get(), "x");
        EXPECT_EQ(server.connections(), calls);
        EXPECT_TRUE(server.waitForCloses(calls));
    }
    // Also where a body is not read, or not wanted.
    const Reply kept = Reply::of(200, "OK", "Content-Type: text/html\r\n", "x").endingWith(Reply::Ending::KeepOpen);
    const SchemaApi schemas(client);
    server.reply(kept);
    call("/p", "GET").get();
    EXPECT_TRUE(server.waitForCloses(4));
    server.reply(kept);
    messageOf<ApiException>([&] { schemas.get_SchemasSchema_instanceId("L"_t, "i"_t).get(); });
    EXPECT_TRUE(server.waitForCloses(5));
    server.reply(Reply::redirect(302, "/base/next").endingWith(Reply::Ending::KeepOpen));
    server.reply(Reply::of(200, "OK", "", "x").endingWith(Reply::Ending::KeepOpen));
    schemas.delete_SchemasSchema_instanceId("L"_t, "i"_t).get();
    EXPECT_TRUE(server.waitForCloses(7));
    EXPECT_EQ(server.connections(), 7U);
}

TEST_F(ClientTest, LeavesEveryStatusToTheCaller) {
    for (const int status : {204, 304, 400, 404, 500, 503}) {
        server.reply(Reply::of(status, "Any", "", ""));
        EXPECT_EQ(call("/p", "GET").get().status_code(), status);
    }
}

TEST_F(ClientTest, FailsInTheTaskWhenNobodyAnswers) {
    server.reply(Reply{{}, Reply::Ending::Reset});
    auto task = call("/p", "GET");
    messageOf<web::http::http_exception>([&] { task.get(); });
    const std::string nobody = RecordingServer().url();
    configuration->setBaseUrl(text(nobody));
    auto refused = SchemaApi(client).select_SchemasSchema("L"_t);
    messageOf<web::http::http_exception>([&] { refused.get(); });

    configuration->setBaseUrl(text(server.url()));
    configuration->getHttpConfig().set_timeout(std::chrono::seconds(1));
    server.reply(Reply{{}, Reply::Ending::KeepOpen});
    auto late = SchemaApi(client).select_SchemasSchema("L"_t);
    messageOf<web::http::http_exception>([&] { late.get(); });
}

/// The client's private headers: what must never reach another server.
const Texts privates{{"Authorization", "Bearer t"}, {"X-Private", "p"}, {"Cookie", "c"}, {"Accept", "a/b"}};

TEST_F(ClientTest, FollowsRedirectsOfItsServiceWithAllHeaders) {
    const struct {
        int status;
        std::string method;
        std::string thenMethod;
    } rows[] = {{301, "GET", "GET"},  {301, "POST", "GET"}, {302, "POST", "GET"},  {302, "DELETE", "DELETE"},
                {303, "POST", "GET"}, {303, "PUT", "GET"},  {307, "POST", "POST"}, {308, "PUT", "PUT"},
                {307, "GET", "GET"},  {301, "PUT", "PUT"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.status) + " " + row.method);
        const bool hasBody = row.method[0] == 'P';
        server.reply(Reply::redirect(row.status, row.status % 2 != 0 ? "/base/new?a=1" : server.url() + "/new?a=1"));
        server.reply(Reply::of(200, "OK", "", "arrived"));
        const auto body = hasBody ? std::make_shared<BinaryBody>("bytes", 5) : nullptr;
        auto response = call("/old", row.method, {}, body, privates, {}, {}, "t/t").get();
        EXPECT_EQ(response.extract_string(true).get(), "arrived");
        const Request second = server.requests().back();
        EXPECT_EQ(second.method, row.thenMethod);
        EXPECT_EQ(second.target, "/base/new?a=1");
        EXPECT_EQ(second.header("User-Agent"), "forms-test/1");
        for (const auto& [name, value] : privates) {
            EXPECT_EQ(second.header(name), value);
        }
        const bool keepsBody = hasBody && row.thenMethod != "GET";
        EXPECT_EQ(second.body, keepsBody ? "bytes" : "");
        EXPECT_EQ(second.header("Content-Type"), keepsBody ? "t/t" : "");
    }
    server.reply(Reply::redirect(307, "/base/new"));
    server.reply(Reply::of(200, "OK", "", ""));
    call("/old", "GET", {}, nullptr, {{"Host", "own.example"}}).get();
    EXPECT_EQ(server.requests().rbegin()[1].header("Host"), "own.example");
    EXPECT_EQ(server.requests().back().header("Host"), server.origin().substr(7)) << "where the redirect leads to";
    server.reply(Reply::redirect(303, "/base/new"));
    server.reply(Reply::of(200, "OK", "", ""));
    call("/old", "HEAD").get();
    EXPECT_EQ(server.requests().back().method + server.requests().back().target, "HEAD/base/new");
    server.reply(Reply::raw("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n").endingWith(Reply::Ending::KeepOpen));
    const auto head = call("/x", "HEAD").get();
    EXPECT_EQ(head.headers().content_length(), 9U);
    EXPECT_EQ(head.content_ready().get().extract_string(true).get(), "") << "none comes";
    server.reply(Reply::redirect(303, "/base/one"));
    server.reply(Reply::redirect(307, "/base/two"));
    server.reply(Reply::of(200, "OK", "", ""));
    call("/old", "POST", {}, std::make_shared<BinaryBody>("bytes", 5), {}, {}, {}, "t/t").get();
    EXPECT_EQ(server.requests().back().target + server.requests().back().header("Content-Type"), "/base/two");
}

TEST_F(ClientTest, NeverTakesPrivateHeadersToAnotherHost) {
    RecordingServer other;
    const auto body = std::make_shared<BinaryBody>("bytes", 5);
    server.reply(Reply::redirect(307, other.url() + "/x"));
    other.reply(Reply::redirect(307, server.url() + "/back"));
    server.reply(Reply::of(200, "OK", "", ""));
    call("/old", "POST", {}, body, privates, {}, {}, "t/t").get();
    for (const Request& request : {other.requests().at(0), server.requests().at(1)}) {
        EXPECT_FALSE(request.has("Authorization") || request.has("X-Private") || request.has("Cookie"));
        EXPECT_EQ(request.header("Accept"), "a/b");
        EXPECT_EQ(request.header("User-Agent"), "forms-test/1");
        EXPECT_EQ(request.header("Content-Type"), "t/t");
        EXPECT_EQ(request.body, "bytes");
    }
    EXPECT_EQ(other.requests().at(0).header("Host"), other.origin().substr(7));
    EXPECT_TRUE(other.takeErrors().empty());
    // A relative one is relative to the redirect before it. What the other host sends is decoded, as the settings say.
    configuration->getHttpConfig().set_request_compressed_response(true);
    server.reply(Reply::redirect(302, other.url() + "/b/x"));
    other.reply(Reply::redirect(302, "y"));
    other.reply(Reply::of(200, "OK", "Content-Encoding: gzip\r\n",
                          std::string("\x1f\x8b\x08\0\0\0\0\0\x02\x03\xab\0\0\x83\x16\xdc\x8c\1\0\0\0", 21)));
    auto response = call("/old", "GET", {}, nullptr, {{"Accept-Encoding", "own"}}).get();
    EXPECT_EQ(response.extract_string(true).get(), "x");
    EXPECT_EQ(server.requests().back().header("Accept-Encoding").substr(0, 3), "own");
    EXPECT_EQ(other.requests().back().target, "/base/b/y");
    EXPECT_EQ(other.requests().back().header("User-Agent"), "forms-test/1");
    const std::string encodings = other.requests().back().header("Accept-Encoding");
    EXPECT_NE(encodings.find("gzip"), std::string::npos);
    EXPECT_EQ(encodings.find("own"), std::string::npos);
    configuration->getHttpConfig().set_request_compressed_response(false);
    // Another name is another host, on the same port too: here another notation of the same address.
    const std::string port = server.origin().substr(server.origin().rfind(':'));
    server.reply(Reply::redirect(307, "http://127.1" + port + "/base/x"));
    server.reply(Reply::of(200, "OK", "", ""));
    Texts described = privates;
    described["Content-Type"] = "t/t";
    call("/old", "GET", {}, nullptr, described).get();
    const Request named = server.requests().back();
    EXPECT_EQ(named.header("Content-Type"), "t/t");
    EXPECT_EQ(named.header("Host"), "127.1" + port);
    EXPECT_FALSE(named.has("Authorization") || named.has("X-Private") || named.has("Cookie"));
}

TEST_F(ClientTest, FollowsManyRedirectsBetweenTwoHosts) {
    constexpr int hops = 60;
    RecordingServer other;
    for (int hop = 0; hop < hops; hop += 2) {
        server.reply(Reply::redirect(302, other.url() + "/" + std::to_string(hop)));
        other.reply(Reply::redirect(302, server.url() + "/" + std::to_string(hop + 1)));
    }
    server.reply(Reply::of(200, "OK", "", ""));
    configuration->getHttpConfig().set_max_redirects(hops);
    EXPECT_EQ(call("/old", "GET").get().status_code(), 200);
    EXPECT_EQ(server.requests().size() + other.requests().size(), hops + 1U);
    configuration->getHttpConfig().set_max_redirects(1);
    server.reply(Reply::redirect(302, other.url() + "/a"));
    other.reply(Reply::redirect(302, "/base/b"));
    EXPECT_EQ(call("/old", "GET").get().status_code(), 302) << "the limit holds elsewhere too";
    EXPECT_EQ(other.requests().back().target, "/base/a");
}

TEST_F(ClientTest, NeverTakesCredentialsOfTheSettingsToAnotherHost) {
    // The HTTP library never frees the credentials that it decrypts.
    turnLeakCheckOff();
    RecordingServer other;
    configuration->getHttpConfig().set_credentials(web::credentials("user"_t, "secret"_t));
    server.reply(Reply::redirect(302, server.url() + "/same"));
    server.reply(Reply::redirect(302, other.url() + "/other"));
    other.reply(Reply::of(200, "OK", "", ""));
    call("/old", "GET").get();
    for (const Request& request : {server.requests().at(0), server.requests().at(1)}) {
        EXPECT_EQ(request.header("Authorization"), "Basic dXNlcjpzZWNyZXQ=");
    }
    EXPECT_FALSE(other.requests().at(0).has("Authorization"));

    web::http::client::http_client_config settings;
    int sockets = 0;
    settings.set_nativehandle_options([&sockets](web::http::client::native_handle handle) {
        ++sockets;
        auto* const socket = static_cast<boost::asio::ip::tcp::socket*>(handle);
        if (socket->is_open()) { // as it is over curl, where it must know its protocol
            socket->set_option(boost::asio::ip::unicast::hops(64));
        }
    });
    web::http::oauth2::experimental::oauth2_config oauth("id"_t, "key"_t, "http://a/"_t, "http://t/"_t, "http://r/"_t);
    oauth.set_token(web::http::oauth2::experimental::oauth2_token("token"_t));
    settings.set_oauth2(oauth);
    configuration->setHttpConfig(settings);
    server.reply(Reply::redirect(302, other.url() + "/other"));
    other.reply(Reply::of(200, "OK", "", ""));
    call("/old", "GET").get();
    EXPECT_EQ(server.requests().back().header("Authorization"), "Bearer token");
    EXPECT_FALSE(other.requests().back().has("Authorization"));
    EXPECT_EQ(other.requests().back().target, "/base/other");
    EXPECT_EQ(sockets, 2) << "the other settings hold for the other host too";
    EXPECT_TRUE(other.takeErrors().empty());
}

TEST_F(ClientTest, StopsRedirectsAtTheLimitAndInLoops) {
    const auto statusAfter = [&](std::size_t limit, std::size_t requests, auto... locations) {
        configuration->getHttpConfig().set_max_redirects(limit);
        (server.reply(Reply::redirect(302, locations)), ...);
        const std::size_t before = server.requests().size();
        const auto status = call("/0", "GET").get().status_code();
        EXPECT_EQ(server.requests().size() - before, requests);
        return status;
    };
    EXPECT_EQ(statusAfter(0, 1, "/base/1"), 302);
    EXPECT_EQ(statusAfter(2, 3, "/base/1", "/base/2", "/base/3"), 302);
    EXPECT_EQ(statusAfter(10, 2, "/base/1", "/base/0"), 302);
    EXPECT_EQ(statusAfter(10, 1, "/base/0"), 302);
    EXPECT_EQ(statusAfter(10, 2, "/base/1#a", "/base/0#b"), 302);
    EXPECT_EQ(server.requests().back().target, "/base/1") << "a fragment is not sent";
    server.reply(Reply::redirect(302, "/base/0?again"));
    server.reply(Reply::of(200, "OK", "", ""));
    EXPECT_EQ(call("/0", "GET").get().status_code(), 200) << "another query is no loop";
    EXPECT_EQ(statusAfter(10, 1, "ftp://127.0.0.1/x"), 302);
    EXPECT_EQ(statusAfter(10, 1, ""), 302);
    server.reply(Reply::of(302, "Found", "", ""));
    EXPECT_EQ(call("/0", "GET").get().status_code(), 302);
    for (const int status : {201, 300, 305, 306}) {
        server.reply(Reply::redirect(status, "/base/1"));
        EXPECT_EQ(call("/0", "GET").get().status_code(), status);
    }
}

} // namespace
} // namespace forms_test
