#include "support/ServiceTest.h"
#include "support/TlsService.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <limits>
#include <map>
#include <set>

/// What a careless or hostile program may do to the library.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;
using namespace std::chrono_literals;

using IssueBody = boost::optional<std::shared_ptr<DynamicSchemaBaseClassInstance>>;

const std::string nul(1, '\0');
constexpr double infinite = std::numeric_limits<double>::infinity();

/// What is thrown by a call itself, and something to call.
struct Row {
    std::string name;
    std::function<void()> call;
    std::string expected;
};

class HostileCallerTest : public ServiceTest {
protected:
    /// Each row throws std::invalid_argument with exactly the expected text, or begins with it if that ends in "...".
    template <class Exception = std::invalid_argument>
    void checkRefused(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            std::string message = messageOf<Exception>(row.call);
            std::string expected = row.expected;
            if (expected.size() > 3 && expected.substr(expected.size() - 3) == "...") {
                expected.resize(expected.size() - 3);
                message.resize(expected.size());
            }
            EXPECT_EQ(message, expected);
        }
        EXPECT_TRUE(server.requests().empty()) << "nothing may be sent";
    }

    auto callWith(const std::string& method, const std::string& path = "/x", const std::string& contentType = "",
                  const std::map<std::string, std::string>& headers = {}) const {
        return client->callApi(path, method, {}, std::make_shared<JsonBody>(web::json::value(1)), headers, {}, {},
                               contentType);
    }

    SchemaApi schemas{client};
    BaseClassApi issues{client};
};

TEST_F(HostileCallerTest, NoTextWritesLinesOfItsOwn) {
    std::vector<Row> rows;
    for (const std::string& bad : {std::string("a\r\nb"), std::string("a\nb"), std::string("a\rb"), "a" + nul}) {
        const auto withDefault = [this](const std::string& name, const std::string& value) {
            auto& headers = configuration->getDefaultHeaders();
            headers = {{name, value}};
            const auto clear = std::shared_ptr<void>(nullptr, [&headers](auto) { headers.clear(); });
            schemas.select_SchemasSchema("L");
        };
        const std::string held = " holds CR, LF or NUL";
        const std::vector<Row> more = {
            {"name of a default header", [=] { withDefault("X-" + bad, "1"); },
             "the name of the header \"X-" + bad.substr(0, bad.find('\0')) + (bad.back() == '\0' ? "" : "\"" + held)},
            {"default header", [=] { withDefault("X", bad); }, "the header \"X\"" + held},
            {"default User-Agent", [=] { withDefault("User-Agent", bad); }, "the header \"User-Agent\"" + held},
            {"configured User-Agent",
             [=] {
                 configuration->setUserAgent(bad);
                 schemas.select_SchemasSchema("L");
             },
             "the header \"User-Agent\"" + held},
            {"path", [=] { callWith("PUT", "/" + bad); }, "the path" + held},
            {"id", [=] { schemas.get_SchemasSchema_instanceId("L", bad); }, "the path" + held},
            {"upload's type",
             [=] { AttachmentApi(client).fileInsert_DynamicSchemaAttachment_instanceId("L", "i", "", bad, "d", {}); },
             "the header \"Content-Type\"" + held},
            {"upload's disposition",
             [=] { AttachmentApi(client).fileInsert_DynamicSchemaAttachment_instanceId("L", "i", "", "t", bad, {}); },
             "the header \"Content-Disposition\"" + held},
            {"form parameter's name",
             [=] {
                 client->callApi("/x", "POST", {}, nullptr, {}, {{bad, "v"}}, {}, "multipart/form-data");
             },
             "the name of the part \"..."}};
        rows.insert(rows.end(), more.begin(), more.end());
    }
    checkRefused(rows);
}

