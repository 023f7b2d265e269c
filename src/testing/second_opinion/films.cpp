// SPDX-License-Identifier: MIT
// Films other than those of boxes and chunks.
#include <bit>
#include <cmath>

#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

// A number of variable length: as many bytes as its first byte has leading zeros, and one.
struct Variable {
    std::uint64_t width = 0;
    Number value;  // without its length mark; nothing for all ones: unknown
};

std::optional<Variable> variableAt(Bytes head, std::uint64_t at) {
    const auto first = head.u8(at);
    if (!first || *first == 0)
        return std::nullopt;
    const auto width = static_cast<std::uint64_t>(std::countl_zero(static_cast<std::uint8_t>(*first))) + 1;
    const auto whole = head.number(at, width, Order::Big);
    if (!whole)
        return std::nullopt;
    const auto mark = std::uint64_t{1} << (7 * width);
    return Variable{width, (*whole & (mark - 1)) == mark - 1 ? Number() : Number(*whole & (mark - 1))};
}

// A double of eight bytes that is a size; nothing for what is none.
Number sizeOfDouble(Number bits) {
    if (!bits)
        return std::nullopt;
    const auto value = std::bit_cast<double>(*bits);
    return value >= 1 && value < 1e15 ? Number(static_cast<std::uint64_t>(value)) : std::nullopt;
}

}  // namespace

// RFC 8794 and RFC 9559: 0 1A45DFA3, 4 variable length of the EBML header; behind it, perhaps after a Void (EC),
// 18538067, the segment, and its variable length, all ones for a live stream.
Opinion matroskaOpinion(Bytes head, std::uint64_t size) {
    auto header = variableAt(head, 4);
    std::uint64_t at = 4;
    while (header && header->value) {
        at = *plus(at, header->width, header->value);
        if (head.has(at, "\x18\x53\x80\x67")) {
            const auto segment = variableAt(head, at + 4);
            if (!segment || !segment->value || *segment->value == 0)
                return {};
            return needs(plus(at, 4, segment->width, segment->value), size, "The segment");
        }
        if (!head.has(at, "\xEC"))
            return needs(at, size, "The header");
        header = variableAt(head, ++at);
    }
    return {};
}

// "Advanced Systems Format" (Microsoft): 16 le64 length of the header, from 30 on objects: identifier of 16 bytes, 16
// le64 length. Behind the header 50 bytes and the packets. The file properties have 40 le64 length of the file, 56 le64
// count of packets, 88 le32 flags (1: a broadcast, whose numbers mean nothing), 92 and 96 le32 smallest and largest
// packet. Tools that change the tags leave the length of the file alone, so the smaller one of the two accounts is
// sure.
Opinion asfOpinion(Bytes head, std::uint64_t size) {
    constexpr auto properties = "\xA1\xDC\xAB\x8C\x47\xA9\xCF\x11\x8E\xE4\x00\xC0\x0C\x20\x53\x65"sv;
    const auto header = plus(head.le64(16), 50);
    std::uint64_t at = 30;
    while (!head.has(at, properties)) {
        const auto length = head.le64(at + 16);
        if (!length || *length < 24)
            return needs(header, size, "The header");
        at = *plus(at, length);
    }
    const auto flags = head.le32(at + 88);
    const auto told = head.le64(at + 40);
    const auto packets = plus(header, times(head.le64(at + 56), head.le32(at + 92)));
    if (!flags || (*flags & 1U) != 0 || !told || *told == 0 || !packets || head.le32(at + 92) != head.le32(at + 96))
        return needs(header, size, "The header");
    return needs(std::min(*told, *packets), size, "The file properties");
}

// "Video File Format" (Adobe): 5 be32 length of the header; then be32 length of the tag before, tag: 0
// kind, 1 be24 length, 11 data, be32 its length. The first tag may tell "filesize" as a double (kind 0) behind its
// name.
Opinion flashVideoOpinion(Bytes head, std::uint64_t size) {
    const auto header = head.be32(5);
    if (!within(header, 9, 64))
        return {};
    const auto tag = *header + 4;
    if (auto cut = needs(plus(tag, head.be24(tag + 1).value_or(0), 11), size, "The first tag"))
        return cut;
    constexpr auto key =
        "\0\x08"
        "filesize\0"sv;
    const auto place = head.part(0, kHeaderBytes).find(key);
    constexpr std::uint64_t slack = 4096;  // what tools that add their own tag forget
    return place == std::string_view::npos
               ? Opinion()
               : needs(sizeOfDouble(head.be64(place + key.size())), size, "The film's own description", slack);
}

// ISO/IEC 13818-1: packets of 188 bytes that begin with 47.
Opinion transportStreamOpinion(Bytes, std::uint64_t size) {
    return wholeUnits(188, size, "The stream");
}

bool isTransportStream(Bytes head) {
    return head.has(0, "G") && head.has(188, "G") && head.has(376, "G");
}

// "AVCHD", "Blu-ray Disc": each packet behind four bytes of time, 192 together.
Opinion timedStreamOpinion(Bytes, std::uint64_t size) {
    return wholeUnits(192, size, "The stream");
}

bool isTimedStream(Bytes head) {
    return head.has(4, "G") && head.has(196, "G") && head.has(388, "G");
}

// "DVD for Read-Only Disc", part 3: packs of 2048 bytes; the first one of a title navigates: 0 000001BA,
// 38 000001BF.
Opinion dvdVideoOpinion(Bytes head, std::uint64_t size) {
    return head.has(14, "\0\0\1\xBB"sv) && head.has(38, "\0\0\1\xBF\x03\xD4"sv) ? wholeUnits(2048, size, "The film")
                                                                                : Opinion();
}

// The same: 0 "DVDVIDEO-VTS" or "DVDVIDEO-VMG", 28 be32 last sector of this file.
Opinion dvdInformationOpinion(Bytes head, std::uint64_t size) {
    return needs(times(plus(head.be32(28), 1), 2048), size, "The header");
}

// SMPTE ST 377-1: 0 key of the header's partition pack, 16 its length as BER, then 24 be64 place of the footer (0: not
// known yet), a pack as long as this one at least.
Opinion materialExchangeOpinion(Bytes head, std::uint64_t size) {
    const auto first = head.u8(16);
    if (!first)
        return {};
    const auto body = 17 + (*first >= 0x80 ? *first & 0x7FU : 0U);
    const auto footer = head.be64(body + 24);
    return footer && *footer != 0 ? needs(plus(footer, body), size, "The header's partition pack") : Opinion();
}

// "RealMedia File Format": 0 ".RMF", 4 be32 length; then "PROP", there 38 and 42 be32 places of index (0: none) and
// data.
Opinion realMediaOpinion(Bytes head, std::uint64_t size) {
    const auto header = head.be32(4);
    if (!within(header, 10, 64) || !head.has(*header, "PROP"))
        return {};
    const auto index = head.be32(*header + 38);
    const auto data = head.be32(*header + 42);
    return index && data ? needs(plus(std::max(*index, *data), 18), size, "The file properties") : Opinion();
}

// "Autodesk Animator" FLI and FLC: 0 le32 length of the file, 4 le16 AF11 or AF12, 6 le16 frames, 12 le16 depth; the
// first frame (F1FA) or a prefix (F100) at 128.
Opinion flicOpinion(Bytes head, std::uint64_t size) {
    const auto frame = head.le16(132);
    const bool known = head.le16(12) == 8U && (frame == 0xF1FAU || frame == 0xF100U);
    return known ? needs(head.le32(0), size, "The header") : Opinion();
}

}  // namespace quillon
