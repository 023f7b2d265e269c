// SPDX-License-Identifier: MIT
#pragma once

// Grades the viewer's rows of one extension again and rewrites the list in place from a copy.

#include <functional>
#include <string>
#include <string_view>

#include "app/file_list.h"
#include "app/kept_files.h"
#include "job/file_grader.h"
#include "viewer/view_rows.h"

namespace quillon {

enum class RetestEnd {
    Done,        ///< also when there is no list
    CopyInUse,   ///< the old temporary copy cannot be removed; the list is untouched
    NotStarted,  ///< the list could not be copied and kept; it is untouched
    Failed       ///< behind the emptying: rows written so far are in the list, all of them in the copy and under Kept
};

class Retest {
public:
    /// All must outlive this. `afterLine` is called behind each line of the list.
    Retest(FileGrader& grader, KeptFiles& kept, ViewRows& rows, std::function<void()> afterLine)
        : grader_(grader), kept_(kept), rows_(rows), afterLine_(std::move(afterLine)) {}

    /// `list` is copied to `copy`, which is replaced, and written anew in its own encoding. Rows that are in `rows` and
    /// have the extension, ignoring case, are tested; those that become good or unknown leave `rows`. Before the list
    /// is emptied its bytes go under Kept.
    ///
    /// Kept: a line that has not exactly five fields is not written, so a list of a job without testing ends up empty
    /// (test AListOfFourColumnsEndsUpEmpty).
    [[nodiscard]] RetestEnd run(const NativePath& list, const NativePath& copy, std::u16string_view extension);

private:
    [[nodiscard]] Result<void> makeCopies(const NativePath& list, const NativePath& copy);
    [[nodiscard]] Result<void> rewrite(const NativePath& list, const NativePath& copy);
    [[nodiscard]] Result<void> handleRow(ListWriter& list);
    [[nodiscard]] Result<void> testAgain(ViewRows::Id row);

    FileGrader& grader_;
    KeptFiles& kept_;
    ViewRows& rows_;
    std::function<void()> afterLine_;
    std::u16string extension_;
    std::u16string suffix_;
    ListRow row_;  // in work
    RowLookup* lookup_ = nullptr;
};

}  // namespace quillon
