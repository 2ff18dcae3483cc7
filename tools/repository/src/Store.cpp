#include "Store.h"

#include "Pdf.h"
#include "ServiceError.h"

#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>
#include <utility>

namespace VarnelAPI::Forms::repository {
namespace {

/// Tells our files from other SQLite files, and this layout from later ones.
constexpr std::int64_t applicationId = 0x56464C52;
constexpr std::int64_t layoutVersion = 1;

constexpr const char* layout = R"(
    CREATE TABLE record_classes(
        schema TEXT NOT NULL, name TEXT NOT NULL,
        outlives_owner INTEGER NOT NULL,
        PRIMARY KEY(schema, name)) STRICT, WITHOUT ROWID;
    INSERT INTO record_classes VALUES
        ('DynamicSchema', 'Attachment', 0),
        ('DynamicSchema', 'File', 0),
        ('DynamicSchema', '_Comment', 0),
        ('DynamicSchema', '_ExternalFile', 0),
        ('DynamicSchema', 'AuditRecord', 1);

    -- Inserting an instance of such a class makes its file.
    CREATE TABLE producers(
        schema TEXT NOT NULL, class TEXT NOT NULL,
        kind TEXT NOT NULL,
        PRIMARY KEY(schema, class)) STRICT, WITHOUT ROWID;
    INSERT INTO producers VALUES ('FormPDF', 'GeneratedPDF', 'pdf');

    CREATE TABLE classes(
        location TEXT NOT NULL, schema TEXT NOT NULL, name TEXT NOT NULL,
        base TEXT,
        PRIMARY KEY(location, schema, name)) STRICT, WITHOUT ROWID;

    -- The owner is an id and not a reference: audit records stay when their instance goes.
    CREATE TABLE instances(
        number INTEGER PRIMARY KEY,
        location TEXT NOT NULL, id TEXT NOT NULL,
        schema TEXT NOT NULL, class TEXT NOT NULL,
        owner TEXT NOT NULL,
        etag TEXT NOT NULL,
        properties TEXT NOT NULL,
        UNIQUE(location, id)) STRICT;
    CREATE INDEX instances_of_class ON instances(location, schema, class);
    CREATE INDEX instances_of_owner ON instances(location, owner);

    CREATE TABLE files(
        instance INTEGER PRIMARY KEY REFERENCES instances ON DELETE CASCADE,
        bytes BLOB NOT NULL) STRICT;

    CREATE TABLE relationships(
        number INTEGER PRIMARY KEY,
        id TEXT NOT NULL, schema TEXT NOT NULL, class TEXT NOT NULL,
        source INTEGER NOT NULL REFERENCES instances ON DELETE CASCADE,
        target INTEGER NOT NULL REFERENCES instances ON DELETE CASCADE) STRICT;
    CREATE INDEX relationships_of_source ON relationships(source);
    CREATE INDEX relationships_of_target ON relationships(target);
)";

/// For parameters 1 location, 2 schema, 3 class, 4 whether subclasses count: `instancesOf` is the head of a statement
/// on the instances of that class.
const std::string familyOf =
    "WITH RECURSIVE family(name) AS (SELECT ?3 UNION SELECT c.name FROM classes c JOIN family f ON c.base = f.name"
    " WHERE ?4 AND c.location = ?1 AND c.schema = ?2) ";
const std::string columns = "i.number, i.id, i.schema, i.class, i.etag, i.properties";
const std::string ofFamily =
    " FROM instances i WHERE i.location = ?1 AND i.schema = ?2 AND i.class IN (SELECT name FROM family)";
const std::string instancesOf = familyOf + "SELECT " + columns + ofFamily;
const std::string inStoredOrder = " ORDER BY i.number";

constexpr std::int64_t alone = 0;
constexpr std::int64_t withFamily = 1;

std::int64_t number(Database& database, const char* sql) {
    Statement statement(database, sql);
    return statement.step() ? statement.integer(0) : 0;
}

void prepareLayout(Database& database) {
    const std::int64_t application = number(database, "PRAGMA application_id");
    const std::int64_t version = number(database, "PRAGMA user_version");
    if (application == 0 && version == 0 && number(database, "SELECT count(*) FROM sqlite_master") == 0) {
        Transaction transaction(database);
        database.run(layout);
        database.run(("PRAGMA application_id = " + std::to_string(applicationId)).c_str());
        database.run(("PRAGMA user_version = " + std::to_string(layoutVersion)).c_str());
        transaction.commit();
    } else if (application != applicationId) {
        throw std::runtime_error("it is a database of another program");
    } else if (version != layoutVersion) {
        throw std::runtime_error("it has layout version " + std::to_string(version) + ", this program reads version " +
                                 std::to_string(layoutVersion));
    } else if (database.isReadOnly()) {
        throw std::runtime_error("it can't be written");
    }
    database.run("PRAGMA journal_mode = WAL; PRAGMA foreign_keys = ON");
}

Database open(const std::string& file) {
    try {
        Database database(file);
        prepareLayout(database);
        return database;
    } catch (const std::exception& error) {
        throw std::runtime_error("Can't use the database \"" + file + "\": " + error.what());
    }
}

/// A random (version 4) UUID.
std::string newId() {
    static thread_local std::random_device random;
    constexpr const char* digits = "0123456789abcdef";
    std::string id = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    for (char& place : id) {
        if (place == 'x') {
            place = digits[random() & 0xFU];
        } else if (place == 'y') {
            place = digits[8U | (random() & 0x3U)];
        }
    }
    return id;
}

/// A value as plain text: texts as they are, anything else as its JSON.
std::string plain(const Json& value) {
    return value.is_string() ? value.get<std::string>() : toText(value);
}

/// What differs between two objects, as an audit record lists it; a missing value is "".
Json differences(const Json& before, const Json& after) {
    Json result = Json::array();
    const auto note = [&](const std::string& name, const std::string& oldValue, const std::string& newValue) {
        result.push_back({{"Property", name}, {"OldValue", oldValue}, {"NewValue", newValue}});
    };
    for (const auto& [name, value] : before.items()) {
        const auto found = after.find(name);
        if (found == after.end()) {
            note(name, plain(value), "");
        } else if (*found != value) {
            note(name, plain(value), plain(*found));
        }
    }
    for (const auto& [name, value] : after.items()) {
        if (!before.contains(name)) {
            note(name, "", plain(value));
        }
    }
    return result;
}

/// Sets the given members; those that are null are removed.
void merge(Json& properties, const Json& given) {
    for (const auto& [name, value] : given.items()) {
        if (value.is_null()) {
            properties.erase(name);
        } else {
            properties[name] = value;
        }
    }
}

} // namespace

