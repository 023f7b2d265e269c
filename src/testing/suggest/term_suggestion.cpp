// SPDX-License-Identifier: MIT
#include "testing/suggest/term_suggestion.h"

#include <algorithm>
#include <map>
#include <utility>

#include <fmt/format.h>

#include "testing/suggest/candidates.h"
#include "testing/suggest/term_words.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr std::size_t kMostSearched = 2000;  // listed files that terms are looked for in; all are counted
constexpr std::size_t kMostOthersSearched = 20'000;
constexpr std::size_t kMostKindsTold = 3;
// How likely a second mark of the same files is there where the first one fails: a word that may stand anywhere, as
// other writers put it elsewhere; less so another run at a fixed place.
constexpr double kElsewhere = 0.8;
constexpr double kBeside = 0.4;

// What the terms chosen so far make of each listed file: the chance that one of them accepts another file of its kind.
class Cover {
public:
    explicit Cover(const std::vector<HeaderBytes>& heads) : heads_(heads), covered_(heads.size(), 0) {}

    /// What the candidate adds, as a share of the files.
    [[nodiscard]] double gain(const Candidate& candidate, const std::vector<Candidate>& chosen) const {
        const bool fallsBack = std::ranges::any_of(chosen, [&](const auto& one) { return overlap(one, candidate); });
        const CompiledTerm term = candidate.compiled();
        const double again = candidate.position == 0 ? kElsewhere : kBeside;
        double sum = 0;
        for (std::size_t i = 0; i < heads_.size(); ++i) {
            if (term.match(heads_[i]) != MatchResult::Yes)
                continue;
            if (fallsBack)
                sum += std::max(0.0, candidate.kept - covered_[i]);
            else
                sum += (1 - covered_[i]) * candidate.kept * (covered_[i] > 0 ? again : 1);
        }
        return sum / static_cast<double>(heads_.size());
    }
    void take(const Candidate& candidate) {
        const CompiledTerm term = candidate.compiled();
        for (std::size_t i = 0; i < heads_.size(); ++i) {
            if (term.match(heads_[i]) == MatchResult::Yes)
                covered_[i] = std::max(covered_[i], candidate.kept);
        }
    }
    /// Files that no term holds yet, at most so many, spread evenly.
    [[nodiscard]] std::vector<std::size_t> open(std::size_t most) const {
        std::vector<std::size_t> all;
        for (std::size_t i = 0; i < covered_.size(); ++i) {
            if (covered_[i] == 0)
                all.push_back(i);
        }
        std::vector<std::size_t> some;
        for (std::size_t i = 0; i < std::min(most, all.size()); ++i)
            some.push_back(all[i * all.size() / std::min(most, all.size())]);
        return some;
    }

private:
    [[nodiscard]] static bool overlap(const Candidate& a, const Candidate& b) {
        return a.position != 0 && b.position != 0 && a.position < b.position + b.bytes.size() &&
               b.position < a.position + a.bytes.size();
    }

    const std::vector<HeaderBytes>& heads_;
    std::vector<double> covered_;
};

void add(std::vector<Candidate>& pool, std::vector<Candidate> more) {
    for (auto& one : more) {
        const bool known = std::ranges::any_of(
            pool, [&](const auto& other) { return other.position == one.position && other.bytes == one.bytes; });
        if (!known)
            pool.push_back(std::move(one));
    }
}

std::vector<Candidate> choose(const CandidateHeads& heads) {
    Cover cover(heads.listed);
    std::vector<Candidate> pool;
    std::vector<Candidate> chosen;
    std::size_t pivots = 4;
    while (chosen.size() < kMostSuggestions) {
        if (!cover.open(1).empty() && pivots > 0) {
            for (const std::size_t pivot : cover.open(pivots)) add(pool, candidatesOf(heads, pivot));
            pivots /= 2;
        }
        double best = 0;
        const Candidate* found = nullptr;
        for (const Candidate& one : pool) {
            const double price = chosen.empty() ? falsePrice(one.falseShare) : laterFalsePrice(one.falseShare);
            const double worth = cover.gain(one, chosen) - price;
            if (found == nullptr || worth > best) {
                best = worth;
                found = &one;
            }
        }
        if (found == nullptr || best <= 0)
            break;
        chosen.push_back(*found);
        cover.take(chosen.back());
        std::erase_if(pool, [&](const auto& one) {
            return one.position == chosen.back().position && one.bytes == chosen.back().bytes;
        });
    }
    return chosen;
}

