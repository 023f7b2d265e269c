// SPDX-License-Identifier: MIT
// Fonts: tables with their places.
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

constexpr std::string_view kTables[] = {"BASE", "CBDT", "CFF ", "CFF2", "COLR", "DSIG", "EBDT", "FFTM", "GDEF", "GPOS",
                                        "GSUB", "HVAR", "LTSH", "MATH", "OS/2", "PCLT", "SVG ", "VDMX", "VORG", "avar",
                                        "bdat", "bhed", "cmap", "cvt ", "feat", "fpgm", "fvar", "gasp", "glyf", "gvar",
                                        "hdmx", "head", "hhea", "hmtx", "kern", "loca", "maxp", "meta", "mort", "morx",
                                        "name", "post", "prep", "sbix", "trak", "vhea", "vmtx"};

bool isTable(std::string_view tag) {
    return std::ranges::binary_search(kTables, tag);
}

// The last byte that the tables named from `at` on reach; nothing when they are not those of a font.
Number tablesEnd(Bytes head, std::uint64_t at) {
    const auto count = head.be16(at + 4);
    if (!within(count, 1, 256))
        return std::nullopt;
    std::uint64_t end = 0;
    std::uint64_t known = 0;
    const auto first = at + 12;
    for (auto table = first; table < first + 16 * *count && head.holds(table, 16); table += 16) {
        known += isTable(head.part(table, 4)) ? 1U : 0U;
        end = std::max(end, *plus(head.be32(table + 8), head.be32(table + 12)));
    }
    return known >= 2 ? Number(end) : std::nullopt;
}

}  // namespace

// "OpenType" (Microsoft), "TrueType Reference Manual" (Apple): 4 be16 count of tables, from 12 on entries
// of 16 bytes: tag, be32 sum, be32 place, be32 length.
Opinion fontOpinion(Bytes head, std::uint64_t size) {
    return needs(tablesEnd(head, 0), size, "The table directory");
}

bool isFont(Bytes head) {
    return tablesEnd(head, 0).has_value();
}

// The same: 0 "ttcf", 8 be32 count of fonts, 12 on be32 their places, of which the first ones may stand in the head.
Opinion fontCollectionOpinion(Bytes head, std::uint64_t size) {
    const auto count = head.be32(8).value_or(0);
    std::uint64_t end = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const auto place = head.be32(12 + 4 * i);
        if (!place)
            break;
        end = std::max({end, *plus(place, 12), tablesEnd(head, *place).value_or(0)});
    }
    return needs(end, size, "The list of fonts and their tables");
}

// "WOFF File Format 1.0 and 2.0" (W3C): 0 "wOFF" or "wOF2", 8 be32 length of the file, which must be exact.
Opinion webFontOpinion(Bytes head, std::uint64_t size) {
    if (auto cut = needs(head.be32(8), size, "The header"))
        return cut;
    return endsAt(head.be32(8), size, "The font", 3);
}

// "Embedded OpenType" (W3C submission): 0 le32 length of the file, 4 le32 length of the font, 8 le32 version, 34 "LP".
Opinion embeddedFontOpinion(Bytes head, std::uint64_t size) {
    const auto version = head.le32(8);
    const bool known = version == 0x10000U || version == 0x20001U || version == 0x20002U;
    return known ? needs(head.le32(0), size, "The header") : Opinion();
}

}  // namespace quillon
