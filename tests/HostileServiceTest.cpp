#include "support/Listener.h"
#include "support/Seeds.h"
#include "support/ServiceTest.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <future>
#include <map>

/// What a broken or hostile service, or a network in between, may do to the library: each case with its exact outcome.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;
using namespace std::chrono_literals;
using Ending = Reply::Ending;

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
// Everything is slower there.
constexpr std::size_t downloadMegabytes = 20;
constexpr auto shortTimeOut = 1500ms;
#else
constexpr std::size_t downloadMegabytes = 200;
constexpr auto shortTimeOut = 500ms;
#endif

using Client = std::shared_ptr<ApiClient>;

/// Gives the result of a call as a text, or throws its failure.
using Result = std::function<std::string()>;

/// A kind of operation, and the letter that the fuzz target has for it.
struct Call {
    char letter;
    Result (*begin)(const Client&);
};

template <class M>
Result textOf(const pplx::task<std::shared_ptr<M>>& task) {
    return [task] { return task.get()->toJson().serialize(); };
}

const Call file{
    'g', [](const Client& client) { return textOf(FileApi(client).get_DynamicSchemaFile_instanceId("L", "i")); }};
const Call style{'t', [](const Client& client) {
                     return textOf(FormStyleApi(client).get_FormsECMappingFormStyle_instanceId("L", "i"));
                 }};
const Call issue{'i', [](const Client& client) {
                     return textOf(BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("L", "i"));
                 }};
const Call workflow{'w', [](const Client& client) {
                        return textOf(WorkflowDefinitionApi(client).get_WorkflowDefinition_instanceId("L", "i"));
                    }};
const Call comments{'s',
                    [](const Client& client) { return textOf(CommentApi(client).select_DynamicSchemaComment("L")); }};
const Call count{'c', [](const Client& client) { return textOf(CommentApi(client).count_DynamicSchemaComment("L")); }};
const Call download{'f', [](const Client& client) -> Result {
                        const auto task = FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i");
                        return [task] { return bytesOf(*task.get().getData()); };
                    }};
const Call remove{'d', [](const Client& client) -> Result {
                      const auto task = FileApi(client).delete_DynamicSchemaFile_instanceId("L", "i");
                      return [task] {
                          task.get();
                          return std::string();
                      };
                  }};

const std::string broken = "http_exception: ...";
const std::string noJson = "json_exception: * Line...";
const std::string ok = "HTTP/1.1 200 OK\r\n";
const std::string chunkedHead = ok + "Transfer-Encoding: chunked\r\n\r\n";

class HostileServiceTest : public ServiceTest {
protected:
    /// "ok" and the result, or the exception's type and text; of an ApiException its code and content too.
    std::string outcomeOf(const Call& call) const {
        const Result result = call.begin(client); // Nothing that a service does fails the call itself.
        try {
            return "ok " + result();
        } catch (const ApiException&) {
            return "ApiException " + apiErrorOf([] { throw; });
        } catch (const web::http::http_exception& error) {
            EXPECT_EQ(typeid(error), typeid(web::http::http_exception));
            EXPECT_NE(std::string(error.what()), "");
            return std::string("http_exception: ") + error.what();
        } catch (const web::json::json_exception& error) {
            return std::string("json_exception: ") + error.what();
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(typeid(error), typeid(std::runtime_error));
            return std::string("runtime_error: ") + error.what();
        }
    }

    void seedOf(const Reply& reply, const Call& call) const {
        std::string bytes;
        for (const auto& piece : reply.pieces) {
            for (std::size_t i = 0; i < piece.times && bytes.size() <= longestSeed; ++i) {
                bytes += piece.bytes;
            }
        }
        const bool decodes = configuration->getHttpConfig().request_compressed_response();
        seed("OperationResponse", (decodes ? "z" : "") + (call.letter + bytes));
    }

    /// `expected` is the whole outcome, or, if it ends in "...", how it begins.
    void check(const Reply& reply, const Call& call, std::string expected) {
        seedOf(reply, call);
        server.reply(reply);
        const auto start = std::chrono::steady_clock::now();
        std::string outcome = outcomeOf(call);
        EXPECT_LT(std::chrono::steady_clock::now() - start, RecordingServer::patience / 2) << "no time-out was needed";
        if (expected.size() > 3 && expected.substr(expected.size() - 3) == "...") {
            expected.resize(expected.size() - 3);
            outcome.resize(expected.size());
        }
        EXPECT_EQ(outcome, expected);
    }
    void checkJson(const std::string& body, const Call& call, const std::string& expected) {
        SCOPED_TRACE(body.substr(0, 100));
        check(Reply::json(body), call, expected);
    }
    /// The same for one property of the entity.
    void checkProperty(const std::string& key, const std::string& value, const Call& call, std::string expected) {
        if (expected.rfind("ok ", 0) == 0) {
            expected = "ok {\"instance\":{\"properties\":{" + expected.substr(3) + "}}}";
        } else if (std::string(":.[").find(expected.front()) != std::string::npos) {
            expected = "json_exception: instance.properties." + key + expected;
        }
        checkJson("{\"instance\":{\"properties\":{\"" + key + "\":" + value + "}}}", call, expected);
    }
};

