#include "Layout.h"

#include "Instances.h"

#include <stdexcept>
#include <string>

namespace VarnelAPI::Forms::repository {
namespace {

/// Tells our files from other SQLite files, and this layout from others.
constexpr std::int64_t applicationId = 0x56464C52;
constexpr std::int64_t layoutVersion = 3;

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
    CREATE INDEX instances_of_owner ON instances(location, owner, schema, class);

    -- How many instances of a class there are among each 512 numbers: what a page leaves out need not be walked through.
    -- A block is named by the first of its numbers.
    CREATE TABLE blocks(
        location TEXT NOT NULL, schema TEXT NOT NULL, class TEXT NOT NULL,
        block INTEGER NOT NULL,
        instances INTEGER NOT NULL,
        PRIMARY KEY(location, schema, class, block)) STRICT, WITHOUT ROWID;
    CREATE TRIGGER instance_is_added AFTER INSERT ON instances BEGIN
        INSERT INTO blocks VALUES (new.location, new.schema, new.class, new.number - new.number % 512, 1)
            ON CONFLICT DO UPDATE SET instances = instances + 1;
    END;
    CREATE TRIGGER instance_is_gone AFTER DELETE ON instances BEGIN
        UPDATE blocks SET instances = instances - 1 WHERE location = old.location AND schema = old.schema
            AND class = old.class AND block = old.number - old.number % 512;
    END;

    -- What the properties of an instance can be compared and ordered by; its kind is one of the enumeration ValueKind.
    CREATE TABLE property_values(
        instance INTEGER NOT NULL REFERENCES instances ON DELETE CASCADE,
        name TEXT NOT NULL,
        kind INTEGER NOT NULL,
        value ANY,
        PRIMARY KEY(instance, name)) STRICT, WITHOUT ROWID;

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

std::int64_t number(Database& database, const char* sql) {
    Statement statement(database, sql);
    return statement.step() ? statement.integer(0) : 0;
}

void setPragma(Database& database, const std::string& name, std::int64_t value) {
    database.run(("PRAGMA " + name + " = " + std::to_string(value)).c_str());
}

} // namespace

void prepareLayout(Database& database) {
    const std::int64_t application = number(database, "PRAGMA application_id");
    const std::int64_t version = number(database, "PRAGMA user_version");
    if (application == 0 && version == 0 && number(database, "SELECT count(*) FROM sqlite_master") == 0) {
        database.run("PRAGMA journal_mode = WAL");
        Transaction transaction(database, Transaction::Kind::Write);
        database.run(layout);
        setPragma(database, "application_id", applicationId);
        setPragma(database, "user_version", layoutVersion);
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

void clearLayout(Database& database) {
    database.run("DROP TABLE relationships; DROP TABLE files; DROP TABLE property_values; DROP TABLE instances;"
                 "DROP TABLE blocks; DROP TABLE classes; DROP TABLE producers; DROP TABLE record_classes");
    database.run(layout);
}

} // namespace VarnelAPI::Forms::repository
