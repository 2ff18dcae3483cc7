#pragma once

#include "Database.h"
#include "Instances.h"
#include "Json.h"
#include "Query.h"

#include <string>
#include <string_view>

namespace VarnelAPI::Forms::repository {

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
/// Results are the texts of envelopes. What is missing is a ServiceError 404, a stale tag 409. Each call is one
/// transaction. All may be called from any thread: reads see what was committed when they began, beside each other and
/// beside a change; changes wait for each other.
class Store {
public:
    /// @throws std::runtime_error when the file can't be used
    explicit Store(const std::string& file);

    std::string list(const ClassName& type, bool withSubclasses, const Query& query);
    /// The instance of this id as a list; if there is none, the class's records that belong to an instance of this id.
    std::string listById(const ClassName& type, const std::string& id, const Query& query);
    std::string listRecords(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                            const Query& query);
    /// One row for each class that has instances; a row of 0 when none has.
    std::string count(const ClassName& type);
    std::string get(const ClassName& type, const std::string& id, const Query& query);

    std::string insert(const ClassName& type, const Content& content);
    std::string insertRecord(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                             const Content& content);
    std::string insertRelated(const ClassName& type, const std::string& id, const NewRelationship& relationship,
                              const Content& content);
    std::string update(const ClassName& type, const std::string& id, const Content& content);
    void remove(const ClassName& type, const std::string& id);

    std::string file(const ClassName& type, const std::string& id);
    std::string putFile(const ClassName& type, const std::string& id, std::string_view bytes);

    /// As a new database; no change is under way meanwhile.
    void reset();
    /// All or nothing of a seed; see Seed.h.
    void seed(const std::string& text);
    std::string dump();

    /// Calls it with a connection that sees what was committed before.
    template <class Work>
    auto read(Work work) {
        Connections::Reading reading(m_connections);
        const Transaction snapshot(reading.database(), Transaction::Kind::Read);
        return work(reading.database());
    }

private:
    template <class Work>
    auto change(Work work) {
        Connections::Writing writing(m_connections);
        Transaction transaction(writing.database(), Transaction::Kind::Write);
        auto result = work(writing.database());
        transaction.commit();
        return result;
    }

    Connections m_connections;
};

} // namespace VarnelAPI::Forms::repository