TEST_F(HostileCallerTest, HeadersThatSayHowLongTheBodyIsMustBeTrue) {
    auto& defaults = configuration->getDefaultHeaders();
    std::vector<Row> rows;
    const auto refuse = [&](const std::string& name, const std::string& value, const std::string& why) {
        const std::string header = "the header \"" + name + "\" ";
        rows.push_back({name + " " + value,
                        [=] {
                            callWith("PUT", "/x", "text/plain", {{name, value}});
                        },
                        header + why + (value == "chunked" ? "" : "1")});
        rows.push_back({"default " + name + " " + value,
                        [=, &defaults] {
                            defaults = {{name, value}};
                            schemas.select_SchemasSchema("L");
                        },
                        header + why + (value == "chunked" ? "" : "0")});
    };
    refuse("Transfer-Encoding", "chunked", "follows from the body");
    refuse("transfer-encoding", "chunked", "follows from the body");
    for (const std::string name : {"Content-Length", "content-length"}) {
        for (const std::string value :
             {"5", "10", "", "-1", "+1", "one", "1 1", "1,", "0, 1", "18446744073709551617"}) {
            refuse(name, value, "says \"" + value + "\", and the body's length is ");
        }
    }
    checkRefused(rows);
    for (const std::string value : {"1", "001", "1, 1"}) {
        server.reply(Reply::json("{}"));
        callWith("PUT", "/x", "text/plain", {{"content-LENGTH", value}, {"Content-Length", "1"}}).get();
        EXPECT_EQ(server.takeRequest().header("Content-Length"), "1");
    }
    defaults = {{"Content-Length", "0"}};
    server.reply(Reply::json("{}"));
    schemas.select_SchemasSchema("L").get();
    EXPECT_FALSE(server.takeRequest().has("Content-Length")) << "there is no body";
}

