#include "Store.h"

#include "Layout.h"
#include "Pdf.h"
#include "Seed.h"
#include "ServiceError.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace VarnelAPI::Forms::repository {
namespace {

/// For parameters 1 location, 2 schema, 3 class: that class and all that derive from it.
const std::string familyOf =
    "WITH RECURSIVE family(name) AS (SELECT ?3 UNION SELECT c.name FROM classes c JOIN family f ON c.base = f.name"
    " WHERE c.location = ?1 AND c.schema = ?2) ";
const std::string ofFamily =
    " FROM instances i WHERE i.location = ?1 AND i.schema = ?2 AND i.class IN (SELECT name FROM family)";
const std::string columns = "i.number, i.id, i.schema, i.class, i.etag, i.properties";

/// A statement may be composed of this many: a limit of SQLite.
constexpr std::size_t maxBranches = 500;

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

void append(std::string& out, std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) {
        out += part;
    }
}

/// A content without its closing brace, from the six columns that begin at the given one. The properties are copied as
/// they are stored: their text was made by us.
void appendContent(std::string& out, Statement& row, int column, const Query* query) {
    const auto quoted = [&](int at) { return toText(row.text(column + at)); };
    append(out, {R"({"instanceId":)", quoted(1), R"(,"schemaName":)", quoted(2), R"(,"className":)", quoted(3),
                 R"(,"eTag":)", quoted(4), R"(,"properties":)"});
    const std::string_view properties = row.view(column + 5);
    if (query == nullptr || query->selectsAll()) {
        out += properties;
    } else {
        out += toText(query->selected(Json::parse(properties)));
    }
}

/// Writes instances with what they are related to.
class Writer {
public:
    Writer(Database& database, const Query& query)
        : m_query(query), m_instance(database, "SELECT " + columns + " FROM instances i WHERE i.number = ?"),
          m_related(
              database,
              "SELECT r.number, r.id, r.schema, r.class, 'forward', " + columns +
                  " FROM relationships r JOIN instances i ON i.number = r.target WHERE r.source = ?1"
                  " UNION ALL SELECT r.number, r.id, r.schema, r.class, 'backward', " +
                  columns +
                  " FROM relationships r JOIN instances i ON i.number = r.source WHERE r.target = ?1 ORDER BY 1") {}

    void append(std::string& out, std::int64_t number) {
        m_instance.restart(number);
        m_instance.step();
        appendContent(out, m_instance, 0, &m_query);
        m_related.restart(number);
        const char* before = R"(,"relationshipInstances":[)";
        bool isRelated = false;
        for (; m_related.step(); before = ",", isRelated = true) {
            repository::append(out, {before, R"({"instanceId":)", toText(m_related.text(1)), R"(,"schemaName":)",
                                     toText(m_related.text(2)), R"(,"className":)", toText(m_related.text(3)),
                                     R"(,"direction":")", m_related.view(4), R"(","relatedInstance":)"});
            appendContent(out, m_related, 5, nullptr);
            out += "}}";
        }
        out += isRelated ? "]}" : "}";
    }

private:
    const Query& m_query;
    Statement m_instance;
    Statement m_related;
};

std::string changed(const char* kind, const Instance& instance) {
    return toText({{"changedInstance",
                    {{"change", kind},
                     {"instanceAfterChange",
                      {{"instanceId", instance.id},
                       {"schemaName", instance.schema},
                       {"className", instance.className},
                       {"eTag", instance.eTag},
                       {"properties", instance.properties}}}}}});
}

/// The row of an instance of the class, or of one that derives from it.
Statement rowOf(Database& database, const ClassName& type, const std::string& id) {
    Statement row(database, familyOf + "SELECT " + columns + ofFamily + " AND i.id = ?4", type.location, type.schema,
                  type.name, id);
    if (!row.step()) {
        throw ServiceError(404, "There is no instance \"" + id + "\" of class " + type.schema + "." + type.name);
    }
    return row;
}

