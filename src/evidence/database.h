// SPDX-License-Identifier: MIT
#pragma once

// Owners of SQLite's handles. A database is opened so that a file somebody else prepared runs nothing: no triggers, no
// views, no functions out of its schema, no other file is touched than the database and its rollback journal, and no
// value larger than a bound is taken. For one thread at a time.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

struct sqlite3;
struct sqlite3_module;
struct sqlite3_stmt;

namespace quillon {

struct CloseStatement {
    void operator()(sqlite3_stmt* statement) const;
};
struct CloseDatabase {
    void operator()(sqlite3* database) const;
};

/// Bytes that are no text.
struct Blob {
    std::string_view bytes;
};

/// A prepared statement. Columns count from 0. What a column gives is good until the next step, bind or reset; a value
/// of another type than asked for is converted, and NULL is 0 or empty.
class Statement {
public:
    Statement() = default;

    /// Begins anew with these values for its parameters, in order: numbers, texts, blobs, and optionals of them for
    /// NULL. Texts and blobs are not copied: they stay until the statement is reset or bound again.
    template <typename... Values>
    Statement& bind(const Values&... values) {
        reset();
        [[maybe_unused]] int place = 0;
        (put(++place, values), ...);
        return *this;
    }

    /// True: there is a row to look at. False: it has come to its end, and begins anew with the next step.
    [[nodiscard]] Result<bool> step();
    /// Steps to the end, whatever rows come.
    [[nodiscard]] Result<void> run();
    /// Ends the work on a row, so that the database is free for others.
    void reset();

    [[nodiscard]] int columns() const;
    [[nodiscard]] std::string_view columnName(int column) const;
    [[nodiscard]] bool isNull(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] double number(int column) const;
    [[nodiscard]] std::string_view text(int column) const;
    [[nodiscard]] std::string_view blob(int column) const;
    [[nodiscard]] std::optional<std::int64_t> integerOrNone(int column) const;

private:
    friend class Database;
    Statement(sqlite3_stmt* handle, std::string path) : handle_(handle), path_(std::move(path)) {}

    void put(int place, std::nullopt_t null);
    void put(int place, std::int64_t number);
    void put(int place, double number);
    void put(int place, std::string_view text);
    void put(int place, Blob blob);
    template <std::integral Number>
    void put(int place, Number number) {
        put(place, static_cast<std::int64_t>(number));
    }
    template <typename Value>
    void put(int place, const std::optional<Value>& value) {
        if (value)
            put(place, *value);
        else
            put(place, std::nullopt);
    }
    void put(int place, const std::string& text) { put(place, std::string_view(text)); }
    void put(int place, const char* text) { put(place, std::string_view(text)); }

    std::unique_ptr<sqlite3_stmt, CloseStatement> handle_;
    std::string path_;
};

enum class Access { Reading, Writing };

/// Which tables a statement may name: those of the file alone, or those that the program offers, too.
enum class Tables { OfFile, Offered };

class Database {
public:
    /// Opens a database that is there. Nothing of it is read yet but what another program's death left to be undone.
    [[nodiscard]] static Result<Database> open(const NativePath& path, Access access);

    /// The bytes of a new database that these statements make. `pageBytes`: size of a page.
    [[nodiscard]] static Result<std::string> bytesOfNew(const std::vector<std::string>& statements, int pageBytes);

    /// Runs SQL of our own without parameters.
    [[nodiscard]] Result<void> run(const std::string& sql);
    [[nodiscard]] Result<Statement> prepare(std::string_view sql, Tables tables = Tables::OfFile);

    /// Makes the table `name` of the program's own known. `own` is handed to the module, and to `end` with the
    /// database's end or a failure.
    [[nodiscard]] Result<void> addTable(const char* name, const sqlite3_module& module, void* own, void (*end)(void*));

    /// Changes how long a lock of another program is waited for.
    void waitForLocks(std::chrono::milliseconds limit);

    /// The row that was inserted last.
    [[nodiscard]] std::int64_t lastId() const;

    /// "<path>: <what is the matter with the file>".
    [[nodiscard]] tl::unexpected<FileError> wrong(std::string_view what) const;
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    Database(sqlite3* handle, std::string path) : handle_(handle), path_(std::move(path)) {}
    [[nodiscard]] Result<void> protect(Access access);
    [[nodiscard]] tl::unexpected<FileError> failed() const;

    std::unique_ptr<sqlite3, CloseDatabase> handle_;
    std::string path_;
};

}  // namespace quillon
