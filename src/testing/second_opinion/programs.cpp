// SPDX-License-Identifier: MIT
// Programs and libraries.
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

// ELF's fields of a machine word begin at these places, for 32 and 64 bits.
struct ElfLayout {
    std::uint64_t word, programsPlace, sectionsPlace, counts;
    std::uint64_t segmentOffset, segmentLength;
};
constexpr ElfLayout kElf32{4, 28, 32, 42, 4, 16};
constexpr ElfLayout kElf64{8, 32, 40, 54, 8, 32};

Number segmentsEnd(Bytes head, const ElfLayout& layout, Order order) {
    const auto at = head.number(layout.programsPlace, layout.word, order);
    const auto each = head.number(layout.counts, 2, order);
    const auto count = head.number(layout.counts + 2, 2, order);
    if (!at || !each || !count)
        return std::nullopt;
    auto end = *plus(at, times(each, count));
    for (std::uint64_t i = 0; i < *count && *each >= 32; ++i) {
        const auto entry = *plus(at, i * *each);
        const auto segment = plus(head.number(*plus(entry, layout.segmentOffset), layout.word, order),
                                  head.number(*plus(entry, layout.segmentLength), layout.word, order));
        if (!segment)
            break;
        end = std::max(end, *segment);
    }
    return end;
}

// Behind the table of segments; 0 where there is none, or where its count stands elsewhere.
std::uint64_t segmentTableEnd(Bytes head, const ElfLayout& layout, Order order) {
    constexpr std::uint64_t countElsewhere = 0xFFFF;
    const auto count = head.number(layout.counts + 2, 2, order).value_or(0);
    if (count == 0 || count == countElsewhere)
        return 0;
    return plus(head.number(layout.programsPlace, layout.word, order),
                times(head.number(layout.counts, 2, order), count))
        .value_or(0);
}

// The last byte of the file that the load commands in the head name.
std::uint64_t commandsEnd(Bytes head, Order order, bool wide, std::uint64_t header) {
    const auto count = head.number(16, 4, order).value_or(0);
    auto end = *plus(header, head.number(20, 4, order).value_or(0));
    std::uint64_t at = header;
    for (std::uint64_t i = 0; i < count; ++i) {
        const auto command = head.number(at, 4, order);
        const auto length = head.number(at + 4, 4, order);
        if (!command || !length || *length < 8)
            break;
        if (wide && *command == 0x19)
            end = std::max(end, plus(head.number(at + 40, 8, order), head.number(at + 48, 8, order)).value_or(0));
        if (!wide && *command == 1)
            end = std::max(end, plus(head.number(at + 32, 4, order), head.number(at + 36, 4, order)).value_or(0));
        at += *length;
    }
    return end;
}

}  // namespace

// "PE Format" (Microsoft): 60 le32 place of "PE\0\0", behind it 2 le16 count of sections, 16 le16 length of the
// optional header, 20 optional header (2 bytes 10B or 20B; entry 4 of its directories, at 128 or 144, le32 place and
// length of the certificates). Sections of 40 bytes: 16 le32 length and 20 le32 place in the file. The last one may not
// be filled up.
Opinion windowsProgramOpinion(Bytes head, std::uint64_t size) {
    const auto place = head.le32(60);
    if (!within(place, 64, kHeaderBytes) || !head.has(*place, "PE\0\0"sv))
        return {};
    const auto coff = *place + 4;
    const auto sections = head.le16(coff + 2);
    const auto optional = coff + 20;
    const auto first = plus(optional, head.le16(coff + 16));
    if (!sections || !first)
        return {};
    const bool wide = head.le16(optional) == 0x20BU;
    const auto certificates = optional + (wide ? 144U : 128U);
    const auto last = *plus(first, times(sections, 40));
    if (auto cut = needs(last, size, "The table of sections"))
        return cut;
    if (certificates + 8 <= *first && head.le32(certificates) != 0U) {
        if (auto cut = needs(plus(head.le32(certificates), head.le32(certificates + 4)), size, "The signature"))
            return cut;
    }
    std::uint64_t end = 0;
    for (auto section = *first; section < last && head.holds(section, 40); section += 40) {
        if (*head.le32(section + 20) != 0)
            end = std::max(end, *plus(head.le32(section + 16), head.le32(section + 20)));
    }
    constexpr std::uint64_t alignment = 4096;
    return needs(end, size, "The table of sections", alignment);
}