Instance find(Database& database, const ClassName& type, const std::string& id) {
    Statement row = rowOf(database, type, id);
    return {row.integer(0), row.text(1), row.text(2), row.text(3), row.text(4), Json::parse(row.view(5))};
}

std::vector<std::string> familyNames(Database& database, const ClassName& type) {
    std::vector<std::string> names;
    for (Statement row(database, familyOf + "SELECT name FROM family", type.location, type.schema, type.name);
         row.step();) {
        names.push_back(row.text(0));
    }
    return names;
}

Sql oneOf(const std::vector<std::string>& names) {
    Sql sql{"IN (", {}};
    for (const auto& name : names) {
        sql += {sql.values.empty() ? "?" : ", ?", {name}};
    }
    return sql += {")", {}};
}

/// Where a page begins: so many instances after the first with this number or a higher one.
struct Beginning {
    std::int64_t number;
    std::int64_t skip;
};

Beginning beginningOf(Database& database, const ClassName& type, const std::vector<std::string>& classes,
                      std::int64_t skip) {
    Sql sql{"SELECT block, sum(instances) FROM blocks WHERE location = ? AND schema = ? AND class ",
            {type.location, type.schema}};
    sql += oneOf(classes);
    sql += {" GROUP BY block ORDER BY block", {}};
    for (Statement block(database, sql); block.step();) {
        if (skip < block.integer(1)) {
            return {block.integer(0), skip};
        }
        skip -= block.integer(1);
    }
    return {INT64_MAX, 0};
}

/// The page of instances that have one of the classes and meet the condition, in the order asked for. In the stored
/// order the classes are merged: their index then gives each its order, and no more is read than the page needs. If no
/// condition has to be looked at, that is true of what is skipped, too.
std::string listOf(Database& database, const ClassName& type, const std::vector<std::string>& classes,
                   const Sql& condition, const Query& query) {
    const bool isMerged = query.order().text.empty() && classes.size() <= maxBranches;
    const bool isOfAll = isMerged && condition.text.empty() && query.filter().text.empty();
    const Beginning beginning =
        isOfAll ? beginningOf(database, type, classes, query.skip()) : Beginning{0, query.skip()};
    Sql sql;
    for (std::size_t first = 0; first < classes.size(); first += isMerged ? 1 : classes.size()) {
        sql += {first == 0 ? "" : " UNION ALL ", {}};
        sql += {"SELECT i.number AS number FROM instances i WHERE i.location = ? AND i.schema = ? AND i.class ",
                {type.location, type.schema}};
        sql += isMerged ? Sql{"= ? AND i.number >= ?", {classes[first], beginning.number}} : oneOf(classes);
        sql += condition;
        if (!query.filter().text.empty()) {
            sql += {" AND ", {}};
            sql += query.filter();
        }
    }
    sql += {" ORDER BY ", {}};
    if (!isMerged && !query.order().text.empty()) {
        sql += query.order();
        sql += {", ", {}};
    }
    sql += {isMerged ? "number LIMIT ? OFFSET ?" : "i.number LIMIT ? OFFSET ?", {query.top(), beginning.skip}};

    std::string out = R"({"instances":[)";
    Writer writer(database, query);
    const std::size_t begin = out.size();
    for (Statement page(database, sql); page.step();) {
        out += out.size() == begin ? "" : ",";
        writer.append(out, page.integer(0));
    }
    return out += "]}";
}

bool isRecordClass(Database& database, const std::string& schema, const std::string& name) {
    return Statement(database, "SELECT 1 FROM record_classes WHERE schema = ? AND name = ?", schema, name).step();
}

ClassName recordType(Database& database, const ClassName& ownerType, const std::string& recordClass) {
    Statement row(database, "SELECT schema FROM record_classes WHERE name = ?", recordClass);
    if (!row.step()) {
        throw ServiceError(404, "There is no record class " + recordClass);
    }
    return {ownerType.location, row.text(0), recordClass};
}

