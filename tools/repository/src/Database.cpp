#include "Database.h"

#include <random>
#include <stdexcept>

namespace VarnelAPI::Forms::repository {
namespace {

/// As many as there are threads that serve requests.
constexpr int readerCount = 8;

/// How long to wait for another program that uses the file, in milliseconds.
constexpr int patience = 5000;

/// SQLite counts its memory under one lock for all connections, so that readers wait for each other more than they
/// read. Nobody asks for the count. In a process where SQLite has begun already, this changes nothing.
void countNoMemory() {
    [[maybe_unused]] static const int ignored = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

} // namespace

Sql& Sql::operator+=(const Sql& other) {
    text += other.text;
    values.insert(values.end(), other.values.begin(), other.values.end());
    return *this;
}

Database::Database(const std::string& file) {
    countNoMemory();
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    const int result = sqlite3_open_v2(file.c_str(), &handle, flags, nullptr);
    m_handle.reset(handle); // SQLite hands out a handle on failure too: it holds the error's text
    if (result != SQLITE_OK) {
        throw std::runtime_error(handle != nullptr ? sqlite3_errmsg(handle) : "out of memory");
    }
    sqlite3_busy_timeout(handle, patience);
}

void Database::run(const char* sql) {
    if (sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(handle()));
    }
}

void Database::beginChange() {
    sqlite3_busy_timeout(handle(), m_isHeldByOthers ? 0 : patience);
    m_isHeldByOthers = true;
    run("BEGIN IMMEDIATE");
    m_isHeldByOthers = false;
    int hasMoved = 0;
    if (m_hasName && sqlite3_file_control(handle(), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved) == SQLITE_OK &&
        hasMoved != 0) {
        run("ROLLBACK");
        throw std::runtime_error("the database file was moved or removed: what is written to it would be lost");
    }
}

Statement::Statement(Database& database, std::string_view sql, Prepare /*tag*/) : m_database(database) {
    sqlite3_stmt* handle = nullptr;
    check(sqlite3_prepare_v2(database.handle(), sql.data(), static_cast<int>(sql.size()), &handle, nullptr));
    m_handle.reset(handle);
}

Statement::Statement(Database& database, const Sql& sql) : Statement(database, sql.text, Prepare{}) {
    int index = 0;
    for (const SqlValue& value : sql.values) {
        bind(++index, value);
    }
}

bool Statement::step() {
    const int result = sqlite3_step(m_handle.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        check(result);
    }
    return result == SQLITE_ROW;
}

std::string_view Statement::view(int column) {
    const void* bytes = sqlite3_column_blob(m_handle.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_handle.get(), column));
    return bytes == nullptr ? std::string_view() : std::string_view(static_cast<const char*>(bytes), size);
}

void Statement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(m_handle.get(), index, value));
}

void Statement::bind(int index, double value) {
    check(sqlite3_bind_double(m_handle.get(), index, value));
}

void Statement::bind(int index, std::string_view value) {
    // A null pointer would bind NULL instead of no text.
    const char* text = value.empty() ? "" : value.data();
    check(sqlite3_bind_text64(m_handle.get(), index, text, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bind(int index, std::nullptr_t /*value*/) {
    check(sqlite3_bind_null(m_handle.get(), index));
}

void Statement::bind(int index, const Blob& value) {
    const char* bytes = value.bytes.empty() ? "" : value.bytes.data();
    check(sqlite3_bind_blob64(m_handle.get(), index, bytes, value.bytes.size(), SQLITE_STATIC));
}

void Statement::bind(int index, const SqlValue& value) {
    std::visit([&](const auto& held) { bind(index, held); }, value);
}

void Statement::check(int result) const {
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(m_database.handle()));
    }
}

Transaction::Transaction(Database& database, Kind kind) : m_database(database) {
    if (kind == Kind::Read) {
        database.run("BEGIN");
    } else {
        database.beginChange();
    }
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

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do {
        m_path = std::filesystem::temp_directory_path() / ("varnel-forms-repository-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
    std::filesystem::permissions(m_path, std::filesystem::perms::owner_all);
}

void TemporaryFolder::remove() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void Connections::openReaders() {
    for (int i = 0; i < readerCount; ++i) {
        m_readers.push_back(std::make_unique<Database>(m_file));
        // Reads, so that all files of the database are open before they are removed.
        m_readers.back()->run("PRAGMA query_only = ON; SELECT count(*) FROM sqlite_master");
    }
    if (m_folder != nullptr) {
        m_folder->remove();
        m_writer.hasNoName();
    }
}

Connections::Reading::Reading(Connections& connections) : m_connections(connections) {
    std::unique_lock lock(connections.m_mutex);
    connections.m_isFree.wait(lock, [&] { return !connections.m_readers.empty(); });
    m_database = std::move(connections.m_readers.back()); // the one used last, whose pages are still in its cache
    connections.m_readers.pop_back();
}

Connections::Reading::~Reading() {
    {
        const std::lock_guard lock(m_connections.m_mutex);
        m_connections.m_readers.push_back(std::move(m_database));
    }
    m_connections.m_isFree.notify_one();
}

} // namespace VarnelAPI::Forms::repository
