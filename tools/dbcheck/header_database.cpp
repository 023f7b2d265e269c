// SPDX-License-Identifier: MIT
#include "dbcheck/header_database.h"

#include <algorithm>

#include "dbcheck/table_file.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/fields.h"

namespace quillon {

namespace {

constexpr std::string_view kTermFileEnding = ".dat";

Result<void> readTermFiles(const NativePath& folder, HeaderDatabase& database) {
    const auto names = listFiles(folder);
    if (!names)
        return failure(names.error());
    for (const auto& name : *names) {
        if (!name.ends_with(kTermFileEnding))
            continue;
        const auto bytes = readWholeFile(folder / name);
        if (!bytes)
            return failure(bytes.error());
        auto& terms = database.terms[name.substr(0, name.size() - kTermFileEnding.size())];
        for (const auto line : splitLines(*bytes)) terms.push_back(CompiledTerm::fromTermFileLine(line));
    }
    return {};
}

Result<void> readKinds(const NativePath& path, HeaderDatabase& database) {
    const auto table = TableFile::read(path);
    if (!table)
        return failure(table.error());
    if (auto complete = table->require({"extension", "kind"}); !complete)
        return complete;
    for (std::size_t row = 0; row < table->rowCount(); ++row)
        database.kinds[table->field(row, "extension")] = table->field(row, "kind");
    return {};
}

}  // namespace

Result<HeaderDatabase> readHeaderDatabase(const NativePath& folder) {
    HeaderDatabase database;
    if (auto read = readTermFiles(folder / "Database", database); !read)
        return failure(read.error());
    if (const auto common = folder / "Settings" / "CommonHeaders.dat"; pathExists(common)) {
        if (auto read = database.commonList.load(common); !read)
            return failure(read.error());
    }
    if (const auto path = folder / "families.tsv"; pathExists(path)) {
        auto families = Families::read(path);
        if (!families)
            return failure(families.error());
        database.families = std::move(*families);
    }
    if (const auto path = folder / "anywhere.tsv"; pathExists(path)) {
        auto reasons = readAnywhereReasons(path);
        if (!reasons)
            return failure(reasons.error());
        database.anywhere = std::move(*reasons);
    }
    if (const auto path = folder / "extensions.tsv"; pathExists(path)) {
        if (auto read = readKinds(path, database); !read)
            return failure(read.error());
    }
    return database;
}

std::optional<std::size_t> firstFit(const std::vector<CompiledTerm>& terms, const HeaderBytes& folded) {
    for (std::size_t i = 0; i < terms.size(); ++i) {
        const auto result = terms[i].match(folded);
        if (result == MatchResult::GivenUp)
            return std::nullopt;
        if (result != MatchResult::No)
            return i;
    }
    return std::nullopt;
}

bool namedByCommonHeader(const CommonList& list, const HeaderBytes& folded) {
    return std::ranges::any_of(list.records(), [&](const CommonRecord& record) {
        return record.description && record.term.match(folded) == MatchResult::Yes;
    });
}

}  // namespace quillon