// "Tool Interface Standard: ELF" and the System V ABI: 4 class (1: 32 bits, 2: 64), 5 order (1: le, 2: be); with 32
// (64) bits: 28 (32) place of the segments, 32 (40) place of the sections, 42 (54) 16-bit length and count of each.
// Both tables mostly stand at the end; where there are no sections, the segments tell: 4 (8) place, 16 (32) length in
// the file. Of a file for debuggers alone they tell what the program has.
Opinion elfOpinion(Bytes head, std::uint64_t size) {
    const auto bits = head.u8(4);
    const auto coded = head.u8(5);
    if (!within(bits, 1, 2) || !within(coded, 1, 2))
        return {};
    const auto& layout = *bits == 1 ? kElf32 : kElf64;
    const auto order = *coded == 1 ? Order::Little : Order::Big;
    const auto sections = head.number(layout.sectionsPlace, layout.word, order);
    const auto each = head.number(layout.counts + 4, 2, order);
    const auto count = head.number(layout.counts + 6, 2, order);
    if (!sections || !each || !count)
        return needs(layout.counts + 10, size, "A program");
    if (*sections != 0) {
        const auto end = plus(sections, times(each, std::max<std::uint64_t>(*count, 1)));
        const auto segments = segmentTableEnd(head, layout, order);
        if (segments > end.value_or(kLargestSize))
            return needs(segments, size, "The table of segments");
        return needs(end, size, "The table of sections");
    }
    return needs(segmentsEnd(head, layout, order), size, "The table of segments");
}

// "OS X ABI Mach-O File Format Reference" (Apple): 0 FEEDFACE (32 bits) or FEEDFACF in either order, 12 kind, 16 count
// and 20 length of the load commands; command 1 (19 hexadecimal): a segment, 32 (40) place, 36 (48) length. Files of
// kind 9 and 10, stubs and debug symbols, name segments of another file.
Opinion machOpinion(Bytes head, std::uint64_t size) {
    const auto order = head.has(0, "\xFE") ? Order::Big : Order::Little;
    const bool wide = head.number(0, 4, order) == 0xFEEDFACFU;
    const auto kind = head.number(12, 4, order);
    if (!within(kind, 1, 8) && kind != 11U)
        return {};
    return needs(commandsEnd(head, order, wide, wide ? 32 : 28), size, "The load commands");
}

// The same: 0 CAFEBABE, 4 be32 count of programs below 40, 20 bytes each: 8 be32 place, 12 be32 length. A Java class
// ("Java Virtual Machine") begins alike, with a version from 45 on there, and 8 be16 count of constants,
// at least 1.
Opinion fatProgramOpinion(Bytes head, std::uint64_t size) {
    const auto count = head.be32(4);
    if (!count)
        return {};
    constexpr std::uint64_t classVersion = 45;
    if ((*count & 0xFFFFU) >= classVersion)
        return head.be16(8) == 0U ? inconsistent("The class has no constants.") : Opinion();
    std::uint64_t end = 0;
    for (std::uint64_t at = 8; at < 8 + 20 * *count && head.holds(at, 20); at += 20)
        end = std::max(end, *plus(head.be32(at + 8), head.be32(at + 12)));
    return *count < 40 ? needs(end, size, "The table of programs") : Opinion();
}

// "Dalvik Executable Format": 32 le32 length of the file.
Opinion dexOpinion(Bytes head, std::uint64_t size) {
    return needs(head.le32(32), size, "The header");
}

// "SWF File Format" (Adobe): 0 "FWS", 3 version, 4 le32 length of the file; the packed forms tell the
// plain one.
Opinion flashOpinion(Bytes head, std::uint64_t size) {
    return within(head.u8(3), 1, 60) ? needs(head.le32(4), size, "The header") : Opinion();
}

}  // namespace quillon
