// SPDX-License-Identifier: MIT
#pragma once

// What the evidence beside the viewed list tells of its files. Where there is none, or none that can be used, nothing
// is told.

#include <cstdint>
#include <optional>
#include <string_view>

#include "evidence/evidence_reader.h"
#include "job/evidence_facts.h"

namespace quillon {

class ViewEvidence {
public:
    /// Looks at the evidence beside this list, as it is now.
    void open(const NativePath& list);
    void close() { opened_.reset(); }

    [[nodiscard]] bool isThere() const { return opened_.has_value(); }
    /// True when the folder that the job has read is not there.
    [[nodiscard]] bool isSourceAway() const;

    /// The file of this path (list text) in a line of the list, from 1, 0 for an unknown one; null when there is none.
    /// Good until the next question.
    [[nodiscard]] const EvidenceRow* find(std::int64_t line, std::u16string_view path);
    /// The first bytes of the file as the job has read them, where they were kept.
    [[nodiscard]] std::optional<FileHead> head(std::int64_t line, std::u16string_view path);

private:
    struct Opened {
        EvidenceReader reader;
        NativePath source;
        RowDescriber describer;
    };

    std::optional<Opened> opened_;
    EvidenceRow row_;
};

}  // namespace quillon