TEST_F(HostileCallerTest, WhatACallbackThrowsComesOutAsItIs) {
    struct Own {};
    const auto check = [this](auto isThrown) {
        isThrown([this] { schemas.get_SchemasSchema_instanceId("L", "i").get(); });
        isThrown([this] { schemas.delete_SchemasSchema_instanceId("L", "i").get(); });
        isThrown([this] { FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i").get(); });
        isThrown([this] { callWith("GET").get(); });
    };
    auto& settings = configuration->getHttpConfig();
    settings.set_nativehandle_options(
        [](auto) { throw std::system_error(EPERM, std::generic_category(), "the callback"); });
    check([](auto act) { EXPECT_EQ(messageOf<std::system_error>(act).find("the callback"), 0U); });
    settings.set_nativehandle_options([](auto) { throw Own(); });
    check([](auto act) { EXPECT_THROW(act(), Own); });
}

TEST_F(HostileCallerTest, IdsAddressWhatTheySayOrNothing) {
    const auto get = [this](const std::string& id) { return [=] { schemas.get_SchemasSchema_instanceId("L", id); }; };
    std::vector<Row> changing, impossible;
    for (const std::string id : {"a?b", "a#b", "..", ".", "a/../b", "%2e%2E", "a/%2e"}) {
        changing.push_back({id, get(id),
                            "SchemaApi->get_SchemasSchema_instanceId: the instanceId \"" + id +
                                "\" would change the path; percent-encode \"?\" and \"#\", "
                                "and use no \".\" or \"..\" as a segment"});
    }
    checkRefused(changing);
    for (const std::string id :
         {"a b", "ü", "\xFF", "a\tb", "a|b", "<", ">", "^", "`", "\"", "{location}", "\\", "\x7F"}) {
        impossible.push_back({id, get(id), "provided uri is invalid: ..."});
    }
    checkRefused<web::uri_exception>(impossible);
    checkRefused({{"host", [this] { callWith("GET", "//127.0.0.1/x"); }, "the path \"//127.0.0.1/x\" names a host..."},
                  {"scheme", [this] { callWith("GET", "mailto:x"); },
                   "the path \"mailto:x\" names a host; it must be relative to the base URL"},
                  {"URL", [this] { callWith("GET", server.url()); }, "the path \"" + server.url() + "..."}});
    const std::string path = "/base/sv1.2/Repositories/Varnel.Forms--L/Schemas/Schema/";
    const std::string options = "?$filter=a%0D%0A%00%26b%3D%FF";
    for (const std::string& id :
         std::vector<std::string>{"", "//b", "a//b", "/", "%20%3F%C3%BC", "100%", "%zz", std::string(100000, 'a')}) {
        server.reply(Reply::json("{}"));
        schemas.get_SchemasSchema_instanceId("L", id).get();
        EXPECT_EQ(server.takeRequest().target, path + id + "/") << "part of the path, whatever it looks like";
    }
    server.reply(Reply::json("{}"));
    schemas.delete_SchemasSchema_instanceId("L", "").get();
    EXPECT_EQ(server.takeRequest().target, path + "/");
    server.reply(Reply::json("{}"));
    schemas.select_SchemasSchema("L", std::string("a\r\n") + nul + "&b=\xFF").get();
    EXPECT_EQ(server.takeRequest().target, path.substr(0, path.size() - 1) + options) << "options are encoded";
}

TEST_F(HostileCallerTest, UnusableBaseUrlsFailInTheCall) {
    std::vector<Row> rows;
    const auto call = [this](const std::string& url) {
        return [=] {
            configuration->setBaseUrl(url);
            schemas.select_SchemasSchema("L");
        };
    };
    for (const std::string url : {"", "127.0.0.1", "http://", "http://:80"}) {
        rows.push_back({url, call(url), "URI must contain a hostname."});
    }
    for (const std::string url : {"ftp://127.0.0.1/", "file:///tmp"}) {
        rows.push_back({url, call(url), "URI scheme must be 'http' or 'https'"});
    }
    rows.push_back({"fragment", call("http://127.0.0.1/a#f"), "the base URL \"http://127.0.0.1/a#f\" has a fragment"});
    checkRefused(rows);
    checkRefused<web::uri_exception>({{"space", call("http://a b/"), "provided uri is invalid: http://a b/"}});
    configuration->setBaseUrl("http://127.0.0.1:1/");
    messageOf<web::http::http_exception>([this] { schemas.select_SchemasSchema("L").get(); });
}

TEST_F(HostileCallerTest, NullPointersAreRefusedOrMeanNothing) {
    const utility::char_t* noText = nullptr;
    const std::shared_ptr<HttpContent> noContent;
    const auto noData = std::make_shared<HttpContent>();
    noData->setName("n");
    const std::shared_ptr<std::istream> noStream;
    const std::shared_ptr<MultipartFormData> noBody;
    const auto unfilled = std::make_shared<MultipartFormData>();
    const auto withoutData = std::make_shared<MultipartFormData>();
    withoutData->add(noData);
    std::ostringstream sink;
    DynamicSchemaBaseClass issue;
    DynamicSchemaClassWithCustomProps object;
    DynamicSchemaArrayWithCustomProps array;
    Object any;
    const std::string content = "the content is an empty pointer";
    const std::string body = "the multipart body is an empty pointer";
    const std::string part = "the content \"n\" has no data stream";
    const std::string text = "the text is an empty pointer";
    const std::string noBuffer = "the stream has no buffer";
    const auto unbuffered = std::make_shared<std::istream>(nullptr);
    const auto bufferless = std::make_shared<HttpContent>();
    bufferless->setData(unbuffered);
    const auto upload = [this](const std::shared_ptr<HttpContent>& file) {
        client->callApi("/x", "POST", {}, nullptr, {}, {}, {{"f", file}}, "multipart/form-data");
    };
    std::vector<Row> rows = {
        {"API object", [] { FormApi api(nullptr); }, "the client of the API object is an empty pointer"},
        {"configuration", [] { SchemaApi(std::make_shared<ApiClient>(nullptr)).select_SchemasSchema("L"); },
         "the configuration of the client is an empty pointer"},
        {"callApi", [] { ApiClient(nullptr).callApi("/x", "GET", {}, nullptr, {}, {}, {}, ""); },
         "the configuration of the client is an empty pointer"},
        {"file", [&] { upload(nullptr); }, "the file's content is an empty pointer"},
        {"file's data", [&] { upload(noData); }, "the content \"f\" has no data stream"},
        {"parameter", [&] { ApiClient::parameterToString(noText); }, "the parameter is an empty pointer"},
        {"text to JSON", [&] { ModelBase::toJson(noText); }, text},
        {"text to part", [&] { ModelBase::toHttpContent("n", noText); }, text},
        {"custom text", [&] { object.setCustomProp("n", noText); }, text},
        {"issue's custom text", [&] { issue.setCustomProp("n", noText); }, text},
        {"file to JSON", [&] { ModelBase::toJson(noContent); }, content},
        {"file without data to JSON", [&] { ModelBase::toJson(noData); }, part},
        {"file to part", [&] { ModelBase::toHttpContent("n", noContent); }, "the file's content is an empty pointer"},
        {"stream without a buffer to Base64", [&] { ModelBase::toBase64(unbuffered); }, noBuffer},
        {"part without a buffer", [&] { ModelBase::stringFromHttpContent(bufferless); }, noBuffer},
        {"content without a buffer", [&] { bufferless->writeTo(sink); }, noBuffer},
        {"file without a buffer", [&] { upload(bufferless); }, noBuffer},
        {"stream to Base64", [&] { ModelBase::toBase64(noStream); }, "the stream to encode is an empty pointer"},
        {"content", [&] { noData->writeTo(sink); }, "the content's data is an empty pointer"},
        {"part", [&] { unfilled->add(nullptr); }, "the content of a multipart body is an empty pointer"},
        {"part without data", [&] { withoutData->writeTo(sink); }, part},
        {"its size", [&] { withoutData->size(); }, part},
        {"bytes", [] { BinaryBody bytes(nullptr, 1); }, "a binary body needs its bytes and a size of 0 or more"},
        {"negative size", [] { BinaryBody bytes("", -1); }, "a binary body needs its bytes and a size of 0 or more"},
        {"part for an object", [&] { any.fromMultiPart(unfilled, "p"); },
         "the multipart body has no part \"p.object\""}};
    for (ModelBase* model : std::initializer_list<ModelBase*>{&issue, &object, &array, &any}) {
        rows.push_back({"to multipart", [=] { model->toMultipart(noBody, ""); }, body});
        rows.push_back({"from multipart", [=] { model->fromMultiPart(noBody, ""); }, body});
    }
    checkRefused(rows);

    EXPECT_EQ(ModelBase::toJson(std::shared_ptr<ModelBase>()).serialize(), "null");
    issue.setModelPinLocation(nullptr);
    issue.setModelViewDefinition(nullptr);
    EXPECT_EQ(issue.toJson().serialize(), R"({"_ModelPinLocation":null,"_ModelViewDefinition":null})");
    issue.toMultipart(unfilled, "");
    EXPECT_TRUE(unfilled->getContents().empty());
    DynamicSchemaBaseClassInstances list;
    list.setInstances({nullptr});
    EXPECT_EQ(list.toJson().serialize(), R"({"instances":[null]})");
    BinaryBody(nullptr, 0).writeTo(sink);
    EXPECT_EQ(sink.str(), "");
    EXPECT_FALSE(ApiException(400, "m", nullptr).getContent());
    server.reply(Reply::json("{}"));
    issues.insert_DynamicSchemaBaseClass("L", IssueBody(nullptr)).get();
    EXPECT_EQ(server.takeRequest().body, "null");
}

TEST_F(HostileCallerTest, NumbersThatJsonCannotHoldAreRefusedInTheCall) {
    std::vector<Row> rows;
    for (const double number : {infinite, -infinite, std::numeric_limits<double>::quiet_NaN()}) {
        const auto insert = [&](const std::string& name, const std::function<void(DynamicSchemaBaseClass&)>& set) {
            const auto body = std::make_shared<DynamicSchemaBaseClassInstance>();
            body->setInstance(std::make_shared<DynamicSchemaBaseClassInstanceContent>());
            body->getInstance()->setProperties(std::make_shared<DynamicSchemaBaseClass>());
            set(*body->getInstance()->getProperties());
            rows.push_back({name, [=] { issues.insert_DynamicSchemaBaseClass("L", body); },
                            "a number that is infinite or not a number can't be written as JSON"});
        };
        insert("property", [=](auto& issue) { issue.setLatitude(number); });
        insert("custom property", [=](auto& issue) { issue.setCustomProp("n", web::json::value(number)); });
        insert("nested property", [=](auto& issue) {
            using web::json::value;
            issue.setCustomProp("n", value::object({{"o", value::object({{"p", value::array({{number}})}})}}));
        });
        insert("within a custom property", [=](auto& issue) {
            issue.setCustomProp("n", web::json::value::array(std::vector<web::json::value>(2, number)));
        });
        insert("member of a custom property", [=](auto& issue) {
            issue.setCustomProp("n", web::json::value::object({{"m", web::json::value(number)}}));
        });
        insert("list in a view", [=](auto& issue) {
            const auto view = std::make_shared<ModelViewDefinition>();
            view->setCameraInfo(std::make_shared<ModelViewDefinitionCameraInfo>());
            view->getCameraInfo()->setRotation({{0, number}});
            issue.setModelViewDefinition(view);
        });
        rows.push_back({"custom class",
                        [=] {
                            DynamicSchemaClassWithCustomProps object;
                            object.setCustomProp("n", number);
                            object.toJson();
                        },
                        rows.back().expected});
    }
    checkRefused(rows);
}

TEST_F(HostileCallerTest, ModelsAreReadByManyTasksAtOnce) {
    auto json = web::json::value::parse(
        R"({"instance":{"instanceId":"i","properties":{"_Subject":"s","_DueDate":"2024-01-01T00:00:00Z",)"
        R"("_ModelPinLocation":{"x":1.5},"_ModelViewDefinition":"{\"cameraInfo\":{\"extents\":[1,2]}}","Own":[1]}}})");
    const auto shared = std::make_shared<DynamicSchemaBaseClassInstance>();
    shared->fromJson(json);
    const std::string text = shared->toJson().serialize();
    server.replyAlways(Reply::json(text));
    std::vector<pplx::task<void>> readers;
    std::vector<pplx::task<std::shared_ptr<DynamicSchemaBaseClassChangedInstance>>> senders;
    for (int i = 0; i < 40; ++i) {
        readers.push_back(pplx::create_task([=] {
            const auto multipart = std::make_shared<MultipartFormData>();
            shared->toMultipart(multipart, "p");
            const DynamicSchemaBaseClassInstance copy = *shared;
            EXPECT_EQ(copy.toJson().serialize(), text);
            EXPECT_EQ(shared->getInstance()->getProperties()->getSubject(), "s");
            // The first use of a class may come from any thread.
            EXPECT_EQ(WorkflowDefinitionChangedInstance().toJson().serialize(), "{}");
        }));
        senders.push_back(issues.update_DynamicSchemaBaseClass("L", "i", IssueBody(shared)));
    }
    for (std::size_t i = 0; i < readers.size(); ++i) {
        readers[i].get();
        senders[i].get();
    }
    for (const auto& request : server.requests()) {
        EXPECT_EQ(request.body, text);
    }
}

