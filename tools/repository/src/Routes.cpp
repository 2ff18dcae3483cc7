#include "Routes.h"

#include "ServiceError.h"
#include "Text.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {
namespace {

constexpr const char* protocolRoot = "/sv1.2/Repositories/Varnel.Forms--";

/// The most levels a body may have. Clients commonly read 128; a list wraps what it shows in up to eight more.
constexpr int maxNesting = 100;

int hexDigit(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

/// Undoes percent-encoding, and in a query '+' for a blank. The result is UTF-8 without control characters.
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
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
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

void requireName(const std::string& text) {
    if (text.empty() || !std::all_of(text.begin(), text.end(), isNamePart)) {
        throw ServiceError(400, "\"" + text + "\" is not the name of a schema or class");
    }
}

/// What a path addresses, below the location and the schema.
struct Resource {
    enum class Kind {
        Class,    // Class
        Family,   // Class!poly
        Count,    // Class/$count
        Instance, // Class/id/
        ById,     // Class/id
        File,     // Class/id/$file
        Records,  // Class/id/RecordClass
        Related,  // Class/id/RelationshipClass-direction-Schema.Class
    };

    Kind kind = Kind::Class;
    ClassName type;
    std::string id;
    std::string last;
};

Resource parseResource(std::string_view path) {
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
    Resource resource;
    resource.type = {segments[0], segments[1], segments[2]};
    constexpr std::string_view familyMark = "!poly";
    std::string& name = resource.type.name;
    if (name.size() > familyMark.size() && name.substr(name.size() - familyMark.size()) == familyMark) {
        name.resize(name.size() - familyMark.size());
        resource.kind = Resource::Kind::Family;
    }
    requireName(resource.type.schema);
    requireName(name);
    if (segments.size() == 4 && segments[3] == "$count") {
        resource.kind = Resource::Kind::Count;
    } else if (segments.size() > 3) {
        resource.id = segments[3];
        resource.last = segments.back();
        resource.kind = segments.size() == 4                           ? Resource::Kind::ById
                        : hasFinalSlash                                ? Resource::Kind::Instance
                        : resource.last == "$file"                     ? Resource::Kind::File
                        : resource.last.find('-') != std::string::npos ? Resource::Kind::Related
                                                                       : Resource::Kind::Records;
    }
    return resource;
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
    Json envelope;
    try {
        envelope = Json::parse(body, [](int depth, Json::parse_event_t event, Json& /*value*/) {
            const bool opens = event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
            if (opens && depth >= maxNesting) { // It counts those around.
                throw ServiceError(400, "The body is nested more than " + std::to_string(maxNesting) + " deep");
            }
            return true;
        });
    } catch (const Json::exception& error) {
        throw ServiceError(400, std::string("The body is not JSON: ") + error.what());
    }
    if (envelope.is_null()) {
        return {};
    }
    const Json* instance = envelope.is_object() ? member(envelope, "instance") : nullptr;
    if (instance == nullptr || !instance->is_object()) {
        throw ServiceError(400, "The body is not an envelope: expected an object with an object \"instance\"");
    }
    Content content;
    if (const Json* properties = member(*instance, "properties")) {
        if (!properties->is_object()) {
            throw ServiceError(400, "The body is not an envelope: \"properties\" is not an object");
        }
        content.properties = *properties;
    }
    for (const char* name : {"instanceId", "schemaName", "className", "eTag"}) {
        if (const Json* value = member(*instance, name); value != nullptr && !value->is_string()) {
            throw ServiceError(400, std::string("The body is not an envelope: \"") + name + "\" is not a text");
        }
    }
    if (const Json* eTag = member(*instance, "eTag")) {
        content.eTag = eTag->get<std::string>();
    }
    return content;
}

std::string normalise(const std::string& basePath) {
    const std::size_t begin = basePath.find_first_not_of('/');
    return begin == std::string::npos ? "" : "/" + basePath.substr(begin, basePath.find_last_not_of('/') + 1 - begin);
}

} // namespace

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
                           {413, "PayloadTooLarge", "The request body is too large."},
                           {500, "InternalError", "The repository failed."},
                           {status, "RequestFailed", "The request can't be served."}};
    const Known* entry = known;
    while (entry->status != status) {
        ++entry;
    }
    return {status,
            toText({{"errorId", entry->id}, {"errorMessage", entry->message}, {"errorDescription", description}})};
}

