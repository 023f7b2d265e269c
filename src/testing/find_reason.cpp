// SPDX-License-Identifier: MIT
#include "testing/find_reason.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "testing/byte_patterns.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr std::size_t kShortestShiftedTerm = 3;  // two bytes stand somewhere in any noise
constexpr std::size_t kShortestCommonTerm = 2;   // shorter ones say nothing, whatever the list grades by them
constexpr std::size_t kMostExtensionsTold = 6;

std::string hexOf(std::string_view bytes) {
    std::string out;
    for (const char c : bytes) out += fmt::format("{:02X}", static_cast<unsigned char>(c));
    return out;
}

// A marker of letters is told as it reads, without the line ends that an imaging tool puts behind it.
std::string patternText(std::string_view pattern) {
    const auto begin = pattern.find_first_not_of("\r\n");
    const auto text = begin == pattern.npos ? std::string_view()
                                            : pattern.substr(begin, pattern.find_last_not_of("\r\n") + 1 - begin);
    const bool printable = text.size() > 1 && std::ranges::all_of(text, [](char c) { return c >= 0x20 && c < 0x7F; });
    return printable ? fmt::format("\"{}\"", text) : hexOf(pattern);
}

std::optional<FoundReason> filled(std::string_view head) {
    const auto pattern = fillPattern(head);
    if (!pattern)
        return std::nullopt;
    if (*pattern == std::string_view("\0", 1))
        return FoundReason{Reason::ZeroFilled, {}};
    return FoundReason{Reason::Fill, patternText(*pattern)};
}

// Positions are counted from 1, as terms have them.
std::optional<FoundReason> zerosInFront(std::string_view head) {
    const auto data = head.find_first_not_of('\0');
    if (data == head.npos || data < kLeastLeadingZeros)
        return std::nullopt;
    return FoundReason{Reason::LeadingZeros, fmt::format("data from position {}", data + 1)};
}

// The place of a term's bytes that is nearest to where they belong.
std::optional<std::ptrdiff_t> shiftOf(std::string_view folded, std::string_view term, std::size_t offset) {
    std::optional<std::ptrdiff_t> nearest;
    for (auto at = folded.find(term); at != folded.npos; at = folded.find(term, at + 1)) {
        const auto shift = static_cast<std::ptrdiff_t>(at) - static_cast<std::ptrdiff_t>(offset);
        if (shift != 0 && (!nearest || std::abs(shift) < std::abs(*nearest)))
            nearest = shift;
    }
    return nearest;
}

// The longest term that is found wins, as it is found by accident least.
std::optional<FoundReason> shifted(std::string_view folded, const std::vector<CompiledTerm>& own) {
    std::size_t longest = 0;
    std::ptrdiff_t shift = 0;
    for (const auto& term : own) {
        const auto bytes = term.folded();
        if (!term.fixedOffset() || bytes.size() <= longest || bytes.size() < kShortestShiftedTerm ||
            bytes.find_first_not_of(bytes.front()) == bytes.npos)
            continue;
        if (const auto found = shiftOf(folded, bytes, *term.fixedOffset())) {
            longest = bytes.size();
            shift = *found;
        }
    }
    if (longest == 0)
        return std::nullopt;
    return FoundReason{Reason::Shifted,
                       fmt::format("its header stands {} bytes too {}", std::abs(shift), shift > 0 ? "late" : "early")};
}

std::optional<FoundReason> commonFormat(const HeaderBytes& folded, const CommonList& common) {
    for (const auto& record : common.records()) {
        const bool named = record.description && record.term.folded().size() >= kShortestCommonTerm;
        if (!named || record.term.match(folded) != MatchResult::Yes)
            continue;
        return FoundReason{Reason::OtherFormat, utf16ToUtf8(*record.description)};
    }
    return std::nullopt;
}

std::optional<FoundReason> knownFormat(const HeaderBytes& folded, const TermIndex& index) {
    const auto match = index.find(folded);
    if (match.length == 0)
        return std::nullopt;
    const auto told = std::min(match.extensions.size(), kMostExtensionsTold);
    const auto begin = match.extensions.begin();
    std::string names = fmt::format("{}", fmt::join(begin, begin + static_cast<std::ptrdiff_t>(told), ", "));
    if (const auto more = match.extensions.size() - told; more > 0)
        names += fmt::format(" and {} more", more);
    return FoundReason{Reason::OtherFormat, "as of " + names};
}

}  // namespace

FoundReason findReason(std::string_view head, const SectorMarkers& markers, const std::vector<CompiledTerm>* own,
                       const CommonList& common, const TermIndex& index) {
    const std::string_view bytes = head.substr(0, kHeaderBytes);
    if (const SectorMarker* marker = markers.find(bytes); marker != nullptr)
        return {Reason::BadSector, marker->name};
    if (auto reason = filled(bytes))
        return *reason;
    if (auto reason = zerosInFront(bytes))
        return *reason;
    HeaderBytes folded;
    folded.fill(' ');
    std::copy(bytes.begin(), bytes.end(), folded.begin());
    foldHeader(folded);
    if (own != nullptr) {
        if (auto reason = shifted({folded.data(), bytes.size()}, *own))
            return *reason;
    }
    if (auto reason = commonFormat(folded, common))
        return *reason;
    if (auto reason = knownFormat(folded, index))
        return *reason;
    if (const auto encoding = textEncoding(bytes))
        return {Reason::Text, std::string(*encoding)};
    return {looksLikeNoise(bytes) ? Reason::Noise : Reason::Structured, {}};
}

}  // namespace quillon
