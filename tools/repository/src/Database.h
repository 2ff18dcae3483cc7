#pragma once

#include <sqlite3.h>

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// Bytes to bind as a BLOB. They are not copied and must outlive the statement.
struct Blob {
    std::string_view bytes;
};

/// What a part of a statement is bound to.
using SqlValue = std::variant<std::int64_t, double, std::string>;

/// A part of a statement, with a value for each of its question marks.
struct Sql {
    std::string text;
    std::vector<SqlValue> values;

    Sql& operator+=(const Sql& other);
};

/// One SQLite connection, for one thread at a time. Failures are std::runtime_error with SQLite's text.
class Database {
public:
    explicit Database(const std::string& file);

    sqlite3* handle() const { return m_handle.get(); }
    /// Runs statements without parameters or results.
    void run(const char* sql);
    bool isReadOnly() const { return sqlite3_db_readonly(handle(), "main") == 1; }
    /// Begins a transaction that writes, once no other program does. Who waits for that in vain has waited for those
    /// behind, too: they are refused at once until it is over.
    void beginChange();
    /// From now on its file is expected to be gone, and changes don't look for it.
    void hasNoName() { m_hasName = false; }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
    bool m_hasName = true;
    bool m_isHeldByOthers = false;
};

/// A prepared statement with its parameters bound in order.
class Statement {
public:
    template <class... Values>
    Statement(Database& database, std::string_view sql, const Values&... values) : Statement(database, sql, Prepare{}) {
        bindAll(values...);
    }
    Statement(Database& database, const Sql& sql);

    /// Starts it anew with other values.
    template <class... Values>
    void restart(const Values&... values) {
        sqlite3_reset(m_handle.get());
        bindAll(values...);
    }
    /// True when there is a row to read.
    bool step();
    void run() {
        while (step()) {
        }
    }
    std::int64_t integer(int column) { return sqlite3_column_int64(m_handle.get(), column); }
    std::string text(int column) { return std::string(view(column)); }
    /// The same, until the next step.
    std::string_view view(int column);
    int columns() { return sqlite3_column_count(m_handle.get()); }
    std::string name(int column) { return sqlite3_column_name(m_handle.get(), column); }
    bool isNull(int column) { return sqlite3_column_type(m_handle.get(), column) == SQLITE_NULL; }

private:
    struct Prepare {};
    struct Finalize {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };

    Statement(Database& database, std::string_view sql, Prepare /*tag*/);
    template <class... Values>
    void bindAll(const Values&... values) {
        int index = 0;
        (bind(++index, values), ...);
    }
    void bind(int index, std::int64_t value);
    void bind(int index, double value);
    void bind(int index, std::string_view value);
    void bind(int index, const std::string& value) { bind(index, std::string_view(value)); }
    void bind(int index, std::nullptr_t value);
    void bind(int index, const Blob& value);
    void bind(int index, const SqlValue& value);
    void check(int result) const;

    Database& m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
};

/// Rolls back unless committed.
class Transaction {
public:
    enum class Kind { Read, Write };

    Transaction(Database& database, Kind kind);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Database& m_database;
    bool m_isOpen = true;
};

/// A folder of our own that is gone when the process is, if the system can remove what is open; else with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder() { remove(); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file() const { return (m_path / "repository.db").string(); }
    void remove();

private:
    std::filesystem::path m_path;
};

/// The connections to one database: one that writes, and several that read what was committed, beside it and each
/// other.
class Connections {
public:
    static constexpr const char* inMemory = ":memory:";

    /// @param file what `inMemory` names is a temporary file that nobody else can open: several connections can read
    ///     side by side only from a file
    /// @param prepare is given the writer, before any reader is opened
    template <class PrepareWriter>
    Connections(const std::string& file, PrepareWriter prepare)
        : m_folder(file == inMemory ? std::make_unique<TemporaryFolder>() : nullptr),
          m_file(m_folder != nullptr ? m_folder->file() : file), m_writer(m_file) {
        if (m_folder != nullptr) {
            m_writer.run("PRAGMA synchronous = OFF"); // it is of no use after a failure anyway
        }
        prepare(m_writer);
        openReaders();
    }

    /// The writer, for one at a time.
    class Writing {
    public:
        explicit Writing(Connections& connections) : m_lock(connections.m_writing), m_database(connections.m_writer) {}
        Database& database() { return m_database; }

    private:
        std::lock_guard<std::mutex> m_lock;
        Database& m_database;
    };

    /// A reader of one's own; waits while all are in use.
    class Reading {
    public:
        explicit Reading(Connections& connections);
        ~Reading();
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;
        Database& database() { return *m_database; }

    private:
        Connections& m_connections;
        std::unique_ptr<Database> m_database;
    };

private:
    void openReaders();

    std::unique_ptr<TemporaryFolder> m_folder;
    std::string m_file;
    std::mutex m_writing;
    Database m_writer;
    std::mutex m_mutex;
    std::condition_variable m_isFree;
    std::vector<std::unique_ptr<Database>> m_readers;
};

} // namespace VarnelAPI::Forms::repository