Routes::Routes(Store& store, const std::string& basePath) : m_store(store), m_basePath(normalise(basePath)) {}

Reply Routes::handle(const std::string& method, const std::string& target, const std::string& body) const {
    try {
        return answer(method, target, body);
    } catch (const ServiceError& error) {
        Reply reply = errorReply(error.status(), error.what());
        reply.allow = error.allowedMethods();
        return reply;
    } catch (const std::exception& error) {
        return errorReply(500, error.what());
    }
}

Reply Routes::answer(const std::string& method, const std::string& target, const std::string& body) const {
    using Kind = Resource::Kind;
    using Accepts = Query::Accepts;

    const std::size_t question = std::min(target.find('?'), target.size());
    const std::string path = target.substr(0, question);
    const std::string root = m_basePath + protocolRoot;
    if (path.compare(0, root.size(), root) != 0) {
        throw ServiceError(404, "Paths here begin with " + root);
    }
    const Resource resource = parseResource(std::string_view(path).substr(root.size()));
    const auto& [kind, type, id, last] = resource;
    const QueryOptions options =
        parseOptions(question < target.size() ? std::string_view(target).substr(question + 1) : std::string_view());
    const auto ok = [](const Json& json) { return Reply(200, toText(json)); };
    const auto created = [](const Json& json) { return Reply(201, toText(json)); };

    if (method == "GET" || method == "HEAD") {
        const bool isList = kind == Kind::Class || kind == Kind::Family || kind == Kind::ById || kind == Kind::Records;
        const Query query(options, isList ? Accepts::All : kind == Kind::Instance ? Accepts::Select : Accepts::None);
        switch (kind) {
        case Kind::Class:
        case Kind::Family:
            return ok(m_store.list(type, kind == Kind::Family, query));
        case Kind::Count:
            return ok(m_store.count(type));
        case Kind::Instance:
            return ok(m_store.get(type, id, query));
        case Kind::ById:
            return ok(m_store.listById(type, id, query));
        case Kind::File:
            return {200, m_store.file(type, id), "application/octet-stream"};
        case Kind::Records:
            return ok(m_store.listRecords(type, id, last, query));
        case Kind::Related:
            break;
        }
    } else if (method == "POST") {
        const Query none(options, Accepts::None);
        switch (kind) {
        case Kind::Class:
            return created(m_store.insert(type, parseContent(body)));
        case Kind::Instance:
            return ok(m_store.update(type, id, parseContent(body)));
        case Kind::Records:
            return created(m_store.insertRecord(type, id, last, parseContent(body)));
        case Kind::Related:
            return created(m_store.insertRelated(type, id, parseRelationship(type.location, last), parseContent(body)));
        default:
            break;
        }
    } else if (method == "PUT" && kind == Kind::File) {
        const Query none(options, Accepts::None);
        return ok(m_store.putFile(type, id, body));
    } else if (method == "DELETE" && kind == Kind::Instance) {
        const Query none(options, Accepts::None);
        m_store.remove(type, id);
        return {204, "", ""};
    }
    const char* allowed = kind == Kind::Class || kind == Kind::Records ? "GET, HEAD, POST"
                          : kind == Kind::Instance                     ? "GET, HEAD, POST, DELETE"
                          : kind == Kind::File                         ? "GET, HEAD, PUT"
                          : kind == Kind::Related                      ? "POST"
                                                                       : "GET, HEAD";
    throw ServiceError(405, method + " is not one of " + allowed, allowed);
}

} // namespace VarnelAPI::Forms::repository
