// SPDX-License-Identifier: MIT
#pragma once

// Runs of bytes of one head that other heads have too, wherever they stand in them: marks behind lengths that vary.

#include <cstddef>
#include <vector>

#include "testing/suggest/term_trust.h"

namespace quillon {

/// A part of a head.
struct HeadPart {
    std::size_t offset = 0;  ///< from 0
    std::size_t length = 0;
};

/// The runs of `pivot` that at least two of `heads` have, those of most heads first, at most a few. Bytes that are not
/// mostly text, as words are found by themselves. All heads are folded; of many only some are looked at.
[[nodiscard]] std::vector<HeadPart> runsAnywhere(const HeaderBytes& pivot, const std::vector<HeaderBytes>& heads,
                                                 const TermTrust& trust);

}  // namespace quillon
