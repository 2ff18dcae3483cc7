#include "support/ServiceTest.h"

#include "support/Memory.h"

#include <cpprest/http_client.h>

/// How much memory calls take at their peak, on top of what there was before.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;

constexpr std::size_t megabyte = 1U << 20U;
constexpr std::size_t megabytes = 64;
constexpr double fileSize = megabytes * megabyte;

class MemoryTest : public ServiceTest {
protected:
    static double peakOf(const std::function<void()>& operation) {
        return static_cast<double>(bench::peakOf(operation));
    }
    static Reply largeReply(const std::string& head) {
        return Reply::raw("HTTP/1.1 " + head + "\r\nContent-Length: " + std::to_string(megabytes * megabyte) +
                          "\r\n\r\n")
            .then(std::chrono::milliseconds(0), std::string(megabyte, 'x'), megabytes);
    }
};

TEST_F(MemoryTest, OfADownloadIsTwiceItsSize) {
    server.reply(largeReply("200 OK"));
    EXPECT_LT(peakOf([&] { FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i").get(); }), 2.1 * fileSize);
}

TEST_F(MemoryTest, OfABodyThatNobodyWantsIsSmall) {
    server.reply(largeReply("200 OK"));
    server.reply(largeReply("307 Elsewhere\r\nLocation: /base/next"));
    server.reply(Reply::json("{}"));
    EXPECT_LT(peakOf([&] {
                  FileApi(client).delete_DynamicSchemaFile_instanceId("L", "i").get();
                  FileApi(client).get_DynamicSchemaFile_instanceId("L", "i").get();
                  EXPECT_TRUE(server.waitForReplies(3));
              }),
              4 * megabyte);
}

TEST_F(MemoryTest, OfAMultipartBodyIsItsSize) {
    const auto multipart = std::make_shared<MultipartFormData>("B");
    multipart->add(ModelBase::toHttpContent("file", std::string(megabytes * megabyte, 'x')));
    const auto post = [&] {
        client->callApi("/x", "POST", {}, multipart, {}, {}, {}, "multipart/form-data; boundary=B").get();
    };
    server.forgetBodies();
    server.reply(Reply::json("{}"));
    EXPECT_LT(peakOf(post), 1.1 * fileSize);
    EXPECT_EQ(server.takeRequest().header("Content-Length"), std::to_string(multipart->size()));
    // Nobody listens there: the body is written and set, and that is all.
    configuration->setBaseUrl("http://127.0.0.1:1");
    EXPECT_LT(peakOf([&] { messageOf<web::http::http_exception>(post); }), 1.05 * fileSize);
}

TEST_F(MemoryTest, OfAListIsNearThatOfItsParsedJson) {
    constexpr int count = 5000;
    std::string texts;
    for (const std::string key : {"KeldaroLink", "_Subject", "_Description", "_DisplayName", "Status", "AssignedTo",
                                  "_Discipline", "_Classification", "_Source", "_ContainerId", "_ItemId", "_CreatedBy",
                                  "_ModifiedBy", "_IdNumber", "Priority", "Type", "Custom 1", "Custom 2"}) {
        texts += (texts.empty() ? "\"" : ",\"") + key + "\":\"a text of some length for " + key + "\"";
    }
    const auto element = [](const std::string& properties) {
        return R"({"instanceId":"0b6e2b6a-8a1c-4d5e-9f00-1234567890ab","className":"BaseClass","properties":{)" +
               properties + "}}";
    };
    for (const std::string& issue : {std::string("{}"), element(""), element(R"("Status":"open")"), element(texts)}) {
        SCOPED_TRACE(issue);
        std::string text = "{\"instances\":[" + issue;
        for (int i = 1; i < count; ++i) {
            text += "," + issue;
        }
        text += "]}";
        // Not the reply to one request, which the server would free while it is counted.
        RecordingServer lists;
        lists.replyAlways(Reply::json(text));
        configuration->setBaseUrl(lists.url());
        const double parsed = peakOf([&] { web::json::value::parse(text); });
        EXPECT_LT(peakOf([&] { BaseClassApi(client).select_DynamicSchemaBaseClass("L").get(); }),
                  std::max(1.35 * parsed, parsed + 1500.0 * count));
    }
}

} // namespace
} // namespace forms_test