TEST_F(HostileCallerTest, EverythingMayGoWhileACallIsInFlight) {
    const std::string json = R"({"instance":{"instanceId":"i"}})";
    server.reply(Reply::raw("").then(200ms, Reply::json(json).pieces[0].bytes));
    server.reply(Reply::raw("").then(200ms, Reply::of(200, "OK", "", "bytes").pieces[0].bytes));
    server.reply(Reply::raw("").then(200ms, Reply::redirect(307, "/base/next").pieces[0].bytes));
    server.replyAlways(Reply::json(json));
    auto gone = std::make_unique<FileApi>(client);
    auto get = gone->get_DynamicSchemaFile_instanceId("L", "i");
    ASSERT_TRUE(server.waitForRequests(1));
    auto download = gone->fILEGET_DynamicSchemaFile_instanceId("L", "i");
    ASSERT_TRUE(server.waitForRequests(2));
    auto insert = gone->insert_DynamicSchemaFile("L", std::make_shared<DynamicSchemaFileInstance>());
    ASSERT_TRUE(server.waitForRequests(3));
    const std::weak_ptr<ApiClient> oldClient = client;
    const std::weak_ptr<ApiConfiguration> oldConfiguration = configuration;
    schemas = SchemaApi(std::make_shared<ApiClient>(nullptr));
    issues = BaseClassApi(std::make_shared<ApiClient>(nullptr));
    gone.reset();
    client.reset();
    configuration.reset();
    EXPECT_TRUE(oldClient.expired() && oldConfiguration.expired()) << "a call in flight holds neither";
    EXPECT_EQ(get.get()->toJson().serialize(), json);
    EXPECT_EQ(bytesOf(*download.get().getData()), "bytes");
    insert.get();
    const Request redirected = server.requests().back();
    EXPECT_EQ(redirected.method + redirected.target + redirected.body, "POST/base/next{}");
    EXPECT_EQ(redirected.header("Authorization"), "Bearer t");
}

