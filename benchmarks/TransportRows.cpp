#include "support/Calls.h"
#include "support/Data.h"
#include "support/ScratchFolder.h"
#include "support/Server.h"

#include <VarnelAPI/Forms/api/FileApi.h>
#include <VarnelAPI/Forms/model/StreamBody.h>
#include <VarnelAPI/Forms/transport/CallOptions.h>
#include <VarnelAPI/Forms/transport/CurlTransport.h>

#include <cpprest/filestream.h>

#include <chrono>
#include <fstream>

namespace bench {

namespace {

using concurrency::streams::fstream;
using VarnelAPI::Forms::api::ApiClient;
using VarnelAPI::Forms::api::FileApi;
using VarnelAPI::Forms::model::StreamBody;
using VarnelAPI::Forms::transport::CallOptions;
using VarnelAPI::Forms::transport::CurlOptions;
using VarnelAPI::Forms::transport::CurlTransport;
using VarnelAPI::Forms::transport::Observer;
using VarnelAPI::Forms::transport::Transport;
using web::http::http_response;
using web::http::methods;
using web::http::client::http_client;

std::shared_ptr<Transport> keeping(long connections) {
    CurlOptions options;
    options.idleConnections = connections;
    return std::make_shared<CurlTransport>(options);
}

/// On kept connections, beside calls by hand whose connections are fresh.
Row kept(const std::string& name, const std::string& (*url)(), std::size_t count) {
    return {name, [url, count] { return getting(count, clientOf(url(), keeping(static_cast<long>(count)))); },
            [url, count] {
                url();
                return atOnce(count, [url] { return getByHand(http_client(url())); });
            }};
}

/// With these wishes, beside the same without any.
Row wishing(const std::string& name, const CallOptions& wishes) {
    return {name, [wishes] { return getting(1, clientOf(serverUrl())->with(wishes)); },
            [] { return getting(1, clientOf(serverUrl())); }};
}

std::filesystem::path scratchFile(const std::string& name) {
    static const ScratchFolder folder;
    return folder.path() / name;
}

/// A file of `largeSize` bytes.
const std::filesystem::path& largeFile() {
    static const auto path = [] {
        const auto made = scratchFile("large");
        std::ofstream file(made, std::ios::binary);
        for (std::size_t written = 0; written < largeSize; written += fileSize) {
            file.write(fileBytes().data(), fileSize);
        }
        return made;
    }();
    return path;
}

Operation downloading(const std::shared_ptr<Transport>& transport) {
    const auto client = clientOf(serverUrl(), transport);
    return [api = FileApi(client->with(CallOptions().saveTo(scratchFile("ours").string())))] {
        benchmark::DoNotOptimize(api.fILEGET_DynamicSchemaFile_instanceId(locations::large, "1").get());
    };
}

Operation downloadingByHand() {
    serverUrl();
    return [] {
        const auto file = fstream::open_ostream(scratchFile("reference").string()).get();
        auto request = requestOf(methods::GET, std::string(locations::large) + "/DynamicSchema/File/1/$file",
                                 "application/octet-stream");
        request.set_response_stream(file);
        sent(http_client(serverUrl()), request).get().content_ready().get();
        file.close().get();
    };
}

Operation uploading(const std::shared_ptr<Transport>& transport) {
    largeFile();
    return [client = clientOf(serverUrl(), transport)] {
        const auto body = StreamBody::ofFile(largeFile().string());
        client->callApi("/sv1.2/Repositories/Varnel.Forms--issue/", "PUT", {}, body, {}, {}, {}, "a/b").get();
    };
}

Operation uploadingByHand() {
    serverUrl();
    largeFile();
    return [] {
        const auto file = fstream::open_istream(largeFile().string()).get();
        auto request = requestOf(methods::PUT, "issue/", "*/*");
        request.set_body(file, largeSize, "a/b");
        sent(http_client(serverUrl()), request).get().content_ready().get();
        file.close().get();
    };
}

Row files(const std::string& name, Operation (*ours)(const std::shared_ptr<Transport>&), Operation (*reference)(),
          bool overCurl) {
    return {name, [ours, overCurl] { return ours(overCurl ? keeping(1) : nullptr); }, reference, Row::Memory::None,
            true};
}

/// How long starting a call holds the thread that makes it.
template <class Start>
void starting(benchmark::State& state, Start start) {
    start().get();
    for ([[maybe_unused]] const auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        const auto task = start();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        task.get();
    }
}

} // namespace

std::vector<Row> transportRows() {
    return {
        kept("get-https-kept", tlsServerUrl, 1),
        kept("get-https-kept-64", tlsServerUrl, 64),
        kept("get-kept-curl", serverUrl, 1),
        wishing("get-no-wish", CallOptions()),
        wishing("get-unobserved", CallOptions().observer(std::make_shared<Observer>(nullptr))),
        wishing("get-observed", CallOptions().observer(std::make_shared<Observer>([](const auto&) {}))),
        wishing("get-retry", CallOptions().retry({})),
        files("download-file", downloading, downloadingByHand, false),
        files("download-file-curl", downloading, downloadingByHand, true),
        files("upload-file", uploading, uploadingByHand, false),
        files("upload-file-curl", uploading, uploadingByHand, true),
    };
}

void registerStartRow() {
    const auto add = [](const char* name, auto run) {
        benchmark::RegisterBenchmark(name, run)->UseManualTime()->Unit(benchmark::kMillisecond);
    };
    add("https-start/ours", [](benchmark::State& state) {
        const auto api = std::make_shared<VarnelAPI::Forms::api::BaseClassApi>(clientOf(tlsServerUrl(), keeping(1)));
        starting(state, [&] { return api->get_DynamicSchemaBaseClass_instanceId(locations::issue, "1"); });
    });
    add("https-start/reference", [](benchmark::State& state) {
        tlsServerUrl();
        starting(state, [] { return getByHand(http_client(tlsServerUrl())); });
    });
}

} // namespace bench
