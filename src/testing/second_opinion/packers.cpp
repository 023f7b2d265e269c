// SPDX-License-Identifier: MIT
// Packed streams and archives that are chains of members.
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

// An octal or decimal number in a field of digits, blanks around it.
Number digits(std::string_view field, std::uint64_t base) {
    const auto begin = field.find_first_not_of(' ');
    if (begin == field.npos)
        return std::nullopt;
    Number value;
    for (const char c : field.substr(begin)) {
        if (c == ' ' || c == '\0')
            break;
        const auto digit = static_cast<std::uint64_t>(static_cast<unsigned char>(c)) - '0';
        if (digit >= base)
            return std::nullopt;
        value = plus(times(value.value_or(0), base), digit);
    }
    return value;
}

}  // namespace

// RFC 1952 (gzip): 2 method 8, 3 flags (4: extra fields), 10 le16 length of the extra fields. SAM/BAM, "BGZF": a field
// "BC" with the le16 length of the block less one.
Opinion gzipOpinion(Bytes head, std::uint64_t size) {
    const auto flags = head.u8(3);
    if (!flags || *flags >= 0x20)
        return {};
    if ((*flags & 4U) != 0 && head.le16(10) == 6U && head.has(12, "BC\2\0"sv))
        return needs(plus(head.le16(16), 1), size, "The first block");
    return needs(18, size, "A packed file");
}

// bzip2: 0 "BZh", 3 digit 1 to 9, 4 mark of a block, 314159265359, or of the end, 177245385090.
Opinion bzip2Opinion(Bytes head, std::uint64_t) {
    if (!within(head.u8(3), '1', '9') || !head.holds(4, 6))
        return {};
    if (head.has(4, "\x17\x72\x45\x38\x50\x90"))
        return emptyContainer("The packed file has no content.");
    return head.has(4, "1AY&SY") ? Opinion() : inconsistent("No block begins behind the header.");
}

// "The .xz File Format": 6 flags, 8 le32 CRC-32 of the two bytes from 6 on. All is padded to units of four bytes.
Opinion xzOpinion(Bytes head, std::uint64_t size) {
    constexpr std::uint64_t smallest = 32;
    if (head.holds(0, 12) && head.le32(8) != crc32Of(head.part(6, 2)))
        return inconsistent("The check sum of the header does not fit its bytes.");
    if (auto cut = needs(smallest, size, "A packed file"))
        return cut;
    return wholeUnits(4, size, "The packed file");
}

// "LZ4 Frame Format": 4 flags (10 check sums of blocks, 8 length of the content, 1 dictionary), 5 block size, then le64
// length, le32 dictionary, 1 byte check sum; blocks: le32 length without its highest bit.
Opinion lz4Opinion(Bytes head, std::uint64_t size) {
    const auto flags = head.u8(4);
    if (!flags || *flags >> 6U != 1)
        return {};
    const auto sum = 6 + ((*flags & 8U) != 0 ? 8U : 0U) + ((*flags & 1U) != 0 ? 4U : 0U);
    if (!head.holds(sum, 1))
        return {};
    if (head.u8(sum) != (shortXxHashOf(head.part(4, sum - 4)) >> 8U & 0xFFU))
        return inconsistent("The check sum of the header does not fit its bytes.");
    std::uint64_t at = sum + 1;
    while (const auto field = head.le32(at)) {
        const auto length = *field & 0x7FFFFFFFU;
        if (length == 0)
            return {};
        at += 4 + length + ((*flags & 0x10U) != 0 ? 4U : 0U);
    }
    return needs(plus(at, 4), size, "The chain of blocks");
}

// RFC 8878 (Zstandard): 4 descriptor (C0 width of the content's length, 20 single segment, 4 check sum, 3 width of the
// dictionary), then window, dictionary, length; blocks: le24: 1 last, 6 kind, length.
Opinion zstandardOpinion(Bytes head, std::uint64_t size) {
    const auto descriptor = head.u8(4);
    if (!descriptor)
        return {};
    constexpr std::uint64_t dictionaries[] = {0, 1, 2, 4};
    constexpr std::uint64_t lengths[] = {0, 2, 4, 8};
    const bool single = (*descriptor & 0x20U) != 0;
    const auto lengthWidth = *descriptor >> 6U == 0 ? (single ? 1U : 0U) : lengths[*descriptor >> 6U];
    auto at = 5 + (single ? 0U : 1U) + dictionaries[*descriptor & 3U] + lengthWidth;
    while (const auto block = head.number(at, 3, Order::Little)) {
        const auto kind = *block >> 1U & 3U;
        if (kind == 3)
            return inconsistent("A block is of a kind that cannot be.");
        at += 3 + (kind == 1 ? 1 : *block >> 3U);
        if ((*block & 1U) != 0)
            return needs(at + ((*descriptor & 4U) != 0 ? 4U : 0U), size, "The last block");
    }
    return needs(at + 3, size, "The chain of blocks");
}

// POSIX "ustar" and GNU tar: 124 length in 12 octal digits (80: binary), 148 check sum in 8, the sum of all bytes with
// blanks in its own field; 156 kind, of which some have content; 257 "ustar".
Opinion tarOpinion(Bytes head, std::uint64_t size) {
    const auto sum = digits(head.part(148, 8), 8);
    if (!head.holds(0, kHeaderBytes))
        return needs(kHeaderBytes, size, "The first member");
    std::uint64_t plain = 0;
    std::int64_t withSigns = 0;
    for (std::uint64_t i = 0; i < kHeaderBytes; ++i) {
        const auto byte = i >= 148 && i < 156 ? ' ' : head.part(i, 1).front();
        plain += static_cast<unsigned char>(byte);
        withSigns += static_cast<signed char>(byte);
    }
    if (sum && *sum != plain && static_cast<std::int64_t>(*sum) != withSigns)
        return inconsistent("The check sum of the first member does not fit its bytes.");
    constexpr std::string_view withContent(
        "\0"
        "07xgLKS",
        8);
    if (withContent.find(head.part(156, 1)) == withContent.npos)
        return {};
    return needs(plus(digits(head.part(124, 12), 8), kHeaderBytes), size, "The first member");
}

// "ar": from 8 on members: 48 length in 10 decimal digits, 60 content, padded to an even length.
Opinion arOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 8;
    std::uint64_t end = at;
    while (head.has(at + 58, "`\n")) {
        const auto length = digits(head.part(at + 48, 10), 10);
        if (!length)
            break;
        end = *plus(at, length, 60);
        at = roundedUp(end, 2);
    }
    return needs(end, size, "The chain of members");
}

// "xar": 4 be16 length of the header, 8 be64 packed length of the table of contents.
Opinion xarOpinion(Bytes head, std::uint64_t size) {
    return needs(plus(head.be16(4), head.be64(8)), size, "The header");
}

}  // namespace quillon
