// SPDX-License-Identifier: MIT
// Archives whose members follow one another: RAR, ARJ, LHA.
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

// A number of seven bits a byte, the low ones first; moves behind it.
Number variable(Bytes head, std::uint64_t& at) {
    std::uint64_t value = 0;
    for (std::uint64_t shift = 0; shift < 63; shift += 7) {
        const auto byte = head.u8(at);
        if (!byte)
            return std::nullopt;
        ++at;
        value |= (*byte & 0x7FU) << shift;
        if (*byte < 0x80)
            return value;
    }
    return std::nullopt;
}

struct RarBlock {
    std::uint64_t kind = 0;
    std::uint64_t begin = 0;  // of what the check sum covers
    Number headerEnd, end;
};

RarBlock rar5Block(Bytes head, std::uint64_t at) {
    RarBlock block;
    block.begin = at + 4;
    auto next = block.begin;
    const auto length = variable(head, next);
    block.headerEnd = plus(next, length);
    const auto kind = variable(head, next);
    const auto flags = variable(head, next);
    block.kind = kind.value_or(0);
    if (!flags)
        return block;
    constexpr std::uint64_t extraArea = 1;
    constexpr std::uint64_t dataArea = 2;
    if ((*flags & extraArea) != 0)
        variable(head, next);
    block.end = plus(block.headerEnd, (*flags & dataArea) != 0 ? variable(head, next) : Number(0));
    return block;
}

}  // namespace

// "RAR 5.0 archive format": from 8 on blocks: le32 CRC-32 of the rest of the header; variable length of what follows,
// kind (1 main, 2 file, 4 encryption, 5 end), flags (1 extra area, 2 data area), length of each; data. An end follows.
Opinion rar5Opinion(Bytes head, std::uint64_t size) {
    constexpr std::uint64_t encryption = 4;
    constexpr std::uint64_t endOfArchive = 5;
    constexpr std::uint64_t endBlock = 7;
    std::uint64_t at = 8;
    while (head.holds(at, endBlock)) {
        const auto block = rar5Block(head, at);
        if (!block.end)
            break;
        if (head.holds(block.begin, *block.headerEnd - block.begin) &&
            head.le32(at) != crc32Of(head.part(block.begin, *block.headerEnd - block.begin)))
            return inconsistent("The check sum of a header does not fit its bytes.");
        if (block.kind == encryption || block.kind == endOfArchive)
            return needs(block.end, size, "The chain of members");
        at = *block.end;
    }
    return needs(plus(at, endBlock), size, "The chain of members");
}

// "RAR version 4 technical note": from 7 on blocks: le16 low half of the CRC-32 of the rest of the header, 2 kind (73
// main, 74 file, 7B end), 3 le16 flags (8000: data follow, 100: their length goes on; main 80: all is encrypted), 5
// le16 length, 7 le32 length of the data, 32 le32 its high half. Old comments inside of a header are not covered by the
// sum.
Opinion rar4Opinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 7;
    while (head.holds(at, 7)) {
        const auto kind = *head.u8(at + 2);
        const auto flags = *head.le16(at + 3);
        const auto length = *head.le16(at + 5);
        if (!within(kind, 0x72, 0x7B) || length < 7)
            return at == 7 ? inconsistent("No header follows the mark of the archive.") : Opinion();
        const bool comment = (kind == 0x73 && (flags & 2U) != 0) || (kind == 0x74 && (flags & 8U) != 0);
        if (!comment && (kind == 0x73 || kind == 0x74) && head.holds(at, length) &&
            head.le16(at) != (crc32Of(head.part(at + 2, length - 2)) & 0xFFFFU))
            return inconsistent("The check sum of a header does not fit its bytes.");
        const bool withData = kind == 0x74 || (flags & 0x8000U) != 0;
        auto data = withData ? head.le32(at + 7) : Number(0);
        if (kind == 0x74 && (flags & 0x100U) != 0 && data)
            data = plus(data, times(head.le32(at + 32), 0x100000000U));
        at = plus(at, length, data).value_or(at + length);
        if (kind == 0x7B || (kind == 0x73 && (flags & 0x80U) != 0))
            break;
    }
    return needs(at, size, "The chain of members");
}

// "ARJ archive" technote (R. Jung): headers: 0 EA60, 2 le16 length (0: the end), 4 header, le32 CRC-32 of it, le16
// lengths of further headers until 0; a file's header has 16 (from 0) le32 packed length, which the first one does not
// use.
Opinion arjOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 0;
    bool first = true;
    while (head.has(at, "\x60\xEA")) {
        const auto length = head.le16(at + 2);
        if (!length || *length == 0)
            return length ? needs(at + 4, size, "The chain of members") : Opinion();
        const auto sum = at + 4 + *length;
        if (!within(length, 30, 2600) || (first && head.u8(at + 10) != 2U))
            return {};
        if (head.holds(sum, 4) && head.le32(sum) != crc32Of(head.part(at + 4, *length)))
            return inconsistent("The check sum of a header does not fit its bytes.");
        const auto packed = first ? Number(0) : head.le32(at + 16);
        if (head.le16(sum + 4) != 0U || !packed)
            return needs(sum + 6, size, "The chain of members");
        at = *plus(sum, 6, packed);
        first = false;
    }
    return needs(plus(at, 4), size, "The chain of members");
}

// "LHA" headers (H. Yoshizaki): 2 method "-lh?-", 7 le32 packed length, 20 level. Level 0 and 1: 0 length of the rest
// of the header, 1 sum of its bytes from 2 on; level 1 counts further headers among the packed bytes. Level 2: 0 le16
// length of all headers.
Opinion lhaOpinion(Bytes head, std::uint64_t size) {
    const auto level = head.u8(20);
    if (!level || *level > 2)
        return {};
    if (*level == 2)
        return needs(plus(head.le16(0), head.le32(7)), size, "The first member");
    const auto length = *head.u8(0);
    const auto bytes = head.part(2, length);
    std::uint64_t sum = 0;
    for (const char c : bytes) sum += static_cast<unsigned char>(c);
    if (bytes.size() == length && head.u8(1) != (sum & 0xFFU))
        return inconsistent("The check sum of the first member does not fit its bytes.");
    return needs(plus(length, 2, head.le32(7)), size, "The first member");
}

}  // namespace quillon
