#pragma once

#include "Database.h"
#include "Json.h"
#include "Query.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// A class of one location's repository.
struct ClassName {
    std::string location;
    std::string schema;
    std::string name;
};

/// What an insert or update gives: the properties, and the tag of the state that the caller has seen, or "".
struct Content {
    Json properties = Json::object();
    std::string eTag;
};

/// A relationship to make together with its target: "{className}-{direction}-{target schema}.{target class}".
struct NewRelationship {
    std::string className;
    /// The direction from the instance that the path names: true when that instance is the source.
    bool isForward;
    ClassName target;
};

/// The instances of all locations, with their records, relationships and files, by rules that hold for every class:
/// - A class is known from its first insert on. Record classes have no base; every other class derives from the class
///   "BaseClass" of its schema. An id is looked up in the named class and in all that derive from it.
/// - A record belongs to one instance, its owner, and goes with it, unless its class outlives owners.
/// - Every change gives the instance a new eTag and, unless it is a record, writes an audit record.
///
/// Results are envelopes. What is missing is a ServiceError 404, a stale tag 409. Each call is one transaction; one
/// lock around the only connection makes the calls safe from any thread.
class Store {
public:
    /// @throws std::runtime_error when the file can't be used
    explicit Store(const std::string& file);

    Json list(const ClassName& type, bool withSubclasses, const Query& query);
    /// The instance of this id as a list; if there is none, the class's records that belong to an instance of this id.
    Json listById(const ClassName& type, const std::string& id, const Query& query);
    Json listRecords(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                     const Query& query);
    /// One row for each class that has instances; a row of 0 when none has.
    Json count(const ClassName& type);
    Json get(const ClassName& type, const std::string& id, const Query& query);

    Json insert(const ClassName& type, const Content& content);
    Json insertRecord(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                      const Content& content);
    Json insertRelated(const ClassName& type, const std::string& id, const NewRelationship& relationship,
                       const Content& content);
    Json update(const ClassName& type, const std::string& id, const Content& content);
    void remove(const ClassName& type, const std::string& id);

    std::string file(const ClassName& type, const std::string& id);
    Json putFile(const ClassName& type, const std::string& id, std::string_view bytes);

private:
    struct Instance {
        std::int64_t number = 0;
        std::string id;
        std::string schema;
        std::string className;
        std::string eTag;
        Json properties;
    };

    template <class Work>
    auto read(Work work);
    template <class Work>
    auto change(Work work);

    static Instance instanceAt(Statement& row, int column);
    static Json contentOf(const Instance& instance);
    static Json changed(const char* kind, const Instance& instance);
    Instance find(const ClassName& type, const std::string& id);
    Json envelope(Statement& rows, const Query& query);
    Json withRelationships(Json content, std::int64_t number);

    ClassName recordType(const ClassName& ownerType, const std::string& recordClass);
    bool isRecordClass(const std::string& schema, const std::string& name);
    Instance add(const ClassName& type, const Content& content, const std::string& owner);
    void produceFile(const Instance& instance);
    void storeFile(const Instance& instance, std::string_view bytes);
    void audit(const std::string& location, const char* action, const Instance& instance, const Json& before,
               const Json& after);

    std::mutex m_mutex;
    Database m_database;
};

} // namespace VarnelAPI::Forms::repository
