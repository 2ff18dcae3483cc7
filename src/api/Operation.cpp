#include <boost/algorithm/string/replace.hpp>

#include "Operation.h"

#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/model/JsonBody.h>
#include <VarnelAPI/Forms/model/MultipartFormData.h>

#include "Redirects.h"
#include "Request.h"
#include "ResponseText.h"
#include "model/Conversion.h"
#include "model/MediaTypes.h"
#include "model/Streams.h"

#include <cpprest/http_client.h>

namespace VarnelAPI::Forms::api::detail {

using model::detail::binaryType;
using model::detail::jsonType;
using model::detail::multipartType;
using utility::conversions::to_string_t;
using utility::conversions::to_utf8string;
using web::http::header_names;
using web::http::http_response;
using web::http::status_codes;

namespace {

const utility::char_t repositories[] = _XPLATSTR("/sv1.2/Repositories/Varnel.Forms--");

/// A dot segment is resolved, and so lost, by servers and proxies, to whom "%2e" is a dot too.
bool hasDotSegment(const utility::string_t& path) {
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.find(_XPLATSTR('/'), begin), path.size());
        const auto segment =
            boost::ireplace_all_copy(path.substr(begin, end - begin), _XPLATSTR("%2e"), _XPLATSTR("."));
        if (segment == _XPLATSTR(".") || segment == _XPLATSTR("..")) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

std::string takeBody(const http_response& response) {
    std::string bytes;
    auto buffer = response.body().streambuf();
    bytes.reserve(buffer.in_avail());
    uint8_t* block = nullptr;
    std::size_t size = 0;
    while (buffer.acquire(block, size) && size != 0) {
        bytes.append(reinterpret_cast<const char*>(block), size);
        buffer.release(block, size);
    }
    return bytes;
}

/// The HTTP library takes a Content-Length that is no number, or one too large, for another length or none.
void requireLength(const http_response& response, std::size_t size) {
    utility::string_t length;
    if (!response.headers().has(header_names::transfer_encoding) &&
        response.headers().match(header_names::content_length, length) && length != to_string_t(std::to_string(size))) {
        throw web::http::http_exception(_XPLATSTR("the response's body is not as long as its Content-Length: ") +
                                        length);
    }
}

[[noreturn]] void fail(web::http::status_code code, const utility::string_t& operation, const utility::string_t& reason,
                       std::shared_ptr<std::istream> content) {
    throw ApiException(code, _XPLATSTR("error calling ") + operation + _XPLATSTR(": ") + reason, std::move(content));
}

/// What `work` throws, or null.
template <class Work>
std::exception_ptr failureOf(Work work) {
    try {
        work();
        return nullptr;
    } catch (...) {
        return std::current_exception();
    }
}

} // namespace

bool Answer::isExpected() const {
    const http_response& response = **arrived;
    utility::string_t type;
    return response.status_code() < status_codes::BadRequest &&
           (!response.headers().match(header_names::content_type, type) ||
            type.find(accept) != utility::string_t::npos);
}

void Answer::check(const pplx::task<http_response>& ready) const {
    if (!arrived->has_value() || isExpected()) {
        try {
            ready.get();
        } catch (const std::runtime_error& error) {
            // Of a body that can't be decompressed, or of a callback of the settings. The HTTP library's own failures
            // are http_exceptions, which are none of these.
            throw web::http::http_exception(to_string_t(error.what()));
        }
        return;
    }
    try {
        ready.get();
    } catch (...) {
        // The failed status says more than that its text broke off: what came of the text is the content.
    }
    const http_response& response = **arrived;
    auto content = model::detail::streamOf(takeBody(response));
    if (response.status_code() >= status_codes::BadRequest) {
        fail(response.status_code(), operation, response.reason_phrase(), std::move(content));
    }
    fail(status_codes::InternalError, operation,
         _XPLATSTR("unexpected response type: ") + response.headers().content_type(), std::move(content));
}

std::string Answer::body(const pplx::task<http_response>& ready) const {
    check(ready);
    std::string bytes = takeBody(**arrived);
    if (!isDecoded || !(*arrived)->headers().has(header_names::content_encoding)) {
        requireLength(**arrived, bytes.size());
    }
    return bytes;
}

void Answer::read(model::detail::Model& result, const pplx::task<http_response>& ready) const {
    std::string bytes = body(ready);
    if (accept != jsonType) {
        fail(status_codes::InternalError, operation, _XPLATSTR("unsupported response type"), nullptr);
    }
    auto json = model::detail::decoding([&] {
        // The text is gone before the model is filled: text, tree and model need not all stand in memory at once.
        return model::detail::parseJson(decodeText(std::move(bytes), (*arrived)->headers().content_type()));
    });
    result.fromJson(std::move(json));
}

Operation::Operation(const std::shared_ptr<ApiClient>& client, const char* api, const char* name,
                     const utility::string_t& method, const utility::string_t& path)
    : m_Client(client),
      m_Name(std::string(api) + "->" + name), m_Answer{to_string_t(name),
                                                       {},
                                                       std::make_shared<std::optional<http_response>>()},
      m_Method(method), m_Path(repositories + path) {
    const auto configuration = model::detail::required(m_Client->getConfiguration(), "the configuration of the client");
    m_Headers = configuration->getDefaultHeaders();
    m_Answer.isDecoded = configuration->getHttpConfig().request_compressed_response();
    produces({jsonType});
    consumes({});
}

Operation& Operation::fill(const utility::char_t* placeholder, const utility::string_t& value) {
    if (value.find_first_of(_XPLATSTR("?#")) != utility::string_t::npos || hasDotSegment(value)) {
        throw std::invalid_argument(m_Name + ": the " + to_utf8string(placeholder) + " \"" + to_utf8string(value) +
                                    "\" would change the path; percent-encode \"?\" and \"#\", and use no \".\" or "
                                    "\"..\" as a segment");
    }
    const utility::string_t braced = _XPLATSTR("{") + utility::string_t(placeholder) + _XPLATSTR("}");
    const auto at = m_Path.find(braced, m_Filled);
    if (at != utility::string_t::npos) {
        const utility::string_t text = ApiClient::parameterToString(value);
        m_Path.replace(at, braced.size(), text);
        m_Filled = at + text.size();
    }
    return *this;
}

Operation& Operation::query(const utility::char_t* key, const TextOption& value) {
    if (value) {
        m_Query[key] = ApiClient::parameterToString(*value);
    }
    return *this;
}

Operation& Operation::query(const utility::char_t* key, const NumberOption& value) {
    return query(key, value ? TextOption(ApiClient::parameterToString(*value)) : TextOption());
}

Operation& Operation::options(const SelectOptions& options) {
    return query(_XPLATSTR("$filter"), options.filter)
        .query(_XPLATSTR("$select"), options.select)
        .query(_XPLATSTR("$orderby"), options.orderby)
        .query(_XPLATSTR("api.filtersettings"), options.filtersettings)
        .query(_XPLATSTR("$skip"), options.skip)
        .query(_XPLATSTR("$top"), options.top);
}

Operation& Operation::header(const utility::string_t& name, const utility::string_t& value) {
    for (auto entry = m_Headers.begin(); entry != m_Headers.end();) {
        entry = utility::details::str_iequal(entry->first, name) ? m_Headers.erase(entry) : std::next(entry);
    }
    m_Headers[name] = value;
    return *this;
}

Operation& Operation::produces(const std::set<utility::string_t>& types) {
    if (types.empty() || types.count(jsonType) != 0) {
        m_Answer.accept = jsonType;
    } else if (types.count(multipartType) != 0) {
        m_Answer.accept = multipartType;
    } else if (types.count(binaryType) != 0) {
        m_Answer.accept = binaryType;
    } else {
        throw ApiException(status_codes::BadRequest,
                           to_string_t(m_Name) + _XPLATSTR(" does not produce any supported media type"), nullptr);
    }
    return header(header_names::accept, m_Answer.accept);
}

Operation& Operation::consumes(const std::set<utility::string_t>& types) {
    if (types.empty() || types.count(jsonType) != 0) {
        m_ContentType = jsonType;
    } else if (types.count(multipartType) != 0) {
        m_ContentType = multipartType;
    } else {
        throw ApiException(status_codes::UnsupportedMediaType,
                           to_string_t(m_Name) + _XPLATSTR(" does not consume any supported media type"), nullptr);
    }
    return *this;
}

Operation& Operation::body(std::shared_ptr<model::ModelBase> instance) {
    if (m_ContentType == jsonType) {
        m_Body = std::make_shared<model::JsonBody>(model::ModelBase::toJson(std::move(instance)));
    } else {
        auto multipart = std::make_shared<model::MultipartFormData>();
        if (instance) {
            instance->toMultipart(multipart, _XPLATSTR("instance_body"));
        }
        m_ContentType += _XPLATSTR("; boundary=") + multipart->getBoundary();
        m_Body = std::move(multipart);
    }
    return *this;
}

Operation& Operation::body(std::shared_ptr<model::IHttpBody> body, const utility::string_t& contentType) {
    m_Body = std::move(body);
    m_ContentType = contentType;
    return *this;
}

void Operation::send(bool wantsBody, std::function<void(const Ready&)> finish) {
    const auto configuration = m_Client->getConfiguration();
    auto call = makeCall(configuration, m_Path, m_Method, m_Query, m_Body, m_Headers, {}, {}, m_ContentType);
    detail::send(*configuration, std::move(call), [answer = m_Answer, wantsBody](const http_response& response) {
        *answer.arrived = response;
        if (wantsBody || !answer.isExpected()) {
            return response.content_ready();
        }
        discardBody(response);
        return pplx::task_from_result(response);
    }).then(std::move(finish));
}

void Operation::read(std::shared_ptr<model::detail::Model> result, std::function<void(std::exception_ptr)> settle) {
    send(true, [answer = m_Answer, result = std::move(result), settle = std::move(settle)](const Ready& ready) {
        settle(failureOf([&] { answer.read(*result, ready); }));
    });
}

pplx::task<model::HttpContent> Operation::yieldContent() {
    Settlement<model::HttpContent> settlement;
    send(true, [answer = m_Answer, settlement](const Ready& ready) {
        model::HttpContent content;
        auto failure = failureOf([&] { content.setData(model::detail::streamOf(answer.body(ready))); });
        failure ? settlement.fail(std::move(failure)) : settlement.fulfil(std::move(content));
    });
    return settlement.task();
}

pplx::task<void> Operation::yieldNothing() {
    Settlement<void> settlement;
    send(false, [answer = m_Answer, settlement](const Ready& ready) {
        auto failure = failureOf([&] { answer.check(ready); });
        failure ? settlement.fail(std::move(failure)) : settlement.fulfil();
    });
    return settlement.task();
}

Operation Resource::onPath(const Client& client, const char* name, const utility::string_t& method,
                           const utility::string_t& path) const {
    return Operation(client, m_Api, name, method, path);
}

Operation Resource::onClass(const Client& client, const char* name, const utility::string_t& method,
                            const utility::string_t& location, const utility::string_t& suffix) const {
    return std::move(onPath(client, name, method, _XPLATSTR("{location}/") + utility::string_t(m_Path) + suffix)
                         .fill(_XPLATSTR("location"), location));
}

Operation Resource::onInstance(const Client& client, const char* name, const utility::string_t& method,
                               const utility::string_t& location, const utility::string_t& instanceId,
                               const utility::string_t& suffix) const {
    return std::move(onClass(client, name, method, location, _XPLATSTR("/{instanceId}/") + suffix)
                         .fill(_XPLATSTR("instanceId"), instanceId));
}

Operation Resource::belowIssue(const Client& client, const char* name, const utility::string_t& method,
                               const utility::string_t& location, const utility::string_t& issueClass,
                               const utility::string_t& issueId) const {
    if (issueClass.empty() || issueId.empty()) {
        return onClass(client, name, method, location);
    }
    const utility::string_t path(m_Path);
    const auto slash = path.find(_XPLATSTR('/'));
    return std::move(onPath(client, name, method,
                            _XPLATSTR("{location}/") + path.substr(0, slash) + _XPLATSTR("/{issueClass}/{issueId}") +
                                path.substr(slash))
                         .fill(_XPLATSTR("location"), location)
                         .fill(_XPLATSTR("issueClass"), issueClass)
                         .fill(_XPLATSTR("issueId"), issueId));
}

ResourceApi::ResourceApi(std::shared_ptr<ApiClient> client) : m_ApiClient(std::move(client)) {
    model::detail::required(m_ApiClient, "the client of the API object");
}
ResourceApi::ResourceApi(const ResourceApi&) = default;
ResourceApi& ResourceApi::operator=(const ResourceApi&) = default;
ResourceApi::~ResourceApi() = default;

} // namespace VarnelAPI::Forms::api::detail
