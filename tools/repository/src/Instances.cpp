#include "Instances.h"

#include "Query.h"

#include <random>

namespace VarnelAPI::Forms::repository {
namespace {

void storeValues(Database& database, const Instance& instance) {
    Statement row(database, "INSERT INTO property_values VALUES (?, ?, ?, ?)");
    for (const auto& [name, value] : instance.properties.items()) {
        const ValueKind kind = kindOf(value);
        const auto store = [&, &key = name](const auto& bound) {
            row.restart(instance.number, key, static_cast<std::int64_t>(kind), bound);
            row.run();
        };
        switch (kind) {
        case ValueKind::Bool:
            store(static_cast<std::int64_t>(value.get<bool>()));
            break;
        case ValueKind::Number:
            store(numberOf(value));
            break;
        case ValueKind::Text:
            store(value.get_ref<const std::string&>());
            break;
        case ValueKind::Other:
            store(nullptr);
            break;
        }
    }
}

} // namespace

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

void storeClass(Database& database, const ClassName& type) {
    Statement(database,
              "INSERT OR IGNORE INTO classes VALUES (?1, ?2, ?3, CASE WHEN ?3 = 'BaseClass' OR EXISTS"
              " (SELECT 1 FROM record_classes WHERE schema = ?2 AND name = ?3) THEN NULL ELSE 'BaseClass' END)",
              type.location, type.schema, type.name)
        .run();
}

void storeInstance(Database& database, const std::string& location, const std::string& owner, Instance& instance) {
    Statement row(database,
                  "INSERT INTO instances(location, id, schema, class, owner, etag, properties)"
                  " VALUES (?, ?, ?, ?, ?, ?, ?) RETURNING number",
                  location, instance.id, instance.schema, instance.className, owner, instance.eTag,
                  toText(instance.properties));
    row.step();
    instance.number = row.integer(0);
    row.run();
    storeValues(database, instance);
}

void updateInstance(Database& database, const Instance& instance) {
    Statement(database, "UPDATE instances SET etag = ?, properties = ? WHERE number = ?", instance.eTag,
              toText(instance.properties), instance.number)
        .run();
    Statement(database, "DELETE FROM property_values WHERE instance = ?", instance.number).run();
    storeValues(database, instance);
}

void storeFile(Database& database, std::int64_t instance, std::string_view bytes) {
    Statement(database, "INSERT OR REPLACE INTO files VALUES (?, ?)", instance, Blob{bytes}).run();
}

} // namespace VarnelAPI::Forms::repository
