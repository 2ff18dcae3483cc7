#include <VarnelAPI/Forms.h>

#include "support/RecordingServer.h"
#include "support/Text.h"

#include <functional>
#include <iostream>
#include <thread>

/// A host that drops the tasks of failing calls. The task library ends a process in which nobody ever looked at a
/// failed task; so that this one exits in order is the test.
int main() {
    using namespace VarnelAPI::Forms;
    using namespace std::chrono_literals;
    using forms_test::RecordingServer;
    using forms_test::Reply;
    using forms_test::operator""_t;

    RecordingServer server;
    const std::string nobody = RecordingServer().url();
    std::vector<std::function<bool()>> areDone;
    const auto keep = [&areDone](auto task) { areDone.push_back([task] { return task.is_done(); }); };

    const std::pair<std::string, Reply> failures[] = {
        {server.url(), Reply::json(R"({"errorId":"x"})", 404, "Not Found")},
        {server.url(), Reply::of(200, "OK", "Content-Type: text/html\r\n", "<p>")},
        {server.url(), Reply::json("no JSON")},
        {server.url(), Reply::raw("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n{").endingWith(Reply::Ending::Reset)},
        {server.url(), Reply{{}, Reply::Ending::Reset}},
        {server.url(), Reply::redirect(302, nobody + "/x")},
        {server.url(), Reply::raw("").endingWith(Reply::Ending::KeepOpen)},
        {nobody, {}}};
    std::size_t calls = 0;
    for (const auto& [url, reply] : failures) {
        const auto configuration = std::make_shared<api::ApiConfiguration>();
        configuration->setBaseUrl(forms_test::text(url));
        configuration->getHttpConfig().set_timeout(500ms);
        const auto client = std::make_shared<api::ApiClient>(configuration);
        server.replyAlways(reply);
        keep(api::SchemaApi(client).select_SchemasSchema("L"_t));
        keep(api::SchemaApi(client).delete_SchemasSchema_instanceId("L"_t, "i"_t));
        keep(api::RendererApi(client).fILEGET_PlexumRenderer_instanceId("L"_t, "i"_t));
        const auto call = [&client] { return client->callApi("/base/x"_t, "GET"_t, {}, nullptr, {}, {}, {}, ""_t); };
        keep(call());
        keep(call().then([](const web::http::http_response&) {}));
        using Result = std::shared_ptr<model::SchemasSchemaInstances>;
        keep(api::SchemaApi(client).select_SchemasSchema("L"_t).then([](const Result&) {}));
        calls += url == nobody ? 0 : 6;
        if (!server.waitForRequests(calls)) {
            std::cerr << "the calls did not arrive\n";
            return 1;
        }
        const auto deadline = std::chrono::steady_clock::now() + RecordingServer::patience;
        for (const auto& isDone : areDone) {
            while (!isDone()) {
                if (std::chrono::steady_clock::now() > deadline) {
                    std::cerr << "a call did not end\n";
                    return 1;
                }
                std::this_thread::sleep_for(1ms);
            }
        }
        // The last copies of the failed tasks go here, and nobody has looked at them.
        areDone.clear();
    }
    return 0;
}
