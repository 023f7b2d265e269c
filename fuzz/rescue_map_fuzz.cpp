// SPDX-License-Identifier: MIT
// Any bytes as the map of a rescue: it is refused, or its missing areas are in order within its end, and a domain made
// of them is read back as it was meant.
#include "sectors/rescue_map.h"

#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon;
    const auto map = parseRescueMap(fuzz::bytesOf(data, size));
    if (!map)
        return 0;
    std::uint64_t at = 0;
    for (const auto& range : map->missing) {
        fuzz::require(range.begin < range.end && range.end <= map->end, "an area lies on the device");
        fuzz::require(range.begin > at || at == 0, "areas are in order and do not touch");
        at = range.end;
    }
    if (map->end == 0)
        return 0;
    const auto domain = parseRescueMap(domainMap(map->missing, map->end, 1));
    fuzz::require(domain.has_value() && domain->end == map->end, "a domain is a map of the same device");
    fuzz::require(bytesIn(domain->missing) + bytesIn(map->missing) == map->end, "a domain wants what is missing");
    return 0;
}
