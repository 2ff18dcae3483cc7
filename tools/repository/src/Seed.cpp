#include "Seed.h"

#include "Instances.h"
#include "Routes.h"
#include "ServiceError.h"

#include <openssl/evp.h>

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <string_view>

namespace VarnelAPI::Forms::repository {
namespace {

[[noreturn]] void refuse(const std::string& what) {
    throw ServiceError(400, "The seed can't be taken: " + what);
}

std::string toBase64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0'); // it ends its text with a NUL
    text.resize(static_cast<std::size_t>(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                                         reinterpret_cast<const unsigned char*>(bytes.data()),
                                                         static_cast<int>(bytes.size()))));
    return text;
}

std::string fromBase64(const std::string& text, const std::string& where) {
    std::string bytes(text.size() / 4 * 3, '\0');
    const std::size_t padding = std::min(text.find('='), text.size());
    const bool isWhole = text.size() % 4 == 0 && text.size() <= std::numeric_limits<int>::max() &&
                         text.size() - padding <= 2 && text.find_first_not_of('=', padding) == std::string::npos;
    if (!isWhole || EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                                    reinterpret_cast<const unsigned char*>(text.data()),
                                    static_cast<int>(text.size())) != static_cast<int>(bytes.size())) {
        refuse(where + ": \"file\" is not Base64");
    }
    // What pads the text was decoded as zeros.
    bytes.resize(bytes.size() - (text.size() - padding));
    return bytes;
}

/// An entry of one of the lists, whose members are asked for by name.
class Entry {
public:
    Entry(const Json& json, std::string where, std::initializer_list<std::string_view> known)
        : m_json(json), m_where(std::move(where)) {
        if (!json.is_object()) {
            refuse(m_where + " is not an object");
        }
        for (const auto& [name, value] : json.items()) {
            if (std::find(known.begin(), known.end(), name) == known.end()) {
                refuse(m_where + " has an unknown member \"" + name + "\"");
            }
        }
    }

    const std::string& where() const { return m_where; }
    const Json* find(const char* name) const {
        const auto found = m_json.find(name);
        return found == m_json.end() || found->is_null() ? nullptr : &*found;
    }
    std::string textOr(const char* name, const std::string& otherwise) const {
        const Json* value = find(name);
        if (value != nullptr && !value->is_string()) {
            refuse(m_where + ": \"" + name + "\" is not a text");
        }
        return value == nullptr ? otherwise : value->get<std::string>();
    }
    std::string text(const char* name) const {
        std::string value = textOr(name, "");
        if (value.empty()) {
            refuse(m_where + ": \"" + name + "\" is missing");
        }
        return value;
    }

private:
    const Json& m_json;
    std::string m_where;
};

template <class Take>
void forEach(const Entry& seed, const char* list, std::initializer_list<std::string_view> known, Take take) {
    const Json* entries = seed.find(list);
    if (entries == nullptr) {
        return;
    }
    if (!entries->is_array()) {
        refuse(std::string("\"") + list + "\" is not a list");
    }
    std::size_t index = 0;
    for (const Json& entry : *entries) {
        take(Entry(entry, std::string(list) + "[" + std::to_string(index++) + "]", known));
    }
}

std::int64_t numberOf(Database& database, const std::string& location, const std::string& id, const Entry& entry) {
    Statement row(database, "SELECT number FROM instances WHERE location = ? AND id = ?", location, id);
    if (!row.step()) {
        refuse(entry.where() + ": there is no instance \"" + id + "\" in \"" + location + "\"");
    }
    return row.integer(0);
}

void seedInstance(Database& database, const Entry& entry) {
    const ClassName type{entry.text("location"), entry.text("schemaName"), entry.text("className")};
    const Json* properties = entry.find("properties");
    if (properties != nullptr && !properties->is_object()) {
        refuse(entry.where() + ": \"properties\" is not an object");
    }
    Instance instance{0,         entry.textOr("instanceId", newId()), type.schema,
                      type.name, entry.textOr("eTag", newId()),       Json::object()};
    const Json none = Json::object();
    for (const auto& [name, value] : (properties == nullptr ? none : *properties).items()) {
        if (!value.is_null()) {
            instance.properties[name] = value;
        }
    }
    if (Statement(database, "SELECT 1 FROM instances WHERE location = ? AND id = ?", type.location, instance.id)
            .step()) {
        refuse(entry.where() + ": there is an instance \"" + instance.id + "\" already");
    }
    storeClass(database, type);
    storeInstance(database, type.location, entry.textOr("owner", ""), instance);
    if (entry.find("file") != nullptr) {
        storeFile(database, instance.number, fromBase64(entry.textOr("file", ""), entry.where()));
    }
}

