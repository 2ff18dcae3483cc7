#include "Routes.h"

#include "ServiceError.h"
#include "Text.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {
namespace {

constexpr const char* protocolRoot = "/sv1.2/Repositories/Varnel.Forms--";
/// What an envelope may have: each of its values takes many times its text while it is read and stored.
constexpr std::size_t maxEnvelopeBytes = std::size_t{16} * 1024 * 1024;
constexpr std::size_t maxEnvelopeValues = 200'000;

int hexDigit(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

void requireName(const std::string& text) {
    if (text.empty() || !std::all_of(text.begin(), text.end(), isNamePart)) {
        throw ServiceError(400, "\"" + text + "\" is not the name of a schema or class");
    }
}

void readPath(std::string_view path, Call& resource) {
    std::vector<std::string> segments;
    for (const std::string_view segment : split(path, '/')) {
        segments.push_back(decode(segment, false));
    }
    const bool hasFinalSlash = segments.size() == 5 && segments[4].empty();
    if (segments.size() < 3 || segments.size() > 5 ||
        std::any_of(segments.begin(), segments.end() - (hasFinalSlash ? 1 : 0),
                    [](const std::string& segment) { return segment.empty(); })) {
        throw ServiceError(404, "The path is not location/schema/class, with at most an instance and one more part");
    }
    resource.type = {segments[0], segments[1], segments[2]};
    constexpr std::string_view familyMark = "!poly";
    std::string& name = resource.type.name;
    if (name.size() > familyMark.size() && name.substr(name.size() - familyMark.size()) == familyMark) {
        name.resize(name.size() - familyMark.size());
        resource.kind = Call::Kind::Family;
    }
    requireName(resource.type.schema);
    requireName(name);
    if (segments.size() == 4 && segments[3] == "$count") {
        resource.kind = Call::Kind::Count;
    } else if (segments.size() > 3) {
        resource.id = segments[3];
        resource.last = segments.back();
        resource.kind = segments.size() == 4                           ? Call::Kind::ById
                        : hasFinalSlash                                ? Call::Kind::Instance
                        : resource.last == "$file"                     ? Call::Kind::File
                        : resource.last.find('-') != std::string::npos ? Call::Kind::Related
                                                                       : Call::Kind::Records;
    }
}

NewRelationship parseRelationship(const std::string& location, const std::string& text) {
    const std::vector<std::string_view> parts = split(text, '-');
    const std::vector<std::string_view> target = split(parts.back(), '.');
    if (parts.size() != 3 || target.size() != 2 || (parts[1] != "forward" && parts[1] != "backward")) {
        throw ServiceError(400, "Expected RelationshipClass-forward-Schema.Class or the same with backward, found \"" +
                                    text + "\"");
    }
    NewRelationship result{
        std::string(parts[0]), parts[1] == "forward", {location, std::string(target[0]), std::string(target[1])}};
    requireName(result.className);
    requireName(result.target.schema);
    requireName(result.target.name);
    return result;
}

/// A member that may be missing or null.
const Json* member(const Json& object, const char* name) {
    const auto found = object.find(name);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

/// Reads an instance envelope. Identity comes from the path, so only the properties and the eTag are taken. No body,
/// which clients send as nothing or as null, is an instance without properties.
Content parseContent(const std::string& body) {
    if (body.empty()) {
        return {};
    }
    if (body.size() > maxEnvelopeBytes) {
        throw ServiceError(413, "At most " + std::to_string(maxEnvelopeBytes) + " bytes of JSON are accepted");
    }
    Json envelope = parseJson(body, maxNesting, maxEnvelopeValues);
    if (envelope.is_null()) {
        return {};
    }
    const Json* instance = envelope.is_object() ? member(envelope, "instance") : nullptr;
    if (instance == nullptr || !instance->is_object()) {
        throw ServiceError(400, "The body is not an envelope: expected an object with an object \"instance\"");
    }
    Content content;
    const Json* properties = member(*instance, "properties");
    if (properties != nullptr && !properties->is_object()) {
        throw ServiceError(400, "The body is not an envelope: \"properties\" is not an object");
    }
    for (const char* name : {"instanceId", "schemaName", "className", "eTag"}) {
        if (const Json* value = member(*instance, name); value != nullptr && !value->is_string()) {
            throw ServiceError(400, std::string("The body is not an envelope: \"") + name + "\" is not a text");
        }
    }
    if (const Json* eTag = member(*instance, "eTag")) {
        content.eTag = eTag->get<std::string>();
    }
    if (properties != nullptr) {
        content.properties = std::move(envelope["instance"]["properties"]);
    }
    return content;
}

const char* allowedMethods(Call::Kind kind) {
    switch (kind) {
    case Call::Kind::Class:
    case Call::Kind::Records:
        return "GET, HEAD, POST";
    case Call::Kind::Instance:
        return "GET, HEAD, POST, DELETE";
    case Call::Kind::File:
        return "GET, HEAD, PUT";
    case Call::Kind::Related:
        return "POST";
    default:
        return "GET, HEAD";
    }
}

const char* operationOf(const std::string& method, Call::Kind kind) {
    if (method == "GET" || method == "HEAD") {
        return kind == Call::Kind::Count      ? "count"
               : kind == Call::Kind::Instance ? "get"
               : kind == Call::Kind::File     ? "download"
               : kind == Call::Kind::Related  ? nullptr
                                              : "list";
    }
    if (method == "POST") {
        return kind == Call::Kind::Class || kind == Call::Kind::Records ? "insert"
               : kind == Call::Kind::Instance                           ? "update"
               : kind == Call::Kind::Related                            ? "relate"
                                                                        : nullptr;
    }
    return method == "PUT" && kind == Call::Kind::File          ? "upload"
           : method == "DELETE" && kind == Call::Kind::Instance ? "delete"
                                                                : nullptr;
}

} // namespace

std::string decode(std::string_view text, bool isQuery) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            const int high = i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
            const int low = i + 2 < text.size() ? hexDigit(text[i + 2]) : -1;
            if (high < 0 || low < 0) {
                throw ServiceError(400, "The request address has a '%' without two hexadecimal digits after it");
            }
            result += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            result += isQuery && text[i] == '+' ? ' ' : text[i];
        }
    }
    try {
        (void)Json(result).dump();
    } catch (const Json::exception&) {
        throw ServiceError(400, "The request address is not UTF-8");
    }
    const auto isControl = [&](char c) {
        return c == '\0' || (!isQuery && (static_cast<unsigned char>(c) < 0x20 || c == 0x7F));
    };
    if (std::any_of(result.begin(), result.end(), isControl)) {
        throw ServiceError(400, "The request address has a control character");
    }
    return result;
}