void produceFile(Database& database, const Instance& instance) {
    Statement row(database, "SELECT kind FROM producers WHERE schema = ? AND class = ?", instance.schema,
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
    storeFile(database, instance.number, makePdf(lines));
}

Instance add(Database& database, const ClassName& type, const Content& content, const std::string& owner);

void audit(Database& database, const std::string& location, const char* action, const Instance& instance,
           const Json& before, const Json& after) {
    if (isRecordClass(database, instance.schema, instance.className)) {
        return;
    }
    Statement now(database, "SELECT strftime('%Y-%m-%dT%H:%M:%fZ', 'now')");
    now.step();
    // Callers are not identified, so every change is the local user's.
    add(database, {location, "DynamicSchema", "AuditRecord"},
        {{{"RecordBy", "Local user"},
          {"RecordById", "local"},
          {"RecordDate", now.text(0)},
          {"Action", action},
          {"Values", differences(before, after)}},
         ""},
        instance.id);
}

Instance add(Database& database, const ClassName& type, const Content& content, const std::string& owner) {
    storeClass(database, type);
    Instance instance{0, newId(), type.schema, type.name, newId(), Json::object()};
    merge(instance.properties, content.properties);
    storeInstance(database, type.location, owner, instance);
    produceFile(database, instance);
    audit(database, type.location, "Created", instance, Json::object(), instance.properties);
    return instance;
}

} // namespace

Store::Store(const std::string& file) try : m_connections(file, prepareLayout) {
} catch (const std::exception& error) {
    throw std::runtime_error("Can't use the database \"" + file + "\": " + error.what());
}

std::string Store::list(const ClassName& type, bool withSubclasses, const Query& query) {
    return read([&](Database& database) {
        const auto classes = withSubclasses ? familyNames(database, type) : std::vector<std::string>{type.name};
        return listOf(database, type, classes, {}, query);
    });
}

std::string Store::listById(const ClassName& type, const std::string& id, const Query& query) {
    return read([&](Database& database) {
        Statement instance(database, familyOf + "SELECT 1" + ofFamily + " AND i.id = ?4", type.location, type.schema,
                           type.name, id);
        const Sql condition{instance.step() ? " AND i.id = ?" : " AND i.owner = ?", {id}};
        return listOf(database, type, familyNames(database, type), condition, query);
    });
}

std::string Store::listRecords(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                               const Query& query) {
    return read([&](Database& database) {
        const ClassName type = recordType(database, ownerType, recordClass);
        Statement owned(database,
                        "SELECT 1 FROM instances WHERE location = ? AND owner = ? AND schema = ? AND class = ?",
                        type.location, ownerId, type.schema, type.name);
        if (!owned.step()) {
            rowOf(database, ownerType, ownerId); // an owner may be gone only while records of it remain
        }
        return listOf(database, type, {type.name}, {" AND i.owner = ?", {ownerId}}, query);
    });
}

std::string Store::count(const ClassName& type) {
    return read([&](Database& database) {
        const auto row = [&](const std::string& name, std::int64_t count) {
            return Json{{"instanceId", type.schema + "." + name},
                        {"schemaName", type.schema},
                        {"className", name},
                        {"properties", {{"ECSchemaName", type.schema}, {"ECClassName", name}, {"count", count}}}};
        };
        Json instances = Json::array();
        Statement rows(database,
                       familyOf + "SELECT i.class, count(*)" + ofFamily + " GROUP BY i.class ORDER BY i.class",
                       type.location, type.schema, type.name);
        while (rows.step()) {
            instances.push_back(row(rows.text(0), rows.integer(1)));
        }
        if (instances.empty()) {
            instances.push_back(row(type.name, 0));
        }
        return toText({{"instances", std::move(instances)}});
    });
}

