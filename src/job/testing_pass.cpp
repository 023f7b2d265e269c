// SPDX-License-Identifier: MIT
#include "job/testing_pass.h"

#include <algorithm>

#include "job/final_list.h"
#include "job/rows_ahead.h"
#include "job/statistics.h"
#include "platform/folders.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

void TestingPass::run() {
    const NativePath rawPath = job_.installation().rawListPath();
    auto finalList = createFinalList(job_);
    if (!finalList) {
        const std::string folder = readable(job_.installation().paths().localPath.native());
        job_.surroundings().dialogs.tell(
            kProgramTitle, "Unable to create output file. Please check access rights on folder " + folder);
        return;
    }
    madeList_ = true;
    if (!pathExists(rawPath)) {
        job_.surroundings().dialogs.tell(
            "Error!", "Unable to find the raw file list. Please run the file list before testing file quality!",
            BoxStyle::Critical);
        return;
    }
    if (auto rawList = ListReader::open(rawPath)) {
        gradeAll(*rawList, *finalList);
    } else {
        rawListFailed(rawList.error());
    }
    if (const auto closed = finalList->close(); !closed)
        job_.rowLost(closed.error());
    stopped_ = job_.state.stopRequested;
    if (stopped_) {
        if (const auto path = job_.finalListPath())
            offerDeletion(*path);
    }
    // Kept: the pass clears the flag, so the copy pass behind it runs although Stop was pressed (test
    // StopDuringTestingActsBehindTheLastRowAndTheCopyPassStillRuns).
    job_.state.stopRequested = false;
}

void TestingPass::gradeAll(ListReader& rawList, ListWriter& finalList) {
    RowsAhead rows(rawList, job_);
    while (const auto line = rows.next()) {
        ++job_.state.counters.rowsRead;
        if (gradeRow(*line)) {
            if (job_.state.options.showProgress)
                showProgress();
            writeRow(finalList, *line);
            if (job_.state.counters.tested > 0)
                updateQuality(job_.state);
        }
        job_.turn();
    }
    if (rawList.error())
        rawListFailed(*rawList.error());
}

// The rest of the raw list cannot be read: its files have no row.
void TestingPass::rawListFailed(const FileError& error) {
    const JobCounters& counters = job_.state.counters;
    job_.state.counters.lostRows += std::max(counters.files - counters.rowsRead, 1);
    static_cast<void>(handle(error, {}));
}

// False when the row in work is not to be written.
bool TestingPass::gradeRow(std::u16string_view line) {
    splitInto(fields_, line, u',');
    // Kept: a line without a comma is tested for nothing and takes the result of the row before it (test
    // ABlankLineTakesTheResultOfTheRowBefore).
    if (fields_.size() < 2)
        return true;
    const auto graded = grade(fields_[kPathColumn]);
    return graded || handle(graded.error(), fields_[kPathColumn]);
}

Result<void> TestingPass::grade(std::u16string_view path) {
    std::u16string buffer;
    const std::u16string_view extension = extensionInList(path, buffer);
    if (extension.empty()) {
        ++job_.state.counters.noExtension;
        result_ = job_.messages[Message::NoExtension];
        return {};
    }
    const auto result = check(extension);
    if (!result)
        return failure(result.error());
    result_ = *result;
    return {};
}

Result<std::u16string_view> TestingPass::check(std::u16string_view extension) {
    return checker_ != nullptr ? checker_->check(fields_, extension) : job_.checkFile(fields_, extension);
}

// What becomes of a failure that reached the pass. True: the row is written all the same.
bool TestingPass::handle(const FileError& error, std::u16string_view path) {
    if (ignoringErrors_)
        return true;
    if (error.kind == ErrorKind::PermissionDenied || error.kind == ErrorKind::BadName) {
        // Kept: such a row is counted and not written (test ARowWhoseTestIsRefusedIsMissingFromTheList).
        ++job_.state.counters.accessErrors;
        result_ = job_.messages[Message::AccessError];
        return false;
    }
    ignoringErrors_ = true;
    reportError(error);
    if (path.empty())
        return true;
    // The failing step runs once more; a second failure passes without a word.
    passOver(grade(path), "errors are ignored from the first one on");
    return true;
}

void TestingPass::reportError(const FileError& error) {
    job_.surroundings().dialogs.tell("Error", error.text + " : occurred processing file :");
    if (alerts_ == nullptr)
        return;
    std::string subject = "Process error";
    const std::string body = "The error message (" + error.text + ") occurred during processing a file ";
    static_cast<void>(alerts_->sendAlert(job_.state.options.recipient, kAskForAcknowledgement, subject, body, 1));
}

void TestingPass::showProgress() {
    job_.state.progress.value = job_.state.counters.rowsRead;
    if (!fields_.empty())
        job_.state.texts.currentFile = readable(fields_[kPathColumn]);
}

void TestingPass::writeRow(ListWriter& finalList, std::u16string_view line) {
    row_ = line;
    row_.push_back(u',');
    row_.append(result_);
    row_.append(u"\r\n");
    if (const auto written = finalList.write(row_); !written)
        job_.rowLost(written.error());
}

void TestingPass::offerDeletion(const NativePath& finalList) {
    if (!job_.surroundings().dialogs.ask("Delete partial file list?",
                                         "Process stopped, do you want to delete the current file list ?")) {
        return;
    }
    passOver(removeFile(finalList), "a list that stays is no harm");
}

}  // namespace quillon
