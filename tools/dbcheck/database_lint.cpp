// SPDX-License-Identifier: MIT
#include "dbcheck/database_lint.h"

#include <algorithm>
#include <array>
#include <set>

#include <fmt/format.h>

#include "dbcheck/term_lint.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "testing/report_messages.h"
#include "testing/sector_markers.h"
#include "text/page_text.h"
#include "text/wildcard.h"

namespace quillon {

namespace {

constexpr std::size_t kTermFields = 3;
constexpr std::size_t kCommonFields = 4;
constexpr std::size_t kLeastSkipText = 3;

using FileLint = void (*)(const std::string& file, std::string_view bytes, Problems& problems);

void lintTermFile(const std::string& file, std::string_view bytes, Problems& problems) {
    lintTerms(file, bytes, kTermFields, problems);
}

void lintCommonHeaders(const std::string& file, std::string_view bytes, Problems& problems) {
    lintTerms(file, bytes, kCommonFields, problems);
}

void lintMarkers(const std::string& file, std::string_view bytes, Problems& problems) {
    std::size_t number = 0;
    for (const auto line : lintLines(file, bytes, problems)) {
        ++number;
        const SectorMarker marker = markerOfLine(line);
        if (marker.bytes.empty())
            problems.push_back({file, number, "the line marks nothing"});
        else if (marker.name.empty())
            problems.push_back({file, number, "the marker has no name"});
    }
}

void lintFile(const NativePath& folder, const std::string& file, FileLint lint, Problems& problems) {
    const auto bytes = readWholeFile(folder / file);
    if (bytes) {
        lint(file, *bytes, problems);
    } else {
        problems.push_back({file, 0, bytes.error().text});
    }
}

void lintTermFiles(const NativePath& folder, Problems& problems) {
    const auto names = listFiles(folder / "Database");
    if (!names) {
        problems.push_back({"Database", 0, names.error().text});
        return;
    }
    for (const auto& name : *names) {
        const std::string file = "Database/" + name;
        if (!name.ends_with(".dat") || name == ".dat")
            problems.push_back({file, 0, "the name is not an extension and .dat"});
        else if (lowered(PageText{name}).bytes != name)
            problems.push_back({file, 0, "the name is not in lower case"});
        lintFile(folder, file, lintTermFile, problems);
    }
}

void lintSettings(const NativePath& folder, Problems& problems) {
    const std::array<std::pair<const char*, FileLint>, 4> files{{{"Settings/CommonHeaders.dat", lintCommonHeaders},
                                                                 {"Settings/SkipList.dat", lintSkipList},
                                                                 {"Settings/BadSectors.dat", lintMarkers},
                                                                 {"Settings/Errors.dat", lintReportMessages}}};
    for (const auto& [file, lint] : files) {
        if (pathExists(folder / file))
            lintFile(folder, file, lint, problems);
    }
}

void lintFamilies(const HeaderDatabase& database, Problems& problems) {
    const std::string file = "families.tsv";
    std::size_t line = 1;
    for (const auto& family : database.families.all()) {
        ++line;
        if (family.name.empty() || family.reason.empty())
            problems.push_back({file, line, "a family has a name and a reason"});
        for (const auto& extension : family.extensions) {
            if (!database.terms.contains(extension))
                problems.push_back({file, line, fmt::format("{} has no term file", extension)});
        }
    }
}

void lintKinds(const HeaderDatabase& database, Problems& problems) {
    const std::string file = "extensions.tsv";
    if (database.kinds.empty())
        return;
    for (const auto& [extension, kind] : database.kinds) {
        if (!database.terms.contains(extension))
            problems.push_back({file, 0, fmt::format("{} has no term file", extension)});
        if (kind.empty())
            problems.push_back({file, 0, fmt::format("{} is said to be nothing", extension)});
    }
    for (const auto& entry : database.terms) {
        if (!database.kinds.contains(entry.first))
            problems.push_back({file, 0, fmt::format("{} is not named", entry.first)});
    }
}

std::set<std::string> extensionsWithAnywhere(const HeaderDatabase& database) {
    std::set<std::string> extensions;
    for (const auto& [extension, terms] : database.terms) {
        if (std::ranges::any_of(terms, &CompiledTerm::isAnywhere))
            extensions.insert(extension);
    }
    if (std::ranges::any_of(database.commonList.records(), &CommonRecord::anywhere))
        extensions.insert(kCommonHeadersName);
    return extensions;
}

void lintAnywhere(const HeaderDatabase& database, Problems& problems) {
    const std::string file = "anywhere.tsv";
    if (database.anywhere.empty())
        return;
    const auto wanted = extensionsWithAnywhere(database);
    std::set<std::string> explained;
    std::size_t line = 1;
    for (const auto& [reason, extensions] : database.anywhere) {
        ++line;
        if (reason.empty())
            problems.push_back({file, line, "there is no reason"});
        for (const auto& extension : extensions) {
            explained.insert(extension);
            if (!wanted.contains(extension))
                problems.push_back({file, line, fmt::format("{} has no record at position 0", extension)});
        }
    }
    for (const auto& extension : wanted) {
        if (!explained.contains(extension))
            problems.push_back({file, 0, fmt::format("no reason why {} has records at position 0", extension)});
    }
}

}  // namespace

void lintSkipList(const std::string& file, std::string_view bytes, Problems& problems) {
    std::size_t number = 0;
    for (const auto line : lintLines(file, bytes, problems)) {
        ++number;
        const auto pattern = WildcardPattern::compile(pageBytesToUtf16(line));
        if (!pattern)
            problems.push_back({file, number, "a bracket is open: no pattern from here on is compared"});
        else if (pattern->longestLiteral().size() < kLeastSkipText)
            problems.push_back({file, number, "the pattern holds hardly any text and fits nearly every path"});
        if (lowered(PageText{std::string(line)}).bytes != line)
            problems.push_back({file, number, "the pattern is not in lower case"});
        if (line.find(',') != std::string_view::npos)
            problems.push_back({file, number, "a comma of a path is compared as >"});
    }
}

void lintReportMessages(const std::string& file, std::string_view bytes, Problems& problems) {
    const auto count = lintLines(file, bytes, problems).size();
    if (count != kMessageCount)
        problems.push_back({file, 0, fmt::format("{} lines instead of {}", count, kMessageCount)});
}

Problems lintDatabase(const NativePath& folder, const HeaderDatabase& database) {
    Problems problems;
    lintTermFiles(folder, problems);
    lintSettings(folder, problems);
    lintFamilies(database, problems);
    lintKinds(database, problems);
    lintAnywhere(database, problems);
    return problems;
}

}  // namespace quillon
