// SPDX-License-Identifier: MIT
#pragma once

// What the evidence says of a whole job, and how a graded row of a list becomes a row of it.

#include <functional>
#include <string>
#include <unordered_map>

#include "app/file_list.h"
#include "app/surroundings.h"
#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "job/job_state.h"
#include "platform/copy_terms.h"
#include "testing/header_check.h"

namespace quillon {

/// A job that begins: its ID, source, volume, options, computer and user.
[[nodiscard]] Result<void> writeJobBegin(EvidenceStore& store, const JobState& state, const std::string& hostName);

/// The messages of the grades.
[[nodiscard]] Result<void> writeMessages(EvidenceStore& store, const ReportMessages& messages);

/// A job that ends: how, its counters and its quality.
[[nodiscard]] Result<void> writeJobEnd(EvidenceStore& store, const char* how, const std::string& counters,
                                       const std::string& quality);

/// Size, time and digest of a list that is whole on the disk.
[[nodiscard]] Result<void> writeListFacts(EvidenceStore& store, const NativePath& list, std::int64_t digest);

/// A time as the evidence has it.
[[nodiscard]] std::int64_t evidenceTime(const FileTime& time);

/// The source that the evidence names; empty for none.
[[nodiscard]] NativePath sourceIn(EvidenceReader& evidence);

/// What the evidence says of a copy; `compared`: it was read back and compared, if it was made.
[[nodiscard]] CopyOutcome copyOutcome(const tl::expected<CopyFacts, CopyError>& result, bool compared);

/// Makes evidence rows of list rows below one source; keeps its room.
class RowDescriber {
public:
    explicit RowDescriber(const NativePath& source);

    /// Path below the source, bytes. One that does not lie there stays whole.
    [[nodiscard]] std::string_view below(std::string_view path) const;

    /// What the list says of the file: path, extension, size and attributes. All else stays as it is.
    void describe(const ListRow& row, EvidenceRow& out);

    /// As `describe` has it.
    [[nodiscard]] static std::int64_t sizeOf(const ListRow& row);

    /// What the test found: grade, result where it is not the message, findings and unread bytes. A tail that the row
    /// has stays, and is judged by the new grade. Findings that are still open come by `takeFindings` behind it.
    static void judge(const FileVerdict& verdict, const ReportMessages& messages, EvidenceRow& out);
    static void takeFindings(FileFindings findings, EvidenceRow& out);

    /// True when `judge` would change nothing but perhaps the unread bytes; cheap, and false in doubt.
    [[nodiscard]] static bool isJudgedSo(const EvidenceRow& row, const FileVerdict& verdict,
                                         const ReportMessages& messages);

private:
    [[nodiscard]] const std::string& extensionText(const std::u16string& extension);

    std::string prefix_;                                              // the source with one "/" behind
    std::unordered_map<std::u16string, std::string> extensionTexts_;  // of those that came, as the evidence has them
};

}  // namespace quillon
