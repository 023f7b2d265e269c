// SPDX-License-Identifier: MIT
#pragma once

// The second opinion on a file, from the head that the header test has read anyway and the size of the file. The grade
// says that a term stands where it should; this says whether the head itself tells of more. It never changes a grade.

#include <cstdint>
#include <optional>
#include <string_view>

#include "testing/second_opinion/doubt.h"

namespace quillon {

/// `head`: the first bytes of the file as they are, not folded; 512, or all of a shorter file, without the blanks that
/// pad a short head. A shorter one just tells less. `size`: of the whole file in bytes, any number. Nothing: no reason
/// for a doubt, or a format that is not known here.
[[nodiscard]] std::optional<Doubt> secondOpinion(std::string_view head, std::uint64_t size);

/// The name of the format by whose rules `secondOpinion` judges this head; empty for none.
[[nodiscard]] std::string_view secondOpinionFormat(std::string_view head);

}  // namespace quillon
