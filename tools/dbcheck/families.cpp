// SPDX-License-Identifier: MIT
#include "dbcheck/families.h"

#include "dbcheck/table_file.h"

namespace quillon {

Result<Families> Families::read(const NativePath& path) {
    const auto table = TableFile::read(path);
    if (!table)
        return failure(table.error());
    if (auto complete = table->require({"family", "reason", "extensions", "also accepts"}); !complete)
        return failure(complete.error());
    Families families;
    for (std::size_t row = 0; row < table->rowCount(); ++row) {
        Family family{table->field(row, "family"), table->field(row, "reason"),
                      wordsOf(table->field(row, "extensions")), wordsOf(table->field(row, "also accepts"))};
        for (const auto& extension : family.extensions) {
            for (const auto* others : {&family.extensions, &family.alsoAccepts}) {
                for (const auto& other : *others) families.pairs_.emplace(extension, other);
            }
        }
        families.families_.push_back(std::move(family));
    }
    return families;
}

bool Families::mayAccept(const std::string& extension, const std::string& other) const {
    return pairs_.contains({extension, other});
}

}  // namespace quillon
