#include "support/ServiceTest.h"
#include "support/Sources.h"
#include "support/TlsService.h"

#include <VarnelAPI/Forms/kit.h>
#include <VarnelRepository/Server.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>

namespace forms_test {
namespace {

namespace fs = std::filesystem;
namespace kit = VarnelAPI::Forms::kit;

class ExamplesTest : public ::testing::Test {
protected:
    ExamplesTest() {
        fs::remove_all(folder);
        // An example ends while its pool still drops what calls have left.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    }

    /// Runs a command; its exit code, and what it wrote.
    std::pair<int, std::string> run(const std::string& command) const {
        fs::create_directories(folder);
        const fs::path output = folder / "output";
        const int status =
            std::system((command + " >" + output.string() + " 2>&1 </dev/null").c_str()); // NOLINT(cert-env33-c)
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textOfFile(output)};
    }
    static std::string lastLine(const std::string& text) { return text.substr(text.rfind('\n', text.size() - 2) + 1); }

    const fs::path folder =
        fs::path(FORMS_TEST_SCRATCH) / ::testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(ExamplesTest, SyncBringsIssuesAndFilesOnce) {
    using VarnelAPI::Forms::repository::Fault;
    VarnelAPI::Forms::repository::Server repository;
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(repository.url());
    const auto client = std::make_shared<api::ApiClient>(configuration);
    for (int i = 0; i < 130; ++i) {
        model::DynamicSchemaBaseClass issue;
        issue.setSubject("Issue \"" + std::to_string(i) + "\", open");
        issue.setClosed(i % 2 == 1);
        issue.setCustomProp("Crew", i);
        api::BaseClassApi(client).insert_DynamicSchemaBaseClass("p", kit::envelope(issue, "Safety")).get();
    }
    model::DynamicSchemaAttachment attachment;
    attachment.setName("../photo.jpg");
    const api::AttachmentApi attachments(client);
    const auto id = kit::stored(attachments.insert_DynamicSchemaAttachment("p", "", "", kit::envelope(attachment)))
                        .get()
                        ->getInstanceId();
    const std::string bytes("bytes\0\r\n", 8);
    kit::upload(attachments, "p", id, kit::FileContent::ofBytes(bytes)).get();

    // The first token is good for two calls only, and the service is busy once.
    repository.addToken({"first", 2, {}});
    repository.addToken({"second", 0, {}});
    Fault busy;
    busy.operation = "download";
    busy.status = 503;
    repository.inject(busy);
    RecordingServer tokens;
    const auto sync = [&](const std::string& url, const char* to) {
        return run(FORMS_TEST_SYNC " " + url + " p " + (folder / to).string() + " " + tokens.url() + "/token");
    };
    const auto token = [&](const char* value) {
        tokens.reply(Reply::json(std::string(R"({"access_token":")") + value + R"(","expires_in":3600})"));
    };
    for (const char* first : {"first", "second"}) {
        token(first);
        token("second");
        const auto [code, output] = sync(repository.url(), "out");
        EXPECT_EQ(code, 0) << output;
        EXPECT_EQ(lastLine(output), "65 open issues, 1 files\n");
        EXPECT_EQ(output.find("file 1: 8 bytes") != std::string::npos, first == std::string("first"));
    }
    EXPECT_EQ(tokens.requests().size(), 3U);
    EXPECT_EQ(repository.faults().at(0).met, 1);
    const std::string table = textOfFile(folder / "out/issues.csv");
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 66);
    EXPECT_NE(table.find(R"(,"Safety","Issue ""128"", open","","","","Crew=128;")"), std::string::npos) << table;
    std::vector<fs::path> files(fs::directory_iterator(folder / "out/files"), {});
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(textOfFile(files[0]), bytes);
    EXPECT_EQ(files[0].filename().string().substr(0, id.size()), id);
    EXPECT_EQ(lastLine(files[0].string() + "\n").substr(files[0].string().size() - 10), "-photo.jpg\n");

    const std::string nobody = RecordingServer().url();
    const auto [code, output] = sync(nobody, "none");
    EXPECT_EQ(code, 75);
    EXPECT_EQ(lastLine(output), "The synchronisation failed: no connection to the service could be made; try later\n");
    EXPECT_FALSE(fs::exists(folder / "none/issues.csv")) << "what is not complete has not its name";
}

TEST_F(ExamplesTest, SyncStopsAtOnceWhenItIsInterrupted) {
    RecordingServer service;
    service.reply(Reply::json(R"({"access_token":"t","expires_in":3600})"));
    service.replyAlways(Reply::raw("").endingWith(Reply::Ending::KeepOpen));
    auto ended = std::async(std::launch::async, [&] {
        return run("sh -c 'echo $$ >" + (folder / "pid").string() + "; exec " FORMS_TEST_SYNC " " + service.url() +
                   " p " + (folder / "out").string() + " " + service.url() + "/token'");
    });
    EXPECT_TRUE(service.waitForRequests(2));
    ::kill(std::stoi(textOfFile(folder / "pid")), SIGINT);
    const auto [code, output] = ended.get();
    EXPECT_EQ(code, 130);
    EXPECT_EQ(lastLine(output), "The synchronisation failed: it was canceled\n");
    EXPECT_FALSE(fs::exists(folder / "out/issues.csv"));
}

TEST_F(ExamplesTest, AWindowListsIssuesWhileItDraws) {
    RecordingServer service;
    service.reply(Reply::json(R"({"instances":[{"instanceId":"a"},{"instanceId":"b"}]})"));
    service.reply(Reply::json("{}"));
    const auto [code, output] = run(FORMS_TEST_WINDOW " " + service.url() + " p");
    EXPECT_EQ(code, 0) << output;
    EXPECT_EQ(output.substr(0, 13), "2 issues and ");
    service.reply(Reply::json("{}", 404, "None"));
    const auto [failed, why] = run(FORMS_TEST_WINDOW " " + service.url() + " p");
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(why.substr(0, why.find('\n')), "Loading the issues failed with status 404 (None)");
}

TEST_F(ExamplesTest, AWindowWorksOverHttps) {
    const TlsService service;
    fs::create_directories(folder);
    std::ofstream(folder / "certificate.pem") << service.certificate();
    const std::string command = FORMS_TEST_WINDOW " " + service.url() + " p";
    const auto [trusted, output] = run("SSL_CERT_FILE=" + (folder / "certificate.pem").string() + " " + command);
    EXPECT_EQ(trusted, 0) << output;
    EXPECT_EQ(output.substr(0, 13), "0 issues and ");
    const auto [unknown, why] = run(command);
    EXPECT_EQ(unknown, 1);
    EXPECT_EQ(why.substr(0, why.find('\n')), "Loading the issues failed: the service's certificate is not accepted");
}

} // namespace
} // namespace forms_test
