// SPDX-License-Identifier: MIT
#pragma once

// The viewer without its screen: it loads the rows of one grade, tells the extensions among them, opens the editor over
// one of these and has its files graded again. Rows and entries count from 0, -1 for none.

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "answers/copies_handover.h"
#include "app/screen_host.h"
#include "app/surroundings.h"
#include "job/file_grader.h"
#include "job/job_lists.h"
#include "job/regrade.h"
#include "viewer/editor_handover.h"
#include "viewer/extension_list.h"
#include "viewer/own_columns.h"
#include "viewer/retest.h"
#include "viewer/view_evidence.h"
#include "viewer/view_rows.h"

namespace quillon {

class Job;

/// What the screen shows. Texts are UTF-8 but those marked as list text.
struct ViewerState {
    std::vector<std::u16string> categories;  ///< Combo1, list text
    int category = 0;
    std::vector<std::u16string> marks;  ///< Combo3, list text
    std::string maxFiles = "3000";      ///< Text1; the screen writes it
    ViewRows rows;                      ///< iGrid1
    int currentRow = -1;
    int topRow = 0;            ///< at the upper edge of the grid; the screen writes it
    int contents = 0;          ///< another number whenever the rows or their places are others
    ExtensionList extensions;  ///< Combo2
    std::string matching;      ///< Label1
    std::string notShown;      ///< commaRemark_; empty when the list has no such rows
    std::string status;        ///< Label4
    bool hasEvidence = false;  ///< columns of our own, and regradeKept_
    bool runEnabled = false;   ///< Command3
    bool busy = false;         ///< Frame1, Frame2, Frame3 and Command1 are disabled
    bool busyPointer = false;  ///< hourglass
    bool passRunning = false;  ///< a retest or regrade cannot be cancelled
    bool changed = true;       ///< "Done" recounts the job
};

/// What the viewer uses of the job whose list it shows.
struct ViewedJob {
    const Installation& installation;
    const Surroundings& surroundings;
    KeptFiles& kept;
    const JobLists& lists;
    FileGrader& grader;
    const CommonList& commonList;
    PassContext context;
    Job& job;  ///< for the regrade, which is a pass of its own over all of it
};
[[nodiscard]] ViewedJob viewedJob(Job& job);

class ListViewer {
public:
    /// All must outlive this.
    ListViewer(const ViewedJob& job, ScreenHost& host) : job_(job), host_(host) {}

    ViewerState state;

    /// The screen opens: the categories, and the paths of this visit.
    void load();

    void chooseCategory(int entry);

    /// The entry whose text is the message of a grade; 0 where there is none.
    [[nodiscard]] int categoryOf(Grade grade) const;
    /// The job whose list is shown.
    [[nodiscard]] const std::string& jobId() const { return job_.lists.jobId(); }

    /// What "Copy Files" is given: the files of the chosen category and extension, as far as these are chosen.
    [[nodiscard]] CopiesHandover forCopies() const;

    /// "Filter": replaces the rows by those of the chosen category.
    void filter();

    /// A row becomes the current one; its extension is chosen. Rows below 0 are passed over.
    /// Kept: a row whose extension is exactly "c" adds the entry "c" once more (test
    /// ARowOfExtensionCAddsAnEntryEachTime).
    void selectRow(int row);

    /// An entry of the extension list was chosen: tells how many rows have that extension.
    /// Kept: the count is 0 unless the current row has it, too (test AnExtensionOfOtherRowsCountsZero).
    void selectExtension(int entry);

    /// "Add to Skip List", with the current row's path as the proposal. The status tells what the list cannot hold.
    void addToSkipList();

    /// "Run": what the editor needs; none after a beep, when no extension is chosen.
    [[nodiscard]] std::optional<EditorHandover> openEditor();

    /// "Retest". It asks first when the source of the rows is away, since every file would become an access error, and
    /// tells in the job log when the common headers are to be used and were never loaded.
    /// Kept: when the old temporary copy cannot be removed, the screen stays busy (test
    /// ACopyThatCannotBeRemovedLeavesTheScreenBusy).
    void retest();

    /// "Regrade from kept heads": grades the whole list, or on No the rows of the chosen extension, by today's rules,
    /// and never looks at the source. Rows that no longer belong to the filtered category leave the grid. The status,
    /// and a row of the job log, tell how many were graded and how many have no head; a box tells of these, too, and of
    /// what went wrong.
    void regradeKept();

    /// What a column of our own (`kOwnColumns`) says of a file; UTF-8, readable.
    [[nodiscard]] std::string ownCell(ViewRows::Id row, std::size_t column);

    /// The recount of "Done" disables the frames meanwhile.
    void goBusy() { state.busy = true; }
    void goIdle() { state.busy = false; }

    /// Closes the gaps that removed rows left; the rows in view stay in view. A current row that was removed has no
    /// successor: the row event of another one would choose its extension, and a second retest would mean that one.
    /// The screen calls it before it shows the rows.
    void settleRows();

private:
    void loadCategories();
    void updateLabels();
    void loadRows(const NativePath& list);
    void tellMissingList();
    [[nodiscard]] Result<void> appendSkipTerm(const NativePath& settings, const PageText& term);
    [[nodiscard]] bool confirmRetest(std::u16string_view extension);
    void tellUnloadedCommonList();
    [[nodiscard]] RetestEnd runRetest(std::u16string_view extension);
    void endRetest();
    void lookAtEvidence();
    [[nodiscard]] bool askRegradeScope(RegradeWish& wish) const;
    void followRegrade(RegradeWish& wish, RowLookup& lookup);
    void tellRegrade(const RegradeResult& result);

    ViewedJob job_;
    ScreenHost& host_;
    NativePath listPath_;
    NativePath temporaryListPath_;
    RetestVisit visit_;
    std::u16string filtered_;  // the category of the rows
    // An editor that was opened from here may ask it longer than this lives.
    std::shared_ptr<ViewEvidence> evidence_ = std::make_shared<ViewEvidence>();
    std::unordered_map<ViewRows::Id, std::array<std::string, kOwnColumns.size()>> ownCells_;
};

}  // namespace quillon
