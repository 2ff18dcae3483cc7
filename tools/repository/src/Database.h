#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace VarnelAPI::Forms::repository {

/// Bytes to bind as a BLOB. They are not copied and must outlive the statement.
struct Blob {
    std::string_view bytes;
};

/// One SQLite connection. Failures are std::runtime_error with SQLite's text.
class Database {
public:
    explicit Database(const std::string& file);

    sqlite3* handle() const { return m_handle.get(); }
    /// Runs statements without parameters or results.
    void run(const char* sql);
    bool isReadOnly() const { return sqlite3_db_readonly(handle(), "main") == 1; }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

/// A prepared statement with its parameters bound in order.
class Statement {
public:
    template <class... Values>
    Statement(Database& database, std::string_view sql, const Values&... values) : Statement(database, sql, Prepare{}) {
        int index = 0;
        (bind(++index, values), ...);
    }

    /// True when there is a row to read.
    bool step();
    void run() {
        while (step()) {
        }
    }
    std::int64_t integer(int column) { return sqlite3_column_int64(m_handle.get(), column); }
    std::string text(int column);

private:
    struct Prepare {};
    struct Finalize {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };

    Statement(Database& database, std::string_view sql, Prepare /*tag*/);
    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view value);
    void bind(int index, const Blob& value);
    void check(int result) const;

    Database& m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
};

/// Rolls back unless committed.
class Transaction {
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Database& m_database;
    bool m_isOpen = true;
};

} // namespace VarnelAPI::Forms::repository