QueryOptions parseOptions(std::string_view query) {
    QueryOptions options;
    for (const std::string_view pair : split(query, '&')) {
        const std::size_t equals = std::min(pair.find('='), pair.size());
        if (!pair.empty()) {
            const std::string_view value = equals < pair.size() ? pair.substr(equals + 1) : std::string_view();
            options.emplace_back(decode(pair.substr(0, equals), true), decode(value, true));
        }
    }
    return options;
}

Json parseJson(const std::string& text, int levels, std::size_t values) {
    std::size_t count = 0;
    try {
        return Json::parse(text, [&](int depth, Json::parse_event_t event, Json& /*value*/) {
            const bool opens = event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
            if ((opens || event == Json::parse_event_t::value) && ++count > values) {
                throw ServiceError(413, "At most " + std::to_string(values) + " values are accepted in a body");
            }
            if (opens && depth >= levels) { // It counts those around.
                throw ServiceError(400, "The body is nested more than " + std::to_string(levels) + " deep");
            }
            return true;
        });
    } catch (const Json::exception& error) {
        throw ServiceError(400, std::string("The body is not JSON: ") + error.what());
    }
}

Reply errorReply(int status, const std::string& description) {
    struct Known {
        int status;
        const char* id;
        const char* message;
    };
    const Known known[] = {{400, "BadRequest", "The request can't be understood."},
                           {404, "NotFound", "There is nothing at this address."},
                           {405, "MethodNotAllowed", "This address doesn't take this method."},
                           {409, "Conflict", "The instance was changed meanwhile."},
                           {401, "Unauthorized", "A valid token is needed."},
                           {403, "Forbidden", "This is not for everyone."},
                           {408, "RequestTimeout", "The request did not come in time."},
                           {413, "PayloadTooLarge", "The request body is too large."},
                           {414, "UriTooLong", "The request address is too long."},
                           {415, "UnsupportedMediaType", "The request body has an unknown coding."},
                           {431, "RequestHeaderFieldsTooLarge", "The request headers are too large."},
                           {501, "NotImplemented", "The request has an unknown transfer coding."},
                           {503, "ServiceUnavailable", "The repository has too much to do."},
                           {500, "InternalError", "The repository failed."},
                           {status, "RequestFailed", "The request can't be served."}};
    const Known* entry = known;
    while (entry->status != status) {
        ++entry;
    }
    return {status,
            toText({{"errorId", entry->id}, {"errorMessage", entry->message}, {"errorDescription", description}})};
}