TEST_F(HostileCallerTest, TheConfigurationIsReadOnlyUntilTheCallReturns) {
    server.replyAlways(Reply::raw("").then(20ms, Reply::json("{}").pieces[0].bytes));
    std::vector<pplx::task<std::shared_ptr<SchemasSchemaInstances>>> tasks;
    std::set<std::string> expected, seen;
    for (int i = 0; i < 50; ++i) {
        const std::string number = std::to_string(i);
        configuration->getDefaultHeaders()["Authorization"] = "Bearer " + number;
        configuration->setUserAgent("agent/" + number);
        tasks.push_back(schemas.select_SchemasSchema("L"));
        expected.insert("Bearer " + number + " agent/" + number);
    }
    configuration->getDefaultHeaders().clear();
    for (const auto& task : tasks) {
        task.get();
    }
    for (const auto& request : server.requests()) {
        seen.insert(request.header("Authorization") + " " + request.header("User-Agent"));
    }
    EXPECT_EQ(seen, expected);
}

TEST_F(HostileCallerTest, OneClientServesSeveralThreads) {
    server.replyAlways(Reply::json("{}"));
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this] {
            for (int call = 0; call < 25; ++call) {
                EXPECT_EQ(schemas.select_SchemasSchema("L").get()->toJson().serialize(), "{}");
                issues.delete_DynamicSchemaBaseClass_instanceId("L", "i").get();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    const auto requests = server.requests();
    EXPECT_EQ(requests.size(), 400U);
    for (const auto& request : requests) {
        EXPECT_EQ(request.header("Authorization"), "Bearer t");
    }
}

TEST_F(HostileCallerTest, FiveHundredCallsAtOnceEndAllOfThem) {
    // Both ends of each connection are in this process.
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, std::max<rlim_t>(limit.rlim_cur, 4096));
    setrlimit(RLIMIT_NOFILE, &limit);
    const auto outcomes = [this](const Reply& reply) {
        server.replyAlways(reply);
        std::vector<pplx::task<std::shared_ptr<SchemasSchemaInstances>>> tasks(500);
        for (auto& task : tasks) {
            task = schemas.select_SchemasSchema("L");
        }
        std::map<std::string, int> counts;
        for (const auto& task : tasks) {
            std::string outcome;
            const auto get = [&] { outcome = "got " + task.get()->toJson().serialize(); };
            const std::string error = apiErrorOf(get);
            ++counts[outcome.empty() ? error : outcome];
        }
        return counts;
    };
    using Counts = std::map<std::string, int>;
    EXPECT_EQ(outcomes(Reply::raw("").then(200ms, Reply::json("{}").pieces[0].bytes)), (Counts{{"got {}", 500}}));
    // Errors whose text comes late: more of them than the pool has threads that could wait for it.
    EXPECT_EQ(outcomes(Reply::raw("HTTP/1.1 503 Busy\r\nContent-Length: 4\r\n\r\n").then(200ms, "text")),
              (Counts{{"503 error calling select_SchemasSchema: Busy|text", 500}}));
}

