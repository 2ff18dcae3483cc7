#include <boost/algorithm/string/predicate.hpp>

#include "api/Operation.h"

#include <VarnelAPI/Forms/kit/Files.h>

#include <VarnelAPI/Forms/api/AttachmentApi.h>
#include <VarnelAPI/Forms/api/FileApi.h>
#include <VarnelAPI/Forms/api/GeneratedPDFApi.h>
#include <VarnelAPI/Forms/api/ListGroupApi.h>
#include <VarnelAPI/Forms/api/RendererApi.h>
#include <VarnelAPI/Forms/kit/Tasks.h>
#include <VarnelAPI/Forms/model/StreamBody.h>

#include "model/Conversion.h"
#include "model/Streams.h"

#include <filesystem>
#include <map>

namespace VarnelAPI::Forms::kit {

using utility::conversions::to_string_t;
using utility::conversions::to_utf8string;
using web::http::header_names;

struct FileClass::Names {
    api::detail::Resource resource;
    const char* upload;
    const char* download;
};

namespace {

constexpr FileClass::Names attachments{{"AttachmentApi", _XPLATSTR("DynamicSchema/Attachment")},
                                       "upload_DynamicSchemaAttachment",
                                       "fILEGET_DynamicSchemaAttachment_instanceId"};
constexpr FileClass::Names filesOfInstances{
    {"FileApi", _XPLATSTR("DynamicSchema/File")}, "upload_DynamicSchemaFile", "fILEGET_DynamicSchemaFile_instanceId"};
constexpr FileClass::Names generatedPdfs{{"GeneratedPDFApi", _XPLATSTR("FormPDF/GeneratedPDF")},
                                         "upload_FormPDFGeneratedPDF",
                                         "fILEGET_FormPDFGeneratedPDF_instanceId"};
constexpr FileClass::Names listGroups{
    {"ListGroupApi", _XPLATSTR("Lists/ListGroup")}, "upload_ListsListGroup", "fILEGET_ListsListGroup_instanceId"};
constexpr FileClass::Names renderers{
    {"RendererApi", _XPLATSTR("Plexum/Renderer")}, "upload_PlexumRenderer", "fILEGET_PlexumRenderer_instanceId"};

/// The header that names a file, by RFC 6266: in quotes for all readers, and in UTF-8 for those that know it if that
/// says more.
utility::string_t dispositionOf(const utility::string_t& fileName) {
    constexpr char lastAscii = '\x7f';
    std::string plain;
    bool isPlain = true;
    for (const char byte : to_utf8string(fileName)) {
        const bool isAscii = byte >= 0 && byte <= lastAscii;
        isPlain = isPlain && isAscii;
        plain += byte == '"' || byte == '\\' ? "\\" : "";
        plain += isAscii ? byte : '_';
    }
    return to_string_t("attachment; filename=\"" + plain + '"') +
           (isPlain ? utility::string_t() : _XPLATSTR("; filename*=UTF-8''") + web::uri::encode_data_string(fileName));
}

/// The parameters of such a header, by their names in lower case.
std::map<std::string, std::string> parametersOf(const std::string& header) {
    std::map<std::string, std::string> parameters;
    std::string name;
    std::string text;
    bool isQuoted = false;
    const std::string closed = header + ';';
    for (std::size_t i = 0; i < closed.size(); ++i) {
        const char byte = closed[i];
        if (byte == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted) {
            i += byte == '\\' && i + 1 < header.size() ? 1 : 0;
            text += closed[i];
        } else if (byte == '=' && name.empty()) {
            name.swap(text);
            utility::details::inplace_tolower(name);
        } else if (byte == ';') {
            parameters.emplace(std::move(name), std::move(text));
            name.clear();
            text.clear();
        } else if (byte != ' ' && byte != '\t') {
            text += byte;
        }
    }
    return parameters;
}

/// The name that such a header gives a file, without folders; empty if it gives none.
utility::string_t fileNameOf(const utility::string_t& disposition) {
    auto parameters = parametersOf(to_utf8string(disposition));
    std::string name = parameters["filename"];
    const std::string inUtf8 = "utf-8'";
    const std::string& encoded = parameters["filename*"];
    const auto languageEnd = encoded.find('\'', inUtf8.size());
    if (boost::iequals(encoded.substr(0, inUtf8.size()), inUtf8) && languageEnd != std::string::npos) {
        try {
            const auto decoded = web::uri::decode(to_string_t(encoded.substr(languageEnd + 1)));
            utility::conversions::utf8_to_utf16(to_utf8string(decoded)); // throws for what is no UTF-8
            name = to_utf8string(decoded);
        } catch (const std::exception&) {
            // Then the other one is all there is.
        }
    }
    name.erase(0, name.find_last_of("/\\") + 1);
    return to_string_t(name == "." || name == ".." ? std::string() : name);
}

void describe(model::HttpContent& content, const web::http::http_response& response) {
    utility::string_t text;
    if (response.headers().match(header_names::content_disposition, text)) {
        content.setContentDisposition(text);
        content.setFileName(fileNameOf(text));
    }
    content.setContentType(response.headers().content_type());
}

} // namespace

FileClass::FileClass(const api::AttachmentApi& api) : m_Client(api.getApiClient()), m_Names(&attachments) {}
FileClass::FileClass(const api::FileApi& api) : m_Client(api.getApiClient()), m_Names(&filesOfInstances) {}
FileClass::FileClass(const api::GeneratedPDFApi& api) : m_Client(api.getApiClient()), m_Names(&generatedPdfs) {}
FileClass::FileClass(const api::ListGroupApi& api) : m_Client(api.getApiClient()), m_Names(&listGroups) {}
FileClass::FileClass(const api::RendererApi& api) : m_Client(api.getApiClient()), m_Names(&renderers) {}

std::shared_ptr<api::ApiClient> FileClass::clientFor(const transport::CallOptions& options) const {
    return m_Client->with(options);
}

FileContent::FileContent(std::function<std::shared_ptr<model::IHttpBody>()> body)
    : m_Body(std::move(body)), m_MediaType(model::detail::binaryType) {}

FileContent FileContent::ofFile(const utility::string_t& path) {
    FileContent content([path] { return model::StreamBody::ofFile(path); });
    content.fileName(utility::conversions::to_string_t(std::filesystem::path(path).filename().native()));
    return content;
}

FileContent FileContent::ofStream(std::shared_ptr<std::istream> stream, uint64_t size) {
    return FileContent([body = std::make_shared<model::StreamBody>(std::move(stream), size)] { return body; });
}

FileContent FileContent::ofBytes(std::string bytes) {
    // A stream for each upload, so that there may be several at a time.
    return FileContent([bytes = std::make_shared<const std::string>(std::move(bytes))] {
        return std::make_shared<model::StreamBody>(model::detail::streamOf(*bytes), bytes->size());
    });
}

FileContent& FileContent::mediaType(const utility::string_t& value) {
    if (value.empty()) {
        throw std::invalid_argument("the media type of a file is empty");
    }
    m_MediaType = value;
    return *this;
}

FileContent& FileContent::fileName(const utility::string_t& value) {
    m_FileName = value;
    return *this;
}

pplx::task<void> upload(const FileClass& files, const utility::string_t& location, const utility::string_t& instanceId,
                        const FileContent& content, const transport::CallOptions& options) {
    auto operation =
        files.names().resource.onInstance(files.clientFor(options), files.names().upload, web::http::methods::PUT,
                                          location, instanceId, _XPLATSTR("$file"));
    if (!content.getFileName().empty()) {
        operation.header(header_names::content_disposition, dispositionOf(content.getFileName()));
    }
    return operation.body(content.body(), content.getMediaType()).yieldNothing();
}

pplx::task<model::HttpContent> download(const FileClass& files, const utility::string_t& location,
                                        const utility::string_t& instanceId, const utility::string_t& path,
                                        const transport::CallOptions& options) {
    return files.names().resource.download(files.clientFor(transport::CallOptions(options).saveTo(path)),
                                           files.names().download, location, instanceId, describe);
}

std::string bytesOf(const model::HttpContent& content) {
    return model::detail::readAll(*model::detail::required(content.getData(), "the data of the content"));
}

pplx::task<std::string> bytesOf(const pplx::task<model::HttpContent>& download) {
    return observed(download.then([](const model::HttpContent& content) { return bytesOf(content); }));
}

} // namespace VarnelAPI::Forms::kit
