// SPDX-License-Identifier: MIT
#include "job/list_evidence.h"

#include <algorithm>

#include "app/kept_files.h"
#include "app/run_beside.h"
#include "evidence/job_keys.h"
#include "job/file_tail.h"

namespace quillon {

ListEvidence::ListEvidence(const NativePath& list, const ReportMessages& messages, EventLoop& loop)
    : list_(list), messages_(messages), loop_(loop) {
    giveUpUnless(open());
}

Result<void> ListEvidence::open() {
    const NativePath path = evidenceBeside(list_);
    auto reader = EvidenceReader::open(path);
    if (!reader)
        return failure(reader.error());
    const auto options = reader->jobText(job_keys::kOptions).value_or(std::nullopt).value_or("");
    const bool leftOut = options.find("\"heads\":false") != options.npos;
    auto store = EvidenceStore::open(path, leftOut ? EvidenceStore::Heads::LeftOut : EvidenceStore::Heads::Kept);
    if (!store)
        return failure(store.error());
    describer_.emplace(sourceIn(*reader));
    reader_ = std::move(*reader);
    store_ = std::move(*store);
    return {};
}

void ListEvidence::giveUpUnless(const Result<void>& done) {
    if (!done)
        store_.reset();
}

// A NotFound failure: no file of the evidence has this path.
Result<void> ListEvidence::find(const ListRow& row) {
    const auto found = reader_->findLine(oldLine_, describer_->below(row.nativePath()), row_);
    if (!found)
        return failure(found.error());
    return *found ? Result<void>() : failure(ErrorKind::NotFound, "no such file");
}

// Null where the kept one is the same.
Result<const FileHead*> ListEvidence::newHead(const FileVerdict& verdict) {
    if (verdict.head == nullptr)
        return nullptr;
    const auto kept = reader_->head(row_);
    if (!kept)
        return failure(kept.error());
    return *kept != nullptr && **kept == *verdict.head ? nullptr : verdict.head;
}

// Whose end was looked at once has it looked at again with the head: either may have changed.
void ListEvidence::lookAtEndAgain(const ListRow& row, const FileHead& head) {
    const EndQuestion question{row.nativePath(), static_cast<std::uint64_t>(std::max<std::int64_t>(row_.size, 0)),
                               std::string(head.given())};
    FileTail found;
    if (head.length == kHeaderBytes)
        found = answerBeside(loop_, [&] { return lookAtTail(files_, question); });
    files_.closeFolder();
    row_.tail = std::move(found.tail);
    row_.tailDetail = std::move(found.tailDetail);
}

void ListEvidence::graded(const ListRow& row, const FileVerdict& verdict) {
    if (!store_)
        return;
    if (const auto found = find(row); !found)
        return giveUpUnless(found.error().kind == ErrorKind::NotFound ? Result<void>() : found);
    const auto head = newHead(verdict);
    if (!head)
        return giveUpUnless(failure(head.error()));
    if (verdict.head != nullptr && !row_.tail.empty())
        lookAtEndAgain(row, *verdict.head);
    RowDescriber::judge(verdict, messages_, row_);
    giveUpUnless(store_->change(row_, *head));
}

void ListEvidence::lineWritten(const ListRow& row) {
    if (!store_)
        return;
    digest_.add(row);
    if (++newLine_ == oldLine_)
        return;
    // A line ahead of this one was left out. What `graded` has changed of the row is in the store alone.
    giveUpUnless(store_->moveLine(describer_->below(row.nativePath()), newLine_));
}

void ListEvidence::listWritten() {
    if (!store_)
        return;
    giveUpUnless(writeListFacts(*store_, list_, digest_.value()).and_then([&] { return store_->finish(); }));
}

}  // namespace quillon