std::size_t countMatches(const CompiledTerm& term, const std::vector<HeaderBytes>& folded) {
    return static_cast<std::size_t>(
        std::ranges::count_if(folded, [&](const auto& head) { return term.match(head) == MatchResult::Yes; }));
}

// The kinds of the other files that the term meets, most frequent first: "3 docx, 1 xlsx".
std::string kindsMet(const CompiledTerm& term, const SuggestionHeads& heads) {
    std::map<std::uint32_t, std::size_t> met;
    for (std::size_t i = 0; i < heads.otherExtensions.size(); ++i) {
        if (term.match(heads.others[i]) == MatchResult::Yes)
            ++met[heads.otherExtensions[i]];
    }
    std::vector<std::pair<std::uint32_t, std::size_t>> rows(met.begin(), met.end());
    std::ranges::stable_sort(rows, std::ranges::greater(), [](const auto& row) { return row.second; });
    std::string text;
    for (std::size_t i = 0; i < std::min(rows.size(), kMostKindsTold); ++i)
        text += fmt::format("{}{} {}", i == 0 ? ": " : ", ", rows[i].second, heads.extensions[rows[i].first]);
    return rows.size() > kMostKindsTold ? text + ", ..." : text;
}

std::string sentenceOf(const TermSuggestion& one, const std::string& kinds) {
    std::string text = one.hits == one.listed ? fmt::format("all {} files", one.listed)
                                              : fmt::format("{} of {} files", one.hits, one.listed);
    if (one.good > 0)
        text += fmt::format(", {} of {} good ones", one.goodHits, one.good);
    if (one.others == 0)
        return text + "; no others to compare with";
    if (one.falseHits == 0)
        return text + fmt::format("; none of {} others", one.others);
    return text + fmt::format("; also {} of {} others{}", one.falseHits, one.others, kinds);
}

// Nothing that a line of a term file, its fields or its editors would take for something else.
bool keptAsText(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) { return c >= ' ' && c <= '~' && c != ',' && c != '"'; }) &&
           bytes.front() != ' ' && bytes.back() != ' ';
}

std::string hexDigits(std::string_view bytes) {
    std::string digits;
    for (const char c : bytes) digits += fmt::format("{:02X}", static_cast<unsigned char>(c));
    return digits;
}

TermSuggestion told(const Candidate& candidate, const SuggestionHeads& heads) {
    const CompiledTerm term = candidate.compiled();
    TermSuggestion one;
    one.position = candidate.position;
    auto words = termWords(candidate.bytes);
    one.type = words.type;
    one.term = std::move(words.term);
    one.hits = countMatches(term, heads.listed);
    one.listed = heads.listed.size();
    one.falseHits = countMatches(term, heads.others);
    one.others = heads.others.size();
    one.goodHits = countMatches(term, heads.good);
    one.good = heads.good.size();
    one.sentence = sentenceOf(one, one.falseHits > 0 ? kindsMet(term, heads) : std::string());
    return one;
}

// At most so many, spread evenly.
template <typename T>
std::vector<T> some(const std::vector<T>& all, std::size_t most) {
    std::vector<T> chosen;
    const std::size_t count = std::min(most, all.size());
    for (std::size_t i = 0; i < count; ++i) chosen.push_back(all[i * all.size() / count]);
    return chosen;
}

}  // namespace

TermWords termWords(std::string_view bytes) {
    if (keptAsText(bytes))
        return {'T', std::string(bytes)};
    return {'H', hexDigits(bytes)};
}

std::vector<TermSuggestion> suggestTerms(SuggestionHeads heads) {
    CandidateHeads searched;
    searched.raw = some(heads.listed, kMostSearched);
    for (auto* part : {&heads.listed, &heads.good, &heads.others}) std::ranges::for_each(*part, foldHeader);
    searched.listed = some(heads.listed, kMostSearched);
    searched.others = some(heads.others, kMostOthersSearched);
    searched.extension = heads.extension;
    std::vector<TermSuggestion> suggestions;
    for (const Candidate& candidate : choose(searched)) suggestions.push_back(told(candidate, heads));
    return suggestions;
}

}  // namespace quillon