Store::Store(const std::string& file) : m_database(open(file)) {}

template <class Work>
auto Store::read(Work work) {
    const std::lock_guard lock(m_mutex);
    return work();
}

template <class Work>
auto Store::change(Work work) {
    const std::lock_guard lock(m_mutex);
    Transaction transaction(m_database);
    auto result = work();
    transaction.commit();
    return result;
}

Store::Instance Store::instanceAt(Statement& row, int column) {
    return {row.integer(column),  row.text(column + 1), row.text(column + 2),
            row.text(column + 3), row.text(column + 4), Json::parse(row.text(column + 5))};
}

Json Store::contentOf(const Instance& instance) {
    return {{"instanceId", instance.id},
            {"schemaName", instance.schema},
            {"className", instance.className},
            {"eTag", instance.eTag},
            {"properties", instance.properties}};
}

Json Store::changed(const char* kind, const Instance& instance) {
    return {{"changedInstance", {{"change", kind}, {"instanceAfterChange", contentOf(instance)}}}};
}

Store::Instance Store::find(const ClassName& type, const std::string& id) {
    Statement row(m_database, instancesOf + " AND i.id = ?", type.location, type.schema, type.name, withFamily, id);
    if (!row.step()) {
        throw ServiceError(404, "There is no instance \"" + id + "\" of class " + type.schema + "." + type.name);
    }
    return instanceAt(row, 0);
}

Json Store::withRelationships(Json content, std::int64_t number) {
    Statement row(m_database,
                  "SELECT r.number, r.id, r.schema, r.class, 'forward', " + columns +
                      " FROM relationships r JOIN instances i ON i.number = r.target WHERE r.source = ?1"
                      " UNION ALL SELECT r.number, r.id, r.schema, r.class, 'backward', " +
                      columns +
                      " FROM relationships r JOIN instances i ON i.number = r.source WHERE r.target = ?1 ORDER BY 1",
                  number);
    while (row.step()) {
        content["relationshipInstances"].push_back({{"instanceId", row.text(1)},
                                                    {"schemaName", row.text(2)},
                                                    {"className", row.text(3)},
                                                    {"direction", row.text(4)},
                                                    {"relatedInstance", contentOf(instanceAt(row, 5))}});
    }
    return content;
}

