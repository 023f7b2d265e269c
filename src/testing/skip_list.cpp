// SPDX-License-Identifier: MIT
#include "testing/skip_list.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/folders.h"
#include "testing/rule_line.h"
#include "testing/shared_copy.h"
#include "text/fields.h"
#include "text/page_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr std::array<char16_t, 128> makeFoldTable() {
    std::array<char16_t, 128> table{};
    for (std::size_t unit = 0; unit < table.size(); ++unit) {
        const bool upper = unit >= 'A' && unit <= 'Z';
        table[unit] = unit == '\\' ? u'/' : static_cast<char16_t>(upper ? unit + 0x20 : unit);
    }
    return table;
}

constexpr std::array<char16_t, 128> kFolded = makeFoldTable();

char16_t foldUnit(char16_t unit) {
    return unit < kFolded.size() ? kFolded[unit] : lowerUnit(unit);
}

std::size_t startHash(char16_t first, char16_t second) {
    return (first * 31U + second) & 0xFFFU;
}

}  // namespace

void SkipList::assign(const std::vector<std::u16string>& lines) {
    *this = SkipList();
    bool valid = true;
    for (const auto& line : lines) {
        std::u16string pattern = line;
        if (pattern.empty() || pattern.front() != u'*')
            pattern.insert(pattern.begin(), u'*');
        if (pattern.back() != u'*')
            pattern.push_back(u'*');
        patterns_.push_back(pattern);
        // A pattern that cannot be compared fails the test of every file that reaches it: those behind it never count.
        if (!valid)
            continue;
        std::transform(pattern.begin(), pattern.end(), pattern.begin(), foldUnit);
        auto compiled = WildcardPattern::compile(pattern);
        if (!compiled) {
            valid = false;
            continue;
        }
        Clue clue{compiled->longestLiteral(), std::nullopt};
        if (clue.text.size() + 2 != pattern.size())
            clue.pattern = std::move(compiled);
        if (clue.text.size() < 2) {
            shortClues_.push_back(std::move(clue));
            continue;
        }
        const std::size_t start = startHash(clue.text[0], clue.text[1]);
        starts_.set(start);
        cluesByStart_[start % cluesByStart_.size()].push_back(std::move(clue));
    }
}

bool SkipList::fits(const Clue& clue, std::u16string_view path) {
    return !clue.pattern || clue.pattern->matches(path);
}

// True when the clue stands at the start of `rest`. Its last character is looked at first, as the first two are known.
bool SkipList::begins(std::u16string_view rest, const Clue& clue) {
    const std::size_t length = clue.text.size();
    return length <= rest.size() && rest[length - 1] == clue.text.back() && rest.starts_with(clue.text);
}

bool SkipList::matches(std::u16string_view listPath) const {
    folded_.resize(listPath.size());
    std::transform(listPath.begin(), listPath.end(), folded_.begin(), foldUnit);
    const std::u16string_view path = folded_;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const std::size_t start = startHash(path[i], path[i + 1]);
        if (!starts_[start])
            continue;
        for (const auto& clue : cluesByStart_[start % cluesByStart_.size()]) {
            if (begins(path.substr(i), clue) && fits(clue, path))
                return true;
        }
    }
    return std::any_of(shortClues_.begin(), shortClues_.end(),
                       [path](const Clue& clue) { return path.find(clue.text) != path.npos && fits(clue, path); });
}

Result<LostNote> fetchSkipList(const Paths& paths, KeptFiles& kept, const std::string& job) {
    const NativePath shared = fileIn(paths.sharedSettings, kSkipListFileName);
    if (!paths.useSharedDb || !pathExists(shared))
        return LostNote();
    return copyNoted(shared, fileIn(paths.localSettings, kSkipListFileName), kept, paths.localSettings,
                     changeByJob(job));
}

SkipListState loadSkipList(const Installation& installation, bool wanted, SkipList& list) {
    const Paths& paths = installation.paths();
    const NativePath local = fileIn(paths.localSettings, kSkipListFileName);
    if (paths.useSharedDb && !pathExists(local) && !pathExists(fileIn(paths.sharedSettings, kSkipListFileName)))
        return SkipListState::Missing;
    if (!wanted)
        return SkipListState::Available;
    const auto bytes = readRuleFile(local);
    if (!bytes)
        return bytes.error().kind == ErrorKind::NotFound ? SkipListState::Available : SkipListState::Unreadable;
    std::vector<std::u16string> lines;
    for (const auto line : splitLines(*bytes)) lines.push_back(pageBytesToUtf16(line));
    if (!lines.empty())
        list.assign(lines);
    return SkipListState::Available;
}

SkipAvailability checkSkipAvailable(const Installation& installation) {
    const Paths& paths = installation.paths();
    const bool local = pathExists(fileIn(paths.localSettings, kSkipListFileName));
    SkipAvailability answer;
    if (paths.useSharedDb) {
        answer.result = pathExists(fileIn(paths.sharedSettings, kSkipListFileName)) || local;
        return answer;
    }
    answer.appliesToBox = true;
    answer.enabled = local;
    answer.ticked = local && installation.settings.useSkipList == 1;
    if (!local)
        answer.status = "Skip list disabled - can not load list";
    return answer;
}

}  // namespace quillon
