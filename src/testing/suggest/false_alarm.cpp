// SPDX-License-Identifier: MIT
#include "testing/suggest/false_alarm.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include <fmt/format.h>

#include "text/numbers.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr std::size_t kShortBytes = 3;  // at a fixed place; a tenth of a thousand random files has two given bytes
constexpr std::size_t kShortAnywhere = 6;
constexpr std::size_t kMostKindsTold = 3;

CompiledTerm compiled(const HeaderTerm& term) {
    return CompiledTerm::fromTermFileLine(term.offset.bytes + "," + term.term.bytes + "," + term.type.bytes);
}

std::string counted(std::size_t number) {
    return grouped(static_cast<std::int64_t>(number));
}

bool meets(const CompiledTerm& term, const HeaderBytes& head) {
    const MatchResult result = term.match(head);
    return result == MatchResult::Yes || result == MatchResult::Defective;
}

// Looks for bytes in many heads by the one that is rarest in some of these: what stands everywhere, such as zeros,
// would be tried at every place.
class RareByteSearch {
public:
    /// `bytes` outlive this; at least one.
    RareByteSearch(std::string_view bytes, const std::vector<HeaderBytes>& heads) : bytes_(bytes) {
        constexpr std::size_t kSample = 256;
        std::array<std::size_t, 256> counts{};
        const std::size_t step = heads.size() / kSample + 1;
        for (std::size_t i = 0; i < heads.size(); i += step) {
            for (const char c : heads[i]) ++counts[static_cast<unsigned char>(c)];
        }
        const auto rarest =
            std::ranges::min_element(bytes, {}, [&](char c) { return counts[static_cast<unsigned char>(c)]; });
        place_ = static_cast<std::size_t>(rarest - bytes.begin());
    }

    [[nodiscard]] bool isIn(const HeaderBytes& head) const {
        const std::string_view text(head.data(), head.size());
        for (auto at = text.find(bytes_[place_], place_); at != text.npos; at = text.find(bytes_[place_], at + 1)) {
            if (text.substr(at - place_).starts_with(bytes_))
                return true;
        }
        return false;
    }

private:
    std::string_view bytes_;
    std::size_t place_ = 0;
};

// `meets` for many heads.
std::function<bool(const HeaderBytes&)> meeting(const CompiledTerm& term, const std::vector<HeaderBytes>& heads) {
    if (term.isAnywhere() && !term.folded().empty())
        return [search = RareByteSearch(term.folded(), heads)](const HeaderBytes& head) { return search.isIn(head); };
    return [&term](const HeaderBytes& head) { return meets(term, head); };
}

std::string kindsText(const std::vector<std::size_t>& met, const std::vector<std::string>& extensions) {
    std::vector<std::pair<std::size_t, std::string>> rows;
    for (std::size_t i = 0; i < met.size(); ++i) {
        if (met[i] > 0)
            rows.emplace_back(met[i], extensions[i]);
    }
    std::ranges::stable_sort(rows, std::greater(), &std::pair<std::size_t, std::string>::first);
    std::string text;
    for (std::size_t i = 0; i < std::min(rows.size(), kMostKindsTold); ++i)
        text += fmt::format("{}{} {}", i == 0 ? "" : ", ", counted(rows[i].first), rows[i].second);
    return rows.size() > kMostKindsTold ? text + ", ..." : text;
}

void countBench(const CompiledTerm& term, const std::string& extension, const BenchHeads& bench, FalseAlarm& alarm) {
    const auto own =
        static_cast<std::size_t>(std::ranges::find(bench.extensions, extension) - bench.extensions.begin());
    std::vector<std::size_t> met(bench.extensions.size());
    const auto isMet = meeting(term, bench.heads);
    for (std::size_t i = 0; i < bench.heads.size(); ++i) {
        const auto& kind = bench.kinds[i];
        if (!kind.good || (!extension.empty() && kind.extension == own))
            continue;
        ++alarm.good;
        if (isMet(bench.heads[i])) {
            ++alarm.hits;
            ++met[kind.extension];
        }
    }
    alarm.kinds = kindsText(met, bench.extensions);
}

void warn(const HeaderTerm& row, const CompiledTerm& term, const std::vector<HeaderTerm>& rows, int ownRow,
          FalseAlarm& alarm) {
    const std::string_view bytes = term.folded();
    if (bytes.empty()) {
        alarm.warnings.emplace_back("Without bytes it fits every file");
        return;
    }
    const bool oneByte = std::ranges::all_of(bytes, [&](char c) { return c == bytes.front(); });
    if (oneByte && bytes.size() > 1)
        alarm.warnings.emplace_back("One byte again and again: fills and empty places look like it");
    else if (bytes.size() < (term.isAnywhere() ? kShortAnywhere : kShortBytes))
        alarm.warnings.emplace_back(term.isAnywhere() ? "Too short to stand anywhere: other files have it by chance"
                                                      : "Too short: other files have it by chance");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<int>(i) == ownRow || !isCoveredBy(term, compiled(rows[i])))
            continue;
        const bool same = rows[i] == row;
        alarm.warnings.push_back((same ? "It is there already: " : "Already covered by ") + toUtf8(rows[i].offset) +
                                 ", " + toUtf8(rows[i].term));
        break;
    }
}

}  // namespace

bool isCoveredBy(const CompiledTerm& term, const CompiledTerm& other) {
    const std::string_view mine = term.folded();
    const std::string_view its = other.folded();
    if (its.empty() || its.size() > mine.size())
        return false;
    if (other.isAnywhere())
        return mine.find(its) != mine.npos;
    const auto myPlace = term.fixedOffset();
    const auto itsPlace = other.fixedOffset();
    return myPlace && itsPlace && *itsPlace >= *myPlace && *itsPlace - *myPlace <= mine.size() - its.size() &&
           mine.substr(*itsPlace - *myPlace, its.size()) == its;
}

FalseAlarm judgeTerm(const HeaderTerm& row, const std::string& extension, const BenchHeads& bench,
                     const std::vector<HeaderBytes>& listed, const std::vector<HeaderTerm>& rows, int ownRow) {
    FalseAlarm alarm;
    if (row.term.bytes.empty())
        return alarm;
    const CompiledTerm term = compiled(row);
    alarm.isTerm = true;
    alarm.length = term.folded().size();
    alarm.listed = listed.size();
    alarm.listedHits =
        static_cast<std::size_t>(std::ranges::count_if(listed, [&](const auto& head) { return meets(term, head); }));
    countBench(term, extension, bench, alarm);
    warn(row, term, rows, ownRow, alarm);
    return alarm;
}

std::string falseAlarmText(const FalseAlarm& alarm) {
    if (!alarm.isTerm)
        return {};
    std::string text;
    for (const auto& warning : alarm.warnings) text += warning + ". ";
    text += alarm.length == 1 ? std::string("1 byte") : counted(alarm.length) + " bytes";
    if (alarm.listed > 0)
        text += fmt::format("; {} of {} listed files", counted(alarm.listedHits), counted(alarm.listed));
    if (alarm.good == 0)
        return text + "; no good files of other extensions are known";
    text += fmt::format("; {} of {} good files of other extensions",
                        alarm.hits == 0 ? std::string("none") : counted(alarm.hits), counted(alarm.good));
    return alarm.kinds.empty() ? text : text + ": " + alarm.kinds;
}

}  // namespace quillon