Json Store::envelope(Statement& rows, const Query& query) {
    std::vector<std::pair<std::int64_t, Json>> matches;
    const auto skip = static_cast<std::size_t>(query.skip());
    const auto isPageFull = [&] {
        return query.top() >= 0 && matches.size() >= skip &&
               matches.size() - skip >= static_cast<std::size_t>(query.top());
    };
    while ((query.isOrdered() || !isPageFull()) && rows.step()) {
        const Instance instance = instanceAt(rows, 0);
        if (Json content = contentOf(instance); query.matches(content)) {
            matches.emplace_back(instance.number, std::move(content));
        }
    }
    if (query.isOrdered()) {
        std::stable_sort(matches.begin(), matches.end(), [&](const auto& left, const auto& right) {
            return query.isBefore(left.second, right.second);
        });
    }
    if (isPageFull()) {
        matches.resize(skip + static_cast<std::size_t>(query.top()));
    }
    Json instances = Json::array();
    for (std::size_t i = skip; i < matches.size(); ++i) {
        auto& [number, content] = matches[i];
        query.trim(content);
        instances.push_back(withRelationships(std::move(content), number));
    }
    return {{"instances", std::move(instances)}};
}

Json Store::list(const ClassName& type, bool withSubclasses, const Query& query) {
    return read([&] {
        Statement rows(m_database, instancesOf + inStoredOrder, type.location, type.schema, type.name,
                       withSubclasses ? withFamily : alone);
        return envelope(rows, query);
    });
}

Json Store::listById(const ClassName& type, const std::string& id, const Query& query) {
    return read([&] {
        const auto rowsWhere = [&](const char* condition) {
            return Statement(m_database, instancesOf + condition + inStoredOrder, type.location, type.schema, type.name,
                             withFamily, id);
        };
        const bool isInstance = rowsWhere(" AND i.id = ?5").step();
        Statement rows = rowsWhere(isInstance ? " AND i.id = ?5" : " AND i.owner = ?5");
        return envelope(rows, query);
    });
}

Json Store::listRecords(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                        const Query& query) {
    return read([&] {
        const ClassName type = recordType(ownerType, recordClass);
        const auto owned = [&] {
            return Statement(m_database, instancesOf + " AND i.owner = ?5" + inStoredOrder, type.location, type.schema,
                             type.name, alone, ownerId);
        };
        if (!owned().step()) {
            find(ownerType, ownerId); // an owner may be gone only while records of it remain
        }
        Statement rows = owned();
        return envelope(rows, query);
    });
}

Json Store::count(const ClassName& type) {
    return read([&] {
        const auto row = [&](const std::string& name, std::int64_t count) {
            return Json{{"instanceId", type.schema + "." + name},
                        {"schemaName", type.schema},
                        {"className", name},
                        {"properties", {{"ECSchemaName", type.schema}, {"ECClassName", name}, {"count", count}}}};
        };
        Json instances = Json::array();
        Statement rows(m_database,
                       familyOf + "SELECT i.class, count(*)" + ofFamily + " GROUP BY i.class ORDER BY i.class",
                       type.location, type.schema, type.name, withFamily);
        while (rows.step()) {
            instances.push_back(row(rows.text(0), rows.integer(1)));
        }
        if (instances.empty()) {
            instances.push_back(row(type.name, 0));
        }
        return Json{{"instances", std::move(instances)}};
    });
}

Json Store::get(const ClassName& type, const std::string& id, const Query& query) {
    return read([&] {
        const Instance instance = find(type, id);
        Json content = contentOf(instance);
        query.trim(content);
        return Json{{"instance", withRelationships(std::move(content), instance.number)}};
    });
}

bool Store::isRecordClass(const std::string& schema, const std::string& name) {
    Statement row(m_database, "SELECT 1 FROM record_classes WHERE schema = ? AND name = ?", schema, name);
    return row.step();
}

ClassName Store::recordType(const ClassName& ownerType, const std::string& recordClass) {
    Statement row(m_database, "SELECT schema FROM record_classes WHERE name = ?", recordClass);
    if (!row.step()) {
        throw ServiceError(404, "There is no record class " + recordClass);
    }
    return {ownerType.location, row.text(0), recordClass};
}

Store::Instance Store::add(const ClassName& type, const Content& content, const std::string& owner) {
    Statement(m_database,
              "INSERT OR IGNORE INTO classes VALUES (?1, ?2, ?3, CASE WHEN ?3 = 'BaseClass' OR EXISTS"
              " (SELECT 1 FROM record_classes WHERE schema = ?2 AND name = ?3) THEN NULL ELSE 'BaseClass' END)",
              type.location, type.schema, type.name)
        .run();
    Instance instance{0, newId(), type.schema, type.name, newId(), Json::object()};
    merge(instance.properties, content.properties);
    Statement row(m_database,
                  "INSERT INTO instances(location, id, schema, class, owner, etag, properties)"
                  " VALUES (?, ?, ?, ?, ?, ?, ?) RETURNING number",
                  type.location, instance.id, type.schema, type.name, owner, instance.eTag,
                  toText(instance.properties));
    row.step();
    instance.number = row.integer(0);
    row.run();
    produceFile(instance);
    audit(type.location, "Created", instance, Json::object(), instance.properties);
    return instance;
}