TEST_F(HostileServiceTest, BrokenStatusLinesAndHeaders) {
    struct Row {
        std::string bytes;
        std::string json;
        std::string removal;
        /// Those two over libcurl, where they differ.
        std::vector<std::string> overCurl = {};
    };
    const std::vector<std::string> refused{broken, broken}, read{"ok {}", "ok "};
    const std::string error = "ApiException 404 error calling get_DynamicSchemaFile_instanceId: |";
    const std::string removalError = "ApiException 404 error calling delete_DynamicSchemaFile_instanceId: |";
    const std::string two = "Content-Length: 2\r\n\r\n{}";
    const Row rows[] = {{"", broken, broken},
                        {"HTTP/1.", broken, broken},
                        {"HTTP/1.1 200 OK\r\nContent-Type: appl", broken, broken},
                        {"HTTP/1.1 200 OK\r\n", broken, broken},
                        {"SSH-2.0-x\r\n\r\n", broken, broken},
                        {"HTTP/1.1 70000 x\r\n" + two, broken, broken},
                        {"HTTP/1.1 200\r\n" + two, "ok {}", "ok "},
                        {"HTTP/1.1 404 \r\n" + two, error + "{}", removalError + "{}"},
                        {"HTTP/1.1 404\r\n\r\n", error, removalError},
                        {"HTTP/1.1 200 OK\r\nno colon\r\n" + two, "ok {}", "ok ", refused},
                        // An interim reply is not awaited, but by libcurl: it counts as the answer.
                        {"HTTP/1.1 100 Continue\r\n\r\n" + ok + two, noJson, "ok ", read},
                        {"HTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n" + ok + two, noJson, "ok ", read},
                        {"HTTP/1.1 101 Switching Protocols\r\n\r\n", noJson, "ok ", refused},
                        {"HTTP/1.1 204 No Content\r\n\r\n", noJson, "ok "},
                        {"HTTP/1.1 304 Not Modified\r\n\r\n", noJson, "ok "},
                        {"HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n", noJson, "ok "},
                        {"HTTP/1.1 300 Multiple Choices\r\n" + two, "ok {}", "ok "},
                        {"HTTP/1.1 200 OK\r\n" + std::string(1000000, 'h') + ": x\r\n" + two, "ok {}", "ok ", refused}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.bytes.substr(0, 60));
        const bool differs = isOverCurl() && !row.overCurl.empty();
        check(Reply::raw(row.bytes), file, differs ? row.overCurl[0] : row.json);
        check(Reply::raw(row.bytes), remove, differs ? row.overCurl[1] : row.removal);
    }
}

