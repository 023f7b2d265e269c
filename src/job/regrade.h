// SPDX-License-Identifier: MIT
#pragma once

// Grades all rows of a job's list anew from the heads that its evidence keeps, and writes the list beside itself. The
// source is neither read nor looked at.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "app/gathered_rows.h"
#include "job/job.h"

namespace quillon {

enum class RegradeEnd {
    Complete,    ///< the list is the new one
    NoList,      ///< the job has no list
    NoEvidence,  ///< there is none beside it, or none that can be used
    Busy,        ///< a job runs in the application folder
    Stopped,     ///< by a person; the list is the old one
    Failed       ///< the list could not be kept, read or written; it is the old one
};

/// Lines of the list.
struct RegradeCounts {
    std::int64_t rows = 0;     ///< of those that are to be graded anew, as all here
    std::int64_t graded = 0;   ///< got the text that today's rules give
    std::int64_t changed = 0;  ///< of those, where it is another one
    std::int64_t kept = 0;     ///< keep their text: a head is needed and there is none, or the job has not tested
    std::int64_t damaged = 0;  ///< of those, where the evidence is damaged

    friend bool operator==(const RegradeCounts&, const RegradeCounts&) = default;
};

/// What is graded anew, and who hears of it.
struct RegradeWish {
    std::optional<std::u16string> extension;             ///< rows of this one alone, in lower case; none: all rows
    std::function<void(const ListRow& row)> rowWritten;  ///< hears of each row as it stands in the new list
};

struct RegradeResult {
    RegradeEnd end = RegradeEnd::Failed;
    std::string detail;  ///< why it did not complete
    RegradeCounts counts;
    bool unfinished = false;    ///< the list was left short by its job, and stays so
    std::string qualityBefore;  ///< as the job or the last regrade has left it
};

class EvidenceInWork;

class Regrade {
public:
    /// The job must outlive this; its options name the list and tell whether common headers are looked for.
    explicit Regrade(Job& job, RegradeWish wish = {})
        : job_(job),
          wish_(std::move(wish)),
          context_(job.passContext()),
          grader_(job.installation(), job.messages, job.commonList, context_, TermFiles::Looks::Once) {}

    /// Loads messages and common list, then grades. Every line and its order stay. A row gets a new text when its head
    /// was kept or none is needed; any other keeps its own. The old list goes under Kept. State: the grades of all rows
    /// stand in the counters, and what follows from them as the quality; evidence that cannot be written to its end is
    /// a loss there.
    ///
    /// The evidence is written in parts, so one that ends early is ahead of the list in some rows. It then names no
    /// list as its own, and the next regrade brings both together.
    [[nodiscard]] RegradeResult run();

private:
    [[nodiscard]] RegradeEnd runLocked(const NativePath& list);
    [[nodiscard]] RegradeEnd endsBy(RegradeEnd end, std::string why);
    void loadRules();
    [[nodiscard]] Result<void> rewrite(const NativePath& list, EvidenceInWork& evidence);
    [[nodiscard]] Result<void> writeRows(ListReader& from, GatheredRows& to, EvidenceInWork& evidence);
    [[nodiscard]] bool isWished() const;
    [[nodiscard]] const ListRow& regradeRow(EvidenceInWork& evidence);
    [[nodiscard]] const ListRow& withText(std::u16string_view text);
    [[nodiscard]] std::optional<FileVerdict> verdictOf(EvidenceInWork& evidence);
    [[nodiscard]] const ListRow& keepRow(EvidenceInWork& evidence);
    [[nodiscard]] const ListRow& leaveRow(EvidenceInWork& evidence);

    Job& job_;
    const RegradeWish wish_;
    PassContext context_;
    FileGrader grader_;  // of its own: that of the job knows the term files as they were
    RegradeResult result_;
    bool allByOneRule_ = true;  // no row keeps what other rules gave it
    ListRow row_;               // as it was
    ListRow next_;
};

}  // namespace quillon
