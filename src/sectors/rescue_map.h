// SPDX-License-Identifier: MIT
#pragma once

// The map that ddrescue keeps of a device: which areas it has read, and which not. docs/formats/rescue-map.md.

#include <string>
#include <string_view>

#include "platform/file.h"
#include "platform/result.h"
#include "text/byte_ranges.h"

namespace quillon {

struct RescueMap {
    ByteRanges missing;     ///< not tried, not trimmed, not scraped, or bad
    std::uint64_t end = 0;  ///< of the device, as far as the map knows
};

/// What no line speaks of ahead of the last area counts as not tried. InvalidArgument: it is no map; the text names the
/// line.
[[nodiscard]] Result<RescueMap> parseRescueMap(std::string_view text);

/// The same of a file of up to 2 GiB.
[[nodiscard]] Result<RescueMap> readRescueMap(const NativePath& file);

/// A map that calls `wanted` finished and the rest of a device of `end` bytes not tried, as ddrescue takes it for its
/// domain. Ranges are rounded out to whole sectors, and no longer than the device.
[[nodiscard]] std::string domainMap(const ByteRanges& wanted, std::uint64_t end, std::uint64_t sectorBytes);

}  // namespace quillon
