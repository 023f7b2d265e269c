// SPDX-License-Identifier: MIT
#pragma once

// What became of copies, noted as they come beside their list of check sums, which takes its place at the end only: of
// a run that is killed the next one knows what is made already. docs/formats/manifest.md.

#include <functional>
#include <string>
#include <string_view>

#include "job/check_sum_file.h"
#include "platform/copy_terms.h"
#include "platform/file.h"

namespace quillon {

/// Where the copies of a job are noted in their target.
[[nodiscard]] NativePath copyJournalIn(const NativePath& target, const std::string& jobId);

/// A copy as a run has noted it.
struct NotedCopy {
    std::string name;  ///< below the target, bytes
    CopyFacts facts;   ///< of `unread` only that there is nothing, where somebody has looked
};

class CopyJournal {
public:
    explicit CopyJournal(NativePath path) : path_(std::move(path)) {}

    /// A copy that was hashed. The file is made with the first one; what a killed run has noted stays ahead of it.
    /// Where it cannot be written nothing more is noted: that costs no run but one behind a killed one.
    void add(std::string_view name, const CopyFacts& facts);
    /// The lists stand, and say the same.
    void remove();

private:
    void write(std::string_view lines);

    NativePath path_;
    File file_;
    bool given_ = false;  // up
};

/// Hands on each copy that is noted, a later one of the same name behind an earlier one. Without a journal there is
/// none, nor in a folder of its name. A failure: it cannot be read to its end.
[[nodiscard]] Result<void> readCopyJournal(const NativePath& journal, const std::function<void(NotedCopy)>& take);

}  // namespace quillon