std::string Store::get(const ClassName& type, const std::string& id, const Query& query) {
    return read([&](Database& database) {
        std::string out = R"({"instance":)";
        Writer(database, query).append(out, rowOf(database, type, id).integer(0));
        return out += "}";
    });
}

std::string Store::insert(const ClassName& type, const Content& content) {
    return change([&](Database& database) { return changed("Created", add(database, type, content, "")); });
}

std::string Store::insertRecord(const ClassName& ownerType, const std::string& ownerId, const std::string& recordClass,
                                const Content& content) {
    return change([&](Database& database) {
        const ClassName type = recordType(database, ownerType, recordClass);
        return changed("Created", add(database, type, content, rowOf(database, ownerType, ownerId).text(1)));
    });
}

std::string Store::insertRelated(const ClassName& type, const std::string& id, const NewRelationship& relationship,
                                 const Content& content) {
    return change([&](Database& database) {
        const std::int64_t present = rowOf(database, type, id).integer(0);
        const Instance added = add(database, relationship.target, content, "");
        // The relationship class is named without a schema, so it is one of the schema that the path is in.
        Statement(database, "INSERT INTO relationships(id, schema, class, source, target) VALUES (?, ?, ?, ?, ?)",
                  newId(), type.schema, relationship.className, relationship.isForward ? present : added.number,
                  relationship.isForward ? added.number : present)
            .run();
        return changed("Created", added);
    });
}

std::string Store::update(const ClassName& type, const std::string& id, const Content& content) {
    return change([&](Database& database) {
        Instance instance = find(database, type, id);
        if (!content.eTag.empty() && content.eTag != instance.eTag) {
            throw ServiceError(409, "The instance \"" + id + "\" was changed by someone else: its eTag is " +
                                        instance.eTag + ", not " + content.eTag);
        }
        const Json before = instance.properties;
        merge(instance.properties, content.properties);
        instance.eTag = newId();
        updateInstance(database, instance);
        audit(database, type.location, "Modified", instance, before, instance.properties);
        return changed("Modified", instance);
    });
}

void Store::remove(const ClassName& type, const std::string& id) {
    change([&](Database& database) {
        const Instance instance = find(database, type, id);
        // Files, values and relationships go by their references.
        Statement(database,
                  "WITH RECURSIVE gone(id) AS (SELECT ?2 UNION SELECT i.id FROM gone JOIN instances i"
                  " ON i.location = ?1 AND i.owner = gone.id JOIN record_classes r ON r.schema = i.schema"
                  " AND r.name = i.class AND NOT r.outlives_owner)"
                  " DELETE FROM instances WHERE location = ?1 AND id IN (SELECT id FROM gone)",
                  type.location, instance.id)
            .run();
        audit(database, type.location, "Deleted", instance, instance.properties, Json::object());
        return 0;
    });
}

std::string Store::file(const ClassName& type, const std::string& id) {
    return read([&](Database& database) {
        Statement row(database, "SELECT bytes FROM files WHERE instance = ?", rowOf(database, type, id).integer(0));
        if (!row.step()) {
            throw ServiceError(404, "The instance \"" + id + "\" has no file");
        }
        return row.text(0);
    });
}

std::string Store::putFile(const ClassName& type, const std::string& id, std::string_view bytes) {
    return change([&](Database& database) {
        Instance instance = find(database, type, id);
        instance.eTag = newId();
        Statement(database, "UPDATE instances SET etag = ? WHERE number = ?", instance.eTag, instance.number).run();
        storeFile(database, instance.number, bytes);
        return changed("Modified", instance);
    });
}

void Store::reset() {
    change([](Database& database) {
        clearLayout(database);
        return 0;
    });
}

void Store::seed(const std::string& text) {
    change([&](Database& database) {
        repository::seed(database, text);
        return 0;
    });
}

std::string Store::dump() {
    return read([](Database& database) { return repository::dump(database); });
}

} // namespace VarnelAPI::Forms::repository
