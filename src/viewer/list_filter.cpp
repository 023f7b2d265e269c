// SPDX-License-Identifier: MIT
#include "viewer/list_filter.h"

#include <algorithm>
#include <string_view>

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

bool isOfCategory(const ListRow& row, std::u16string_view category) {
    return row.isGraded() && trimRight(row[ListColumn::Result]).find(category) != std::u16string_view::npos;
}

}  // namespace

FilterResult filterList(ListReader& list, const FilterWish& wish, ViewRows& rows) {
    const std::u16string_view category = trimRight(std::u16string_view(wish.category));
    FilterResult result;
    ListRow row;
    while (list.next(row)) {
        const bool hasComma = row.line().find(u'>') != std::u16string_view::npos;
        const bool wanted = isOfCategory(row, category);
        if (hasComma)
            row.assign(withCommas(row.line()));
        if (!wanted)
            continue;
        if (hasComma && !isOfCategory(row, category)) {
            ++result.withCommas;
            continue;
        }
        if (wish.maxFiles < rows.count()) {
            result.end = FilterEnd::LimitReached;
            break;
        }
        rows.add(row[ListColumn::Path], wish.keepProblem ? row[ListColumn::Result] : std::u16string_view());
    }
    return result;
}

}  // namespace quillon
