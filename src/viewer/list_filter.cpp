// SPDX-License-Identifier: MIT
#include "viewer/list_filter.h"

#include <algorithm>
#include <string_view>

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

FilterEnd filterList(ListReader& list, const FilterWish& wish, ViewRows& rows) {
    const std::u16string_view category = trimRight(std::u16string_view(wish.category));
    ListRow row;
    while (list.next(row)) {
        if (row.line().find(u'>') != std::u16string_view::npos)
            row.assign(withCommas(row.line()));
        if (!row.isGraded())
            continue;
        const std::u16string_view result = row[ListColumn::Result];
        if (trimRight(result).find(category) == std::u16string_view::npos)
            continue;
        if (wish.maxFiles < rows.count())
            return FilterEnd::LimitReached;
        rows.add(row[ListColumn::Path], wish.keepProblem ? result : std::u16string_view());
    }
    return FilterEnd::EndOfList;
}

}  // namespace quillon
