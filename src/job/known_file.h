// SPDX-License-Identifier: MIT
#pragma once

// What the evidence of an earlier run tells of a file that is the same as then, so that the source is not read again.

#include <optional>
#include <string>

#include "job/file_tail.h"
#include "testing/header_check.h"

namespace quillon {

/// Of a file whose head was compared and not kept: what was found, by the same rules as those of today.
struct KnownVerdict {
    Grade grade = Grade::Good;
    std::u16string text;
    FileFindings findings;
};

/// Without head and verdict the file is read. Never both.
struct KnownFile {
    std::optional<FileHead> head;
    std::optional<KnownVerdict> verdict;
    FileTail tail;  ///< what its end showed, where that is to be relied on

    [[nodiscard]] bool isEmpty() const { return !head && !verdict; }
};

/// Is asked for each row of the raw list, in its order, before anything of its file is read.
class KnownFiles {
public:
    virtual ~KnownFiles() = default;
    /// `opens`: the test would open the file.
    [[nodiscard]] virtual KnownFile find(const ListRow& row, bool opens) = 0;
};

}  // namespace quillon
