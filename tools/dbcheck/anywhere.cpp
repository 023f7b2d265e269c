// SPDX-License-Identifier: MIT
#include "dbcheck/anywhere.h"

#include "dbcheck/table_file.h"

namespace quillon {

Result<std::vector<AnywhereReason>> readAnywhereReasons(const NativePath& path) {
    const auto table = TableFile::read(path);
    if (!table)
        return failure(table.error());
    if (auto complete = table->require({"reason", "extensions"}); !complete)
        return failure(complete.error());
    std::vector<AnywhereReason> reasons;
    for (std::size_t row = 0; row < table->rowCount(); ++row)
        reasons.push_back({table->field(row, "reason"), wordsOf(table->field(row, "extensions"))});
    return reasons;
}

}  // namespace quillon
