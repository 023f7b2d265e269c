// SPDX-License-Identifier: MIT
#pragma once

// Copies files of a finished job, which its evidence or its list names, and leaves their check sums with them. The
// evidence learns what became of each.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "answers/file_wish.h"
#include "answers/job_answers.h"
#include "answers/right_names.h"
#include "app/event_loop.h"
#include "evidence/evidence_store.h"
#include "job/copy_queue.h"
#include "job/copy_record.h"
#include "job/older_copies.h"

namespace quillon {

struct CopyOrder {
    NativePath target;  ///< from the root on
    FileWish wish;
    CopyCare care;
    bool byGrade = false;     ///< each grade's tree below a folder of its name
    bool rightNames = false;  ///< the extension that a file's head proves stands behind its name
    NativePath database;      ///< the term files by which heads prove
    /// Only what is not copied yet: a file that the target has is left alone where its bytes give the recorded check
    /// sum and its source is what it was.
    bool failedOnly = false;
};

struct CopySums {
    std::int64_t files = 0;  ///< that were asked for
    std::int64_t bytes = 0;
    std::int64_t copied = 0;
    std::int64_t copiedBytes = 0;
    std::int64_t failed = 0;
    std::int64_t alreadyThere = 0;    ///< left alone, as the target has them
    std::int64_t damaged = 0;         ///< of those copied: with gaps
    std::int64_t lessAttributes = 0;  ///< of those copied: without all of their extended attributes
    bool stopped = false;
};

class FileCopies {
public:
    /// Hears of each copy that has come to its end.
    using Ended = std::function<void(const SettledCopy&)>;

    /// All must outlive this. NotFound: the job has no list and no evidence any more.
    [[nodiscard]] static Result<FileCopies> begin(const JobFiles& job, const CopyOrder& order);

    /// Hands each file that is asked for to `take`, with the place of its copy.
    using Take = std::function<void(const EvidenceRow& file, const CopyTask& task)>;
    /// Asked ahead of each file of the job; no ends what asks.
    using GoOn = std::function<bool()>;
    [[nodiscard]] Result<void> eachFile(const Take& take, const GoOn& goOn = {});

    /// Copies them. A failure ends all: what is copied by then stays and is recorded, as far as that can be done.
    [[nodiscard]] Result<void> run(EventLoop& loop, const Ended& ended);

    /// Of the run so far.
    [[nodiscard]] const CopySums& sums() const { return sums_; }
    /// Why the evidence could not learn what became of the copies; empty when it could.
    [[nodiscard]] const std::string& evidenceLoss() const { return evidenceLoss_; }

private:
    struct Asked {
        CopyTask task;
        bool isMissing = true;  // as far as evidence and target tell at a glance
        std::optional<std::int64_t> modified;
        std::int64_t size = 0;
        bool isRecorded = false;  // as copied, by the evidence
    };

    FileCopies(const JobFiles& job, const CopyOrder& order, std::string source)
        : job_(&job), order_(&order), source_(std::move(source)), names_(order.database) {}
    [[nodiscard]] Result<bool> nextWanted(JobAnswers& answers, EvidenceRow& file, const GoOn& goOn) const;
    void noteNewName(const SettledCopy& copy);
    [[nodiscard]] CopyTask taskOf(const EvidenceRow& file);
    [[nodiscard]] static bool isMissing(const EvidenceRow& file, const CopyTask& task);
    [[nodiscard]] bool isOfItsSource(const Asked& asked) const;
    [[nodiscard]] bool isThereAlready(const Asked& asked, EventLoop& loop) const;
    [[nodiscard]] bool hasCheckSum(const CopyTask& task) const;
    [[nodiscard]] Result<bool> gather(JobAnswers& answers, std::vector<Asked>& chunk, const EventLoop& loop);
    [[nodiscard]] bool leaveAlone(const Asked& asked, EventLoop& loop);
    [[nodiscard]] Result<void> copyChunk(std::vector<Asked>& chunk, CopyQueue& queue, EventLoop& loop);
    void copyFirst(CopyQueue& queue, EventLoop& loop);
    void end(const SettledCopy& copy, const Ended& ended);
    void openEvidence();
    void noteInEvidence();

    const JobFiles* job_;
    const CopyOrder* order_;
    std::string source_;  // empty: paths are absolute
    CopySums sums_;
    std::optional<CopyRecord> record_;
    Result<void> recorded_;
    std::optional<EvidenceStore> store_;
    bool knowsSectors_ = false;  // the evidence says how its bad sectors came to be known
    bool byMap_ = false;         // by a rescue map: what that says is zeros in the image, which no watch can tell
    std::string evidenceLoss_;
    std::vector<std::pair<std::int64_t, CopyOutcome>> outcomes_;
    RightNames names_;
    std::optional<OlderCopies> older_;  // where copies that are there already are to be left alone
};

}  // namespace quillon
