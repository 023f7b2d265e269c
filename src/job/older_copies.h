// SPDX-License-Identifier: MIT
#pragma once

// What an earlier run has left in a target, for one that makes only what is missing there. A copy is left alone only
// where its bytes give the check sum that stands for it. A run that was killed has left what it had noted by then.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "job/copy_journal.h"
#include "platform/file.h"
#include "platform/folders.h"
#include "platform/result.h"
#include "platform/sha256.h"

namespace quillon {

class OlderCopies {
public:
    /// By the check sums in the target's root; without such a list, and without notes, there is none.
    [[nodiscard]] static Result<OlderCopies> read(const NativePath& target, const std::string& jobId);

    [[nodiscard]] bool isEmpty() const { return known_.empty(); }

    /// Whether a check sum stands for the copy. Reads nothing.
    [[nodiscard]] bool isKnown(std::string_view copy) const;

    /// What a killed run has noted of it where the source was then what it is now; null otherwise.
    [[nodiscard]] const CopyFacts* notedOf(std::string_view copy, const FileStamp& source) const;

    /// Reads the copy from its medium. None where it has no check sum, cannot be read, or is another one, or where
    /// `goOn`, which is asked behind each piece of it, says no.
    [[nodiscard]] std::optional<Sha256Digest> wholeOne(std::string_view copy, const std::function<bool()>& goOn) const;

private:
    explicit OlderCopies(std::string root) : root_(std::move(root)) {}
    struct Known {
        std::string sum;
        std::optional<CopyFacts> noted;  // by a killed run
    };
    [[nodiscard]] const Known* find(std::string_view copy) const;
    [[nodiscard]] Result<void> readNotes(const NativePath& target, const std::string& jobId);

    std::string root_;                              // ends in "/"
    std::unordered_map<std::string, Known> known_;  // by name below the root
};

}  // namespace quillon
