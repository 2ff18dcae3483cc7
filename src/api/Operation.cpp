#include <boost/algorithm/string/replace.hpp>

#include "Operation.h"

#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/model/JsonBody.h>
#include <VarnelAPI/Forms/model/MultipartFormData.h>

#include "Request.h"
#include "ResponseText.h"
#include "model/Conversion.h"
#include "model/MediaTypes.h"
#include "model/ModelJson.h"
#include "model/Streams.h"
#include "model/TextBody.h"
#include "transport/Attempts.h"
#include "transport/ContentLength.h"

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
    bytes.reserve(buffer.in_avail() + model::detail::lanePadding);
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
    if (response.headers().has(header_names::transfer_encoding) ||
        !response.headers().match(header_names::content_length, length) || transport::detail::isLength(length, size)) {
        return;
    }
    throw web::http::http_exception((transport::detail::lengthOf(length).empty()
                                         ? _XPLATSTR("the response's Content-Length is no length: ")
                                         : _XPLATSTR("the response's body is not as long as its Content-Length: ")) +
                                    length);
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

utility::string_t requestType(const std::string& operation, const std::set<utility::string_t>& consumed) {
    if (consumed.empty() || consumed.count(jsonType) != 0) {
        return jsonType;
    }
    if (consumed.count(multipartType) != 0) {
        return multipartType;
    }
    throw ApiException(status_codes::UnsupportedMediaType,
                       to_string_t(operation) + _XPLATSTR(" does not consume any supported media type"), nullptr);
}

bool Answer::isGone() const {
    return effect == transport::detail::Effect::Deletes && control && control->repeats() != 0 &&
           (*arrived)->status_code() == status_codes::NotFound;
}

void Answer::fail(web::http::status_code code, const utility::string_t& reason,
                  std::shared_ptr<std::istream> content) const {
    const auto after =
        control ? control->afterAttempts(effect == transport::detail::Effect::Changes) : utility::string_t();
    throw ApiException(code, _XPLATSTR("error calling ") + operation + _XPLATSTR(": ") + reason + after,
                       std::move(content));
}

bool Answer::isExpected() const {
    if (isGone()) {
        return true;
    }
    const http_response& response = **arrived;
    utility::string_t type;
    return response.status_code() < status_codes::BadRequest &&
           (!response.headers().match(header_names::content_type, type) ||
            type.find(accept) != utility::string_t::npos);
}

void Answer::check(const pplx::task<http_response>& ready) const {
    // Where the call was ended before its time, the transfer may still go on, and nothing else may be looked at.
    if (const auto failure = control ? control->failure() : nullptr) {
        transport::detail::observe(ready);
        std::rethrow_exception(failure);
    }
    if (!arrived->has_value() || isExpected()) {
        ready.get();
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
        fail(response.status_code(), response.reason_phrase(), std::move(content));
    }
    fail(status_codes::InternalError, _XPLATSTR("unexpected response type: ") + response.headers().content_type(),
         std::move(content));
}

void Answer::requireWhole(std::size_t size) const {
    if (!isDecoded || !(*arrived)->headers().has(header_names::content_encoding)) {
        requireLength(**arrived, size);
    }
}

std::string Answer::body(const pplx::task<http_response>& ready) const {
    check(ready);
    std::string bytes = takeBody(**arrived);
    requireWhole(bytes.size());
    return bytes;
}

std::shared_ptr<std::istream> Answer::download(const pplx::task<http_response>& ready) const {
    if (!control || !control->wishes().saves()) {
        return model::detail::streamOf(body(ready));
    }
    const auto& file = control->file();
    try {
        check(ready);
        requireWhole(control->saved());
        return file ? file->keep() : model::detail::streamOf({});
    } catch (...) {
        control->discardFile();
        throw;
    }
}

std::shared_ptr<model::Model> Answer::read(std::shared_ptr<model::Model> (*make)(),
                                           const pplx::task<http_response>& ready) const {
    std::string bytes = body(ready);
    if (accept != jsonType) {
        fail(status_codes::InternalError, _XPLATSTR("unsupported response type"), nullptr);
    }
    const utility::string_t type = (*arrived)->headers().content_type();
    auto result = make();
    if (isUtf8(type) && model::detail::readFast(*result, bytes)) {
        return result;
    }
    result = make(); // The other one may be half full.
    auto json = model::detail::decoding([&] {
        // The text is gone before the model is filled: text, tree and model need not all stand in memory at once.
        return model::detail::parseJson(decodeText(std::move(bytes), type));
    });
    result->fromJson(std::move(json));
    return result;
}

