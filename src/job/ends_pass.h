// SPDX-License-Identifier: MIT
#pragma once

// Looks at the ends of a job's files, when asked: behind the other passes, by what the evidence says of the files, and
// into the evidence goes what is found. Ends are asked for ahead, with the care that the source needs, and come in the
// order of the rows, while a window turns. Grades, counts and the list stay as they are.

#include <memory>

#include "ahead/ahead.h"
#include "ahead/turn_with_care.h"
#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "job/file_tail.h"
#include "job/pass_context.h"
#include "job/source_wait.h"

namespace quillon {

class EndsPass {
public:
    /// All must outlive this.
    explicit EndsPass(const PassContext& context);

    /// Every file whose head came whole and belongs to a format of a known end, in the order of the walk; what an
    /// earlier run knew of a file is not read again. Stop ends it at the next file, and what was found so far is kept.
    /// An end that takes longer than the limit of the job's options is given up. A failure: the evidence cannot be read
    /// or written.
    [[nodiscard]] Result<EndFigures> run(const NativePath& evidence);

private:
    struct Asked : TurnWithCare {
        EvidenceRow row;
        EndQuestion question;
        FileTail tail;
    };

    [[nodiscard]] Result<void> open(const NativePath& evidence);
    [[nodiscard]] Result<void> lookAll();
    [[nodiscard]] Result<void> askAhead();
    [[nodiscard]] std::size_t worthAsking() const;
    [[nodiscard]] Result<bool> nextFile();
    [[nodiscard]] Result<bool> makeQuestion(EndQuestion& question);
    void ask(EndQuestion question);
    [[nodiscard]] bool isStopped() const;
    void lookInLine(Asked& asked);
    [[nodiscard]] bool waitForFirst();
    [[nodiscard]] Result<void> takeFirst();
    void countKnown(const EvidenceRow& row);
    [[nodiscard]] Result<void> keep(const EvidenceRow& before, const FileTail& tail);

    PassContext context_;
    NativePath source_;
    std::unique_ptr<EvidenceReader> reader_;
    std::unique_ptr<EvidenceStore> store_;
    EvidenceRow row_;  // the last one that was read
    bool more_ = true;
    EndFigures figures_;
    int changes_ = 0;    // since the last commit
    SourceFiles files_;  // of this thread
    SourceWait wait_;
    StandingStill standingStill_;
    Ahead<Asked> ahead_;
};

}  // namespace quillon
