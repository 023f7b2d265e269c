// SPDX-License-Identifier: MIT
// Pictures that are chains of chunks or segments, walked as far as the head goes.
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

constexpr std::uint64_t kChunkFrame = 12;  // length, kind, check sum

bool isChunkKind(std::string_view kind) {
    return std::ranges::all_of(kind, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

// From the chunk at `at` on. What follows the last visible chunk is at least one that ends the picture.
Opinion walkChunks(Bytes head, std::uint64_t at, std::string_view last, std::uint64_t size) {
    while (head.holds(at, 8)) {
        const auto kind = head.part(at + 4, 4);
        if (!isChunkKind(kind))
            return inconsistent("A chunk of the picture has no kind: the chain of chunks is broken.");
        const auto end = *plus(at, head.be32(at), kChunkFrame);
        if (kind == last)
            return needs(end, size, "The last chunk");
        at = end;
    }
    return needs(plus(at, kChunkFrame), size, "The chain of chunks");
}

constexpr bool standsAlone(std::uint64_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

}  // namespace

// "Portable Network Graphics" (W3C): 8 be32 13, 12 "IHDR", 16 and 20 be32 width and height, 29 be32 CRC-32 of the 17
// bytes from 12 on; from 33 on chunks: be32 length, kind, data, be32 CRC-32. A telephone's own variant begins with
// "CgBI".
Opinion pngOpinion(Bytes head, std::uint64_t size) {
    constexpr std::uint64_t smallest = 57;
    if (!head.holds(0, 33))
        return needs(smallest, size, "A picture");
    if (head.has(12, "CgBI"))
        return walkChunks(head, 8, "IEND", size);
    if (!head.has(12, "IHDR") || head.be32(8) != 13U)
        return inconsistent("The picture does not begin with its header chunk (IHDR).");
    if (head.be32(29) != crc32Of(head.part(12, 17)))
        return inconsistent("The check sum of the header chunk (IHDR) does not fit its bytes.");
    if (head.be32(16) == 0U || head.be32(20) == 0U)
        return inconsistent("The header chunk (IHDR) tells of a picture without width or height.");
    return walkChunks(head, 33, "IEND", size);
}

// "MNG 1.0" and "JNG 1.0" (PNG Development Group): from 8 on chunks as those of PNG.
Opinion animatedPngOpinion(Bytes head, std::uint64_t size) {
    return walkChunks(head, 8, head.has(1, "JNG") ? "IEND" : "MEND", size);
}

// "ITU-T T.81": markers FF xx, any number of FF ahead; a segment's be16 length counts itself. The walk ends with the
// first scan (FF DA), whose length nobody tells.
Opinion jpegOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 2;
    while (head.holds(at, 2)) {
        const auto marker = *head.u8(at + 1);
        if (head.u8(at) != 0xFFU || marker == 0)
            return inconsistent("The chain of segments is broken before the picture begins.");
        if (marker == 0xFF || standsAlone(marker)) {
            at += marker == 0xFF ? 1 : 2;
            continue;
        }
        if (marker == 0xD9)
            return emptyContainer("The picture ends before it begins.");
        const auto length = head.be16(at + 2);
        if (length && *length < 2)
            return inconsistent("A segment is shorter than its own length field.");
        at = *plus(at, 2, length.value_or(2));
        if (marker == 0xDA)
            break;
    }
    return needs(plus(at, 2), size, "The chain of segments");
}

// "Graphics Interchange Format" (CompuServe): 10 flags (80 a colour table, its size in the low three bits), 13 colour
// table; then blocks: 2C picture (9 bytes, own table, 1 byte, sub-blocks), 21 extension (1 byte, sub-blocks), 3B end.
Opinion gifOpinion(Bytes head, std::uint64_t size) {
    const auto flags = head.u8(10);
    if (!flags)
        return needs(14, size, "A picture");
    const auto table = [](std::uint64_t bits) { return (bits & 0x80U) != 0 ? 6U << (bits & 7U) : 0U; };
    std::uint64_t at = 13 + table(*flags);
    while (const auto block = head.u8(at)) {
        if (*block == 0x3B)
            return emptyContainer("The file ends without a picture.");
        if (*block != 0x21)
            break;
        at += 2;
        while (const auto length = head.u8(at)) {
            at += 1 + *length;
            if (*length == 0)
                break;
        }
    }
    return needs(at + 1, size, "The chain of blocks");
}

}  // namespace quillon
