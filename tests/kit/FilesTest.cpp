#include "support/ServiceTest.h"
#include "support/Sources.h"

#include <VarnelAPI/Forms/kit.h>

#include <map>

namespace forms_test {
namespace {

namespace fs = std::filesystem;
namespace kit = VarnelAPI::Forms::kit;
using kit::FileContent;
using transport::CallOptions;
using transport::Progress;
using web::http::http_exception;
using Saved = std::map<std::string, std::string>;

class FilesTest : public ServiceTest {
protected:
    FilesTest() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    /// An answer with a file, and these header lines.
    static Reply file(const std::string& bytes, const std::string& headers = "") {
        return Reply::of(200, "OK", "Content-Type: application/octet-stream\r\n" + headers, bytes);
    }
    /// The request for which this was answered.
    Request requestOf(const Reply& reply, const std::function<void()>& act) {
        server.reply(reply);
        act();
        return server.takeRequest();
    }
    void upload(const FileContent& content, const CallOptions& options = CallOptions()) {
        kit::upload(files, "L", "i", content, options).get();
    }
    model::HttpContent download(const CallOptions& options = CallOptions()) {
        return kit::download(files, "L", "i", path, options).get();
    }
    /// What the folder of the downloads holds, by name.
    Saved saved() const {
        Saved all;
        for (const auto& entry : fs::directory_iterator(folder)) {
            all[entry.path().filename().string()] = textOfFile(entry.path());
        }
        return all;
    }

