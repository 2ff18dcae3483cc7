#include "Rows.h"

#include "support/Data.h"
#include "support/Server.h"

#include <VarnelAPI/Forms/api/BaseClassApi.h>
#include <VarnelAPI/Forms/api/FileApi.h>
#include <VarnelAPI/Forms/model/MultipartFormData.h>

#include <benchmark/benchmark.h>
#include <cpprest/containerstream.h>
#include <cpprest/http_client.h>

#include <cstring>
#include <sstream>

namespace bench {

namespace {

using VarnelAPI::Forms::api::ApiClient;
using VarnelAPI::Forms::api::ApiConfiguration;
using VarnelAPI::Forms::api::BaseClassApi;
using VarnelAPI::Forms::api::FileApi;
using VarnelAPI::Forms::model::HttpContent;
using VarnelAPI::Forms::model::MultipartFormData;
using web::http::http_response;
using web::http::client::http_client;
using web::json::value;

constexpr const char* userAgent = "benchmark";
constexpr const char* credentials = "Bearer 0123456789abcdef0123456789abcdef";
constexpr const char* selection = "_Subject,Status";

std::shared_ptr<ApiClient> clientOf(const std::string& url) {
    auto configuration = std::make_shared<ApiConfiguration>();
    configuration->setBaseUrl(url);
    configuration->setUserAgent(userAgent);
    configuration->getDefaultHeaders()["Authorization"] = credentials;
    return std::make_shared<ApiClient>(configuration);
}

std::shared_ptr<BaseClassApi> issuesApi() {
    return std::make_shared<BaseClassApi>(clientOf(serverUrl()));
}

/// A call as one writes it by hand: the same request, on a fresh client unless one is given.
pplx::task<http_response> requestByHand(const std::string& path, const char* accept, bool selects,
                                        http_client client = http_client(serverUrl())) {
    web::http::http_request request(web::http::methods::GET);
    request.headers().add("Accept", accept);
    request.headers().add("Authorization", credentials);
    request.headers().add("User-Agent", userAgent);
    web::uri_builder target("/sv1.2/Repositories/Varnel.Forms--" + path);
    if (selects) {
        target.append_query("$select", selection);
    }
    request.set_request_uri(target.to_uri());
    return client.request(request).then([](const http_response& response) {
        if (response.status_code() != web::http::status_codes::OK) {
            throw web::http::http_exception("unexpected status");
        }
        return response;
    });
}

pplx::task<value> getByHand(const http_client& client) {
    return requestByHand("issue/DynamicSchema/BaseClass/1/", "application/json", true, client)
        .then([](const http_response& response) { return response.extract_string(); })
        .then([](const std::string& text) { return value::parse(text); });
}

/// Makes `count` calls at once, and waits for all of them.
template <class Call>
Operation atOnce(std::size_t count, Call call) {
    return [count, call] {
        std::vector<decltype(call())> tasks;
        tasks.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            tasks.push_back(call());
        }
        for (const auto& task : tasks) {
            benchmark::DoNotOptimize(task.get());
        }
    };
}

Operation getting(std::size_t count) {
    return atOnce(count, [api = issuesApi()] {
        return api->get_DynamicSchemaBaseClass_instanceId(locations::issue, "1", std::string(selection));
    });
}

Row gets(const std::string& name, std::size_t count) {
    return {name, [count] { return getting(count); },
            [count] {
                serverUrl();
                return atOnce(count, [] { return getByHand(http_client(serverUrl())); });
            },
            true};
}

/// On a client, and so on a connection, that is kept.
Operation gettingByHandOnOne() {
    return atOnce(1, [client = http_client(serverUrl())] { return getByHand(client); });
}

Operation selecting() {
    return [api = issuesApi()] { benchmark::DoNotOptimize(api->select_DynamicSchemaBaseClass(locations::list).get()); };
}

Operation downloading() {
    return [api = FileApi(clientOf(serverUrl()))] {
        benchmark::DoNotOptimize(api.fILEGET_DynamicSchemaFile_instanceId(locations::file, "1").get());
    };
}

Operation downloadingByHand() {
    serverUrl();
    return [] {
        benchmark::DoNotOptimize(requestByHand("file/DynamicSchema/File/1/$file", "application/octet-stream", false)
                                     .then([](const http_response& response) { return response.extract_vector(); })
                                     .then([](const std::vector<unsigned char>& bytes) {
                                         return std::make_shared<std::stringstream>(
                                             std::string(bytes.begin(), bytes.end()));
                                     })
                                     .get());
    };
}

std::shared_ptr<MultipartFormData> multipartOfFile() {
    static const auto data = std::make_shared<std::istringstream>(fileBytes());
    auto part = std::make_shared<HttpContent>();
    part->setContentDisposition("form-data");
    part->setName("file");
    part->setFileName("file.bin");
    part->setData(data);
    auto body = std::make_shared<MultipartFormData>();
    body->add(part);
    return body;
}

pplx::task<http_response> post(const ApiClient& client, const std::shared_ptr<MultipartFormData>& body) {
    return client.callApi("/Varnel.Forms--issue/", "POST", {}, body, {}, {}, {},
                          "multipart/form-data; boundary=" + body->getBoundary());
}

/// Ends where a connection would begin: nobody listens at port 1.
Operation settingMultipart() {
    return [client = clientOf("http://127.0.0.1:1"), body = multipartOfFile()] {
        try {
            post(*client, body).get();
        } catch (const web::http::http_exception&) {
            return;
        }
        throw std::logic_error("somebody listens at port 1");
    };
}

Operation sendingMultipart() {
    return [client = clientOf(serverUrl()), body = multipartOfFile()] {
        benchmark::DoNotOptimize(post(*client, body).get());
    };
}

/// Sends one copy of the file as the body of a request made by hand.
Operation sendingByHand() {
    serverUrl();
    fileBytes();
    return [] {
        web::http::http_request request(web::http::methods::POST);
        std::string copy = fileBytes();
        request.set_body(concurrency::streams::bytestream::open_istream(std::move(copy)), fileSize);
        request.set_request_uri(web::uri("/Varnel.Forms--issue/"));
        benchmark::DoNotOptimize(http_client(serverUrl()).request(request).get());
    };
}

Operation copying() {
    fileBytes();
    return [] {
        const std::unique_ptr<char[]> block(new char[fileSize]);
        std::memcpy(block.get(), fileBytes().data(), fileSize);
        benchmark::DoNotOptimize(block.get());
        benchmark::ClobberMemory();
    };
}

} // namespace

std::vector<Row> callRows() {
    return {
        gets("get", 1),
        {"get-kept", [] { return getting(1); }, gettingByHandOnOne},
        gets("get-64", 64),
        {"select", selecting, parsing},
        {"select-memory", selecting, parsing, true},
        {"multipart-set", settingMultipart, copying, true},
        {"multipart-send", sendingMultipart, sendingByHand},
        {"multipart-send-memory", sendingMultipart, copying, true},
        {"download", downloading, downloadingByHand},
        {"download-memory", downloading, copying, true},
        gets("get-1000", 1000),
    };
}

} // namespace bench
