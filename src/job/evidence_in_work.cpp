// SPDX-License-Identifier: MIT
#include "job/evidence_in_work.h"

#include <nlohmann/json.hpp>

#include "app/kept_files.h"
#include "evidence/job_keys.h"
#include "job/counters_json.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// Changed rows of one transaction: all that it changes is held in memory.
constexpr int kRowsInPart = 4096;

}  // namespace

Result<EvidenceInWork> EvidenceInWork::open(const NativePath& list, const ReportMessages& messages) {
    const NativePath path = evidenceBeside(list);
    auto reader = EvidenceReader::open(path);
    if (!reader)
        return failure(reader.error());
    const NativePath source = sourceIn(*reader);
    auto store = EvidenceStore::open(path);
    if (!store)
        return failure(store.error());
    EvidenceInWork work(std::move(*reader), std::move(*store), source, messages);
    // What names its list was counted with it; a job or regrade that ended early names none.
    work.counted_ = work.reader_.jobNumber(job_keys::kListBytes).value_or(std::nullopt).value_or(0) > 0;
    return work;
}

std::string EvidenceInWork::quality() {
    return reader_.jobText(job_keys::kQuality).value_or(std::nullopt).value_or("");
}

void EvidenceInWork::noteUnless(const Result<void>& done) {
    if (!done && !lost_)
        lost_ = done.error();
}

void EvidenceInWork::begin() {
    const std::int64_t none = 0;
    noteUnless(store_.setJob(job_keys::kListBytes, none)
                   .and_then([&] { return store_.setJob(job_keys::kListModified, none); })
                   .and_then([&] { return store_.setJob(job_keys::kListDigest, none); })
                   .and_then([&] { return writeMessages(store_, *messages_); })
                   .and_then([&] { return store_.commit(); }));
}

void EvidenceInWork::find(const ListRow& row) {
    damaged_ = false;
    row_ = rows_.find(reader_, describer_.below(row.nativePath())).value_or(nullptr);
    if (row_ != nullptr && row_->size != RowDescriber::sizeOf(row))
        row_ = nullptr;
}

const FileHead* EvidenceInWork::head() {
    if (row_ == nullptr)
        return nullptr;
    const std::int64_t before = reader_.damaged();
    const auto head = reader_.head(*row_);
    damaged_ = !head || reader_.damaged() != before;
    return head ? *head : nullptr;
}

std::optional<Grade> EvidenceInWork::grade() const {
    return row_ != nullptr && !damaged_ ? row_->grade : std::nullopt;
}

void EvidenceInWork::graded(const FileVerdict& verdict) {
    if (row_ == nullptr || RowDescriber::isJudgedSo(*row_, verdict, *messages_))
        return;
    now_ = *row_;
    RowDescriber::judge(verdict, *messages_, now_);
    now_.unread = row_->unread;
    change();
}

// The messages may be others than those of the job.
void EvidenceInWork::kept(std::u16string_view text) {
    if (row_ == nullptr)
        return;
    now_ = *row_;
    const bool plain = now_.grade && text == (*messages_)[*now_.grade];
    now_.result = plain ? std::nullopt : std::optional(utf16ToUtf8(text));
    change();
}

void EvidenceInWork::change() {
    if (lost_ || now_ == *row_)
        return;
    counted_ = counted_ && now_.grade == row_->grade;
    noteUnless(store_.setVerdict(*row_, now_));
    if (lost_ || ++changes_ < kRowsInPart)
        return;
    changes_ = 0;
    rows_.letGo(reader_);
    noteUnless(store_.commit());
}

// What the job counted beside the grades stays.
std::string EvidenceInWork::countersWith(const JobState& state) {
    const auto told = reader_.jobText(job_keys::kCounters).value_or(std::nullopt).value_or("");
    auto counters = nlohmann::ordered_json::parse(told, nullptr, false);
    const auto now = countersAsJson(state.counters);
    if (!counters.is_object())
        return now.dump();
    for (const auto& row : kGrades.values) counters[row.jsonKey.value] = now[row.jsonKey.value];
    return counters.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void EvidenceInWork::listWritten(const NativePath& list, std::int64_t rules, const JobState& state) {
    rows_.letGo(reader_);
    if (lost_)
        return;
    noteUnless(store_.setJob(job_keys::kCounters, countersWith(state))
                   .and_then([&] { return store_.setJob(job_keys::kQuality, state.texts.quality); })
                   .and_then([&] { return store_.setJob(job_keys::kRules, rules); })
                   .and_then([&] { return writeListFacts(store_, list, digest_.value()); })
                   .and_then([&] { return counted_ ? store_.commit() : store_.finish(); }));
}

}  // namespace quillon
