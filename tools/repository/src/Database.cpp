#include "Database.h"

#include <stdexcept>

namespace VarnelAPI::Forms::repository {

Database::Database(const std::string& file) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_handle.reset(handle); // SQLite hands out a handle on failure too: it holds the error's text
    if (result != SQLITE_OK) {
        throw std::runtime_error(handle != nullptr ? sqlite3_errmsg(handle) : "out of memory");
    }
    sqlite3_busy_timeout(handle, 5000);
}

void Database::run(const char* sql) {
    if (sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(handle()));
    }
}

Statement::Statement(Database& database, std::string_view sql, Prepare /*tag*/) : m_database(database) {
    sqlite3_stmt* handle = nullptr;
    check(sqlite3_prepare_v2(database.handle(), sql.data(), static_cast<int>(sql.size()), &handle, nullptr));
    m_handle.reset(handle);
}

bool Statement::step() {
    const int result = sqlite3_step(m_handle.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        check(result);
    }
    return result == SQLITE_ROW;
}

std::string Statement::text(int column) {
    const void* bytes = sqlite3_column_blob(m_handle.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_handle.get(), column));
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), size);
}

void Statement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(m_handle.get(), index, value));
}

void Statement::bind(int index, std::string_view value) {
    check(sqlite3_bind_text64(m_handle.get(), index, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bind(int index, const Blob& value) {
    // A null pointer would bind NULL instead of no bytes.
    const char* bytes = value.bytes.empty() ? "" : value.bytes.data();
    check(sqlite3_bind_blob64(m_handle.get(), index, bytes, value.bytes.size(), SQLITE_STATIC));
}

void Statement::check(int result) const {
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(m_database.handle()));
    }
}

Transaction::Transaction(Database& database) : m_database(database) {
    database.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (m_isOpen) {
        sqlite3_exec(m_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void Transaction::commit() {
    m_database.run("COMMIT");
    m_isOpen = false;
}

} // namespace VarnelAPI::Forms::repository
