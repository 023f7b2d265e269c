// SPDX-License-Identifier: MIT
#pragma once

// The evidence that an earlier run of a job has left, for a run that goes on with it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "evidence/rows_in_order.h"
#include "job/file_tail.h"
#include "platform/volume.h"

namespace quillon {

/// What the evidence says of the run that left it.
struct RunFacts {
    NativePath source;
    Volume volume;           ///< its UUID as `nameText` has it
    std::string end;         ///< as job_keys tells it; empty where nothing of the run was written
    std::int64_t rules = 0;  ///< their digest; 0 for unknown
    bool commonHeaders = false;
    bool headsLeftOut = false;

    /// True when the run came to its end: what it could not read may be there by now.
    [[nodiscard]] bool isComplete() const;
    /// True when both runs found the same source on the same volume.
    [[nodiscard]] bool isOfSamePlace(const RunFacts& other) const;
    /// True when both runs went by the same rules.
    [[nodiscard]] bool goesBySameRules(const RunFacts& other) const;
};

/// The same of a source as it is now.
[[nodiscard]] RunFacts placeNow(const NativePath& source);

class EarlierRun {
public:
    /// Fails as EvidenceReader::open does.
    [[nodiscard]] static Result<EarlierRun> open(const NativePath& evidence);

    [[nodiscard]] const RunFacts& facts() const { return facts_; }
    [[nodiscard]] EvidenceReader& reader() { return reader_; }

    /// How many files it holds; 0 where that cannot be read.
    [[nodiscard]] std::int64_t files();

    /// Looks for a file by its path below the source; leaves `row` alone when there is none. Quick for who asks in the
    /// order of the walk.
    [[nodiscard]] Result<bool> find(std::string_view path, EvidenceRow& row);
    /// Frees the file for a writer, until the next question.
    void letGo() { rows_.letGo(reader_); }

    /// The head of a file that need not be read again, with its bytes unless the evidence leaves heads out; good until
    /// the next call. Null for a file that has to be read: parts of it were not readable, the evidence is damaged, or,
    /// where the run is complete, it was not good: a later pass of an imaging tool may have filled it, which changes
    /// neither size nor time.
    [[nodiscard]] const FileHead* headToTake(const EvidenceRow& row);
    /// What the end of a file showed that need not be looked at again, for the same reasons; empty where it has to be.
    [[nodiscard]] FileTail tailToTake(const EvidenceRow& row) const;

private:
    EarlierRun(EvidenceReader reader, RunFacts facts) : reader_(std::move(reader)), facts_(std::move(facts)) {}

    EvidenceReader reader_;
    RunFacts facts_;
    RowsInOrder rows_;
    FileHead leftOut_;
};

/// True when what stands beside the list says that a job of this source did not come to its end.
[[nodiscard]] bool wasLeftUnfinished(const NativePath& list, const NativePath& source);

/// True when it says that there was a job of this source, whatever its end.
[[nodiscard]] bool hasEarlierRun(const NativePath& list, const NativePath& source);

}  // namespace quillon
