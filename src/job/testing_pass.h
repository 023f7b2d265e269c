// SPDX-License-Identifier: MIT
#pragma once

// Turns the raw list into the final list: reads it row by row, has each file graded and writes the row with the verdict
// behind it.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/file_list.h"
#include "job/file_grader.h"
#include "job/job_lists.h"
#include "job/pass_context.h"
#include "job/rows_ahead.h"
#include "messaging/alert_sender.h"

namespace quillon {

/// Grades one row, as FileGrader::checkFile does. An interface of its own, so that a test can let the failures through
/// that the header test normally catches.
class RowChecker {
public:
    virtual ~RowChecker() = default;
    [[nodiscard]] virtual Result<FileVerdict> check(const ListRow& row) = 0;
};

class TestingPass {
public:
    /// All must outlive this. `checker` null: `grader` grades. `alerts` null: process errors are not sent.
    TestingPass(const PassContext& context, const JobLists& lists, FileGrader& grader, AlertSender* alerts,
                RowChecker* checker = nullptr)
        : context_(context), lists_(lists), grader_(grader), alerts_(alerts), checker_(checker) {}

    /// Runs to the end of the raw list whatever happens on the way; a window's Stop is looked at only behind it, a
    /// command's at the next row. `encoding`: of a raw list that this job has written; otherwise it is found from the
    /// content.
    void run(std::optional<ListEncoding> encoding = std::nullopt);

    /// True when there is a final list of this run, complete or not.
    [[nodiscard]] bool madeList() const { return madeList_; }
    /// True when Stop was pressed during the run.
    [[nodiscard]] bool wasStopped() const { return stopped_; }
    /// Why the final list could not be made, if it could not.
    [[nodiscard]] const std::optional<FileError>& listError() const { return listError_; }

private:
    void gradeAll(ListReader& rawList, ListWriter& finalList);
    [[nodiscard]] bool gradeRow(const ListRow& row, RowsAhead& rows);
    [[nodiscard]] Result<void> grade(const ListRow& row, RowsAhead& rows);
    [[nodiscard]] bool handle(const FileError& error, const std::function<void()>& runAgain);
    void rowsLost(const FileError& why);
    void rawListFailed(const FileError& error);
    void reportError(const FileError& error);
    void showProgress(const ListRow& row);
    void writeRow(ListWriter& finalList, ListRow& row);
    void tellEvidence(const ListRow& row, bool written);
    void offerDeletion();

    PassContext context_;
    const JobLists& lists_;
    FileGrader& grader_;
    AlertSender* alerts_;
    RowChecker* checker_;
    std::u16string result_;   // not cleared between rows
    FileVerdict verdict_;     // of the row in work; without a grade where none was found
    std::int64_t lines_ = 0;  // of the final list
    bool ignoringErrors_ = false;
    bool madeList_ = false;
    bool stopped_ = false;
    std::optional<FileError> listError_;
};

}  // namespace quillon
