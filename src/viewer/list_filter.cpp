// SPDX-License-Identifier: MIT
#include "viewer/list_filter.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

FilterEnd filterList(ListReader& list, const FilterWish& wish, ViewRows& rows) {
    const std::u16string_view category = trimRight(std::u16string_view(wish.category));
    std::vector<std::u16string_view> fields;
    std::u16string line;  // room for a line with commas turned back
    while (const auto read = list.next()) {
        std::u16string_view text = *read;
        if (text.find(u'>') != text.npos) {
            line = withCommas(text);
            text = line;
        }
        splitInto(fields, text, u',');
        if (fields.size() != kTestedColumns)
            continue;
        if (trimRight(fields[kResultColumn]).find(category) == std::u16string_view::npos)
            continue;
        if (wish.maxFiles < rows.count())
            return FilterEnd::LimitReached;
        rows.add(fields[kPathColumn], wish.keepProblem ? fields[kResultColumn] : std::u16string_view());
    }
    return FilterEnd::EndOfList;
}

}  // namespace quillon