    const fs::path folder = fs::path(FORMS_TEST_SCRATCH) / (isOverCurl() ? "curl" : "default") /
                            ::testing::UnitTest::GetInstance()->current_test_info()->name();
    const std::string path = (folder / "saved").string();
    const std::string bytes{"some\0\r\nbytes", 12};
    const api::FileApi files{client};
};

TEST_F(FilesTest, GoToTheInstancesOfEachClassAndComeBack) {
    const std::string source = (folder / "plan \"A\".pdf").string();
    std::ofstream(source, std::ios::binary) << bytes;
    const std::vector<std::tuple<kit::FileClass, std::string, std::string>> classes{
        {api::AttachmentApi(client), "DynamicSchema/Attachment", "DynamicSchemaAttachment"},
        {api::FileApi(client), "DynamicSchema/File", "DynamicSchemaFile"},
        {api::GeneratedPDFApi(client), "FormPDF/GeneratedPDF", "FormPDFGeneratedPDF"},
        {api::ListGroupApi(client), "Lists/ListGroup", "ListsListGroup"},
        {api::RendererApi(client), "Plexum/Renderer", "PlexumRenderer"}};
    for (const auto& row : classes) {
        const auto& [one, place, name] = row;
        SCOPED_TRACE(name);
        const auto put = [&, one = one] {
            kit::upload(one, "L", "i", FileContent::ofFile(source).mediaType("application/pdf")).get();
        };
        const auto get = [&, one = one] { return kit::download(one, "L", "i", path).get(); };
        const auto sent = requestOf(Reply::json("{}"), put);
        EXPECT_EQ(sent.method + sent.target, "PUT/base/sv1.2/Repositories/Varnel.Forms--L/" + place + "/i/$file");
        EXPECT_EQ(sent.body, bytes);
        EXPECT_EQ(sent.header("Content-Type"), "application/pdf");
        EXPECT_EQ(sent.header("Content-Disposition"), R"(attachment; filename="plan \"A\".pdf")");
        EXPECT_EQ(sent.header("Authorization"), "Bearer t");
        const auto asked = requestOf(file(bytes), [&] { EXPECT_EQ(kit::bytesOf(get()), bytes); });
        EXPECT_EQ(asked.method + asked.target, "GET" + sent.target);
        EXPECT_EQ(asked.header("Accept"), "application/octet-stream");
        EXPECT_EQ(textOfFile(path), bytes);
        const Reply none = Reply::json("{}", 404, "None");
        requestOf(none, [&] { EXPECT_EQ(apiErrorOf(put), "404 error calling upload_" + name + ": None|{}"); });
        requestOf(none,
                  [&] { EXPECT_EQ(apiErrorOf(get), "404 error calling fILEGET_" + name + "_instanceId: None|{}"); });
    }
}

TEST_F(FilesTest, ComeFromPathsStreamsAndBytesAsOftenAsTheyAreSent) {
    const auto stream = std::make_shared<std::istringstream>(bytes);
    stream->seekg(3);
    std::ofstream(path, std::ios::binary) << bytes;
    for (const auto& content :
         {FileContent::ofFile(path), FileContent::ofStream(stream, bytes.size()), FileContent::ofBytes(bytes)}) {
        for (int i = 0; i < 2; ++i) {
            server.reply(Reply::json("{}", 503, "Busy"));
            server.reply(Reply::json("{}"));
            transport::RetryPolicy policy;
            policy.firstPause = std::chrono::milliseconds(1);
            policy.changes = true;
            upload(content, CallOptions().retry(policy));
            EXPECT_EQ(server.requests().back().body, bytes);
            EXPECT_EQ(server.requests().back().header("Content-Type"), "application/octet-stream");
        }
        EXPECT_EQ(server.requests().back().has("Content-Disposition"), !content.getFileName().empty());
    }
    EXPECT_EQ(server.requests().size(), 12U);
    EXPECT_EQ(FileContent::ofFile(path).getFileName(), "saved");
    server.reply(Reply::json("{}"));
    upload(FileContent::ofBytes(""));
    EXPECT_EQ(server.requests().back().header("Content-Length"), "0");
}

TEST_F(FilesTest, HaveNamesBothWays) {
    for (const auto& [name, sent, back] : std::vector<std::tuple<std::string, std::string, std::string>>{
             {"a.pdf", R"("a.pdf")", "a.pdf"},
             {R"(a"\b")", R"("a\"\\b\"")", R"(b")"},
             {"Stra\xc3\x9f"
              "e;1",
              R"("Stra__e;1"; filename*=UTF-8''Stra%C3%9Fe%3B1)",
              "Stra\xc3\x9f"
              "e;1"}}) {
        const auto request =
            requestOf(Reply::json("{}"), [&, name = name] { upload(FileContent::ofBytes("x").fileName(name)); });
        EXPECT_EQ(request.header("Content-Disposition"), "attachment; filename=" + sent);
        requestOf(file("x", "Content-Disposition: " + request.header("Content-Disposition") + "\r\n"),
                  [&, back = back] { EXPECT_EQ(download().getFileName(), back); });
    }
    for (const auto& [header, name] : std::vector<std::pair<std::string, std::string>>{
             {"attachment", ""},
             {"attachment; filename=a.pdf", "a.pdf"},
             {"attachment;\tfilename=b=.pdf", "b=.pdf"},
             {"attachment;FileName = \"a b;c\" ; size=3", "a b;c"},
             {"attachment; filename*=utf-8'de'%C3%A4; filename=\"x\"", "\xc3\xa4"},
             {"attachment; filename=x; filename*=UTF-8''%E4", "x"},
             {"attachment; filename=x; filename*=UTF-8''%4", "x"},
             {"attachment; filename=x; filename*=latin1''%E4", "x"},
             {"attachment; filename=x; filename*=", "x"},
             {"attachment; filename=x; filename*=UTF-8'%C3%A4", "x"},
             {"attachment; filename=\"../../etc/passwd\"", "passwd"},
             {"attachment; filename*=UTF-8''..%5Cevil.exe", "evil.exe"},
             {"attachment; filename=\"..\"", ""},
             {"attachment; filename=.", ""},
             {"attachment; filename=\"open\\", ""},
             {";=;\"", ""}}) {
        requestOf(file("x", "Content-Disposition: " + header + "\r\n"), [&, header = header, name = name] {
            const auto content = download();
            EXPECT_EQ(content.getFileName(), name) << header;
            EXPECT_EQ(content.getContentDisposition(), header);
            EXPECT_EQ(content.getContentType(), "application/octet-stream");
        });
    }
}

TEST_F(FilesTest, ThatBreakOffLeaveWhatWasThere) {
    std::ofstream(path) << "old";
    const Saved before{{"saved", "old"}};
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nContent-Length: 9\r\n\r\n";
    const auto fails = [&](const Reply& reply) {
        server.reply(reply);
        messageOf<http_exception>([&] { download(); });
        EXPECT_EQ(saved(), before);
    };
    fails(Reply::raw(head + "half"));
    fails(Reply::raw(head + "half").endingWith(Reply::Ending::Reset));
    server.reply(Reply::json("{}", 404, "None"));
    EXPECT_THROW(download(), api::ApiException);
    server.reply(Reply::of(200, "OK", "Content-Type: text/html\r\n", "<p>"));
    EXPECT_THROW(download(), api::ApiException);
    EXPECT_EQ(saved(), before);
    server.reply(file("new"));
    download();
    EXPECT_EQ(saved(), (Saved{{"saved", "new"}}));
}

TEST_F(FilesTest, AreWatchedAndCanceledByTheCall) {
    std::vector<uint64_t> seen;
    const auto watching = CallOptions().onProgress([&](const Progress& progress) {
        seen = {progress.direction == Progress::Direction::Upload, progress.bytes, progress.total.value_or(0)};
    });
    requestOf(file(bytes), [&] { download(watching); });
    EXPECT_EQ(seen, (std::vector<uint64_t>{0, 12, 12}));
    server.reply(Reply::of(204, "None", "", ""));
    upload(FileContent::ofBytes(bytes), watching);
    EXPECT_EQ(seen, (std::vector<uint64_t>{1, 12, 12}));
    fs::remove(path);
    const std::string half = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf";
    for (const bool goesUp : {true, false}) {
        server.reply(Reply::raw(goesUp ? "" : half).endingWith(Reply::Ending::KeepOpen));
        pplx::cancellation_token_source source;
        const auto options = CallOptions().cancelOn(source.get_token());
        const auto ended = goesUp
                               ? kit::upload(files, "L", "i", FileContent::ofBytes(bytes), options)
                               : kit::download(files, "L", "i", path, options).then([](const model::HttpContent&) {});
        EXPECT_TRUE(server.waitForRequests(goesUp ? 3 : 4));
        source.cancel();
        try {
            ended.get();
            ADD_FAILURE() << "not canceled";
        } catch (const http_exception& error) {
            EXPECT_TRUE(error.error_code() == std::errc::operation_canceled) << error.what();
        }
    }
    EXPECT_EQ(saved(), Saved());
}

TEST_F(FilesTest, RefuseBadInputAtOnce) {
    const auto bytesCalled = [](const std::string& name) { return FileContent::ofBytes("x").fileName(name); };
    const auto refused = [&](const auto& begin) { EXPECT_THROW(begin(), std::invalid_argument); };
    refused([&] { kit::upload(files, "L", "..", FileContent::ofBytes("x")); });
    refused([&] { kit::upload(files, "L?", "i", FileContent::ofBytes("x")); });
    refused([&] { kit::upload(files, "L", "i", bytesCalled("a\r\nb")); });
    refused([&] { kit::upload(files, "L", "i", FileContent::ofBytes("x").mediaType("a\nb")); });
    refused([&] { kit::upload(files, "L", "i", bytesCalled("x"), CallOptions().saveTo(path)); });
    EXPECT_EQ(messageOf<std::invalid_argument>([] { FileContent::ofBytes("x").mediaType(""); }),
              "the media type of a file is empty");
    EXPECT_EQ(messageOf<std::invalid_argument>([] { FileContent::ofStream(nullptr, 1); }),
              "the stream of a body is an empty pointer");
    refused([&] { kit::download(files, "L", "..", path); });
    refused([&] { kit::download(files, "L", "i", ""); });
    EXPECT_EQ(messageOf<std::invalid_argument>([] { kit::bytesOf(model::HttpContent()); }),
              "the data of the content is an empty pointer");
    const auto missing = FileContent::ofFile(path); // It is opened when it is sent.
    EXPECT_THROW(kit::upload(files, "L", "i", missing), std::system_error);
    EXPECT_THROW(kit::upload(files, "L", "i", FileContent::ofFile(folder.string())), std::system_error);
    EXPECT_THROW(kit::download(files, "L", "i", path + "/no/such/folder"), std::system_error);
    EXPECT_THROW(kit::download(files, "L", "i", folder.string()), std::system_error);
    EXPECT_EQ(server.connections(), 0U);
    EXPECT_EQ(saved(), Saved());
    // What shows only on the way is the task's.
    server.replyAlways(Reply::json("{}"));
    messageOf<http_exception>([&] { upload(FileContent::ofStream(std::make_shared<std::istringstream>("x"), 2)); });
    EXPECT_TRUE(server.waitForCloses(1));
    server.takeErrors();
    // And nobody need look at it.
    server.replyAlways(Reply::json("{}", 404, "None"));
    kit::upload(files, "L", "i", FileContent::ofBytes("x"));
    kit::bytesOf(kit::download(files, "L", "i", path));
    EXPECT_TRUE(server.waitForReplies(2));
}

} // namespace
} // namespace forms_test
