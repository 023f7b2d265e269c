// SPDX-License-Identifier: MIT
#include "job/testing_pass.h"

#include <algorithm>

#include "job/job_evidence.h"
#include "job/statistics.h"
#include "platform/folders.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

void TestingPass::run(std::optional<ListEncoding> encoding) {
    const NativePath rawPath = lists_.rawPath();
    auto finalList = lists_.createFinal();
    if (!finalList) {
        listError_ = finalList.error();
        const std::string folder = readable(lists_.finalFolder().native());
        context_.surroundings.dialogs.tell(
            kProgramTitle, "Unable to create output file. Please check access rights on folder " + folder);
        return;
    }
    madeList_ = true;
    context_.state.passes.testing = PassEnd::Whole;
    if (const auto path = lists_.finalPath())
        context_.evidence.listCreated(*path);
    if (!pathExists(rawPath)) {
        context_.surroundings.dialogs.tell(
            "Error!", "Unable to find the raw file list. Please run the file list before testing file quality!",
            BoxStyle::Critical);
        rowsLost({ErrorKind::NotFound, "the raw list has gone"});
        return;
    }
    if (auto rawList = ListReader::open(rawPath, encoding)) {
        gradeAll(*rawList, *finalList);
    } else {
        rawListFailed(rawList.error());
    }
    const JobCounters& counters = context_.state.counters;
    const bool whole = counters.lostRows == 0 && counters.rowsRead >= counters.files;
    const ListEnd end = whole ? ListEnd::Whole : ListEnd::Cut;
    if (const auto finished = lists_.finishFinal(*finalList, end, context_.surroundings.loop); !finished)
        context_.rowsLost(finished.error());
    stopped_ = context_.state.stopRequested;
    if (stopped_) {
        context_.state.passes.testing = PassEnd::Short;
        offerDeletion();
    }
    // Kept: the pass clears the flag, so the copy pass behind it runs although Stop was pressed (test
    // StopDuringTestingActsBehindTheLastRowAndTheCopyPassStillRuns).
    context_.state.stopRequested = false;
}

void TestingPass::gradeAll(ListReader& rawList, ListWriter& finalList) {
    RowsAhead rows(rawList, grader_, context_.surroundings.loop, context_.evidence);
    while (ListRow* const row = rows.next()) {
        ++context_.state.counters.rowsRead;
        ++context_.state.counters.graded;
        ++context_.state.passes.rowsRead;
        verdict_ = {};
        if (gradeRow(*row, rows)) {
            if (context_.state.options.showProgress)
                showProgress(*row);
            writeRow(finalList, *row);
            if (context_.state.counters.tested > 0)
                updateQuality(context_.state);
        } else {
            tellEvidence(*row, false);
        }
        context_.turn();
        if (context_.stopsAtOnce())
            break;
    }
    passOver(context_.stopsAtOnce(), "the wait for a head may have ended by it");
    if (rawList.error())
        rawListFailed(*rawList.error());
}

// The rest of the raw list cannot be read: its files have no row.
void TestingPass::rowsLost(const FileError& why) {
    const JobCounters& counters = context_.state.counters;
    context_.rowsLost(why, std::max(counters.files - counters.rowsRead, 1));
    context_.state.passes.testing = PassEnd::Short;
}

void TestingPass::rawListFailed(const FileError& error) {
    rowsLost(error);
    passOver(handle(error, [] {}), "there is no row that would be written or left out");
}

// False when the row in work is not to be written.
bool TestingPass::gradeRow(const ListRow& row, RowsAhead& rows) {
    // Kept: a line without a comma is tested for nothing and takes the result of the row before it (test
    // ABlankLineTakesTheResultOfTheRowBefore).
    if (row.columns() < 2)
        return true;
    const auto graded = grade(row, rows);
    return graded ||
           handle(graded.error(), [&] { passOver(grade(row, rows), "errors are ignored from the first one on"); });
}

Result<void> TestingPass::grade(const ListRow& row, RowsAhead& rows) {
    if (row.extension().empty()) {
        ++context_.state.counters[Grade::NoExtension];
        result_ = grader_.messages()[Grade::NoExtension];
        verdict_.grade = Grade::NoExtension;
        return {};
    }
    auto result =
        checker_ != nullptr ? checker_->check(row) : grader_.gradeFile(row, row.extension(), rows, rows.knownVerdict());
    if (!result)
        return failure(result.error());
    result_ = result->text;
    verdict_ = std::move(*result);
    return {};
}

// What becomes of a failure that reached the pass; the first one runs the failing step once more, and a second failure
// passes without a word. True: the row is written all the same.
bool TestingPass::handle(const FileError& error, const std::function<void()>& runAgain) {
    if (ignoringErrors_)
        return true;
    if (error.kind == ErrorKind::PermissionDenied || error.kind == ErrorKind::BadName) {
        // Kept: such a row is counted and not written (test ARowWhoseTestIsRefusedIsMissingFromTheList).
        ++context_.state.counters[Grade::AccessError];
        result_ = grader_.messages()[Grade::AccessError];
        verdict_.grade = Grade::AccessError;
        return false;
    }
    ignoringErrors_ = true;
    reportError(error);
    runAgain();
    return true;
}

void TestingPass::reportError(const FileError& error) {
    context_.surroundings.dialogs.tell("Error", error.text + " : occurred processing file :");
    if (alerts_ == nullptr)
        return;
    std::string subject = "Process error";
    const std::string body = "The error message (" + error.text + ") occurred during processing a file ";
    passOver(alerts_->sendAlert(context_.state.options.recipient, kAskForAcknowledgement, subject, body, 1),
             "the box has told of the error itself");
}

void TestingPass::showProgress(const ListRow& row) {
    context_.state.progress.value = context_.state.counters.rowsRead;
    if (row.columns() > 0)
        context_.state.texts.currentFile = readable(row.nativePath());
}

void TestingPass::writeRow(ListWriter& finalList, ListRow& row) {
    row.add(result_);
    tellEvidence(row, context_.countRow(context_.state.passes.list, finalList.write(row)));
}

void TestingPass::tellEvidence(const ListRow& row, bool written) {
    verdict_.text = result_;
    if (written)
        ++lines_;
    context_.evidence.graded(row, written ? std::optional(lines_) : std::nullopt, verdict_);
}

void TestingPass::offerDeletion() {
    MessageBox question{"Delete partial file list?", "Process stopped, do you want to delete the current file list ?",
                        BoxStyle::Question, BoxButtons::YesNo};
    question.loss = BoxLoss::PartialList;
    if (context_.surroundings.dialogs.show(question) != BoxAnswer::Yes)
        return;
    passOver(lists_.removeFinal(), "a list that stays is no harm");
}

}  // namespace quillon
