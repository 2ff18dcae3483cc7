#pragma once

#include "Store.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {

using Headers = std::vector<std::pair<std::string, std::string>>;

/// The most levels a body may have. Clients commonly read 128; a list wraps what it shows in up to eight more.
constexpr int maxNesting = 100;

struct Reply {
    Reply(int theStatus, std::string theBody, std::string theContentType = "application/json")
        : status(theStatus), body(std::move(theBody)), contentType(std::move(theContentType)) {}

    int status;
    std::string body;
    std::string contentType;
    Headers headers;
};

/// The error payload of a status, with what is wrong in this case.
Reply errorReply(int status, const std::string& description);

/// Undoes percent-encoding, and in a query '+' for a blank. The result is UTF-8 without control characters; in a query,
/// whose literals may be any text, only without NUL.
/// @throws ServiceError 400
std::string decode(std::string_view text, bool isQuery);

/// The decoded options of a query, without its question mark.
/// @throws ServiceError 400
QueryOptions parseOptions(std::string_view query);

/// @throws ServiceError 400 when it is no JSON, or nested too deep; 413 when it has more values than that
Json parseJson(const std::string& text, int levels = maxNesting, std::size_t values = SIZE_MAX);

/// What a request asks for: read from its method and address, before anything is done.
struct Call {
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
    /// The segment after the id.
    std::string last;
    /// One of list, count, get, download, insert, relate, update, upload, delete.
    std::string operation;
    /// The class that it is about: of the record or of the related instance, if there is one.
    ClassName subject;
    std::optional<Query> query;

    bool isChange() const;
};

/// @param target path and query as they came, below the base path
/// @throws ServiceError 400, 404 or 405
Call readCall(const std::string& method, std::string_view target, const std::string& basePath);

/// Does what a call asks for.
/// @throws ServiceError for what can't be served, std::runtime_error when the database failed
Reply carryOut(Store& store, const Call& call, const std::string& body);

/// The reply to what carryOut or readCall throws. To be called while it is handled.
Reply currentFailure();

} // namespace VarnelAPI::Forms::repository