bool Call::isChange() const {
    return operation != "list" && operation != "count" && operation != "get" && operation != "download";
}

Call readCall(const std::string& method, std::string_view target, const std::string& basePath) {
    const std::size_t question = std::min(target.find('?'), target.size());
    const std::string_view path = target.substr(0, question);
    const std::string root = basePath + protocolRoot;
    if (path.substr(0, root.size()) != root) {
        throw ServiceError(404, "Paths here begin with " + root);
    }
    Call call;
    readPath(path.substr(root.size()), call);
    const QueryOptions options =
        parseOptions(question < target.size() ? target.substr(question + 1) : std::string_view());
    const char* operation = operationOf(method, call.kind);
    if (operation == nullptr) {
        const char* allowed = allowedMethods(call.kind);
        throw ServiceError(405, method + " is not one of " + allowed, allowed);
    }
    call.operation = operation;
    call.subject = call.type;
    if (call.kind == Call::Kind::Related) {
        call.subject = parseRelationship(call.type.location, call.last).target;
    } else if (call.kind == Call::Kind::Records) {
        call.subject.name = call.last;
    }
    call.query.emplace(options, call.operation == "list"  ? Query::Accepts::All
                                : call.operation == "get" ? Query::Accepts::Select
                                                          : Query::Accepts::None);
    return call;
}

Reply carryOut(Store& store, const Call& call, const std::string& body) {
    using Kind = Call::Kind;
    const auto& type = call.type;
    switch (call.kind) {
    case Kind::Class:
    case Kind::Family:
        return call.isChange() ? Reply(201, store.insert(type, parseContent(body)))
                               : Reply(200, store.list(type, call.kind == Kind::Family, *call.query));
    case Kind::Count:
        return {200, store.count(type)};
    case Kind::ById:
        return {200, store.listById(type, call.id, *call.query)};
    case Kind::Instance:
        if (call.operation == "delete") {
            store.remove(type, call.id);
            return {204, "", ""};
        }
        return {200, call.isChange() ? store.update(type, call.id, parseContent(body))
                                     : store.get(type, call.id, *call.query)};
    case Kind::File:
        return call.isChange() ? Reply(200, store.putFile(type, call.id, body))
                               : Reply(200, store.file(type, call.id), "application/octet-stream");
    case Kind::Records:
        return call.isChange() ? Reply(201, store.insertRecord(type, call.id, call.last, parseContent(body)))
                               : Reply(200, store.listRecords(type, call.id, call.last, *call.query));
    case Kind::Related:
        break;
    }
    return {201, store.insertRelated(type, call.id, parseRelationship(type.location, call.last), parseContent(body))};
}

Reply currentFailure() {
    try {
        throw;
    } catch (const ServiceError& error) {
        Reply reply = errorReply(error.status(), error.what());
        if (!error.allowedMethods().empty()) {
            reply.headers.emplace_back("Allow", error.allowedMethods());
        }
        return reply;
    } catch (const std::exception& error) {
        return errorReply(500, error.what());
    }
}

} // namespace VarnelAPI::Forms::repository
