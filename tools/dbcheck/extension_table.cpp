// SPDX-License-Identifier: MIT
#include "dbcheck/extension_table.h"

#include <algorithm>

#include <fmt/format.h>

namespace quillon {

namespace {

struct Kind {
    std::string extensions;
    std::size_t least = 0;
    std::size_t most = 0;
};

}  // namespace

std::string extensionTable(const HeaderDatabase& database) {
    std::map<std::string, Kind> kinds;
    std::size_t terms = 0;
    for (const auto& [extension, records] : database.terms) {
        const auto named = database.kinds.find(extension);
        auto& kind = kinds[named == database.kinds.end() ? "not named" : named->second];
        const bool first = kind.extensions.empty();
        kind.extensions += fmt::format("{}`{}`", first ? "" : " ", extension);
        kind.least = first ? records.size() : std::min(kind.least, records.size());
        kind.most = std::max(kind.most, records.size());
        terms += records.size();
    }
    std::string table = "| Kind | Extensions | Terms |\n| --- | --- | --- |\n";
    for (const auto& [name, kind] : kinds) {
        const auto count =
            kind.least == kind.most ? fmt::format("{}", kind.most) : fmt::format("{} to {}", kind.least, kind.most);
        table += fmt::format("| {} | {} | {} |\n", name, kind.extensions, count);
    }
    return table + fmt::format("\n{} kinds, {} extensions, {} terms.\n", kinds.size(), database.terms.size(), terms);
}

}  // namespace quillon
