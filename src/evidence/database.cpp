// SPDX-License-Identifier: MIT
#include "evidence/database.h"

#include <chrono>

#include <sqlite3.h>

#include "evidence/own_files.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// Above any block of heads, name or path that there can be.
constexpr int kLargestValue = 4 * 1024 * 1024;

// What the failures that a user can do something about are called.
FileError errorOf(sqlite3* database, int code, const std::string& path) {
    const auto error = [&](ErrorKind kind, std::string_view words) {
        return FileError{kind, readable(std::string_view(path)) + ": " + std::string(words)};
    };
    switch (code & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return error(ErrorKind::PermissionDenied, "another program has it locked");
        case SQLITE_READONLY:
        case SQLITE_PERM:
            return error(ErrorKind::PermissionDenied, "it cannot be written");
        case SQLITE_NOTADB:
            return error(ErrorKind::PathAccess, "it is no database");
        case SQLITE_CORRUPT:
            return error(ErrorKind::PathAccess, "it is damaged");
        case SQLITE_FULL:
            return error(ErrorKind::PathAccess, "the disk is full");
        case SQLITE_TOOBIG:
            return error(ErrorKind::PathAccess, "it holds a value that is too large");
        default:
            return error(ErrorKind::PathAccess, database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
    }
}

}  // namespace

void CloseStatement::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

void CloseDatabase::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

Result<bool> Statement::step() {
    const int code = sqlite3_step(handle_.get());
    if (code == SQLITE_ROW)
        return true;
    const auto error = code == SQLITE_DONE ? FileError() : errorOf(sqlite3_db_handle(handle_.get()), code, path_);
    sqlite3_reset(handle_.get());
    if (code != SQLITE_DONE)
        return failure(error);
    return false;
}

Result<void> Statement::run() {
    while (true) {
        const auto more = step();
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
    }
}

void Statement::reset() {
    sqlite3_reset(handle_.get());
}

int Statement::columns() const {
    return sqlite3_column_count(handle_.get());
}

std::string_view Statement::columnName(int column) const {
    const char* const name = sqlite3_column_name(handle_.get(), column);
    return name != nullptr ? name : "";
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(handle_.get(), column);
}

double Statement::number(int column) const {
    return sqlite3_column_double(handle_.get(), column);
}

std::string_view Statement::text(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
    if (text == nullptr)
        return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

std::string_view Statement::blob(int column) const {
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(handle_.get(), column));
    if (bytes == nullptr)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

std::optional<std::int64_t> Statement::integerOrNone(int column) const {
    return isNull(column) ? std::nullopt : std::optional(integer(column));
}

// A parameter that cannot be bound stays NULL; that comes of a statement and values of our own that do not fit, or of a
// value too large, which the step then tells.
void Statement::put(int place, std::nullopt_t /*null*/) {
    sqlite3_bind_null(handle_.get(), place);
}

void Statement::put(int place, std::int64_t number) {
    sqlite3_bind_int64(handle_.get(), place, number);
}

void Statement::put(int place, double number) {
    sqlite3_bind_double(handle_.get(), place, number);
}

void Statement::put(int place, std::string_view text) {
    sqlite3_bind_text64(handle_.get(), place, text.data() != nullptr ? text.data() : "", text.size(), SQLITE_STATIC,
                        SQLITE_UTF8);
}

void Statement::put(int place, Blob blob) {
    const std::string_view bytes = blob.bytes;
    sqlite3_bind_blob64(handle_.get(), place, bytes.data() != nullptr ? bytes.data() : "", bytes.size(), SQLITE_STATIC);
}

Result<Database> Database::open(const NativePath& path, Access access) {
    const auto vfs = ownFilesOnly();
    if (!vfs)
        return failure(vfs.error());
    sqlite3* handle = nullptr;
    // A reader opens for writing too, where it may: what a killed job left half done is to be undone.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE;
    const int code = sqlite3_open_v2(path.c_str(), &handle, flags, *vfs);
    Database database(handle, path.native());
    if (code != SQLITE_OK)
        return failure(errorOf(handle, code, path.native()));
    if (auto made = database.protect(access); !made)
        return failure(made.error());
    return database;
}

Result<void> Database::protect(Access access) {
    sqlite3* const handle = handle_.get();
    sqlite3_extended_result_codes(handle, 1);
    for (const auto& [what, value] : {std::pair{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                      {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                      {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                      {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
                                      {SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0},
                                      {SQLITE_DBCONFIG_DQS_DML, 0},
                                      {SQLITE_DBCONFIG_DQS_DDL, 0}})
        sqlite3_db_config(handle, what, value, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kLargestValue);
    sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(handle, SQLITE_LIMIT_WORKER_THREADS, 0);
    sqlite3_limit(handle, SQLITE_LIMIT_TRIGGER_DEPTH, 0);
    waitForLocks(std::chrono::seconds(5));
    // A map of the file would end the program when another one cuts the file; 8 MiB of it are kept in memory. A
    // transaction that wrote to the file before its end would lock readers out until then.
    const std::string own = access == Access::Reading ? "PRAGMA query_only = 1;" : "PRAGMA cache_spill = 0;";
    return run(
        "PRAGMA mmap_size = 0; PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = 1;"
        "PRAGMA cache_size = -8192; PRAGMA synchronous = NORMAL;" +
        own);
}

Result<std::string> Database::bytesOfNew(const std::vector<std::string>& statements, int pageBytes) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(":memory:", &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Database database(handle, ":memory:");
    if (code != SQLITE_OK)
        return failure(errorOf(handle, code, database.path_));
    if (auto sized = database.run("PRAGMA page_size = " + std::to_string(pageBytes)); !sized)
        return failure(sized.error());
    for (const auto& statement : statements) {
        if (auto done = database.run(statement); !done)
            return failure(done.error());
    }
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(sqlite3_serialize(handle, "main", &size, 0),
                                                                        sqlite3_free);
    if (bytes == nullptr)
        return database.wrong("out of memory");
    return std::string(reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size));
}

Result<void> Database::run(const std::string& sql) {
    if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return failed();
    return {};
}

Result<Statement> Database::prepare(std::string_view sql, Tables tables) {
    sqlite3_stmt* statement = nullptr;
    const unsigned flags = SQLITE_PREPARE_PERSISTENT | (tables == Tables::OfFile ? SQLITE_PREPARE_NO_VTAB : 0U);
    const int code =
        sqlite3_prepare_v3(handle_.get(), sql.data(), static_cast<int>(sql.size()), flags, &statement, nullptr);
    if (code != SQLITE_OK)
        return failed();
    return Statement(statement, path_);
}

Result<void> Database::addTable(const char* name, const sqlite3_module& module, void* own, void (*end)(void*)) {
    if (sqlite3_create_module_v2(handle_.get(), name, &module, own, end) != SQLITE_OK)
        return failed();
    return {};
}

void Database::waitForLocks(std::chrono::milliseconds limit) {
    sqlite3_busy_timeout(handle_.get(), static_cast<int>(limit.count()));
}

std::int64_t Database::lastId() const {
    return sqlite3_last_insert_rowid(handle_.get());
}

tl::unexpected<FileError> Database::wrong(std::string_view what) const {
    return failure(ErrorKind::PathAccess, readable(std::string_view(path_)) + ": " + std::string(what));
}

tl::unexpected<FileError> Database::failed() const {
    return failure(errorOf(handle_.get(), sqlite3_errcode(handle_.get()), path_));
}

}  // namespace quillon
