// SPDX-License-Identifier: MIT
#pragma once

// The evidence beside a list that is rewritten: it says what the new list says, in the same step. Where there is none,
// or none that can be written, nothing happens.

#include <optional>

#include "app/event_loop.h"
#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "job/evidence_facts.h"
#include "job/list_digest.h"

namespace quillon {

class ListEvidence {
public:
    /// `messages` and `loop`, which turns while the source is read, must outlive this.
    ListEvidence(const NativePath& list, const ReportMessages& messages, EventLoop& loop);

    /// The old list has one more line.
    void lineRead() { ++oldLine_; }
    /// The file of that line was tested again; `row` is as the old list has it, or with the new result.
    void graded(const ListRow& row, const FileVerdict& verdict);
    /// The line stands in the new list.
    void lineWritten(const ListRow& row);

    /// The new list is whole: what was told so far is brought into the evidence. Without this nothing of it is.
    void listWritten();

private:
    [[nodiscard]] Result<void> open();
    [[nodiscard]] Result<void> find(const ListRow& row);
    [[nodiscard]] Result<const FileHead*> newHead(const FileVerdict& verdict);
    void lookAtEndAgain(const ListRow& row, const FileHead& head);
    void giveUpUnless(const Result<void>& done);

    const NativePath list_;
    const ReportMessages& messages_;
    EventLoop& loop_;
    std::optional<EvidenceReader> reader_;
    std::optional<EvidenceStore> store_;
    std::optional<RowDescriber> describer_;
    ListDigest digest_;
    std::int64_t oldLine_ = 0;
    std::int64_t newLine_ = 0;
    EvidenceRow row_;
    SourceFiles files_;
};

}  // namespace quillon