TEST_F(HostileServiceTest, BrokenBodies) {
    struct Row {
        std::string name;
        /// What follows the status line.
        Reply rest;
        std::string json;
        std::string bytes;
        /// The content of the exception, if the status is 500.
        std::string errorContent;
        /// Over libcurl, where any of it differs: the outcomes of reading, downloading, deleting, and with status 500.
        std::vector<std::string> overCurl = {};
    };
    const std::string error = "ApiException 500 error calling get_DynamicSchemaFile_instanceId: Broken|";
    const std::vector<std::string> refused(4, broken), more{broken, broken, "ok ", error + "{}"};
    const std::string length = "Content-Length: ", chunked = "Transfer-Encoding: chunked\r\n\r\n";
    const std::string block(65536, 'x');
    const std::string noLength = "http_exception: the response's Content-Length is no length: ";
    const std::string otherLength = "http_exception: the response's body is not as long as its Content-Length: ";
    const std::string tooLong = length + std::to_string(block.size() + 10) + "\r\n\r\n" + block + "x";
    const Row rows[] = {
        {"too short a body", Reply::raw(length + "10\r\n\r\n{}"), broken, broken, "", more},
        {"too short a long body",
         Reply::raw(tooLong),
         broken,
         broken,
         block,
         {broken, broken, "ok ", error + block + "x"}},
        {"too long a body", Reply::raw(length + "1\r\n\r\n{}"), noJson, "ok {", "{"},
        {"no length", Reply::raw("\r\n{}"), "ok {}", "ok {}", "{}"},
        {"reset", Reply::raw(length + "10\r\n\r\n{}").endingWith(Ending::Reset), broken, broken, "", more},
        {"reset without length", Reply::raw("\r\n{}").endingWith(Ending::Reset), broken, broken, "", more},
        {"negative length", Reply::raw(length + "-1\r\n\r\n{}"), noLength + "-1", noLength + "-1", "{}", refused},
        {"no number", Reply::raw(length + "two\r\n\r\n{}"), broken, broken, "", refused},
        {"beyond 64 bits", Reply::raw(length + "99999999999999999999999\r\n\r\n{}"),
         otherLength + "99999999999999999999999", otherLength + "99999999999999999999999", "{}"},
        {"terabytes", Reply::raw(length + "9999999999999\r\n\r\n{}"), broken, broken, "", more},
        {"two lengths", Reply::raw(length + "2\r\n" + length + "3\r\n\r\n{}"), noLength + "2, 3", noLength + "2, 3",
         "{}", more},
        {"another and the length", Reply::raw(length + "2\r\n" + length + "02, 4\r\n\r\n{}"), noLength + "2, 02, 4",
         noLength + "2, 02, 4", "{}"},
        {"the length twice", Reply::raw(length + "2\r\n" + length + "2\r\n\r\n{}"), "ok {}", "ok {}", "{}"},
        {"the length in one line", Reply::raw(length + "2 ,\t02\r\n\r\n{}"), "ok {}", "ok {}", "{}"},
        {"a length with zeros", Reply::raw(length + "0002\r\n\r\n{}"), "ok {}", "ok {}", "{}"},
        {"no length, and zeros", Reply::raw(length + "00\r\n\r\n"), noJson, "ok ", ""},
        {"a signed length", Reply::raw(length + "+2\r\n\r\n{}"), noLength + "+2", noLength + "+2", "{}"},
        {"a length beside chunks", Reply::raw(length + "7\r\n" + chunked + "2\r\n{}\r\n0\r\n\r\n"), "ok {}", "ok {}",
         "{}"},
        {"chunk cut off", Reply::raw(chunked + "5\r\n{}"), broken, broken, "", more},
        {"chunk reset", Reply::raw(chunked + "5\r\n{}").endingWith(Ending::Reset), broken, broken, "", more},
        {"no last chunk", Reply::raw(chunked + "2\r\n{}\r\n"), broken, broken, "{}"},
        {"no chunk size", Reply::raw(chunked + "zz\r\n{}\r\n0\r\n\r\n"), broken, broken, ""},
        {"huge chunk", Reply::raw(chunked + "7fffffff\r\n{}"), broken, broken, "", more},
        {"chunk beyond 64 bits", Reply::raw(chunked + "ffffffffffffffffff\r\n{}"), broken, broken, ""},
        {"negative chunk", Reply::raw(chunked + "-1\r\n{}\r\n0\r\n\r\n"), broken, broken, ""},
        {"more negative chunk", Reply::raw(chunked + "-2\r\n{}\r\n0\r\n\r\n"), broken, broken, ""},
        {"most negative chunk", Reply::raw(chunked + "-80000000\r\n{}"), broken, broken, ""},
        {"chunked and gzip", Reply::raw("Content-Encoding: gzip\r\n" + chunked + "3\r\n\x1f\x8b\x08\r\n0\r\n\r\n"),
         noJson, "ok \x1f\x8b\x08", "\x1f\x8b\x08"},
        {"other length than said, and an encoding",
         Reply::raw("Content-Encoding: identity\r\n" + length + "two\r\n\r\n{}"), broken, broken, "", refused},
        {"gzip without asking", Reply::raw("Content-Encoding: gzip\r\n" + length + "3\r\n\r\n\x1f\x8b\x08"), noJson,
         "ok \x1f\x8b\x08", "\x1f\x8b\x08"},
        {"empty", Reply::raw(length + "0\r\n\r\n"), noJson, "ok ", ""},
        {"empty and chunked", Reply::raw(chunked + "0\r\n\r\n"), noJson, "ok ", ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto withStatus = [&](const std::string& line) {
            Reply reply = row.rest;
            reply.pieces[0].bytes = line + reply.pieces[0].bytes;
            return reply;
        };
        const std::vector<std::string> expected =
            isOverCurl() && !row.overCurl.empty()
                ? row.overCurl
                : std::vector<std::string>{row.json, row.bytes, "ok ", error + row.errorContent};
        check(withStatus(ok), file, expected[0]);
        check(withStatus(ok), download, expected[1]);
        check(withStatus(ok), remove, expected[2]);
        check(withStatus("HTTP/1.1 500 Broken\r\n"), file, expected[3]);
    }
}

TEST_F(HostileServiceTest, SilenceEndsByTheTimeOut) {
    constexpr auto timeout = shortTimeOut;
    configuration->getHttpConfig().set_timeout(timeout);
    struct Row {
        std::string name;
        Reply reply;
        Call call;
        std::string expected;
    };
    const std::string length = ok + "Content-Length: 20\r\n\r\n";
    RecordingServer other;
    other.reply(Reply::raw("").endingWith(Ending::KeepOpen));
    const Row ending[] = {
        {"no answer", Reply::raw("").endingWith(Ending::KeepOpen), file, broken},
        {"stalled header", Reply::raw(ok + "X: ").endingWith(Ending::KeepOpen), file, broken},
        {"stalled body", Reply::raw(length + "{").endingWith(Ending::KeepOpen), file, broken},
        {"stalled chunk", Reply::raw(chunkedHead + "5\r\n{").endingWith(Ending::KeepOpen), file, broken},
        {"no next chunk", Reply::raw(chunkedHead + "1\r\n{\r\n").endingWith(Ending::KeepOpen), download, broken},
        {"stalled error", Reply::raw("HTTP/1.1 500 Slow\r\nContent-Length: 9\r\n\r\n").endingWith(Ending::KeepOpen),
         remove, "ApiException 500 error calling delete_DynamicSchemaFile_instanceId: Slow|"},
        {"stalled page",
         Reply::raw("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 9\r\n\r\n")
             .endingWith(Ending::KeepOpen),
         remove,
         "ApiException 500 error calling delete_DynamicSchemaFile_instanceId: unexpected response type: text/html|"},
        // It is restarted by each block of 64 KB, not by each byte.
        {"dripping header", Reply::raw(ok + "X: ").then(100ms, "x", 150), file, broken},
        {"dripping body", Reply::raw(length).then(100ms, " ", 150), download, broken},
        {"dripping after a block",
         Reply::raw(ok + "Content-Length: 99999\r\n\r\n" + std::string(70000, 'x')).then(100ms, " ", 150), download,
         broken},
        {"dripping after three blocks",
         Reply::raw(ok + "Content-Length: 300000\r\n\r\n" + std::string(200000, 'x')).then(100ms, " ", 150), download,
         broken},
        {"dripping without length", Reply::raw(ok + "\r\n").then(100ms, " ", 150), download, broken},
        // Another host, for which the settings are made anew.
        {"silence elsewhere", Reply::redirect(302, other.url() + "/x"), file, broken}};
    for (const Row& row : ending) {
        SCOPED_TRACE(row.name);
        const auto start = std::chrono::steady_clock::now();
        check(row.reply, row.call, row.expected);
        const auto took = std::chrono::steady_clock::now() - start;
        EXPECT_GE(took, timeout - 50ms);
        EXPECT_LT(took, 8 * timeout);
    }
    // Each leg has its own: here the redirect and the answer together take longer than one.
    configuration->getHttpConfig().set_timeout(4 * timeout);
    server.reply(Reply::raw("").then(1200ms, Reply::redirect(307, "/base/next").pieces[0].bytes));
    check(Reply::raw("").then(1200ms, Reply::json("{}").pieces[0].bytes), file, "ok {}");
    configuration->getHttpConfig().set_timeout(timeout);
    // So has each block of 64 KB.
    const std::string block(65536, 'x');
    const Reply slow = Reply::raw(ok + "Content-Length: 327680\r\n\r\n").then(timeout * 3 / 5, block, 5);
    check(slow, download, "ok xxx...");
    // Whole chunks restart it too, however small they are: this is a slow answer, not a silent one.
    check(Reply::raw(chunkedHead).then(100ms, "1\r\nx\r\n", 10).then(0ms, "0\r\n\r\n"), download, "ok xxxxxxxxxx");
    // Within a chunk libcurl doesn't tell them from bytes.
    check(Reply::raw(chunkedHead + "10\r\n").then(timeout / 8, "x", 16).then(0ms, "\r\n0\r\n\r\n"), download,
          isOverCurl() ? "ok xxxxxxxxxxxxxxxx" : broken);
    // A deletion is done when the status is there.
    check(Reply::raw(length).endingWith(Ending::KeepOpen), remove, "ok ");
}

TEST_F(HostileServiceTest, ConnectingAndSendingEndByTheTimeOut) {
    configuration->getHttpConfig().set_timeout(shortTimeOut);
    const std::string bytes(64U << 20U, 'x');
    const auto put = [&](const std::string& url) {
        configuration->setBaseUrl(url);
        const auto body = std::make_shared<BinaryBody>(bytes.data(), bytes.size());
        return client->callApi("/x", "PUT", {}, body, {}, {}, {}, "a/b").get().status_code();
    };
    const auto ends = [&](const std::string& what, const std::string& url) {
        SCOPED_TRACE(what);
        const auto start = std::chrono::steady_clock::now();
        messageOf<web::http::http_exception>([&] { put(url); });
        const auto took = std::chrono::steady_clock::now() - start;
        EXPECT_GE(took, shortTimeOut - 50ms);
        EXPECT_LT(took, 8 * shortTimeOut);
    };
    Listener full(0);
    full.keepOneWaiting();
    ends("no connection", full.url());
    const Listener mute;
    ends("nobody reads", mute.url());
    ends("no TLS handshake", mute.url("https"));
    // Each block of a body that makes way has its own, and so has the answer.
    constexpr auto timeout = 2 * shortTimeOut;
    configuration->getHttpConfig().set_timeout(timeout);
    Listener slow;
    const auto reader =
        std::async(std::launch::async, [&] { slow.readSlowly(timeout / 5, 4U << 20U, bytes.size(), ok + "\r\n"); });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(put(slow.url()), 200);
    EXPECT_GT(std::chrono::steady_clock::now() - start, 2 * timeout);
}

TEST_F(HostileServiceTest, DecodesWhatItAskedFor) {
    configuration->getHttpConfig().set_request_compressed_response(true);
    const std::string gzip("\x1f\x8b\x08\0\0\0\0\0\x02\x03\xab\x56\xca\xcc\x2b\x2e\x49\xcc\x4b\x4e\x55\xb2\xaa\x86\xb3"
                           "\x3d\x53\x94\xac\x94\x32\x95\x6a\x6b\x01\x64\xa6\x63\xe6\x1f\0\0\0",
                           43);
    check(Reply::of(200, "OK", "Content-Encoding: gzip\r\n", gzip), file, R"(ok {"instance":{"instanceId":"i"}})");
    EXPECT_NE(server.takeRequest().header("Accept-Encoding").find("gzip"), std::string::npos);
    check(Reply::raw(ok + "Content-Length: 9\r\n\r\n{}").endingWith(Ending::Close), file, broken);
    check(Reply::raw(ok + "Content-Length: -1\r\n\r\n{}"), file, broken); // One that is not compressed says its length.
    // The length of what it decodes says nothing of the text's: one that was cut off may come as a shorter one.
    check(Reply::of(200, "OK", "Content-Encoding: gzip\r\n", gzip.substr(0, 20)), download, "ok {\"instanc");
    for (const std::string encoding : {"gzip", "deflate"}) {
        const Reply garbage = Reply::of(200, "OK", "Content-Encoding: " + encoding + "\r\n", "garbage");
        check(garbage, file, "runtime_error: ...");
        check(garbage, download, "runtime_error: ...");
        check(garbage, remove, "ok ");
    }
    check(Reply::of(200, "OK", "Content-Encoding: gzip\r\n", gzip.substr(0, 20) + "?????"), file, noJson);
}

TEST_F(HostileServiceTest, OddMediaTypes) {
    const std::string name = R"({"instance":{"properties":{"Name":"t)";
    const std::string utf8 = name + "ü\"}}}";
    const std::string read = "ok " + utf8;
    const auto refused = [](const std::string& type) {
        return "ApiException 500 error calling get_DynamicSchemaFile_instanceId: unexpected response type: " + type +
               "...";
    };
    const auto utf16 = [](const std::string& mark, bool bigEndian, const std::string& text = "{}") {
        std::string bytes = mark;
        for (const char c : text) {
            bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
        }
        return bytes;
    };
    struct Row {
        std::string type;
        std::string body;
        std::string expected;
    };
    const std::string json = "application/json", half("\0\"\xD8\0\0\"", 6), longA("\0\1", 2);
    const Row rows[] = {{json + "; charset=utf-8; version=1", utf8, read},
                        {json + ";;;", utf8, read},
                        {json + "; charset=iso-8859-1;version=1", name + "\xFC\"}}}", read},
                        {json + "; version=1;\tCHARSET=iso-8859-1\t", name + "\xFC\"}}}", read},
                        {json + "; charset=", utf8, read},
                        {json + "; charset=\"", utf8, read},
                        {json + "; charset=klingon", utf8, read},
                        {json + "; charset=latin1", utf8, read},
                        {json + ";charset=\"ISO-8859-1\"", name + "\xFC\"}}}", read},
                        {json + "; charset=utf-16", utf16("\xFF\xFE", false), "ok {}"},
                        {json + "; charset=utf-16", utf16("", true), "ok {}"},
                        {json + "; charset=utf-16", utf16("\xFE\xFF", true), "ok {}"},
                        {json + "; charset=utf-16le", utf16("", false, name) + longA + utf16("", false, "\"}}}"),
                         "ok " + name + "Ā\"}}}"},
                        {json + "; charset=UTF-16LE", utf16("", false), "ok {}"},
                        {json + "; charset=utf-16be", utf16("", false), noJson},
                        {json + "; charset=utf-16be", half, "json_exception: UTF-16..."},
                        {json + "; charset=utf-16", utf8, noJson},
                        {json + "; charset=utf-16le", utf16("", false) + "x", "json_exception: UTF-16..."},
                        {"text/html; x=application/json", utf8, read},
                        {"application/jsonp", utf8, read},
                        {"Application/JSON", utf8, refused("Application/JSON")},
                        {"application/problem+json", utf8, refused("application/problem+json")},
                        {"text/plain", utf8, refused("text/plain")},
                        {"", utf8, refused("")}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.type);
        check(Reply::of(200, "OK", "Content-Type: " + row.type + "\r\n", row.body), file, row.expected);
    }
    check(Reply::of(200, "OK", "", utf8), file, read);
}

