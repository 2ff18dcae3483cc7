#include "Request.h"

#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/model/ModelBase.h>

#include "model/Conversion.h"
#include "model/MediaTypes.h"
#include "model/Streams.h"

#include <cpprest/containerstream.h>

namespace VarnelAPI::Forms::api::detail {

using model::IHttpBody;
using model::ModelBase;
using model::MultipartFormData;
using model::detail::jsonType;
using model::detail::multipartType;
using model::detail::refuseControlCharacters;
using utility::conversions::to_utf8string;

namespace {

void refuseConflicts(const std::shared_ptr<IHttpBody>& body, const Parameters& form, const Files& files,
                     const utility::string_t& contentType) {
    const utility::char_t* conflict = nullptr;
    if (body && !form.empty()) {
        conflict = _XPLATSTR("Cannot have body and form params");
    } else if (body && !files.empty()) {
        conflict = _XPLATSTR("Cannot have body and file params");
    } else if (!body && !files.empty() && contentType != multipartType) {
        conflict = _XPLATSTR("Operations with file parameters must be called with multipart/form-data");
    }
    if (conflict != nullptr) {
        throw ApiException(web::http::status_codes::BadRequest, conflict, nullptr);
    }
}

void refuseHeader(const utility::string_t& name, const utility::string_t& value) {
    const std::string header = "the header \"" + to_utf8string(name) + '"';
    refuseControlCharacters(name, "the name of " + header);
    refuseControlCharacters(value, header);
    if (name.empty() || name.find_first_of(_XPLATSTR(" \t:")) != utility::string_t::npos) {
        throw std::invalid_argument("the name of " + header + " is not one word");
    }
}

/// More than one word would change the request line, and none would leave the server guessing.
void refuseMethod(const utility::string_t& method) {
    refuseControlCharacters(method, "the method");
    if (method.empty() || method.find_first_of(_XPLATSTR(" \t")) != utility::string_t::npos) {
        throw std::invalid_argument("the method \"" + to_utf8string(method) + "\" is not one word");
    }
}

/// These say how long the body is. The HTTP library would believe them, and wait for, or crash on, a body that is not
/// there.
void refuseFraming(const utility::string_t& name) {
    using web::http::header_names;
    if (utility::details::str_iequal(name, header_names::content_length) ||
        utility::details::str_iequal(name, header_names::transfer_encoding)) {
        throw std::invalid_argument("the header \"" + to_utf8string(name) + "\" follows from the body");
    }
}

/// The body's whole text. A multipart body is written into one block of its final size.
std::string bytesOf(IHttpBody& body) {
    std::string bytes;
    if (const auto* multipart = dynamic_cast<const MultipartFormData*>(&body)) {
        bytes.reserve(multipart->size());
    }
    model::detail::StringSink sink(bytes);
    std::ostream stream(&sink);
    stream.exceptions(std::ios_base::badbit); // rather than to send what there was memory for
    body.writeTo(stream);
    return bytes;
}

void setBody(web::http::http_request& request, IHttpBody& body, const utility::string_t& contentType) {
    std::string bytes = bytesOf(body);
    const std::size_t size = bytes.size();
    request.set_body(concurrency::streams::bytestream::open_istream(std::move(bytes)), size, contentType);
}

void setMultipart(web::http::http_request& request, const Parameters& form, const Files& files) {
    MultipartFormData multipart;
    for (const auto& [name, value] : form) {
        multipart.add(ModelBase::toHttpContent(name, value));
    }
    for (const auto& [name, file] : files) {
        multipart.add(ModelBase::toHttpContent(name, file));
    }
    setBody(request, multipart, multipartType + (_XPLATSTR("; boundary=") + multipart.getBoundary()));
}

void setJsonForm(web::http::http_request& request, const Parameters& form) {
    std::vector<std::pair<utility::string_t, web::json::value>> fields;
    for (const auto& [name, value] : form) {
        fields.emplace_back(name, ModelBase::toJson(value));
    }
    request.set_body(web::json::value::object(std::move(fields), true));
}

void setUrlencodedForm(web::http::http_request& request, const Parameters& form) {
    web::uri_builder query;
    for (const auto& [name, value] : form) {
        query.append_query(name, value);
    }
    // The whole type and a narrow text: of a wide one the library would append the charset, of this it doesn't.
    request.set_body(to_utf8string(query.query()), "application/x-www-form-urlencoded; charset=utf-8");
}

web::uri requestUri(const utility::string_t& path, const Parameters& query) {
    const web::uri resource(path);
    if (!resource.scheme().empty() || !resource.host().empty()) {
        throw std::invalid_argument("the path \"" + to_utf8string(path) +
                                    "\" names a host; it must be relative to the base URL");
    }
    if (!resource.fragment().empty()) {
        throw std::invalid_argument("the path \"" + to_utf8string(path) + "\" has a fragment; percent-encode \"#\"");
    }
    web::uri_builder builder(resource);
    for (const auto& [name, value] : query) {
        builder.append_query(name, value);
    }
    return builder.to_uri();
}

} // namespace

Call makeCall(const std::shared_ptr<ApiConfiguration>& configuration, const utility::string_t& path,
              const utility::string_t& method, const Parameters& queryParams,
              const std::shared_ptr<IHttpBody>& postBody, const Parameters& headerParams, const Parameters& formParams,
              const Files& fileParams, const utility::string_t& contentType) {
    using web::http::header_names;

    refuseConflicts(postBody, formParams, fileParams, contentType);
    model::detail::required(configuration, "the configuration of the client");
    refuseMethod(method);
    refuseControlCharacters(path, "the path");
    refuseHeader(header_names::content_type, contentType);

    Call call{makeClient(*configuration), {}};
    web::http::http_request& request = call.request;
    for (const auto& [name, value] : headerParams) {
        refuseHeader(name, value);
        refuseFraming(name);
        request.headers().add(name, value);
    }
    if (postBody) {
        setBody(request, *postBody, contentType);
    } else if (contentType == multipartType) {
        setMultipart(request, formParams, fileParams);
    } else if (!formParams.empty()) {
        contentType == jsonType ? setJsonForm(request, formParams) : setUrlencodedForm(request, formParams);
    }
    request.set_request_uri(requestUri(path, queryParams));
    request.set_method(method);
    if (!request.headers().has(header_names::user_agent)) {
        const utility::string_t userAgent = configuration->getUserAgent();
        refuseHeader(header_names::user_agent, userAgent);
        request.headers().add(header_names::user_agent, userAgent);
    }
    return call;
}

} // namespace VarnelAPI::Forms::api::detail
