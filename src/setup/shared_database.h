// SPDX-License-Identifier: MIT
#pragma once

// How the local copy of the database follows the shared one at the start of a job. The share wins: a local term file
// without a shared counterpart goes, and a shared file with another modification time is copied over the local one.
// Local bytes that go or are replaced are moved under Kept first. Names are compared without case, as the systems that
// share the folder do.
//
// A folder that cannot be reached counts as empty, whatever the reason: nothing here tests the share.

#include <cstddef>
#include <string>
#include <vector>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/lost_note.h"
#include "app/progress_host.h"
#include "setup/database_folder.h"

namespace quillon {

/// Local term files that have no shared counterpart.
struct OrphanTermFiles {
    std::vector<std::string> names;
    std::size_t looked = 0;        ///< local files
    bool shareLooksEmpty = false;  ///< the shared folder gives no name at all
};

/// Compares the two databases and moves nothing. Shows "Comparing databases....", the number of local files as the
/// bar's maximum and the number of each file as its value. Kept: with the share gone every local term file counts as
/// having no counterpart (test WithTheShareGoneEveryLocalFileIsMovedUnderKept).
[[nodiscard]] OrphanTermFiles findOrphanTermFiles(const Paths& paths, ProgressHost& host);

struct OrphanCounts {
    std::size_t removed = 0;  ///< moved away under Kept
    std::size_t failed = 0;   ///< could not be kept and so stand where they were
    LostNote lostNote = {};   ///< why the history took no note of it
};

/// Moves these local term files under Kept; one that is gone meanwhile is passed over. `job`: the ID that stands in the
/// note of the history.
OrphanCounts moveOrphansAway(const OrphanTermFiles& orphans, const Paths& paths, KeptFiles& kept,
                             const std::string& job = {});

struct RefreshCounts {
    std::size_t copied = 0;     ///< the time differed, or there was no local file
    std::size_t unchanged = 0;  ///< the time was the same
    std::size_t missing = 0;    ///< names that the shared folder does not have, or not any more
    std::size_t failed = 0;     ///< could not be read, kept or written; the local file is as it was
    LostNote lostNote = {};     ///< why the history took no note of it
};

/// Goes through `names` (as `databaseFiles` gave them for the folder that is in use) and copies every shared file
/// whose modification time differs from that of the local file of the same name, whichever is newer, and every shared
/// file that the local folder lacks. The bar runs from 0 to the number of names when there is one.
///
/// Afterwards the local file has the shared file's time as its volume stores it, and such a time counts as equal at the
/// next job: an unchanged database is copied once and never again. A name that the shared folder does not have is
/// passed over. `job`: the ID that stands in the note of the history.
RefreshCounts copyChangedTermFiles(const std::vector<std::string>& names, const Paths& paths, KeptFiles& kept,
                                   ProgressHost& host, const std::string& job = {});

/// All that one refresh did.
struct RefreshSummary {
    std::size_t compared = 0;
    RefreshCounts fetched;
    OrphanCounts moved;
};

/// The row of a log: "Shared database: 1,800 compared, 3 fetched, 2 removed, 40 failed". Empty for a database that did
/// not change.
[[nodiscard]] std::string refreshText(const RefreshSummary& refresh);

/// What is said before the local term files go because a share looks empty.
[[nodiscard]] std::string emptyShareText(const OrphanTermFiles& orphans, const Paths& paths);

/// Copies the shared CommonHeaders.dat over the local one when there is one; without one nothing is done. Kept: sharing
/// need not be on, a stored shared path is enough (test CommonHeadersAreFetchedWithSharingOff).
[[nodiscard]] Result<LostNote> fetchCommonHeaders(const Paths& paths, KeptFiles& kept, const std::string& job = {});

}  // namespace quillon