TEST_F(HostileServiceTest, TextsThatAreNoJson) {
    for (const std::string text : {"", " ", "{", "{}}", "{}x", "{}{}", "\xEF\xBB\xBF{}", "\xFF", "<html>", "{'a':1}",
                                   "{\"a\":1,}", "{\"a\":NaN}", "{\"a\":-Infinity}", "{\"a\":0x1}", "{\"a\":1.}",
                                   "{\"a\":\"\n\"}", "{\"a\":\"\\x\"}", "{\"a\":\"\\ud800\"}", "\"\\ud83dx\""}) {
        checkJson(text, file, noJson);
    }
    checkJson(R"("\ud83d\ud83d")", file, "json_exception: UTF-16...");
    checkJson(std::string(128, '[') + std::string(128, ']'), file, "ok {}");
    checkJson(std::string(129, '[') + std::string(129, ']'), file, noJson);
    checkJson(std::string(100000, '['), file, noJson);
    std::string objects;
    for (int i = 0; i < 100000; ++i) {
        objects += "{\"instance\":";
    }
    checkJson(objects, file, noJson);
    // What is JSON, but no object, holds no property.
    for (const std::string text : {"null", "true", "5", "\"x\"", "[]", "[{}]", " {} ", "{/*c*/}"}) {
        checkJson(text, file, "ok {}");
    }
}