Operation::Operation(const std::shared_ptr<ApiClient>& client, const char* api, const char* name,
                     const utility::string_t& method, const utility::string_t& path)
    : m_Client(client), m_Name(std::string(api) + "->" + name), m_Method(method), m_Path(repositories + path) {
    m_Answer.operation = to_string_t(name);
    m_Answer.arrived = std::make_shared<std::optional<http_response>>();
    const auto configuration = model::detail::required(m_Client->getConfiguration(), "the configuration of the client");
    m_Headers = configuration->getDefaultHeaders();
    if (const auto options = m_Client->getCallOptions()) {
        for (const auto& [key, value] : transport::detail::headersOf(transport::detail::wishesOf(*options))) {
            header(key, value);
        }
    }
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
    if (at == utility::string_t::npos) {
        throw std::logic_error(m_Name + ": there is no " + to_utf8string(braced) + " to fill in " +
                               to_utf8string(m_Path));
    }
    const utility::string_t text = ApiClient::parameterToString(value);
    m_Path.replace(at, braced.size(), text);
    m_Filled = at + text.size();
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
    transport::detail::replaceHeader(m_Headers, name, value);
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
    m_ContentType = requestType(m_Name, types);
    return *this;
}

Operation& Operation::body(const std::shared_ptr<model::ModelBase>& instance, const model::Model* described) {
    if (m_ContentType == jsonType) {
        if (described != nullptr) {
            m_Body = std::make_shared<model::detail::TextBody>(model::detail::writeText(*described));
        } else {
            m_Body = std::make_shared<model::JsonBody>(model::ModelBase::toJson(instance));
        }
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

void Operation::send(Wanted wanted, Finish finish) {
    const auto options = m_Client->getCallOptions();
    if (wanted != Wanted::Download && options && transport::detail::wishesOf(*options).saves()) {
        throw std::invalid_argument(m_Name + ": there is no download to save");
    }
    auto call =
        makeCall(m_Client->getConfiguration(), m_Path, m_Method, m_Query, m_Body, m_Headers, {}, {}, m_ContentType);
    Answer answer = m_Answer;
    answer.control = call.control = controlOf(options);
    answer.effect = call.effect;
    if (answer.control) {
        call.operation = answer.operation;
    }
    // Made before, so that nothing throws between the call and who waits for it.
    auto end = [answer, finish = std::move(finish)](const Ready& ready) {
        transport::detail::atTheEnd([&] { finish(answer, ready); });
    };
    const auto sent = transport::detail::send(
        std::move(call), [answer, wanted](const http_response& response,
                                          const std::shared_ptr<transport::detail::ResponseBuffer>& body) {
            *answer.arrived = response;
            if (wanted == Wanted::Nothing && answer.isExpected()) {
                transport::detail::discardBody(response);
                return pplx::task_from_result(response);
            }
            if (wanted == Wanted::Download && answer.control && answer.control->wishes().saves() &&
                answer.isExpected()) {
                answer.control->save(response, body);
            }
            return transport::detail::whole(response);
        });
    transport::detail::continued(sent, std::move(end));
}

void Operation::read(std::shared_ptr<model::Model> (*make)(),
                     std::function<void(std::shared_ptr<model::Model>, std::exception_ptr)> settle) {
    send(Wanted::Text, [make, settle = std::move(settle)](const Answer& answer, const Ready& ready) {
        std::shared_ptr<model::Model> result;
        auto failure = failureOf([&] { result = answer.read(make, ready); });
        settle(std::move(result), std::move(failure));
    });
}

pplx::task<model::HttpContent> Operation::yieldContent(Describe describe) {
    Settlement<model::HttpContent> settlement;
    send(Wanted::Download, [settlement, describe](const Answer& answer, const Ready& ready) {
        model::HttpContent content;
        auto failure = failureOf([&] {
            content.setData(answer.download(ready));
            if (describe != nullptr) {
                describe(content, **answer.arrived);
            }
        });
        failure ? settlement.fail(std::move(failure)) : settlement.fulfil(std::move(content));
    });
    return settlement.task();
}

pplx::task<void> Operation::yieldNothing() {
    Settlement<void> settlement;
    send(Wanted::Nothing, [settlement](const Answer& answer, const Ready& ready) {
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

} // namespace VarnelAPI::Forms::api::detail
