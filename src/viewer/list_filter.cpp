// SPDX-License-Identifier: MIT
#include "viewer/list_filter.h"

#include <algorithm>
#include <string_view>

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// True for a row that would be shown, had its path no comma.
bool isHiddenByCommas(const ListRow& row, std::u16string_view category) {
    return row.isGraded() && row[ListColumn::Path].find(u'>') != std::u16string_view::npos &&
           trimRight(row[ListColumn::Result]).find(category) != std::u16string_view::npos;
}

}  // namespace

Filtered filterList(ListReader& list, const FilterWish& wish, ViewRows& rows) {
    const std::u16string_view category = trimRight(std::u16string_view(wish.category));
    Filtered filtered;
    ListRow row;
    for (std::uint32_t line = 1; list.next(row); ++line) {
        if (row.line().find(u'>') != std::u16string_view::npos) {
            filtered.withCommas += isHiddenByCommas(row, category) ? 1 : 0;
            row.assign(withCommas(row.line()));
        }
        if (!row.isGraded())
            continue;
        const std::u16string_view result = row[ListColumn::Result];
        if (trimRight(result).find(category) == std::u16string_view::npos)
            continue;
        if (wish.maxFiles < rows.count()) {
            filtered.end = FilterEnd::LimitReached;
            break;
        }
        rows.add(row[ListColumn::Path], wish.keepProblem ? result : std::u16string_view(), line);
    }
    return filtered;
}

}  // namespace quillon