TEST_F(HostileServiceTest, NumbersOutOfRange) {
    const std::string beyond32 = ": the number is beyond the range of a 32-bit integer";
    const std::string beyond64 = ": the number is beyond the range of a 64-bit integer";
    const std::string beyondDouble = ": the number is beyond the range of a double";
    for (const std::string number : {"2147483648", "-2147483649", "5000000000", "2147483648.0", "9223372036854775808",
                                     "18446744073709551616", "1e400", "-1e400"}) {
        checkProperty("Id", number, style, beyond32);
    }
    for (const std::string number :
         {"9223372036854775808", "-9223372036854777000", "18446744073709551615", "18446744073709551616",
          "-99999999999999999999", "1e19", "9223372036854775807.0", "1e400", "-1e400"}) {
        checkProperty("Size", number, file, beyond64);
    }
    using Texts = std::map<std::string, std::string>;
    for (const auto& [number, read] : Texts{{"2147483647", "2147483647"},
                                            {"-2147483648", "-2147483648"},
                                            {"-2147483648.9", "-2147483648"},
                                            {"1.9", "1"},
                                            {"-0.9", "0"},
                                            {"01", "1"}}) {
        checkProperty("Id", number, style, "ok \"Id\":" + read);
    }
    for (const auto& [number, read] : Texts{{"9223372036854775807", "9223372036854775807"},
                                            {"-9223372036854775808", "-9223372036854775808"},
                                            {"-9223372036854775808.0", "-9223372036854775808"},
                                            // The JSON library makes the same double of it.
                                            {"-9223372036854775809", "-9223372036854775808"},
                                            {"1e18", "1000000000000000000"},
                                            {"1e-400", "0"}}) {
        checkProperty("Size", number, file, "ok \"Size\":" + read);
    }
    checkProperty("Latitude", "1e400", issue, beyondDouble);
    checkProperty("Latitude", "\"NaN\"", issue, ": not a number");
    checkProperty("_ModelPinLocation", R"({"z":-1e400})", issue, ".z" + beyondDouble);
    checkProperty("c", "18446744073709551615", issue, "ok \"c\":18446744073709551615");
    checkProperty("c", "18446744073709551617", issue, "ok \"c\":1.8446744073709552e+19");
    // A custom property is JSON as it came: it is read, and refused when it is to be written.
    server.reply(Reply::json(R"({"instance":{"properties":{"c":1e400}}})"));
    const auto read = BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("L", "i").get();
    messageOf<std::invalid_argument>([&] { BaseClassApi(client).update_DynamicSchemaBaseClass("L", "i", read); });
}

