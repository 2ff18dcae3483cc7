#include "support/ServiceTest.h"

#include "support/Memory.h"

#include <VarnelAPI/Forms/kit/Files.h>

#include <cpprest/http_client.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

/// How much memory calls take at their peak, on top of what there was before.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;
namespace kit = VarnelAPI::Forms::kit;

constexpr std::size_t megabyte = 1U << 20U;
constexpr std::size_t megabytes = 64;
constexpr double fileSize = megabytes * megabyte;

class MemoryTest : public ServiceTest {
protected:
    static double peakOf(const std::function<void()>& operation) {
        return static_cast<double>(bench::peakOf(operation));
    }
    /// With a body as large as the file.
    static Reply large(const std::string& head) {
        return Reply::raw("HTTP/1.1 " + head + "\r\nContent-Length: " + std::to_string(megabytes * megabyte) +
                          "\r\n\r\n")
            .then({}, std::string(megabyte / 4, 'x'), 4 * megabytes);
    }
    /// The same in chunks.
    static Reply chunked(std::size_t chunk, std::size_t times) {
        std::ostringstream head;
        head << std::hex << chunk << "\r\n";
        return Reply::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n")
            .then({}, head.str() + std::string(chunk, 'x') + "\r\n", times)
            .then({}, "0\r\n\r\n");
    }
    // The replies are for always, or the server would free them while memory is counted.
    void download(const Reply& reply, double limit) {
        server.replyAlways(reply);
        EXPECT_LT(peakOf([&] { FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i").get(); }), limit);
    }
    void remove(const Reply& reply, double limit) {
        server.replyAlways(reply);
        EXPECT_LT(peakOf([&] {
                      FileApi(client).delete_DynamicSchemaFile_instanceId("L", "i").get();
                      EXPECT_TRUE(server.waitForReplies(++replies));
                  }),
                  limit);
    }

    std::size_t replies = 0;
};

TEST_F(MemoryTest, OfADownloadIsTwiceItsSize) {
    download(large("200 OK"), 2.1 * fileSize);
    download(chunked(megabyte, megabytes), 2.1 * fileSize + 3.1 * megabyte);
    download(chunked(megabytes * megabyte, 1), (2.1 + 3.1) * fileSize);
}

TEST_F(MemoryTest, OfABodyThatNobodyWantsIsSmall) {
    remove(large("200 OK"), megabyte);
    remove(chunked(megabyte, megabytes), 3.1 * megabyte);
    // The HTTP library's buffer grows to twice its size at a time: much depends on where that ends.
    for (const std::size_t size : {megabytes * megabyte, 50 * megabyte}) {
        remove(chunked(size, 1), 3.1 * static_cast<double>(size));
    }
    server.reply(large("307 Elsewhere\r\nLocation: /base/next"));
    ++replies;
    remove(Reply::json("{}"), megabyte);
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

TEST_F(MemoryTest, OfStreamsIsSmall) {
    const std::string path = testing::TempDir() + "forms-memory-" + std::to_string(getpid());
    const auto remover = std::shared_ptr<void>(nullptr, [&path](auto) { std::remove(path.c_str()); });
    const FileApi files(client);
    server.replyAlways(large("200 OK"));
    EXPECT_LT(peakOf([&] { kit::download(files, "L", "i", path).get(); }), 4.0 * megabyte);
    EXPECT_EQ(std::filesystem::file_size(path), megabytes * megabyte);
    server.forgetBodies();
    server.replyAlways(Reply::json("{}"));
    const auto multipart = std::make_shared<MultipartFormData>("B");
    const auto file = ModelBase::toHttpContent("file", "");
    file->setData(std::make_shared<std::ifstream>(path, std::ios::binary));
    multipart->add(file);
    for (const auto& [content, size] :
         {std::pair(kit::FileContent::ofFile(path), megabytes * megabyte),
          std::pair(kit::FileContent::ofStream(multipart->asStream(), multipart->size()), multipart->size())}) {
        EXPECT_LT(peakOf([&, content = content] { kit::upload(files, "L", "i", content).get(); }), 4.0 * megabyte);
        EXPECT_EQ(server.requests().back().header("Content-Length"), std::to_string(size));
    }
}

TEST_F(MemoryTest, OfAListIsThatOfItsParsedJsonAndItsTextOrModels) {
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
    const std::string longText = "\"_Description\":\"" + std::string(4000, 'x') + "\"";
    for (const std::string& issue :
         {std::string("{}"), element(""), element(R"("Status":"open")"), element(texts), element(longText)}) {
        SCOPED_TRACE(issue.substr(0, 200));
        std::string text = "{\"instances\":[" + issue;
        for (int i = 1; i < count; ++i) {
            text += "," + issue;
        }
        text += "]}";
        server.replyAlways(Reply::json(text));
        // Of memory that is touched, where simdjson reads: it allocates as much as the worst of texts would need.
        const auto peak = text.size() > 4 * megabyte ? bench::peakOf : bench::residentPeakOf;
        const auto parsed = peak([&] { web::json::value::parse(text); });
        const double beside = std::max(static_cast<double>(text.size()), 1500.0 * count);
        EXPECT_LT(peak([&] { BaseClassApi(client).select_DynamicSchemaBaseClass("L").get(); }),
                  1.05 * (static_cast<double>(parsed) + beside));
    }
}

} // namespace
} // namespace forms_test
