// SPDX-License-Identifier: MIT
// The compound file: old office documents, messages, installers.
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

constexpr std::uint64_t kLastSector = 0xFFFFFFFAU;  // above it stand marks

// How many sectors there are at least: up to the highest one that the header names. The count of allocation tables
// tells nothing, as some writers make more of them than they fill.
std::uint64_t sectorsNamed(Bytes head) {
    constexpr std::uint64_t tablesInHeader = 109;
    std::uint64_t sectors = 0;
    const auto name = [&](Number sector) {
        if (sector && *sector < kLastSector)
            sectors = std::max(sectors, *sector + 1);
    };
    name(head.le32(48));
    if (head.le32(64).value_or(0) != 0)
        name(head.le32(60));
    if (head.le32(72).value_or(0) != 0)
        name(head.le32(68));
    const auto tables = std::min(head.le32(44).value_or(0), tablesInHeader);
    for (std::uint64_t i = 0; i < tables; ++i) name(head.le32(76 + 4 * i));
    return sectors;
}

}  // namespace

// "Compound File Binary File Format" (MS-CFB): 28 FE FF, 30 le16 shift of the sector length, 9
// or 12, 44 le32 count of allocation tables, 48 le32 first sector of the directory, 60 and 64 le32
// first sector and count of the small table, 68 and 72 the same of further table lists, 76 on le32 the sectors of the
// first 109 tables. Sector 0 stands behind a header as long as a sector. The last sector may be cut short.
Opinion compoundFileOpinion(Bytes head, std::uint64_t size) {
    const auto shift = head.le16(30);
    if (!head.holds(0, kHeaderBytes))
        return needs(kHeaderBytes, size, "A compound file");
    if (head.le16(28) != 0xFFFEU || (shift != 9U && shift != 12U))
        return inconsistent("The header tells of a byte order or a sector length that no compound file has.");
    const auto sectorBytes = std::uint64_t{1} << *shift;
    const auto end = times(plus(sectorsNamed(head), 1), sectorBytes);
    return needs(end, size, "The allocation table", sectorBytes - 1);
}

}  // namespace quillon