TEST_F(HostileServiceTest, TextsAndKeys) {
    using Texts = std::map<std::string, std::string>;
    for (const auto& [text, read] :
         Texts{{R"("\ud83d\ude00")", "\"\U0001F600\""},
               {R"("a\u0000b")", R"("a\u0000b")"},
               // Text that is no UTF-8 is neither checked nor repaired: it comes out as it went in.
               {"\"\xC3\"", "\"\xC3\""},
               {"\"\xED\xA0\x80\"", "\"\xED\xA0\x80\""},
               {R"("\udc00")", "\"\xED\xB0\x80\""},
               {"5", "\"\""},
               {"{}", "\"\""}}) {
        checkProperty("Name", text, file, "ok \"Name\":" + read);
    }
    checkProperty("Name", "\"\xFF\"", file, noJson);
    // Of two members of one name the first counts for a fixed key, the last for a custom one.
    checkProperty("Status", R"("a","Status":"b")", issue, R"(ok "Status":"a")");
    checkProperty("Closed", R"(null,"Closed":true)", issue, "ok ");
    checkProperty("c", R"("a","c":"b")", issue, R"(ok "c":"b")");
    const std::string manyTwice = [] {
        std::string members;
        for (int i = 0; i < 1000; ++i) {
            members += (i == 0 ? "\"k0\":0" : ",\"k" + std::to_string(i / 2) + "\":0");
        }
        return "{\"instance\":{\"properties\":{" + members + "}}}";
    }();
    server.reply(Reply::json(manyTwice));
    const auto read = BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("L", "i").get();
    EXPECT_EQ(read->getInstance()->getProperties()->toJson().size(), 500U);
}

TEST_F(HostileServiceTest, Dates) {
    const std::string never = "1970-01-01T00:00:00Z";
    const std::map<std::string, std::string> dates = {{"1601-01-01T00:00:00.0000001Z", "1601-01-01T00:00:00.0000001Z"},
                                                      {"2024-02-29T12:00:00.1234567Z", "2024-02-29T12:00:00.1234567Z"},
                                                      {"2024-02-29T12:00:00.12345678Z", "2024-02-29T12:00:00.1234567Z"},
                                                      {"2024-02-29T12:00:00+02:00", "2024-02-29T10:00:00Z"},
                                                      {"2024-02-29T12:00:00", "2024-02-29T12:00:00Z"},
                                                      {"20240229T120000Z", "2024-02-29T12:00:00Z"},
                                                      {"2024-02-29", "2024-02-29T00:00:00Z"},
                                                      {"2024-02-29 12:00:00", "2024-02-29T00:00:00Z"},
                                                      {"2016-12-31T23:59:60Z", "2017-01-01T00:00:00Z"},
                                                      {"9999-12-31T23:59:59.999Z", "9999-12-31T23:59:59.999Z"},
                                                      {"0001-01-01T00:00:00Z", never},
                                                      {"1600-12-31T23:59:59Z", never},
                                                      {"1601-01-01T00:00:00Z", never},
                                                      {"10000-01-01T00:00:00Z", never},
                                                      {"2024-02-30T00:00:00Z", never},
                                                      {"2024-02-29T24:00:00Z", never},
                                                      {"2024-02-29T12:00:00-0200", never},
                                                      {"garbage", never},
                                                      {"", never}};
    for (const auto& [date, read] : dates) {
        checkProperty("CreatedDate", '"' + date + '"', file, R"(ok "CreatedDate":")" + read + '"');
    }
    for (const std::string last : {"9999-12-31T23:59:59.9990001Z", "9999-12-31T23:59:59-01:00"}) {
        server.reply(Reply::json(R"({"instance":{"properties":{"CreatedDate":")" + last + R"("}}})"));
        const auto read = FileApi(client).get_DynamicSchemaFile_instanceId("L", "i").get();
        EXPECT_TRUE(read->getInstance()->getProperties()->getCreatedDate().is_initialized());
        messageOf<std::out_of_range>([&] { FileApi(client).update_DynamicSchemaFile("L", "i", read); });
    }
}

TEST_F(HostileServiceTest, ListElementsOfOtherTypes) {
    checkProperty("StartStates", R"(["a",null,5,{},[]])", workflow, R"(ok "StartStates":["a","","","",""])");
    checkProperty("States", R"([null,5,"x",[],{"Id":"i"}])", workflow, R"(ok "States":[null,{},{},{},{"Id":"i"}])");
    checkProperty("States", R"([{},{"EditableProperties":{}}])", workflow, "[1].EditableProperties: not an array");
    checkProperty("Transitions", R"([{"Notes":"1"}])", workflow, "[0].Notes: not a number");
    const auto view = [](const std::string& camera) {
        return web::json::value::string("{\"cameraInfo\":{" + camera + "}}").serialize();
    };
    const std::string key = "_ModelViewDefinition", camera = ".cameraInfo.";
    checkProperty(key, view(R"("extents":[1,null])"), issue, camera + "extents[1]: not a number");
    checkProperty(key, view(R"("origin":["1"])"), issue, camera + "origin[0]: not a number");
    checkProperty(key, view(R"("origin":[1e400])"), issue,
                  camera + "origin[0]: the number is beyond the range of a double");
    checkProperty(key, view(R"("rotation":[[1],2])"), issue, camera + "rotation[1]: not an array");
    checkProperty(key, view(R"("rotation":[[1,{}]])"), issue, camera + "rotation[0][1]: not a number");
    checkProperty(key, view(R"("rotation":[[]])"), issue, "ok \"" + key + "\":" + view(R"("rotation":[[]])"));
    checkProperty(key, "\"\"", issue, ": * Line...");
    checkProperty(key, R"("\"\\ud83d\\ud83d\"")", issue, ": UTF-16...");
}

