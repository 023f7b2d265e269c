// SPDX-License-Identifier: MIT
#include "testing/suggest/candidates.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "testing/suggest/runs_anywhere.h"
#include "testing/suggest/shared_runs.h"
#include "testing/suggest/term_trust.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr std::size_t kMostCandidates = 60;  // of one head
constexpr std::size_t kShortestRun = 2;
constexpr std::size_t kShortestWord = 4;
constexpr std::size_t kMostWords = 12;
// What is not known of other files counts like so many of them.
constexpr double kImagined = 40;
constexpr double kAnywhereKept = 0.8;
constexpr double kElementKept = 0.9;
constexpr double kBytesKept = 0.45;
// A word that is the extension, too: the format names itself, and one file is enough to believe it.
constexpr double kDoubtOfName = 0.6;
constexpr std::size_t kShortestName = 3;
constexpr double kAlone = 0.5;
constexpr double kLeastWorth = 0.01;
constexpr double kDearest = 0.22;
constexpr double kMostlyDear = 0.03;

double falseShare(std::size_t hits, std::size_t others, double shared) {
    return (static_cast<double>(hits) + kImagined * shared) / (static_cast<double>(others) + kImagined);
}

// Few files prove less: of one alone every byte may be an accident.
double support(std::size_t hits, std::size_t listed) {
    const auto share = static_cast<double>(hits) / static_cast<double>(listed);
    return hits == 1 && listed > 1 ? share * kAlone : share;
}

void keepBest(std::vector<Candidate>& found) {
    std::ranges::stable_sort(found, std::ranges::greater(), &Candidate::worth);
    if (found.size() > kMostCandidates)
        found.resize(kMostCandidates);
}

bool contains(const HeaderBytes& head, const std::string& bytes) {
    return std::string_view(head.data(), head.size()).find(bytes) != std::string_view::npos;
}

std::size_t countAnywhere(const std::vector<HeaderBytes>& heads, const std::string& bytes) {
    return static_cast<std::size_t>(
        std::ranges::count_if(heads, [&](const HeaderBytes& head) { return contains(head, bytes); }));
}

void addFixed(const CandidateHeads& heads, std::size_t pivot, const TermTrust& trust, std::vector<Candidate>& found) {
    const SharedRuns own(heads.listed[pivot], heads.listed);
    const SharedRuns foreign(heads.listed[pivot], heads.others);
    for (std::size_t offset = 0; offset + kShortestRun <= kHeaderBytes; ++offset) {
        // What one file alone has is a mark at the start, if anywhere.
        const std::size_t fewest = offset == 0 ? 1 : std::min<std::size_t>(2, heads.listed.size());
        const std::size_t longest = std::min(kLongestRun, kHeaderBytes - offset);
        for (std::size_t length = kShortestRun; length <= longest; ++length) {
            const std::size_t hits = own.count(offset, length);
            if (hits < fewest)
                break;
            if (!trust.mayBeTerm(offset, length))
                continue;
            const double share =
                falseShare(foreign.count(offset, length), heads.others.size(), trust.shared(offset, length));
            const double kept = trust.kept(offset, length, hits);
            const double worth = support(hits, heads.listed.size()) * kept - falsePrice(share);
            if (worth > kLeastWorth)
                found.push_back(
                    {offset + 1, std::string(heads.raw[pivot].data() + offset, length), kept, share, worth});
        }
    }
    keepBest(found);
}

// A word with the sign ahead of it, as in "<svg".
std::vector<HeadPart> wordsOf(const HeaderBytes& head, const TermTrust& trust) {
    std::vector<HeadPart> words;
    for (std::size_t start = 0; start < kHeaderBytes; ++start) {
        if (!trust.isWord(start))
            continue;
        std::size_t end = start;
        while (end < kHeaderBytes && trust.isWord(end)) ++end;
        const std::size_t begin = start > 0 && head[start - 1] == '<' ? start - 1 : start;
        if (end - begin >= kShortestWord)
            words.push_back({begin, std::min(end - begin, kLongestRun)});
        start = end;
    }
    return words;
}

// What a part of a head is worth as a term for any place, other files not looked at; none where too few have it.
std::optional<Candidate> anywhere(const CandidateHeads& heads, std::size_t pivot, const HeadPart& part, double kept) {
    Candidate one{0, std::string(heads.raw[pivot].data() + part.offset, part.length)};
    const std::string folded(heads.listed[pivot].data() + part.offset, part.length);
    const bool named = heads.extension.size() >= kShortestName && folded.find(heads.extension) != std::string::npos;
    const std::size_t hits = countAnywhere(heads.listed, folded);
    if (hits < 2 && !named)
        return std::nullopt;
    one.kept = kept * std::exp(-static_cast<double>(part.offset) / 1000);
    one.worth = support(hits, heads.listed.size()) * one.kept;
    if (named) {
        one.kept = 1 - (1 - one.kept) * kDoubtOfName;
        one.worth = static_cast<double>(hits) / static_cast<double>(heads.listed.size()) * one.kept;
    }
    return one;
}

void addAnywhere(const CandidateHeads& heads, std::size_t pivot, const TermTrust& trust,
                 std::vector<Candidate>& found) {
    std::vector<Candidate> parts;
    std::string seen;
    const auto look = [&](const HeadPart& part, double kept) {
        const std::string folded(heads.listed[pivot].data() + part.offset, part.length);
        if (seen.find("\n" + folded + "\n") != std::string::npos || !trust.mayBeTerm(part.offset, part.length))
            return;
        seen += "\n" + folded + "\n";
        if (auto one = anywhere(heads, pivot, part, kept)) {
            one->falseShare = trust.sharedAnywhere(part.offset, part.length);
            parts.push_back(std::move(*one));
        }
    };
    for (const HeadPart& part : wordsOf(heads.raw[pivot], trust))
        look(part, heads.raw[pivot][part.offset] == '<' ? kElementKept : kAnywhereKept);
    std::ranges::stable_sort(parts, std::ranges::greater(), &Candidate::worth);
    parts.resize(std::min(parts.size(), kMostWords));
    for (const HeadPart& part : runsAnywhere(heads.listed[pivot], heads.listed, trust)) look(part, kBytesKept);
    for (auto& one : parts) {
        std::string folded = one.bytes;
        lowerPageInPlace(folded);
        one.falseShare = falseShare(countAnywhere(heads.others, folded), heads.others.size(), one.falseShare);
        one.worth -= falsePrice(one.falseShare);
        found.push_back(std::move(one));
    }
}

}  // namespace

CompiledTerm Candidate::compiled() const {
    return CompiledTerm::fromParts(static_cast<double>(position), bytes, false);
}

// Kinds that share a container are met as a whole: beyond some per cent more of them say nothing new.
double falsePrice(double share) {
    return kDearest * (1 - std::exp(-share / kMostlyDear));
}

double laterFalsePrice(double share) {
    constexpr double kWeight = 1.5;
    return kWeight * share;
}

std::vector<Candidate> candidatesOf(const CandidateHeads& heads, std::size_t pivot) {
    const TermTrust trust(heads.raw[pivot]);
    std::vector<Candidate> found;
    addFixed(heads, pivot, trust, found);
    addAnywhere(heads, pivot, trust, found);
    keepBest(found);
    return found;
}

}  // namespace quillon
