// Brings the open issues of a project into a table, and the files attached to its issues into a folder. What is there
// already is not fetched again, so it may be stopped (Ctrl-C) at any time and begun anew. Tokens come from TOKEN-URL.

#include <VarnelAPI/Forms.h>
#include <VarnelAPI/Forms/kit.h>

#include <cpprest/http_client.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <iomanip>
#include <iostream>

using namespace VarnelAPI::Forms;
using namespace utility::conversions;
using Issue = model::DynamicSchemaBaseClass;
using utility::string_t;
namespace fs = std::filesystem;

namespace {

std::atomic<bool> isInterrupted{false};

/// Tokens of a service that gives them as {"access_token":"...","expires_in":SECONDS}, asked for when they are needed.
std::shared_ptr<transport::Credentials> tokensOf(const string_t& url) {
    return std::make_shared<transport::Credentials>([url](auto) {
        return web::http::client::http_client(url)
            .request(web::http::methods::POST)
            .then([](const web::http::http_response& response) { return response.extract_json(); })
            .then([](const web::json::value& answer) {
                const std::chrono::seconds lifetime(answer.at(_XPLATSTR("expires_in")).as_integer());
                return transport::Token{answer.at(_XPLATSTR("access_token")).as_string(),
                                        std::chrono::system_clock::now() + lifetime};
            });
    });
}

std::size_t syncIssues(const api::BaseClassApi& issues, const string_t& project, const fs::path& path) {
    const fs::path part = path.string() + ".part"; // so that what has the final name is complete
    std::ofstream table(part, std::ios::binary);
    table.exceptions(std::ios::badbit | std::ios::failbit);
    table << "Id,Class,Subject,Status,Assigned to,Due,Custom properties\r\n";
    std::size_t count = 0;
    for (const auto& issue : kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
                                 .filter(Issue::closed != true)
                                 .orderby(kit::order(Issue::dueDate, Issue::subject))) {
        const auto& properties = *issue->getProperties();
        string_t custom;
        for (const auto& [name, value] : kit::customProperties(properties)) {
            custom += name + _XPLATSTR("=") + value.serialize() + _XPLATSTR(";");
        }
        const auto due = properties.getDueDate();
        for (const string_t& text : {issue->getInstanceId(), issue->getClassName(), properties.getSubject(),
                                     properties.getStatus(), properties.getAssignedTo(),
                                     due.is_initialized() ? due.to_string(utility::datetime::ISO_8601) : string_t()}) {
            table << std::quoted(to_utf8string(text), '"', '"') << ',';
        }
        table << std::quoted(to_utf8string(custom), '"', '"') << "\r\n";
        std::cerr << '\r' << ++count << " issues" << std::flush;
    }
    table.close();
    fs::rename(part, path);
    return count;
}

std::size_t syncFiles(const api::AttachmentApi& attachments, const string_t& project, const fs::path& folder) {
    std::size_t count = 0;
    for (const auto& attachment :
         kit::pages(attachments, &api::AttachmentApi::select_DynamicSchemaAttachment, project, string_t())) {
        // The names are the service's: they must not lead out of the folder. A changed file has another version.
        const fs::path name = fs::path(attachment->getProperties()->getName()).filename();
        const fs::path id = fs::path(attachment->getInstanceId() + _XPLATSTR("-") + attachment->getETag()).filename();
        const fs::path path = folder / fs::path(id.native() + _XPLATSTR("-") + name.native());
        ++count;
        if (!fs::exists(path)) {
            const auto options = transport::CallOptions().onProgress([count](const transport::Progress& progress) {
                std::cerr << "\rfile " << count << ": " << progress.bytes << " bytes" << std::flush;
            });
            kit::download(attachments, project, attachment->getInstanceId(), path, options).get();
        }
    }
    return count;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 5) {
        std::cerr << "usage: sync BASE-URL PROJECT FOLDER TOKEN-URL\n";
        return 2;
    }
    pplx::cancellation_token_source stop;
    std::signal(SIGINT, [](int) { isInterrupted = true; });
    std::future<void> watch;
    std::promise<void> end; // goes first, and so ends the watch
    watch = std::async(std::launch::async, [stop, ended = end.get_future()] {
        while (!isInterrupted && ended.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout) {
        }
        stop.cancel();
    });
    try {
        const auto configuration = std::make_shared<api::ApiConfiguration>();
        configuration->setBaseUrl(to_string_t(argv[1]));
        auto wishes = transport::CallOptions().cancelOn(stop.get_token()).retry({});
        const auto client = api::ApiClient(configuration).with(wishes.credentials(tokensOf(to_string_t(argv[4]))));
        const string_t project = to_string_t(argv[2]);
        const fs::path folder = argv[3];
        fs::create_directories(folder / "files");
        const auto issues = syncIssues(api::BaseClassApi(client), project, folder / "issues.csv");
        const auto files = syncFiles(api::AttachmentApi(client), project, folder / "files");
        std::cout << "\n" << issues << " open issues, " << files << " files\n";
    } catch (const std::exception& error) {
        const kit::Failure failure(error, _XPLATSTR("The synchronisation"));
        std::cerr << '\n' << to_utf8string(failure.sentence()) << (failure.isTemporary() ? "; try later" : "") << '\n';
        return isInterrupted ? 130 : failure.isTemporary() ? 75 : 1;
    }
}
