// SPDX-License-Identifier: MIT
#include "job/regrade.h"

#include <algorithm>
#include <utility>

#include "app/list_mark.h"
#include "app/run_beside.h"
#include "evidence/rules_digest.h"
#include "job/evidence_in_work.h"
#include "job/lost_note_log.h"
#include "job/statistics.h"
#include "platform/folder_lock.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "testing/messages_for.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// Gives the head of the file that the evidence has found, whatever path it is asked for.
class KeptHead final : public HeadReader {
public:
    explicit KeptHead(EvidenceInWork& evidence) : evidence_(evidence) {}

    Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override {
        const FileHead* const kept = evidence_.head();
        missed_ = kept == nullptr;
        if (missed_)
            return failure(ErrorKind::NotFound, std::string(nativePath));
        head = kept->bytes;
        return std::size_t{kept->length};
    }
    /// It was asked for a head that is not there.
    [[nodiscard]] bool missed() const { return missed_; }

private:
    EvidenceInWork& evidence_;
    bool missed_ = false;
};

// The part of a graded row that the walk has written. The text behind it may hold commas.
std::u16string_view walkedPart(const ListRow& row) {
    std::size_t length = 3;
    for (const auto column : {ListColumn::Path, ListColumn::Modified, ListColumn::Size, ListColumn::Attributes})
        length += row[column].size();
    return row.line().substr(0, length);
}

std::optional<Grade> gradeOfText(std::u16string_view text, const ReportMessages& messages) {
    for (const Grade grade : kRecountOrder) {
        if (text == messages[grade])
            return grade;
    }
    const auto common = trimRight(std::u16string_view(messages[Grade::CommonHeader]));
    return !common.empty() && text.starts_with(common) ? std::optional(Grade::CommonHeader) : std::nullopt;
}

}  // namespace

RegradeResult Regrade::run() {
    result_ = {};
    resetCounters(context_.state);
    context_.state.evidenceLoss.clear();
    context_.state.stopRequested = false;
    allByOneRule_ = true;
    // The reasons are wanted, whatever the next job is to leave.
    const bool keepsEvidence = std::exchange(context_.state.options.keepEvidence, true);
    const auto list = job_.lists().finalPath();
    if (!list || !pathExists(*list))
        result_.end = endsBy(RegradeEnd::NoList, list ? readable(list->native()) + " is not there" : list.error().text);
    else
        result_.end = runLocked(*list);
    context_.state.options.keepEvidence = keepsEvidence;
    return result_;
}

RegradeEnd Regrade::endsBy(RegradeEnd end, std::string why) {
    result_.detail = std::move(why);
    return end;
}

RegradeEnd Regrade::runLocked(const NativePath& list) {
    const auto lock = FolderLock::tryToTake(job_.installation().appFolder());
    if (!lock)
        return endsBy(RegradeEnd::Failed, lock.error().text);
    if (!*lock)
        return endsBy(RegradeEnd::Busy, "a job runs in this application folder, try again later");
    result_.unfinished = isUnfinished(list);
    loadRules();
    auto evidence = EvidenceInWork::open(list, job_.messages);
    if (!evidence)
        return endsBy(RegradeEnd::NoEvidence, evidence.error().text);
    result_.qualityBefore = evidence->quality();
    if (const auto kept = job_.kept().copyAway(list); !kept)
        return endsBy(RegradeEnd::Failed, kept.error().text);
    const auto rewritten = rewrite(list, *evidence);
    if (const auto& lost = evidence->lost()) {
        context_.state.evidenceLoss = lost->text;
        context_.state.counters.lostEvidence = 1;
    }
    if (context_.state.stopRequested)
        return endsBy(RegradeEnd::Stopped, "the list stays as it was");
    return rewritten ? RegradeEnd::Complete : endsBy(RegradeEnd::Failed, rewritten.error().text);
}

void Regrade::loadRules() {
    logLostNote(context_, loadMessagesFor(changeByJob(context_.state.options.jobId), job_.installation(),
                                          context_.surroundings.dialogs, job_.kept(), job_.messages));
    lookAtReportMessages(job_.installation(), job_.messages, context_);
    loadCommonHeaders(job_.installation(), context_, job_.commonList);
}

