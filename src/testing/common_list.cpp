// SPDX-License-Identifier: MIT
#include "testing/common_list.h"

#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

void CommonList::assign(const std::vector<std::string_view>& lines) {
    if (lines.empty())
        return;
    records_.clear();
    for (const auto line : lines) {
        const auto fields = splitFields(line);
        CommonRecord record{CompiledTerm::fromCommonLine(line), false, std::nullopt};
        record.anywhere = record.term.isAnywhere();
        if (fields.size() > 3)
            record.description = pageBytesToUtf16(trimLeft(fields[3]));
        records_.push_back(std::move(record));
    }
}

Result<void> CommonList::load(const NativePath& file) {
    return readRuleFile(file).map([this](const std::string& bytes) { assign(splitLines(bytes)); });
}

}  // namespace quillon
