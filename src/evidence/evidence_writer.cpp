// SPDX-License-Identifier: MIT
#include "evidence/evidence_writer.h"

namespace quillon {

namespace {

using std::chrono::milliseconds;

// A killed job loses what was not in a transaction that has ended.
constexpr milliseconds kLongestTransaction{1000};
constexpr milliseconds kPause{500};
// What a transaction changes stays in memory until its end.
constexpr std::size_t kMostFilesInTransaction = 16'384;
// With the batches that wait the memory stays below some 20 MB.
constexpr std::size_t kMostBatches = 40;

}  // namespace

EvidenceWriter::EvidenceWriter(Open open, TakeFindings takeFindings)
    : open_(std::move(open)),
      takeFindings_(takeFindings),
      batches_(kMostBatches, kPause, [this](Batch& batch) { work(batch); }) {
}

EvidenceWriter::~EvidenceWriter() {
    // The batches are the last member, and wait for the thread that uses the others.
    close();
}

bool EvidenceWriter::change(Change change) {
    // The batch goes with it, so that no file that comes later is written before.
    return batches_.add([&](Batch& batch) {
        batch.changes.push_back(std::move(change));
        return true;
    });
}

std::optional<FileError> EvidenceWriter::lost() {
    if (!isLost_)
        return std::nullopt;
    const std::lock_guard lock(mutex_);
    return why_;
}

void EvidenceWriter::work(Batch& batch) {
    if (isLost_)
        return;
    const auto written = write(batch);
    if (written)
        return;
    store_.reset();
    {
        const std::lock_guard lock(mutex_);
        why_ = written.error();
    }
    isLost_ = true;
}

Result<void> EvidenceWriter::write(Batch& batch) {
    if (!store_) {
        auto opened = open_();
        if (!opened)
            return failure(opened.error());
        store_ = std::move(*opened);
        // A person who looks at the file keeps this thread waiting, and no one else.
        store_->waitForLocks(std::chrono::seconds(10));
    }
    if (!pending_)
        begun_ = momentNow();
    pending_ = pending_ || !batch.empty();
    together_.clear();
    for (File& file : std::span(batch.files).first(batch.count)) {
        if (file.findings)
            takeFindings_(std::exchange(file.findings, {}).find(file.head), file.row);
        together_.push_back({&file.row, file.opened ? &file.head : nullptr});
    }
    if (auto added = store_->add(together_); !added)
        return added;
    for (const auto& change : batch.changes) {
        if (auto changed = change(*store_); !changed)
            return changed;
    }
    pendingFiles_ += batch.count;
    if (!batch.empty() && momentNow() - begun_ < kLongestTransaction && pendingFiles_ < kMostFilesInTransaction)
        return {};
    pending_ = false;
    pendingFiles_ = 0;
    return store_->commit();
}

}  // namespace quillon
