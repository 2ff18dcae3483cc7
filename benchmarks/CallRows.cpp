#include "Rows.h"

#include "support/Calls.h"
#include "support/Data.h"
#include "support/Server.h"

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/api/AttachmentApi.h>
#include <VarnelAPI/Forms/api/BaseClassApi.h>
#include <VarnelAPI/Forms/api/FileApi.h>
#include <VarnelAPI/Forms/model/MultipartFormData.h>
#include <VarnelAPI/Forms/transport/Transport.h>

#include <benchmark/benchmark.h>
#include <cpprest/containerstream.h>
#include <cpprest/http_client.h>

#include <cstring>
#include <sstream>

namespace bench {

namespace {

using VarnelAPI::Forms::api::ApiClient;
using VarnelAPI::Forms::api::AttachmentApi;
using VarnelAPI::Forms::api::BaseClassApi;
using VarnelAPI::Forms::api::FileApi;
using VarnelAPI::Forms::model::DynamicSchemaBaseClassInstance;
using VarnelAPI::Forms::model::DynamicSchemaBaseClassInstances;
using VarnelAPI::Forms::model::HttpContent;
using VarnelAPI::Forms::model::MultipartFormData;
using web::http::http_response;
using web::http::client::http_client;
using web::json::value;

Row gets(const std::string& name, std::size_t count) {
    return {name, [count] { return getting(count, clientOf(serverUrl())); },
            [count] {
                serverUrl();
                return atOnce(count, [] { return getByHand(http_client(serverUrl())); });
            },
            Row::Memory::Allocated};
}

/// On a client, and so on a connection, that is kept.
Operation gettingByHandOnOne() {
    return atOnce(1, [client = http_client(serverUrl())] { return getByHand(client); });
}

Operation selecting(const char* location = locations::list) {
    return [api = std::make_shared<BaseClassApi>(clientOf(serverUrl())), location] {
        benchmark::DoNotOptimize(api->select_DynamicSchemaBaseClass(location).get());
    };
}

Operation selectingAttachments() {
    return [api = AttachmentApi(clientOf(serverUrl()))] {
        benchmark::DoNotOptimize(api.select_DynamicSchemaAttachment(locations::attachments, "").get());
    };
}

/// A list as one reads it by hand: the text that came, its tree, the models.
Operation readingByHand() {
    return [] {
        std::string text = largeListText();
        value tree = value::parse(text);
        std::string().swap(text);
        DynamicSchemaBaseClassInstances issues;
        issues.fromJson(std::move(tree));
        benchmark::DoNotOptimize(issues);
    };
}

/// Takes every request, and answers that it is well, without a network.
class Accepting final : public VarnelAPI::Forms::transport::Transport {
    pplx::task<http_response> send(const web::uri&, const web::http::client::http_client_config&,
                                   web::http::http_request, const pplx::cancellation_token&) override {
        http_response response(web::http::status_codes::OK);
        response.set_body("{}", "application/json");
        return pplx::task_from_result(response);
    }
};

std::shared_ptr<DynamicSchemaBaseClassInstance> relatedIssue() {
    auto issue = std::make_shared<DynamicSchemaBaseClassInstance>();
    issue->fromJson(value::parse(relatedIssueText()));
    return issue;
}

Operation inserting() {
    const auto client = clientOf("http://service.example");
    client->getConfiguration()->setTransport(std::make_shared<Accepting>());
    return [api = BaseClassApi(client), issue = relatedIssue()] {
        benchmark::DoNotOptimize(api.insert_DynamicSchemaBaseClass("location", issue).get());
    };
}

Operation writingInsertByHand() {
    return [issue = relatedIssue()] { benchmark::DoNotOptimize(issue->toJson().serialize()); };
}

Operation downloading() {
    return [api = FileApi(clientOf(serverUrl()))] {
        benchmark::DoNotOptimize(api.fILEGET_DynamicSchemaFile_instanceId(locations::file, "1").get());
    };
}

Operation downloadingByHand() {
    serverUrl();
    return [] {
        benchmark::DoNotOptimize(
            sent(http_client(serverUrl()),
                 requestOf(web::http::methods::GET, "file/DynamicSchema/File/1/$file", "application/octet-stream"))
                .then([](const http_response& response) { return response.extract_vector(); })
                .then([](const std::vector<unsigned char>& bytes) {
                    return std::make_shared<std::stringstream>(std::string(bytes.begin(), bytes.end()));
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

Operation copyingInsert() {
    relatedIssueText();
    return [] {
        std::string copy = relatedIssueText();
        benchmark::DoNotOptimize(copy);
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
        {"get-kept", [] { return getting(1, clientOf(serverUrl())); }, gettingByHandOnOne},
        gets("get-64", 64),
        {"select", [] { return selecting(); }, [] { return parsing(); }},
        {"select-2", [] { return selecting(); }, [] { return parsing(); }},
        {"select-attachments", selectingAttachments, [] { return parsing(attachmentListText()); }},
        {"select-custom", [] { return selecting(locations::custom); }, [] { return parsing(customListText()); }},
        {"select-memory", [] { return selecting(locations::largeList); }, readingByHand, Row::Memory::Resident},
        {"insert-body", inserting, writingInsertByHand},
        {"insert-body-memory", inserting, copyingInsert, Row::Memory::Allocated},
        {"multipart-set", settingMultipart, copying, Row::Memory::Allocated},
        {"multipart-send", sendingMultipart, sendingByHand},
        {"multipart-send-memory", sendingMultipart, copying, Row::Memory::Allocated},
        {"download", downloading, downloadingByHand},
        {"download-memory", downloading, copying, Row::Memory::Allocated},
        gets("get-1000", 1000),
    };
}

} // namespace bench