TEST_F(HostileCallerTest, ContinuationsOfAFailingTaskSeeItsFailure) {
    server.replyAlways(Reply::json("payload", 404, "Not Found"));
    const std::string expected = "404 error calling select_SchemasSchema: Not Found|payload";
    const auto call = [this] { return schemas.select_SchemasSchema("L"); };
    using Result = std::shared_ptr<SchemasSchemaInstances>;
    std::atomic<bool> ran = false;
    const auto byValue = call().then([&ran](const Result&) { ran = true; });
    EXPECT_EQ(apiErrorOf([&] { byValue.get(); }), expected);
    const auto byTask = call().then([](const pplx::task<Result>& task) { return apiErrorOf([&] { task.get(); }); });
    EXPECT_EQ(byTask.get(), expected);
    // Attached late, to a task that has failed; and dropped: by now somebody has looked at the failure.
    turnLeakCheckOff(); // The dropped call may outlive the test.
    call().then([&ran](const Result&) { ran = true; });
    const auto failed = call();
    EXPECT_EQ(apiErrorOf([&] { failed.wait(); }), expected);
    failed.then([&ran](const Result&) { ran = true; });
    messageOf<ApiException>([&] { failed.then([&ran](const Result&) { ran = true; }).get(); });
    EXPECT_FALSE(ran) << "a continuation that takes the value runs only if there is one";
}

