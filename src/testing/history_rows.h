// SPDX-License-Identifier: MIT
#pragma once

// The history of a database as people read it: each change with what became of the records, and with the remarks about
// it.

#include <string>
#include <vector>

#include "app/database_history.h"
#include "testing/record_merge.h"

namespace quillon {

/// What became of the records of one file.
struct FileDifference {
    std::string file;  ///< "Database/jpg.dat"
    Records gone;
    Records added;
    bool created = false;  ///< there was no such file
    bool removed = false;  ///< there is no such file any more
};

struct HistoryRow {
    DatabaseChange change;
    std::vector<FileDifference> files;
    std::vector<std::string> remarks;  ///< its own first, then those of later notes, the oldest first
    std::string undoneBy;              ///< the ID of the newest change that took it back and was not taken back; or ""
};

/// The records that one list has and the other lacks; equal records count by their number.
[[nodiscard]] FileDifference differenceOf(const FileChange& change);

/// The changes in their order, newest first, without the notes that are remarks alone.
[[nodiscard]] std::vector<HistoryRow> historyRows(const std::vector<DatabaseChange>& notes);

/// "jpg.dat +1 -2, png.dat new": what a change did, in a few words.
[[nodiscard]] std::string differenceText(const HistoryRow& row);

/// "2026-11-22 12:34:56 UTC" of an ID.
[[nodiscard]] std::string momentText(const std::string& id);

}  // namespace quillon
