// SPDX-License-Identifier: MIT
#pragma once

// Ranges of bytes: of a file, of a device.

#include <cstdint>
#include <string>
#include <vector>

namespace quillon {

/// From `begin` on, without `end`.
struct ByteRange {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    [[nodiscard]] std::uint64_t bytes() const { return end - begin; }

    friend bool operator==(const ByteRange&, const ByteRange&) = default;
};

/// In order, each behind the one before, none of them empty. Whoever adds out of order calls `putInOrder`.
using ByteRanges = std::vector<ByteRange>;

/// Adds a range that begins at or behind the beginning of the last one; what overlaps or touches becomes one. An empty
/// range adds nothing.
void append(ByteRanges& ranges, ByteRange range);

/// Sorts, and makes one range of those that overlap or touch.
void putInOrder(ByteRanges& ranges);

[[nodiscard]] std::uint64_t bytesIn(const ByteRanges& ranges);

/// What of `range` lies in `ranges`.
[[nodiscard]] ByteRanges partsIn(const ByteRanges& ranges, ByteRange range);

/// "0+512,8192+1024": beginning and length of each, decimal. At most `most` of them; ",..." stands for the others.
[[nodiscard]] std::string rangesText(const ByteRanges& ranges, std::size_t most);

}  // namespace quillon
