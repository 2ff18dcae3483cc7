#include "Request.h"

#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/model/ModelBase.h>
#include <VarnelAPI/Forms/model/StreamBody.h>

#include "model/Conversion.h"
#include "model/MediaTypes.h"
#include "model/Streams.h"
#include "model/TextBody.h"
#include "transport/BodySource.h"
#include "transport/ContentLength.h"

namespace VarnelAPI::Forms::api::detail {

using model::IHttpBody;
using model::ModelBase;
using model::MultipartFormData;
using model::detail::jsonType;
using model::detail::multipartType;
using model::detail::refuseControlCharacters;
using transport::detail::Call;
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
    if (utility::details::str_iequal(name, web::http::header_names::transfer_encoding)) {
        throw std::invalid_argument(header + " follows from the body");
    }
}

/// More than one word would change the request line, and none would leave the server guessing.
void refuseMethod(const utility::string_t& method) {
    refuseControlCharacters(method, "the method");
    if (method.empty() || method.find_first_of(_XPLATSTR(" \t")) != utility::string_t::npos) {
        throw std::invalid_argument("the method \"" + to_utf8string(method) + "\" is not one word");
    }
}

/// What may be repeated follows from the method: all operations that read are a GET, and those that delete a DELETE.
transport::detail::Effect effectOf(const utility::string_t& method) {
    using transport::detail::Effect;
    using web::http::methods;
    const bool reads = method == methods::GET || method == methods::HEAD || method == methods::OPTIONS;
    return reads ? Effect::Reads : method == methods::DEL ? Effect::Deletes : Effect::Changes;
}

bool isContentLength(const utility::string_t& header) {
    return utility::details::str_iequal(header, web::http::header_names::content_length);
}

/// The length follows from the body. The HTTP library would believe another one, and wait for, or crash on, a body that
/// is not there.
void refuseOtherLengths(const Parameters& headers, std::size_t size) {
    for (const auto& [name, value] : headers) {
        if (isContentLength(name) && !transport::detail::isLength(value, size)) {
            throw std::invalid_argument("the header \"" + to_utf8string(name) + "\" says \"" + to_utf8string(value) +
                                        "\", and the body's length is " + std::to_string(size));
        }
    }
}

/// The body's whole text. A multipart body is written into one block of its final size.
std::string bytesOf(IHttpBody& body) {
    if (auto* text = dynamic_cast<model::detail::TextBody*>(&body)) {
        return text->take();
    }
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
    if (const auto* stream = dynamic_cast<const model::StreamBody*>(&body)) {
        request.set_body(transport::detail::bodyOf(stream->getStream()), stream->getSize(), contentType);
        return;
    }
    std::string bytes = bytesOf(body);
    const std::size_t size = bytes.size();
    // Not in a stream of the HTTP library over bytes, which needs memory to be destroyed.
    request.set_body(transport::detail::bodyOf(model::detail::streamOf(std::move(bytes))), size, contentType);
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

    Call call;
    call.transport = configuration->getTransport() ? configuration->getTransport() : transport::freshConnections();
    call.base = transport::detail::serviceAddress(configuration->getBaseUrl());
    call.settings = configuration->getHttpConfig();
    call.maxRedirects = call.settings.max_redirects();
    call.settings.set_max_redirects(0);
    web::http::http_request& request = call.request;
    for (const auto& [name, value] : headerParams) {
        refuseHeader(name, value);
        if (!isContentLength(name)) {
            request.headers().add(name, value);
        }
    }
    if (postBody) {
        setBody(request, *postBody, contentType);
    } else if (contentType == multipartType) {
        setMultipart(request, formParams, fileParams);
    } else if (!formParams.empty()) {
        contentType == jsonType ? setJsonForm(request, formParams) : setUrlencodedForm(request, formParams);
    }
    refuseOtherLengths(headerParams, static_cast<std::size_t>(request.headers().content_length()));
    request.set_request_uri(requestUri(path, queryParams));
    request.set_method(method);
    call.effect = effectOf(method);
    if (!request.headers().has(header_names::user_agent)) {
        const utility::string_t userAgent = configuration->getUserAgent();
        refuseHeader(header_names::user_agent, userAgent);
        request.headers().add(header_names::user_agent, userAgent);
    }
    return call;
}

std::shared_ptr<transport::detail::CallControl>
controlOf(const std::shared_ptr<const transport::CallOptions>& options) {
    return options ? transport::detail::CallControl::forWishes(transport::detail::wishesOf(*options)) : nullptr;
}

} // namespace VarnelAPI::Forms::api::detail
