// SPDX-License-Identifier: MIT
#pragma once

// How many heads have each run of bytes of one chosen head at the same place.

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "testing/suggest/term_trust.h"

namespace quillon {

class SharedRuns {
public:
    /// All heads are folded. Takes one pass over `heads`.
    SharedRuns(const HeaderBytes& pivot, const std::vector<HeaderBytes>& heads);

    /// `length`: 1 to kLongestRun; `offset` from 0.
    [[nodiscard]] std::uint32_t count(std::size_t offset, std::size_t length) const {
        return (*counts_)[offset][length];
    }

private:
    using Counts = std::array<std::array<std::uint32_t, kLongestRun + 1>, kHeaderBytes>;
    std::unique_ptr<Counts> counts_ = std::make_unique<Counts>();
};

}  // namespace quillon
