// SPDX-License-Identifier: MIT
#include "testing/skip_list.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "testing/shared_copy.h"
#include "text/fields.h"
#include "text/page_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

char16_t foldUnit(char16_t unit) {
    return unit == u'\\' ? u'/' : lowerUnit(unit);
}

std::size_t startHash(char16_t first, char16_t second) {
    return (first * 31U + second) & 0xFFU;
}

bool hasWildcards(std::u16string_view text) {
    return text.find_first_of(u"*?#[") != text.npos;
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
        const auto inner = std::u16string_view(pattern).substr(1, pattern.size() < 2 ? 0 : pattern.size() - 2);
        if (!hasWildcards(inner)) {
            addPlain(std::u16string(inner));
        } else if (auto compiled = WildcardPattern::compile(pattern)) {
            wild_.push_back(std::move(*compiled));
        } else {
            valid = false;
        }
    }
}

void SkipList::addPlain(std::u16string text) {
    if (text.size() < 2) {
        shortPlain_.push_back(std::move(text));
    } else {
        plainByStart_[startHash(text[0], text[1])].push_back(std::move(text));
    }
}

bool SkipList::containsPlainText() const {
    const std::u16string_view path = folded_;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        for (const auto& text : plainByStart_[startHash(path[i], path[i + 1])]) {
            if (path.substr(i, text.size()) == text)
                return true;
        }
    }
    return std::any_of(shortPlain_.begin(), shortPlain_.end(),
                       [path](const auto& text) { return path.find(text) != path.npos; });
}

bool SkipList::matches(std::u16string_view listPath) const {
    folded_.resize(listPath.size());
    std::transform(listPath.begin(), listPath.end(), folded_.begin(), foldUnit);
    if (containsPlainText())
        return true;
    return std::any_of(wild_.begin(), wild_.end(), [this](const auto& pattern) { return pattern.matches(folded_); });
}

SkipListState loadSkipList(const Installation& installation, bool wanted, KeptFiles& kept, SkipList& list) {
    const Paths& paths = installation.paths();
    const NativePath local = paths.localSettings / kSkipListFileName;
    if (paths.useSharedDb) {
        const NativePath shared = paths.sharedSettings / kSkipListFileName;
        if (pathExists(shared)) {
            passOver(takeSharedCopy(shared, local, kept), "the local copy then serves");
        } else if (!pathExists(local)) {
            return SkipListState::Missing;
        }
    }
    if (!wanted)
        return SkipListState::Available;
    const auto bytes = readWholeFile(local);
    if (!bytes)
        return SkipListState::Available;
    std::vector<std::u16string> lines;
    for (const auto line : splitLines(*bytes)) lines.push_back(pageBytesToUtf16(line));
    if (!lines.empty())
        list.assign(lines);
    return SkipListState::Available;
}

SkipAvailability checkSkipAvailable(const Installation& installation) {
    const Paths& paths = installation.paths();
    const bool local = pathExists(paths.localSettings / kSkipListFileName);
    SkipAvailability answer;
    if (paths.useSharedDb) {
        answer.result = pathExists(paths.sharedSettings / kSkipListFileName) || local;
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
