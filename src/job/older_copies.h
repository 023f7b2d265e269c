// SPDX-License-Identifier: MIT
#pragma once

// What an earlier run has left in a target, for one that makes only what is missing there. A copy is left alone only
// where its bytes give the check sum that stands for it.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/file.h"
#include "platform/result.h"
#include "platform/sha256.h"

namespace quillon {

class OlderCopies {
public:
    /// By the check sums in the target's root; without such a list there is none.
    [[nodiscard]] static Result<OlderCopies> read(const NativePath& target, const std::string& jobId);

    [[nodiscard]] bool isEmpty() const { return sums_.empty(); }

    /// Whether a check sum stands for the copy. Reads nothing.
    [[nodiscard]] bool isKnown(std::string_view copy) const;

    /// Reads the copy from its medium. None where it has no check sum, cannot be read, or is another one, or where
    /// `goOn`, which is asked behind each piece of it, says no.
    [[nodiscard]] std::optional<Sha256Digest> wholeOne(std::string_view copy, const std::function<bool()>& goOn) const;

private:
    explicit OlderCopies(std::string root) : root_(std::move(root)) {}
    [[nodiscard]] const std::string* sumOf(std::string_view copy) const;

    std::string root_;                                   // ends in "/"
    std::unordered_map<std::string, std::string> sums_;  // digest by name below the root
};

}  // namespace quillon
