// SPDX-License-Identifier: MIT
#pragma once

// Grades the viewer's rows of one extension again and writes the list anew, from a copy and whole.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/file_list.h"
#include "app/kept_files.h"
#include "job/file_grader.h"
#include "job/list_evidence.h"
#include "platform/folders.h"
#include "viewer/view_rows.h"

namespace quillon {

enum class RetestEnd {
    Done,        ///< also when there is no list
    CopyInUse,   ///< the old temporary copy cannot be removed; the list is untouched
    NotStarted,  ///< the list could not be copied and kept; it is untouched
    Failed       ///< during the pass: rows written so far are in the list, all of them in the copy and under Kept; or
                 ///< the list is untouched, as the new one did not get its name
};

/// What one visit of the viewer has made of its list.
struct RetestVisit {
    std::optional<FileStamp> written;  ///< of the list as the last retest left it; what it was before stands under Kept
};

/// The folder of the first row in the scope of a retest, when no folder of any of them is there: the source is away, so
/// that every file would count as one that cannot be read. None for no rows in scope.
[[nodiscard]] std::optional<std::u16string> missingSource(const ViewRows& rows, std::u16string_view extension);

class Retest {
public:
    /// All must outlive this. `afterLine` is called behind each line of the list.
    Retest(FileGrader& grader, KeptFiles& kept, RetestVisit& visit, ViewRows& rows, std::function<void()> afterLine)
        : grader_(grader), kept_(kept), visit_(visit), rows_(rows), afterLine_(std::move(afterLine)) {}

    /// `list` is copied to `copy`, which is replaced, and written anew in its own encoding, beside itself: it is the
    /// old one until the last row is written. Rows that are in `rows` and have the extension, ignoring case, are
    /// tested; those that become good or unknown leave `rows`. The bytes that the visit found go under Kept first.
    ///
    /// Kept: a pass that fails on its way leaves the list with the rows so far (test
    /// AShortLineOfAPathInTheGridEndsThePass). Kept: a line that has not exactly five fields is not written, so a list
    /// of a job without testing ends up empty (test AListOfFourColumnsEndsUpEmpty).
    [[nodiscard]] RetestEnd run(const NativePath& list, const NativePath& copy, std::u16string_view extension);

private:
    [[nodiscard]] Result<void> makeCopies(const NativePath& list, const NativePath& copy);
    [[nodiscard]] Result<void> rewrite(const NativePath& list, const NativePath& copy);
    [[nodiscard]] Result<void> writeRows(ListReader& from, ListWriter& to);
    [[nodiscard]] Result<void> handleRow(ListWriter& list);
    [[nodiscard]] Result<void> testAgain(ViewRows::Id row);

    FileGrader& grader_;
    KeptFiles& kept_;
    RetestVisit& visit_;
    ViewRows& rows_;
    std::function<void()> afterLine_;
    std::u16string extension_;
    std::u16string suffix_;
    ListRow row_;  // in work
    std::optional<ListEvidence> evidence_;
    RowLookup* lookup_ = nullptr;
};

}  // namespace quillon