Result<void> Regrade::rewrite(const NativePath& list, EvidenceInWork& evidence) {
    auto reader = ListReader::open(list);
    if (!reader)
        return failure(reader.error());
    auto replacement = Replacement::begin(list);
    if (!replacement)
        return failure(replacement.error());
    GatheredRows writer(replacement->takeFile(), reader->encoding());
    evidence.begin();
    const auto placed =
        writeRows(*reader, writer, evidence)
            .and_then([&] { return answerBeside(context_.surroundings.loop, [&writer] { return writer.sync(); }); })
            .and_then([&] { return writer.close(); })
            .and_then([&] { return replacement->arrive(); });
    if (!placed)
        return placed;
    updateQuality(context_.state);
    evidence.listWritten(list, allByOneRule_ ? rulesDigest(job_.installation().paths(), job_.messages) : 0,
                         context_.state);
    return {};
}

Result<void> Regrade::writeRows(ListReader& from, GatheredRows& to, EvidenceInWork& evidence) {
    while (from.next(row_)) {
        ++context_.state.counters.rowsRead;
        const ListRow& row = regradeRow(evidence);
        if (auto written = to.write(row); !written)
            return written;
        evidence.lineWritten(row);
        if (wish_.rowWritten)
            wish_.rowWritten(row);
        context_.turn();
        if (context_.stopsAtOnce())
            return failure(ErrorKind::PathAccess, "stopped");
    }
    return from.error() ? failure(*from.error()) : Result<void>();
}

bool Regrade::isWished() const {
    return !wish_.extension || lowered(std::u16string(trim(row_.extension()))) == *wish_.extension;
}

// The row of the new list; good until the next call.
const ListRow& Regrade::regradeRow(EvidenceInWork& evidence) {
    evidence.find(row_);
    if (!isWished())
        return leaveRow(evidence);
    ++result_.counts.rows;
    if (!row_.has(ListColumn::Result))
        return keepRow(evidence);
    const auto verdict = verdictOf(evidence);
    if (!verdict)
        return keepRow(evidence);
    ++result_.counts.graded;
    evidence.graded(*verdict);
    return withText(verdict->text);
}

const ListRow& Regrade::withText(std::u16string_view text) {
    const auto walked = walkedPart(row_);
    if (row_.line().substr(walked.size() + 1) == text)
        return row_;
    ++result_.counts.changed;
    next_.assign(walked);
    next_.add(text);
    return next_;
}

// None for a row that needs a head and has none.
std::optional<FileVerdict> Regrade::verdictOf(EvidenceInWork& evidence) {
    if (row_.extension().empty()) {
        ++context_.state.counters[Grade::NoExtension];
        FileVerdict verdict;
        verdict.grade = Grade::NoExtension;
        verdict.text = grader_.messages()[Grade::NoExtension];
        return verdict;
    }
    if (grader_.mayOpen(row_) && evidence.head() == nullptr)
        return std::nullopt;
    KeptHead heads(evidence);
    auto verdict = grader_.checkFile(row_, row_.extension(), heads);
    if (heads.missed()) {  // a term file that came this moment
        --context_.state.counters[Grade::AccessError];
        return std::nullopt;
    }
    return verdict ? std::optional(std::move(*verdict)) : std::nullopt;
}

const ListRow& Regrade::keepRow(EvidenceInWork& evidence) {
    ++result_.counts.kept;
    result_.counts.damaged += evidence.isDamaged() ? 1 : 0;
    return leaveRow(evidence);
}

// The row stays as it is, and counts for the quality as what it says.
const ListRow& Regrade::leaveRow(EvidenceInWork& evidence) {
    allByOneRule_ = false;
    if (!row_.has(ListColumn::Result))
        return row_;
    const std::u16string_view text = row_.line().substr(walkedPart(row_).size() + 1);
    const auto told = evidence.grade();
    if (const auto grade = told ? told : gradeOfText(text, job_.messages))
        ++context_.state.counters[*grade];
    evidence.kept(text);
    return row_;
}

}  // namespace quillon
