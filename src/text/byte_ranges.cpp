// SPDX-License-Identifier: MIT
#include "text/byte_ranges.h"

#include <algorithm>

#include <fmt/format.h>

namespace quillon {

void append(ByteRanges& ranges, ByteRange range) {
    if (range.begin >= range.end)
        return;
    if (!ranges.empty() && range.begin <= ranges.back().end)
        ranges.back().end = std::max(ranges.back().end, range.end);
    else
        ranges.push_back(range);
}

void putInOrder(ByteRanges& ranges) {
    std::ranges::sort(ranges, {}, &ByteRange::begin);
    ByteRanges joined;
    for (const auto& range : ranges) append(joined, range);
    ranges = std::move(joined);
}

std::uint64_t bytesIn(const ByteRanges& ranges) {
    std::uint64_t sum = 0;
    for (const auto& range : ranges) sum += range.bytes();
    return sum;
}

ByteRanges partsIn(const ByteRanges& ranges, ByteRange range) {
    ByteRanges parts;
    auto at = std::ranges::upper_bound(ranges, range.begin, {}, &ByteRange::end);
    for (; at != ranges.end() && at->begin < range.end; ++at)
        append(parts, {std::max(at->begin, range.begin), std::min(at->end, range.end)});
    return parts;
}

std::string rangesText(const ByteRanges& ranges, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < std::min(ranges.size(), most); ++i)
        text += fmt::format("{}{}+{}", i == 0 ? "" : ",", ranges[i].begin, ranges[i].bytes());
    return ranges.size() > most ? text + ",..." : text;
}

}  // namespace quillon
