// SPDX-License-Identifier: MIT
#pragma once

// Reads the rows of one grade out of a file list.

#include <cstdint>
#include <string>

#include "app/file_list.h"
#include "viewer/view_rows.h"

namespace quillon {

struct FilterWish {
    std::u16string category;    ///< a report message; blanks at its end do not count
    bool keepProblem = false;   ///< the rows keep their result, for the column "Problem!"
    std::int32_t maxFiles = 0;  ///< the row limit
};

enum class FilterEnd { EndOfList, LimitReached };

struct Filtered {
    FilterEnd end = FilterEnd::EndOfList;
    int withCommas = 0;  ///< rows of the category that were met and are never shown
};

/// Adds the rows whose result holds the category, case-sensitively, up to the limit. A line counts when it has exactly
/// five fields. A read that fails ends the load as the end of the list does.
///
/// Kept: the limit is compared before the row is added, so a load ends with one row more than the limit (test
/// TheLimitLetsOneRowMoreThrough). Kept: ">" becomes "," ahead of the split, so a path with a comma has six fields and
/// is never shown (test APathWithACommaIsNeverShown).
[[nodiscard]] Filtered filterList(ListReader& list, const FilterWish& wish, ViewRows& rows);

}  // namespace quillon
