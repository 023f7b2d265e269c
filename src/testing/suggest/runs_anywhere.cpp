// SPDX-License-Identifier: MIT
#include "testing/suggest/runs_anywhere.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

namespace quillon {

namespace {

// Runs are found by the windows of this length that they are made of.
constexpr std::size_t kWindow = 6;
constexpr std::size_t kWindows = kHeaderBytes - kWindow + 1;
constexpr std::size_t kShortest = 4;  // behind the zeros at its ends
constexpr std::size_t kLongest = 8;
constexpr double kFewestBits = 20;
constexpr std::size_t kMostHeads = 200;
constexpr std::size_t kMostRuns = 6;

using WindowHits = std::array<std::size_t, kWindows>;

std::string_view windowOf(const HeaderBytes& head, std::size_t offset) {
    return {head.data() + offset, kWindow};
}

// How many heads have each window of the pivot.
WindowHits countWindows(const HeaderBytes& pivot, const std::vector<HeaderBytes>& heads) {
    struct Seen {
        std::size_t heads = 0;
        std::size_t last = 0;  // the head that was counted last, from 1
    };
    std::unordered_map<std::string_view, Seen> windows;
    for (std::size_t i = 0; i < kWindows; ++i) windows.try_emplace(windowOf(pivot, i));
    const std::size_t count = std::min(kMostHeads, heads.size());
    for (std::size_t number = 1; number <= count; ++number) {
        const HeaderBytes& head = heads[(number - 1) * heads.size() / count];
        for (std::size_t i = 0; i < kWindows; ++i) {
            const auto found = windows.find(windowOf(head, i));
            if (found == windows.end() || found->second.last == number)
                continue;
            found->second.last = number;
            ++found->second.heads;
        }
    }
    WindowHits hits{};
    for (std::size_t i = 0; i < kWindows; ++i) hits[i] = windows.at(windowOf(pivot, i)).heads;
    return hits;
}

bool isBlank(char c) {
    return c == '\0' || c == ' ';
}

bool isText(char c) {
    return c >= ' ' && c <= '~';
}

// Without blanks at its ends, and not longer than a mark is.
HeadPart trimmed(const HeaderBytes& head, std::size_t begin, std::size_t end) {
    while (begin < end && isBlank(head[begin])) ++begin;
    end = std::min(end, begin + kLongest);
    while (end > begin && isBlank(head[end - 1])) --end;
    return {begin, end - begin};
}

bool saysEnough(const HeaderBytes& head, const HeadPart& part, const TermTrust& trust) {
    const auto* const begin = head.data() + part.offset;
    const auto text = static_cast<std::size_t>(std::count_if(begin, begin + part.length, isText));
    return part.length >= kShortest && 2 * text <= part.length && trust.bits(part.offset, part.length) >= kFewestBits &&
           trust.mayBeTerm(part.offset, part.length);
}

}  // namespace

std::vector<HeadPart> runsAnywhere(const HeaderBytes& pivot, const std::vector<HeaderBytes>& heads,
                                   const TermTrust& trust) {
    const WindowHits hits = countWindows(pivot, heads);
    std::vector<std::pair<std::size_t, HeadPart>> runs;
    for (std::size_t begin = 0; begin < kWindows;) {
        std::size_t end = begin + 1;
        while (end < kWindows && hits[end] == hits[begin]) ++end;
        const HeadPart part = trimmed(pivot, begin, end + kWindow - 1);
        if (hits[begin] >= 2 && saysEnough(pivot, part, trust))
            runs.emplace_back(hits[begin], part);
        begin = end;
    }
    std::ranges::stable_sort(runs, std::ranges::greater(), [](const auto& run) { return run.first; });
    std::vector<HeadPart> parts;
    for (std::size_t i = 0; i < std::min(runs.size(), kMostRuns); ++i) parts.push_back(runs[i].second);
    return parts;
}

}  // namespace quillon
