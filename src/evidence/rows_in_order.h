// SPDX-License-Identifier: MIT
#pragma once

// Finds files by their paths for who asks in the order of the walk, as whoever goes through a list does: most files are
// the next one, and cost no search.

#include "evidence/evidence_reader.h"

namespace quillon {

class RowsInOrder {
public:
    /// As EvidenceReader::findPath. Of a reader that nobody else asks for its next row. Between one question and the
    /// next the file may be locked for writers.
    [[nodiscard]] Result<bool> find(EvidenceReader& reader, std::string_view path, EvidenceRow& row);
    /// The same without a copy: null when there is none. Good until the next question.
    [[nodiscard]] Result<const EvidenceRow*> find(EvidenceReader& reader, std::string_view path);

    /// Frees the file for a writer.
    void letGo(EvidenceReader& reader);

private:
    const EvidenceRow* next_ = nullptr;  // of the reader
    EvidenceRow elsewhere_;              // found out of the order
    std::int64_t last_ = 0;              // id of the last file found
};

}  // namespace quillon