Json Store::insert(const ClassName& type, const Content& content) {
    return change([&] { return changed("Created", add(type, content, "")); });
}

Json Store::insertRecord(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                         const Content& content) {
    return change([&] {
        const ClassName type = recordType(ownerType, recordClass);
        return changed("Created", add(type, content, find(ownerType, ownerId).id));
    });
}

Json Store::insertRelated(const ClassName& type, const std::string& id, const NewRelationship& relationship,
                          const Content& content) {
    return change([&] {
        const Instance present = find(type, id);
        const Instance added = add(relationship.target, content, "");
        // The relationship class is named without a schema, so it is one of the schema that the path is in.
        Statement(m_database, "INSERT INTO relationships(id, schema, class, source, target) VALUES (?, ?, ?, ?, ?)",
                  newId(), type.schema, relationship.className, relationship.isForward ? present.number : added.number,
                  relationship.isForward ? added.number : present.number)
            .run();
        return changed("Created", added);
    });
}

Json Store::update(const ClassName& type, const std::string& id, const Content& content) {
    return change([&] {
        Instance instance = find(type, id);
        if (!content.eTag.empty() && content.eTag != instance.eTag) {
            throw ServiceError(409, "The instance \"" + id + "\" was changed by someone else: its eTag is " +
                                        instance.eTag + ", not " + content.eTag);
        }
        const Json before = instance.properties;
        merge(instance.properties, content.properties);
        instance.eTag = newId();
        Statement(m_database, "UPDATE instances SET etag = ?, properties = ? WHERE number = ?", instance.eTag,
                  toText(instance.properties), instance.number)
            .run();
        audit(type.location, "Modified", instance, before, instance.properties);
        return changed("Modified", instance);
    });
}

void Store::remove(const ClassName& type, const std::string& id) {
    change([&] {
        const Instance instance = find(type, id);
        // Files and relationships go by their references.
        Statement(m_database,
                  "WITH RECURSIVE gone(id) AS (SELECT ?2 UNION SELECT i.id FROM gone JOIN instances i"
                  " ON i.location = ?1 AND i.owner = gone.id JOIN record_classes r ON r.schema = i.schema"
                  " AND r.name = i.class AND NOT r.outlives_owner)"
                  " DELETE FROM instances WHERE location = ?1 AND id IN (SELECT id FROM gone)",
                  type.location, instance.id)
            .run();
        audit(type.location, "Deleted", instance, instance.properties, Json::object());
        return 0;
    });
}

std::string Store::file(const ClassName& type, const std::string& id) {
    return read([&] {
        Statement row(m_database, "SELECT bytes FROM files WHERE instance = ?", find(type, id).number);
        if (!row.step()) {
            throw ServiceError(404, "The instance \"" + id + "\" has no file");
        }
        return row.text(0);
    });
}

Json Store::putFile(const ClassName& type, const std::string& id, std::string_view bytes) {
    return change([&] {
        Instance instance = find(type, id);
        instance.eTag = newId();
        Statement(m_database, "UPDATE instances SET etag = ? WHERE number = ?", instance.eTag, instance.number).run();
        storeFile(instance, bytes);
        return changed("Modified", instance);
    });
}

void Store::storeFile(const Instance& instance, std::string_view bytes) {
    Statement(m_database, "INSERT OR REPLACE INTO files VALUES (?, ?)", instance.number, Blob{bytes}).run();
}

void Store::produceFile(const Instance& instance) {
    Statement row(m_database, "SELECT kind FROM producers WHERE schema = ? AND class = ?", instance.schema,
                  instance.className);
    if (!row.step()) {
        return;
    }
    if (const std::string kind = row.text(0); kind != "pdf") {
        throw std::runtime_error("There is no producer of kind " + kind);
    }
    std::vector<std::string> lines{instance.schema + "." + instance.className + " " + instance.id, ""};
    for (const auto& [name, value] : instance.properties.items()) {
        lines.push_back(name + ": " + plain(value));
    }
    storeFile(instance, makePdf(lines));
}

void Store::audit(const std::string& location, const char* action, const Instance& instance, const Json& before,
                  const Json& after) {
    if (isRecordClass(instance.schema, instance.className)) {
        return;
    }
    Statement now(m_database, "SELECT strftime('%Y-%m-%dT%H:%M:%fZ', 'now')");
    now.step();
    // Callers are not identified, so every change is the local user's.
    add({location, "DynamicSchema", "AuditRecord"},
        {{{"RecordBy", "Local user"},
          {"RecordById", "local"},
          {"RecordDate", now.text(0)},
          {"Action", action},
          {"Values", differences(before, after)}},
         ""},
        instance.id);
}

} // namespace VarnelAPI::Forms::repository
