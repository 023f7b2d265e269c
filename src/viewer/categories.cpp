// SPDX-License-Identifier: MIT
#include "viewer/categories.h"

#include <algorithm>

#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

static_assert(kMessageCount == kGradeCount, "a grade without a line in Errors.dat has no category");

Result<std::vector<std::u16string>> readCategories(const NativePath& errorsFile, const ReportMessages& messages) {
    const auto bytes = readRuleFile(errorsFile);
    if (!bytes)
        return failure(bytes.error());
    std::vector<std::u16string> categories;
    for (const auto line : splitLines(*bytes)) {
        std::u16string text = pageBytesToUtf16(line);
        if (!trim(std::u16string_view(text)).empty() && text != messages[Grade::Good])
            categories.push_back(std::move(text));
    }
    return categories;
}

bool canEditCategory(int entry, const std::u16string& text, const ReportMessages& messages) {
    return entry != 0 && std::ranges::none_of(kGrades.values, [&](const GradeRow& row) {
               return row.teaching == Teaching::Refused && text == messages[row.grade];
           });
}

}  // namespace quillon