TEST_F(HostileServiceTest, ListsAndCounts) {
    const std::string beyond64 = "the number is beyond the range of a 64-bit integer";
    for (const std::string none : {"{}", "[]", "5", R"({"instances":null})", R"({"instances":[]})"}) {
        checkJson(none, comments, "ok {}");
        checkJson(none, count, "ok {}");
    }
    for (const std::string noList : {"{}", "5", "\"x\"", "false"}) {
        checkJson("{\"instances\":" + noList + "}", comments, "json_exception: instances: not an array");
        checkJson("{\"instances\":" + noList + "}", count, "json_exception: instances: not an array");
    }
    checkJson(R"({"instances":[null,5,{"eTag":"e","properties":{"Text":"t","new":1}}],"more":[]})", comments,
              R"(ok {"instances":[null,{},{"eTag":"e","properties":{"Text":"t"}}]})");
    checkJson(R"({"instances":[{},{"properties":{"CreatedDate":5}}]})", comments,
              "json_exception: instances[1].properties.CreatedDate: not a string");
    check(Reply::chunked({R"({"instances":[{"properties":)", R"({"Text":"t"}}]})"}), comments,
          R"(ok {"instances":[{"properties":{"Text":"t"}}]})");
    const auto countOf = [](const std::string& number) {
        return R"({"instances":[{"properties":{"count":)" + number + "}}]}";
    };
    checkJson(countOf("12"), count, "ok " + countOf("12"));
    checkJson(countOf("9223372036854775807"), count, "ok " + countOf("9223372036854775807"));
    const std::string place = "json_exception: instances[0].properties.count: ";
    checkJson(countOf("9223372036854775808"), count, place + beyond64);
    checkJson(countOf("1e400"), count, place + beyond64);
    checkJson(countOf("\"12\""), count, place + "not a number");
}

const std::string refused = "refused";

/// What each property of a model makes of a JSON value of any type.
class Places final : public model::detail::PropertyVisitor {
public:
    struct Place {
        std::string key;
        /// By the JSON value, what is written after reading it: nothing if it is not here.
        std::map<std::string, std::string> written;
        std::string otherwise;

        std::string of(const std::string& json) const {
            const auto found = written.find(json);
            return json == "null" ? "" : found == written.end() ? otherwise : found->second;
        }
    };

    struct Opened : model::Model {
        using Model::describe;
    };
    explicit Places(model::Model& described) { (described.*&Opened::describe)(*this); }

    std::vector<Place> all;

private:
    void scalar(model::detail::Key key, model::detail::Scalar value, bool&) override {
        static const std::map<std::string, std::string> byKind[] = {
            {{"\"x\"", "\"x\""}},                   // text
            {{"5", "5"}, {"1.5", "1"}},             // int32_t
            {{"5", "5"}, {"1.5", "1"}},             // int64_t
            {{"5", "5"}, {"1.5", "1.5"}},           // double
            {{"true", "true"}},                     // bool
            {{"\"x\"", "\"1970-01-01T00:00:00Z\""}} // date
        };
        all.push_back({std::string(key), byKind[value.index()], value.index() == 0 ? "\"\"" : refused});
    }
    void nullableDate(model::detail::Key key, model::detail::Property<utility::datetime>&) override {
        all.push_back({std::string(key), {{"\"x\"", "null"}}, refused});
    }
    void nested(model::detail::Key key, model::detail::NestedProperty&) override {
        all.push_back({std::string(key), {}, "{}"});
    }
    void nestedAsText(model::detail::Key key, model::detail::NestedProperty&) override {
        all.push_back({std::string(key), {{"\"x\"", refused}}, ""});
    }
    void list(model::detail::Key key, model::detail::ListProperty&) override {
        all.push_back({std::string(key), {{"[]", ""}}, refused});
    }
};

template <class M>
std::size_t checkTypes() {
    M model;
    const Places places(model);
    for (const auto& place : places.all) {
        for (const std::string json : {"null", "true", "5", "1.5", "\"x\"", "[]", "{}"}) {
            for (const bool consume : {false, true}) {
                SCOPED_TRACE(std::string(typeid(M).name()) + "." + place.key + " = " + json);
                M fresh;
                const std::string text = "{\"" + place.key + "\":" + json + "}";
                seedJson(fresh, text);
                auto tree = web::json::value::parse(text);
                const auto read = [&] { consume ? fresh.fromJson(std::move(tree)) : fresh.fromJson(tree); };
                const std::string written = place.of(json);
                if (written == refused) {
                    EXPECT_EQ(messageOf<web::json::json_exception>(read).rfind(place.key + ": ", 0), 0U);
                } else {
                    EXPECT_NO_THROW(read());
                }
                EXPECT_EQ(fresh.toJson().serialize(),
                          written.empty() || written == refused ? "{}" : "{\"" + place.key + "\":" + written + "}");
            }
        }
    }
    return places.all.size();
}
template <class... Models>
std::size_t checkTypesOfAll() {
    return (checkTypes<Models>() + ...);
}

TEST(HostileModels, AcceptTextForAnythingAndRefuseOtherWrongTypes) {
    const std::size_t places =
        checkTypesOfAll<ErrorSchema, VarnelApiException, DynamicSchemaAttachment, DynamicSchemaAuditValue,
                        DynamicSchemaAuditRecord, DynamicSchemaFile, DynamicSchema_Comment, DynamicSchema_ExternalFile,
                        Forms_EC_MappingForm, Forms_EC_MappingFormDefinition, Forms_EC_MappingFormStyle,
                        Forms_EC_MappingProjectMember, FormPDFGeneratedPDF, ModelPinLocation, ModelViewDefinition,
                        ModelViewDefinitionCameraInfo, RelationshipToForm, DynamicSchemaBaseClass, ListsListGroup,
                        ListsListTree, ListsListValue, SchemasClass, SchemasSchema, WorkflowState, WorkflowTransition,
                        WorkflowDefinition, PlexumProjectRole, PlexumProjectSettings, PlexumRenderer, PlexumStats,
                        PlexumTemplate, PlexumUserSettings, BcfExport, BcfImport>() +
        // The envelopes are made from the same templates for all entities.
        checkTypesOfAll<DynamicSchemaBaseClassInstanceContent, DynamicSchemaFileInstanceContent,
                        DynamicSchemaFileInstance, DynamicSchemaFileInstances, DynamicSchemaFileChangedInstanceContent,
                        DynamicSchemaFileChangedInstance, ChangedDynamicSchemaAttachmentInstances,
                        DynamicSchemaFileInstanceCount, DynamicSchemaFileInstanceCount_instances,
                        DynamicSchemaFileInstanceCount_properties>();
    EXPECT_GT(places, 200U);
}

