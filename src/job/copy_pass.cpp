// SPDX-License-Identifier: MIT
#include "job/copy_pass.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "app/run_beside.h"
#include "job/job_evidence.h"
#include "platform/folders.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// Files above this size show a per-file percentage.
constexpr std::uint64_t kLargeFile = 2'000'000;

CopyCare watchedBy(ByteWatchMaker watch, CopyCare care) {
    care.watch = std::move(watch);
    return care;
}

}  // namespace

CopyPass::CopyPass(const PassContext& context, const JobLists& lists, const ReportMessages& messages,
                   std::optional<ListEncoding> encoding, ByteWatchMaker watch)
    : context_(context),
      lists_(lists),
      messages_(messages),
      encoding_(encoding),
      targetFolder_(withOneSlash(context.state.options.target.value_or(NativePath()).native())),
      queue_(
          context.surroundings.loop, context.state.options.source.value_or(NativePath()),
          watchedBy(std::move(watch), context.state.options.copyCare), [this](const SettledCopy& copy) { ended(copy); },
          context.state.care) {
}

void CopyPass::run() {
    JobState& state = context_.state;
    const auto list = lists_.finalPath();
    if (!list || !pathExists(*list)) {
        context_.surroundings.dialogs.tell("Error copying files", "Unable to find file list..", BoxStyle::Critical);
        state.counters.rowsRead = 0;
        notReached();
        return;
    }
    begin();
    auto reader = ListReader::open(*list, encoding_);
    if (reader)
        copyRows(*reader);
    const auto error = reader ? reader->error() : std::optional(reader.error());
    if (error) {
        context_.surroundings.dialogs.tell(kProgramTitle, "Error : " + error->text);
        notReached();
    }
    state.texts.status = "Ready >";
    state.texts.jobPercent.clear();
}

void CopyPass::begin() {
    JobState& state = context_.state;
    state.progress = {state.progress.shown, 100, 0};
    state.counters.rowsRead = 0;
    state.texts.copiedCaption = "Copying file:";
    state.texts.status = "Copying data ...";
    state.texts.jobPercent.clear();
    if (!state.options.copyCare.manner().hash)
        return;
    beginRecord();
    if (state.options.resume)
        lookForEarlier();
}

void CopyPass::beginRecord() {
    const NativePath target = context_.state.options.target.value_or(NativePath());
    auto record = CopyRecord::begin(target, lists_.finalFolder(), lists_.jobId());
    if (record)
        record_.emplace(*std::move(record));
    else
        recordLost(record.error());
}

void CopyPass::lookForEarlier() {
    const JobOptions& options = context_.state.options;
    const auto list = lists_.finalPath();
    if (list && options.source && options.target)
        earlier_ = EarlierCopies::find(*list, *options.source, *options.target, lists_.jobId());
}

// True: its copy is as it was recorded, and counts as made.
bool CopyPass::standsAlready(const CopyTask& task) {
    if (!earlier_ || !task.target || !earlier_->isKnown(*task.target))
        return false;
    std::atomic<bool> stopped = false;
    const auto goOn = [&stopped] { return !stopped; };
    const auto facts = answerBeside(
        context_.surroundings.loop, [&] { return earlier_->standing(row_, *task.target, goOn); },
        [&] { stopped = context_.stopsAtOnce() || context_.state.stopRequested; });
    if (!facts)
        return false;
    ++context_.state.counters.rowsRead;
    ended({task.number, task.source, *task.target, *facts});
    context_.turn();
    return true;
}

void CopyPass::recordLost(const FileError& why) {
    record_.reset();
    context_.log("Check sums lost : " + why.text, kLightRed);
    context_.lineLost(why);
}

void CopyPass::copyRows(ListReader& list) {
    while (!context_.state.stopRequested) {
        lookAhead(list);
        if (queue_.empty() || context_.state.stopRequested)  // in a look at what stands there
            break;
        copyFirst();
        context_.turn();
    }
    queue_.finish();
    if (!record_)
        return;
    if (const auto recorded = record_->finish(); !recorded)
        recordLost(recorded.error());
}

// A list that cannot be read, or not to its end, leaves files without a copy.
void CopyPass::notReached() {
    JobCounters& counters = context_.state.counters;
    const auto leftOut = static_cast<std::int32_t>(context_.state.passes.leftOut);
    counters.notCopied += std::max(counters.files - counters.rowsRead - leftOut, 1);
}

void CopyPass::lookAhead(ListReader& list) {
    if (!queue_.wantsTasks())
        return;
    while (queue_.hasRoom() && !context_.state.stopRequested && list.next(row_)) {
        ++line_;
        if (!isWanted(row_)) {
            ++context_.state.passes.leftOut;
            continue;
        }
        CopyTask task{line_, row_.nativePath(), copyTarget(targetFolder_, row_.nativePath())};
        if (!standsAlready(task) && !context_.state.stopRequested)
            queue_.ask(std::move(task));
    }
}

bool CopyPass::isWanted(const ListRow& row) const {
    const std::vector<Grade>& grades = context_.state.options.copyGrades;
    if (grades.empty() || !context_.state.options.checkFileQuality)  // nobody has graded them
        return true;
    const auto grade = gradeOfResult(row[ListColumn::Result], messages_);
    return grade && std::ranges::find(grades, *grade) != grades.end();
}

void CopyPass::copyFirst() {
    const std::string source = queue_.first().source;
    ++context_.state.counters.rowsRead;
    context_.state.texts.copied = grouped(context_.state.counters.rowsRead);
    showJobProgress(source);
    context_.surroundings.loop.workingOn(source);
    queue_.finishFirst([this](std::uint64_t done, std::uint64_t total) { return progress(done, total); });
}

void CopyPass::ended(const SettledCopy& copy) {
    context_.evidence.copied(copy, context_.state.options.copyCare.verify);
    if (copy.result) {
        ++context_.state.counters.copied;
        ++context_.state.passes.copies;
        if (const auto noted = record_ ? record_->note(copy) : Result<void>(); !noted)
            recordLost(noted.error());
        if (!copy.result->gaps.empty()) {
            ++context_.state.counters.damagedCopies;
            context_.logAbout(copy.source, "Copied with gaps : " + readable(copy.source), kLightOrange);
        }
        return;
    }
    ++context_.state.counters.copyErrors;
    context_.logAbout(copy.source, "Error copying : " + readable(copy.source));
    if (copy.result.error().side != CopySide::Cancelled)
        context_.logAbout(copy.source, copy.result.error().text());
}

void CopyPass::showJobProgress(const std::string& source) {
    JobState& state = context_.state;
    const double done = static_cast<double>(state.counters.rowsRead + state.passes.leftOut);
    const double fraction = state.counters.files > 0 ? done / state.counters.files : 0;
    state.texts.jobPercent = percent(fraction);
    state.progress.value = std::clamp<std::int64_t>(static_cast<std::int64_t>(fraction * 100), 0, 100);
    state.texts.currentFile = "Copying " + readable(source);
}

// Kept: the percentage of a large file is the constant 0, whatever was moved; what the routine is for is the turn of
// the event loop (test ALargeFileShowsZeroPercentAndTurnsTheLoopPerChunk).
bool CopyPass::progress(std::uint64_t done, std::uint64_t total) {
    JobState& state = context_.state;
    if (done == 0)
        state.fileProgress = 0;
    if (done > 0 && total > kLargeFile) {
        state.fileProgress = 0;
        state.texts.filePercent = ".00%";
        context_.turn();
    }
    return !state.copyCancelled;
}

}  // namespace quillon
