// SPDX-License-Identifier: MIT
#pragma once

// What the end of a file of a source showed, as the evidence keeps it beside the head: the last mark of its format
// stands there, does not, or could not be read. Formats whose end is known, and their marks:
// testing/second_opinion/file_end.

#include <string>

#include "evidence/evidence_row.h"
#include "testing/second_opinion/source_end.h"

namespace quillon {

/// `EvidenceRow` has both under these names.
struct FileTail {
    std::string tail;  ///< empty where there is nothing to look at
    std::string tailDetail;

    friend bool operator==(const FileTail&, const FileTail&) = default;
};

/// Whether there is something to look at behind this head: a format of a known end, in a file that its own head does
/// not doubt already.
[[nodiscard]] bool hasTailToLookAt(std::string_view head, std::uint64_t size);

/// Looks at the end of a file, which is opened for it. One without a kept head has its head read again.
[[nodiscard]] FileTail lookAtTail(SourceFiles& files, EndQuestion question);

/// That of an end which the source does not give.
[[nodiscard]] FileTail unreadTail();

/// An end tells against a file whose grade counts as recovered, and whose head tells nothing against it. One that could
/// not be read is no doubt: its sentence stands without one.
void judgeTail(EvidenceRow& row);

/// True when the doubt of the row is what its end showed.
[[nodiscard]] bool isDoubtedByTail(const EvidenceRow& row);

}  // namespace quillon