TEST_F(HostileServiceTest, TheFirstProgramShowsWhatThereIs) {
    server.reply(Reply::json(R"({"instances":[null,{},{"properties":{}},{"properties":{"Text":"t"}}]})"));
    const std::string command = FORMS_TEST_FIRST + (" " + server.url() + " my-project");
    const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), pclose);
    std::string shown(100, '\0');
    shown.resize(fread(shown.data(), 1, shown.size(), output.get()));
    EXPECT_EQ(shown, "\nt\n4 comments\n");
    EXPECT_EQ(server.takeRequest().target, "/base/sv1.2/Repositories/Varnel.Forms--my-project/DynamicSchema/_Comment");
}

TEST_F(HostileServiceTest, AMillionElements) {
    std::string body = R"({"instances":[null)";
    for (int i = 1; i < 1000000; ++i) {
        body += ",{}";
    }
    server.reply(Reply::json(body + "]}"));
    const auto list = SchemaApi(client).select_SchemasSchema("L").get();
    ASSERT_EQ(list->getInstances().size(), 1000000U);
    EXPECT_FALSE(list->getInstances().front());
    EXPECT_TRUE(list->getInstances().back());
}

TEST_F(HostileServiceTest, ALargeDownloadComesWhole) {
    std::string block(1U << 20U, '\0');
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = static_cast<char>(i * 7 + i / 256);
    }
    const std::size_t size = block.size() * downloadMegabytes;
    server.reply(
        Reply::raw(ok + "Content-Length: " + std::to_string(size) + "\r\n\r\n").then(0ms, block, downloadMegabytes));
    const HttpContent content = FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i").get();
    std::string read(block.size(), '\0');
    std::size_t equal = 0;
    while (content.getData()->read(read.data(), static_cast<std::streamsize>(read.size())) && read == block) {
        ++equal;
    }
    EXPECT_EQ(equal, downloadMegabytes);
    EXPECT_EQ(content.getData()->gcount(), 0) << "nothing is left";
}

TEST_F(HostileServiceTest, ALargeBodyThatNobodyWantsIsReadToItsEnd) {
    turnLeakCheckOff(); // The last of these bodies may still be on its way when the test is over.
    constexpr std::size_t megabytes = 64;
    const Reply large = Reply::raw("HTTP/1.1 307 Elsewhere\r\nLocation: /base/next\r\nContent-Length: " +
                                   std::to_string(megabytes << 20U) + "\r\n\r\n")
                            .then(0ms, std::string(1U << 20U, 'x'), megabytes);
    Reply deleted = large;
    deleted.pieces[0].bytes.replace(9, 3, "200");
    check(deleted, remove, "ok ");
    ASSERT_TRUE(server.waitForReplies(1));
    server.reply(large);
    check(Reply::json("{}"), file, "ok {}");
    ASSERT_TRUE(server.waitForReplies(3));
}

TEST_F(HostileServiceTest, RedirectsThatLeadNowhere) {
    // One that is not followed is read like any other answer.
    for (const std::string location :
         {"", "javascript:alert(1)", "file:///tmp", "ftp://127.0.0.1/", "http://a b/", "http://", "http:///x",
          ":::", "/base/sv1.2/Repositories/Varnel.Forms--L/DynamicSchema/File/i/"}) {
        SCOPED_TRACE(location);
        check(Reply::of(302, "Found", "Location: " + location + "\r\n", "{}"), file, "ok {}");
        server.takeRequest();
    }
    check(Reply::redirect(302, "http://127.0.0.1:1/"), file, broken);
    const std::string unexpected = ": unexpected response type: text/html|<p>";
    const Reply page = Reply::of(302, "Found", "Content-Type: text/html\r\n", "<p>");
    check(page, file, "ApiException 500 error calling get_DynamicSchemaFile_instanceId" + unexpected);
    check(page, remove, "ApiException 500 error calling delete_DynamicSchemaFile_instanceId" + unexpected);
    const std::size_t before = server.requests().size();
    for (int i = 0; i < 10; ++i) {
        server.reply(Reply::redirect(302, "/base/" + std::to_string(i)));
    }
    check(Reply::redirect(302, "/base/one-too-many"), file, noJson);
    EXPECT_EQ(server.requests().size(), before + 11);
}

TEST_F(HostileServiceTest, RedirectsToAnotherPortTakeNothingPrivateAlong) {
    RecordingServer other("/other");
    configuration->getDefaultHeaders()["X-Key"] = "secret";
    const std::string target = other.origin() + "/other/x";
    for (const int status : {301, 302, 303, 307, 308}) {
        SCOPED_TRACE(status);
        server.reply(Reply::redirect(status, target));
        other.reply(Reply::redirect(307, server.url() + "/back"));
        server.reply(Reply::json("{}"));
        FileApi(client).insert_DynamicSchemaFile("L", boost::none).get();
        const Request there = other.takeRequest();
        const Request back = server.requests().back();
        EXPECT_EQ(back.target, "/base/back");
        for (const Request& request : {there, back}) {
            EXPECT_FALSE(request.has("Authorization") || request.has("X-Key")) << "not even when it leads back";
            EXPECT_EQ(request.header("Accept"), "application/json");
            EXPECT_EQ(request.method + request.body, status >= 307 ? "POSTnull" : "GET");
        }
    }
    EXPECT_TRUE(other.takeErrors().empty());
}

} // namespace
} // namespace forms_test