/// A list of objects, one for each row: the names of their members are those of the columns. A column called "json" is
/// the text of a member "properties", one called "file" is bytes; NULL is left out.
void dumpList(Database& database, const char* list, const char* sql, std::string& out) {
    out += std::string("\"") + list + "\":[";
    const char* before = "\n";
    for (Statement row(database, sql); row.step(); before = ",\n") {
        out += before;
        char opening = '{';
        for (int column = 0; column < row.columns(); ++column) {
            if (row.isNull(column)) {
                continue;
            }
            const std::string name = row.name(column);
            out += opening;
            out += toText(name == "json" ? "properties" : name) + ":";
            out += name == "json"            ? row.text(column)
                   : name == "file"          ? "\"" + toBase64(row.view(column)) + "\""
                   : name == "outlivesOwner" ? (row.integer(column) != 0 ? "true" : "false")
                                             : toText(row.text(column));
            opening = ',';
        }
        out += '}';
    }
    out += "]";
}

} // namespace

std::string dump(Database& database) {
    std::string out = "{";
    dumpList(database, "recordClasses",
             "SELECT schema AS schemaName, name AS className, outlives_owner AS outlivesOwner FROM record_classes"
             " ORDER BY schema, name",
             out);
    out += ",\n";
    dumpList(database, "producers",
             "SELECT schema AS schemaName, class AS className, kind FROM producers ORDER BY schema, class", out);
    out += ",\n";
    dumpList(database, "classes",
             "SELECT location, schema AS schemaName, name AS className, base FROM classes"
             " ORDER BY location, schema, name",
             out);
    out += ",\n";
    dumpList(database, "instances",
             "SELECT i.location, i.schema AS schemaName, i.class AS className, i.id AS instanceId, i.etag AS eTag,"
             " nullif(i.owner, '') AS owner, i.properties AS json, f.bytes AS file"
             " FROM instances i LEFT JOIN files f ON f.instance = i.number ORDER BY i.number",
             out);
    out += ",\n";
    dumpList(database, "relationships",
             "SELECT s.location, r.id AS instanceId, r.schema AS schemaName, r.class AS className, s.id AS source,"
             " t.id AS target FROM relationships r JOIN instances s ON s.number = r.source"
             " JOIN instances t ON t.number = r.target ORDER BY r.number",
             out);
    return out += "}\n";
}

void seed(Database& database, const std::string& text) {
    const Json json = parseJson(text, maxNesting + 1);
    const Entry all(json, "it", {"recordClasses", "producers", "classes", "instances", "relationships"});
    forEach(all, "recordClasses", {"schemaName", "className", "outlivesOwner"}, [&](const Entry& entry) {
        const Json* outlives = entry.find("outlivesOwner");
        Statement(database, "INSERT OR REPLACE INTO record_classes VALUES (?, ?, ?)", entry.text("schemaName"),
                  entry.text("className"), static_cast<std::int64_t>(outlives != nullptr && *outlives == true))
            .run();
    });
    forEach(all, "producers", {"schemaName", "className", "kind"}, [&](const Entry& entry) {
        Statement(database, "INSERT OR REPLACE INTO producers VALUES (?, ?, ?)", entry.text("schemaName"),
                  entry.text("className"), entry.text("kind"))
            .run();
    });
    forEach(all, "classes", {"location", "schemaName", "className", "base"}, [&](const Entry& entry) {
        Statement(database, "INSERT OR REPLACE INTO classes VALUES (?, ?, ?, nullif(?, ''))", entry.text("location"),
                  entry.text("schemaName"), entry.text("className"), entry.textOr("base", ""))
            .run();
    });
    forEach(all, "instances",
            {"location", "schemaName", "className", "instanceId", "eTag", "owner", "properties", "file"},
            [&](const Entry& entry) { seedInstance(database, entry); });
    forEach(all, "relationships", {"location", "instanceId", "schemaName", "className", "source", "target"},
            [&](const Entry& entry) {
                const std::string location = entry.text("location");
                Statement(database,
                          "INSERT INTO relationships(id, schema, class, source, target) VALUES (?, ?, ?, ?, ?)",
                          entry.textOr("instanceId", newId()), entry.text("schemaName"), entry.text("className"),
                          numberOf(database, location, entry.text("source"), entry),
                          numberOf(database, location, entry.text("target"), entry))
                    .run();
            });
}

} // namespace VarnelAPI::Forms::repository
