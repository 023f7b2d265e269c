// SPDX-License-Identifier: MIT
#include "evidence/offered_rows.h"

#include <memory>
#include <new>
#include <string>

#include <sqlite3.h>

namespace quillon {

namespace {

struct Offer {
    const OfferedRows& rows;
    std::string declaration;
};

// SQLite knows table and cursor by their first members.
struct OfferTable {
    sqlite3_vtab base;
    const OfferedRows* rows;
};
struct OfferCursor {
    sqlite3_vtab_cursor base;
    const OfferedRows* rows;
    std::size_t at;
};

OfferCursor& cursorOf(sqlite3_vtab_cursor* base) {
    return *reinterpret_cast<OfferCursor*>(base);
}

int connect(sqlite3* database, void* offer, int /*count*/, const char* const* /*words*/, sqlite3_vtab** made,
            char** /*error*/) {
    const auto& offered = *static_cast<const Offer*>(offer);
    if (const int code = sqlite3_declare_vtab(database, offered.declaration.c_str()); code != SQLITE_OK)
        return code;
    passOver(sqlite3_vtab_config(database, SQLITE_VTAB_DIRECTONLY), "no schema names it anyhow");
    auto* const table = new (std::nothrow) OfferTable{{}, &offered.rows};
    if (table == nullptr)
        return SQLITE_NOMEM;
    *made = &table->base;
    return SQLITE_OK;
}
int disconnect(sqlite3_vtab* base) {
    delete reinterpret_cast<OfferTable*>(base);
    return SQLITE_OK;
}
int choosePlan(sqlite3_vtab* /*base*/, sqlite3_index_info* /*plan*/) {
    return SQLITE_OK;
}
int openCursor(sqlite3_vtab* base, sqlite3_vtab_cursor** made) {
    auto* const cursor = new (std::nothrow) OfferCursor{{}, reinterpret_cast<OfferTable*>(base)->rows, 0};
    if (cursor == nullptr)
        return SQLITE_NOMEM;
    *made = &cursor->base;
    return SQLITE_OK;
}
int closeCursor(sqlite3_vtab_cursor* base) {
    delete &cursorOf(base);
    return SQLITE_OK;
}
int first(sqlite3_vtab_cursor* base, int /*plan*/, const char* /*text*/, int /*count*/, sqlite3_value** /*values*/) {
    cursorOf(base).at = 0;
    return SQLITE_OK;
}
int next(sqlite3_vtab_cursor* base) {
    ++cursorOf(base).at;
    return SQLITE_OK;
}
int hasEnded(sqlite3_vtab_cursor* base) {
    return cursorOf(base).at >= cursorOf(base).rows->count() ? 1 : 0;
}
int column(sqlite3_vtab_cursor* base, sqlite3_context* context, int number) {
    OfferedValue value(*context);
    cursorOf(base).rows->give(cursorOf(base).at, number, value);
    return SQLITE_OK;
}
int rowId(sqlite3_vtab_cursor* base, sqlite3_int64* id) {
    *id = static_cast<sqlite3_int64>(cursorOf(base).at);
    return SQLITE_OK;
}

// Without xCreate it stands in no schema: there is one table of the name, and statements of our own find it.
const sqlite3_module& moduleOfOffers() {
    static const sqlite3_module module = [] {
        sqlite3_module made{};
        made.xConnect = connect;
        made.xDisconnect = disconnect;
        made.xBestIndex = choosePlan;
        made.xOpen = openCursor;
        made.xClose = closeCursor;
        made.xFilter = first;
        made.xNext = next;
        made.xEof = hasEnded;
        made.xColumn = column;
        made.xRowid = rowId;
        return made;
    }();
    return module;
}

}  // namespace

void OfferedValue::give(std::int64_t number) {
    sqlite3_result_int64(&context_, number);
}

void OfferedValue::give(std::string_view text) {
    sqlite3_result_text64(&context_, text.data() != nullptr ? text.data() : "", text.size(), SQLITE_STATIC,
                          SQLITE_UTF8);
}

void OfferedValue::give(Blob blob) {
    const std::string_view bytes = blob.bytes;
    sqlite3_result_blob64(&context_, bytes.data() != nullptr ? bytes.data() : "", bytes.size(), SQLITE_STATIC);
}

Result<void> offer(Database& database, const OfferedRows& rows, const char* columns) {
    auto offered = std::make_unique<Offer>(Offer{rows, std::string("CREATE TABLE offered (") + columns + ")"});
    const auto end = [](void* made) { delete static_cast<Offer*>(made); };
    return database.addTable("offered", moduleOfOffers(), offered.release(), end);
}

}  // namespace quillon
