// SPDX-License-Identifier: MIT
// Databases: files of pages or of records.
#include <bit>

#include "testing/second_opinion/formats.h"

namespace quillon {

// "Database File Format" (sqlite.org): 16 be16 page length (1 means 65536), 24 be32 change counter, 28 be32 count of
// pages, good when 92 be32 equals the counter.
Opinion sqliteOpinion(Bytes head, std::uint64_t size) {
    const auto field = head.be16(16);
    if (!field)
        return {};
    const auto page = *field == 1 ? 65536 : *field;
    if (page < 512 || !std::has_single_bit(page))
        return inconsistent("The header tells of a page length that no database has.");
    const auto pages = head.be32(28);
    const bool isTrue = head.be32(24) && head.be32(24) == head.be32(92) && pages != 0U;
    if (auto cut = isTrue ? needs(times(pages, page), size, "The header") : Opinion())
        return cut;
    return wholeUnits(page, size, "The database");
}

// "Jet" (J. Metz, mdbtools): 4 "Standard Jet DB", "Standard ACE DB" or "MSISAM Database", 20 version: 0 has pages
// of 2048 bytes, later ones of 4096.
Opinion accessOpinion(Bytes head, std::uint64_t size) {
    const auto version = head.u8(20);
    if (!within(version, 0, 16))
        return {};
    return wholeUnits(*version == 0 ? 2048 : 4096, size, "The database");
}

// "dBASE" table files: 1 to 3 year, month and day, 4 le32 count of records, 8 le16 length of the header, 10 le16 length
// of a record, 12 le16 0, 32 first field: name of 11 bytes, kind. The end mark (1A) may be missing.
Opinion dbaseOpinion(Bytes head, std::uint64_t size) {
    return needs(plus(head.le16(8), times(head.le32(4), head.le16(10))), size, "The header");
}

bool isDbaseTable(Bytes head) {
    constexpr std::string_view kinds = "CDFLMNGPBTIY@+OVQW0";
    constexpr auto isName = [](char c) { return c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    const auto kind = head.part(43, 1);
    const auto name = head.part(32, 11);
    return within(head.u8(2), 1, 12) && within(head.u8(3), 1, 31) && head.le16(12) == 0U &&
           within(head.le16(8), 65, 0xFFFF) && within(head.le16(10), 2, 0xFFFF) && !kind.empty() &&
           kinds.find(kind) != kinds.npos && isName(name.front()) && name.find('\0') != name.npos;
}

// "Extensible Storage Engine" (J. Metz): 4 le32 89ABCDEF, 236 le32 page length.
Opinion extensibleStorageOpinion(Bytes head, std::uint64_t size) {
    const auto page = head.le32(236);
    return within(page, 2048, 32768) && std::has_single_bit(*page) ? wholeUnits(*page, size, "The database")
                                                                   : Opinion();
}

// "ESRI Shapefile Technical Description": 0 be32 9994, 24 be32 length of the file in words of two bytes, 28 le32 1000.
Opinion shapeOpinion(Bytes head, std::uint64_t size) {
    return head.le32(28) == 1000U ? needs(times(head.be32(24), 2), size, "The header") : Opinion();
}

}  // namespace quillon