TEST_F(HostileCallerTest, ACallIsRepeatedOnlyIfThatIsWished) {
    transport::RetryPolicy policy;
    policy.attempts = 3;
    policy.firstPause = 1ms;
    const auto repeating = client->with(transport::CallOptions().retry(policy));
    const auto get = [](const auto& over) { return SchemaApi(over).get_SchemasSchema_instanceId("L", "i"); };
    const Reply busy = Reply::json("", 503, "Busy");
    const Reply lost = Reply::raw("").endingWith(Reply::Ending::Reset);
    for (const Reply& reply : {busy, lost, Reply::json("{}")}) {
        server.reply(reply);
    }
    EXPECT_EQ(get(repeating).get()->toJson().serialize(), "{}");
    EXPECT_EQ(server.requests().size(), 3U);
    server.replyAlways(busy);
    EXPECT_EQ(apiErrorOf([&] { get(repeating).get(); }),
              "503 error calling get_SchemasSchema_instanceId: Busy (after 3 attempts)|");
    EXPECT_EQ(apiErrorOf([&] { get(client).get(); }), "503 error calling get_SchemasSchema_instanceId: Busy|");
    EXPECT_EQ(server.requests().size(), 7U);
    server.replyAlways(lost);
    messageOf<web::http::http_exception>(
        [&] { ListGroupApi(repeating).insert_ListsListGroup("L", std::make_shared<ListsListGroupInstance>()).get(); });
    EXPECT_EQ(server.requests().size(), 8U) << "it may have had its effect";
    server.reply(Reply::raw("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n{").endingWith(Reply::Ending::Reset));
    messageOf<web::http::http_exception>([&] { get(repeating).get(); });
    EXPECT_EQ(server.requests().size(), 9U) << "its answer had begun";
    policy.changes = true;
    for (const Reply& reply : {busy, lost, Reply::json("{}")}) {
        server.reply(reply);
    }
    client->with(transport::CallOptions().retry(policy))
        ->callApi("/x", "PUT", {}, std::make_shared<StreamBody>(std::make_shared<std::istringstream>("bytes"), 5), {},
                  {}, {}, "a/b")
        .get();
    EXPECT_EQ(server.requests().size(), 12U);
    for (std::size_t i = 9; i < 12; ++i) {
        EXPECT_EQ(server.requests().at(i).body, "bytes");
    }
    configuration->setBaseUrl(RecordingServer().url()); // where nobody is any more
    const auto said = messageOf<web::http::http_exception>([&] { get(repeating).get(); });
    EXPECT_NE(said.find(" (after 3 attempts)"), std::string::npos) << said;
}

class EndingProcessTest : public HostileCallerTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(EndingProcessTest, EndsInTimeAndInOrder) {
    struct Service {
        std::string name;
        Reply reply;
        std::string url{};
    };
    // Over TLS, what ends with the process is used by each call.
    TlsService redirecting;
    redirecting.redirectTo(redirecting.url() + "/x");
    const Service services[] = {
        {"redirecting over TLS", {}, redirecting.url()},
        {"silent", Reply::raw("").endingWith(Reply::Ending::KeepOpen)},
        {"stalled", Reply::raw("HTTP/1.1 500 Stalled\r\nContent-Length: 9\r\n\r\n").then(10s, "123456789")},
        {"busy", Reply::raw("").then(3ms, Reply::json("{}", 500, "Busy").pieces[0].bytes)},
        {"busy for a while", Reply::json("{}", 503, "Busy")},
        {"redirecting", Reply::redirect(307, "/base/sv1.2/again")},
        {"large", Reply::raw("HTTP/1.1 200 OK\r\n\r\n").then({}, std::string(1U << 20U, 'x'), 20)},
        {"dripping",
         Reply::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n").then(5ms, "1\r\n{\r\n", 1000)}};
    if (GetParam() == std::string("callback") && !isOverCurl()) {
        GTEST_SKIP() << "the HTTP library waits for the thread that ends the process";
    }
    for (const Service& service : services) {
        server.replyAlways(service.reply);
        for (const std::string pause : {"0", "1", "2", "3", "5", "10", "20"}) {
            SCOPED_TRACE(service.name + " " + pause);
            std::string url = service.url.empty() ? server.url() : service.url, how = GetParam(), milliseconds = pause,
                        child = FORMS_TEST_ENDING_CHILD;
            char* arguments[] = {child.data(), url.data(), how.data(), milliseconds.data(), nullptr};
            pid_t process = 0;
            ASSERT_EQ(posix_spawn(&process, child.c_str(), nullptr, nullptr, arguments, environ), 0);
            int status = 0;
            const auto end = std::chrono::steady_clock::now() + 10s;
            while (waitpid(process, &status, WNOHANG) == 0) {
                if (std::chrono::steady_clock::now() > end) {
                    kill(process, SIGKILL);
                    waitpid(process, &status, 0);
                    break;
                }
                std::this_thread::sleep_for(1ms);
            }
            ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "ended with status " << status;
        }
    }
    // The service sees requests that broke off, as it must.
    server.takeErrors();
}

INSTANTIATE_TEST_SUITE_P(Hostile, EndingProcessTest, ::testing::Values("return", "exit", "callback"),
                         [](const auto& how) { return std::string(how.param); });

} // namespace
} // namespace forms_test
