#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/transport/CallOptions.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace VarnelAPI::Forms::api {
class ApiClient;
class AttachmentApi;
class FileApi;
class GeneratedPDFApi;
class ListGroupApi;
class RendererApi;
} // namespace VarnelAPI::Forms::api

namespace VarnelAPI::Forms::model {
class IHttpBody;
} // namespace VarnelAPI::Forms::model

/// Files of any size, to and from instances that have one, without holding them in memory:
///
///     kit::upload(attachments, project, id, kit::FileContent::ofFile(path)).get();
///     kit::download(attachments, project, id, path, transport::CallOptions().cancelOn(token)).get();
///
namespace VarnelAPI::Forms::kit {

/// A class whose instances have a file. Its API object stands for it, wherever one of these is asked for.
class VARNEL_FORMS_API FileClass {
public:
    // NOLINTBEGIN(google-explicit-constructor): so that the functions below take API objects.
    /// The class whose instances the API object reaches, and its client.
    FileClass(const api::AttachmentApi& api);
    FileClass(const api::FileApi& api);
    FileClass(const api::GeneratedPDFApi& api);
    FileClass(const api::ListGroupApi& api);
    FileClass(const api::RendererApi& api);
    // NOLINTEND(google-explicit-constructor)

    /// For the kit itself.
    struct Names;
    const Names& names() const { return *m_Names; }
    /// That of the API object, with these options.
    std::shared_ptr<api::ApiClient> clientFor(const transport::CallOptions& options) const;

private:
    std::shared_ptr<api::ApiClient> m_Client;
    const Names* m_Names;
};

/// What an upload sends: bytes, and what they are called.
class VARNEL_FORMS_API FileContent {
public:
    /// A whole file, as large as it is when it is sent. It is called by the last part of its path.
    static FileContent ofFile(const utility::string_t& path);
    /// `size` bytes of a stream, from its start, or from where it stands if it can't seek. Nobody else may use it until
    /// the upload has ended.
    /// @throws std::invalid_argument if `stream` is an empty pointer or has no buffer.
    static FileContent ofStream(std::shared_ptr<std::istream> stream, uint64_t size);
    static FileContent ofBytes(std::string bytes);

    /// Unless said otherwise, "application/octet-stream".
    /// @throws std::invalid_argument if it is empty.
    FileContent& mediaType(const utility::string_t& value);
    /// Sent as the name of an attachment (Content-Disposition); an empty one, and so that of a stream or of bytes
    /// unless said otherwise, is not sent.
    FileContent& fileName(const utility::string_t& value);

    /// What was given; empty if nothing was.
    const utility::string_t& getMediaType() const { return m_MediaType; }
    const utility::string_t& getFileName() const { return m_FileName; }

    /// The body of one request.
    /// @throws std::system_error if the file can't be opened.
    std::shared_ptr<model::IHttpBody> body() const { return m_Body(); }

private:
    explicit FileContent(std::function<std::shared_ptr<model::IHttpBody>()> body);

    std::function<std::shared_ptr<model::IHttpBody>()> m_Body;
    utility::string_t m_MediaType;
    utility::string_t m_FileName;
};

/// Stores a file for an instance, in place of the one that it has.
/// PUT `{location}/{schema}/{class}/{instanceId}/$file`
/// @param options what this call wants, and where they say nothing, what the client of `files` says. An upload is
///     repeated only by `RetryPolicy::changes`.
/// @return done when the service has it. It fails as operations do (see `api::ResourceApi`), and with what the stream
///     throws, or web::http::http_exception if that ends early. It may be dropped.
/// @throws std::system_error, in the call, if the file can't be read; std::invalid_argument for options that save a
///     download, and for CR, LF or NUL in the media type or the name; and what operations throw in the call.
VARNEL_FORMS_API pplx::task<void> upload(const FileClass& files, const utility::string_t& location,
                                         const utility::string_t& instanceId, const FileContent& content,
                                         const transport::CallOptions& options = transport::CallOptions());

/// Brings the file of an instance to `path`, in place of what is there, when it is whole; see `CallOptions::saveTo`.
/// GET `{location}/{schema}/{class}/{instanceId}/$file`
/// @param options what this call wants, and where they say nothing, what the client of `files` says.
/// @return the file: its data reads it from the disk, and media type, disposition and file name are those of the
///     answer, where it has them; the name is one without folders, or empty. The task fails as operations do, and with
///     std::system_error if the file can't be written; then what was at `path` is still there. It may be dropped.
/// @throws std::system_error, in the call, if no file can be made there; std::invalid_argument for an empty path; and
///     what operations throw in the call.
VARNEL_FORMS_API pplx::task<model::HttpContent>
download(const FileClass& files, const utility::string_t& location, const utility::string_t& instanceId,
         const utility::string_t& path, const transport::CallOptions& options = transport::CallOptions());

/// All bytes of a content, from its start, for those that are small.
/// @throws std::invalid_argument if it has no data.
VARNEL_FORMS_API std::string bytesOf(const model::HttpContent& content);
/// The same without waiting. The task fails as the download does; it may be dropped.
VARNEL_FORMS_API pplx::task<std::string> bytesOf(const pplx::task<model::HttpContent>& download);

} // namespace VarnelAPI::Forms::kit
