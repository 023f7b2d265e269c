// SPDX-License-Identifier: MIT
#pragma once

// Writes the evidence of a running job beside it: what the job hands over goes through a bounded queue to a thread, and
// the file is that thread's alone. Whatever goes wrong costs the evidence and nothing else.

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "ahead/batches_beside.h"
#include "evidence/evidence_store.h"
#include "platform/moment.h"
#include "testing/finding_rules.h"

namespace quillon {

class EvidenceWriter {
public:
    /// Changes the file on the thread.
    using Change = std::function<Result<void>(EvidenceStore&)>;
    /// Makes or opens the file, on the thread.
    using Open = std::function<Result<EvidenceStore>()>;
    /// Puts what was found in a head into its row, on the thread.
    using TakeFindings = void (*)(FileFindings findings, EvidenceRow& row);

    EvidenceWriter(Open open, TakeFindings takeFindings);
    /// Waits until all that was handed over is in the file.
    ~EvidenceWriter();
    EvidenceWriter(const EvidenceWriter&) = delete;
    EvidenceWriter& operator=(const EvidenceWriter&) = delete;

    /// PathAccess when there is no thread to be had.
    [[nodiscard]] Result<void> start() { return batches_.start(); }

    /// Hands a file over, which is added behind the others: `describe(row)` fills in a row that says nothing yet, but
    /// has the room of an earlier one's texts. `head` null: it was not opened. `findings`: what is still to be found
    /// in the head, which takes the thread longer than all else of a bad file takes the job. False: the queue is full,
    /// and nothing was taken.
    template <typename Describe>
    [[nodiscard]] bool add(const FileHead* head, const OpenFindings& findings, const Describe& describe) {
        return batches_.add([&](Batch& batch) {
            File& file = batch.next();
            describe(file.row);
            file.opened = head != nullptr;
            if (file.opened)
                file.head = *head;
            file.findings = findings;
            return batch.count == kFilesInBatch;
        });
    }
    /// Hands a change over; it is made behind the files that were handed over so far. False as above.
    [[nodiscard]] bool change(Change change);
    /// True when the queue has room. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool roomWithin(std::chrono::milliseconds limit) { return batches_.roomWithin(limit); }

    /// Nothing more comes.
    void close() { batches_.close(); }
    /// True when all is in the file. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds limit) { return batches_.endsWithin(limit); }

    /// What cost the evidence, if anything did: nothing is written from then on.
    [[nodiscard]] std::optional<FileError> lost();

private:
    // A batch wakes the thread, which takes longer than to fill in some rows.
    static constexpr std::size_t kFilesInBatch = 512;

    struct File {
        EvidenceRow row;
        FileHead head;
        bool opened = false;
        OpenFindings findings;
    };
    // Files keep their room when the batch is used again.
    struct Batch {
        std::vector<File> files;
        std::size_t count = 0;
        std::vector<Change> changes;

        [[nodiscard]] File& next() {
            if (count == files.size())
                files.resize(kFilesInBatch);
            File& file = files[count++];
            clearRow(file.row);
            return file;
        }
        [[nodiscard]] bool empty() const { return count == 0 && changes.empty(); }
        void clear() {
            count = 0;
            changes.clear();
        }
    };

    void work(Batch& batch);
    [[nodiscard]] Result<void> write(Batch& batch);

    const Open open_;
    const TakeFindings takeFindings_;
    // The thread's alone.
    std::optional<EvidenceStore> store_;
    std::vector<EvidenceStore::NewFile> together_;
    Moment begun_;
    bool pending_ = false;
    std::size_t pendingFiles_ = 0;

    std::atomic<bool> isLost_ = false;
    std::mutex mutex_;
    FileError why_;  // guarded by mutex_

    BatchesBeside<Batch> batches_;
};

}  // namespace quillon
