// SPDX-License-Identifier: MIT
#pragma once

// The evidence of a list whose rows are all graded anew: it gives the heads that it keeps, and takes what the new list
// says, in parts, so that the memory for it stays bounded.

#include <optional>
#include <string>
#include <string_view>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/rows_in_order.h"
#include "job/evidence_facts.h"
#include "job/list_digest.h"

namespace quillon {

class EvidenceInWork {
public:
    /// Opens what stands beside the list, for reading and for writing. `messages` must outlive it.
    [[nodiscard]] static Result<EvidenceInWork> open(const NativePath& list, const ReportMessages& messages);

    /// The quality that it tells; empty for none.
    [[nodiscard]] std::string quality();

    /// From here on it names no list as its own.
    void begin();
    /// Looks for the file of the list's next line. A file of another size is another one.
    void find(const ListRow& row);
    /// The kept head of that file; null when there is none, or none to rely on. Good until the next call.
    [[nodiscard]] const FileHead* head();
    /// Whether a digest has disagreed with that file, as far as its head was asked for.
    [[nodiscard]] bool isDamaged() const { return damaged_; }
    /// What it says of that file's grade, as far as that is to be relied on.
    [[nodiscard]] std::optional<Grade> grade() const;

    /// The file's new verdict; how many bytes its head had stays.
    void graded(const FileVerdict& verdict);
    /// The file keeps this text.
    void kept(std::u16string_view text);
    /// The row stands in the new list.
    void lineWritten(const ListRow& row) { digest_.add(row); }
    /// The new list is whole and has its name. `rules`: their digest, 0 when its rows go by different ones.
    void listWritten(const NativePath& list, std::int64_t rules, const JobState& state);

    /// Why something could not be written; from then on nothing is.
    [[nodiscard]] const std::optional<FileError>& lost() const { return lost_; }

private:
    EvidenceInWork(EvidenceReader reader, EvidenceStore store, const NativePath& source, const ReportMessages& messages)
        : reader_(std::move(reader)), store_(std::move(store)), describer_(source), messages_(&messages) {}
    void change();
    void noteUnless(const Result<void>& done);
    [[nodiscard]] std::string countersWith(const JobState& state);

    EvidenceReader reader_;
    EvidenceStore store_;
    RowsInOrder rows_;
    RowDescriber describer_;
    const ReportMessages* messages_;
    ListDigest digest_;
    std::optional<FileError> lost_;
    int changes_ = 0;       // since the last part
    bool counted_ = false;  // its folders tell the grades of its rows
    bool damaged_ = false;
    const EvidenceRow* row_ = nullptr;  // of the file in work, as it stands in the evidence; null for none
    EvidenceRow now_;                   // as it is to stand there
};

}  // namespace quillon
