// SPDX-License-Identifier: MIT
// Drawings, models and measurements.
#include <array>

#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

constexpr std::uint64_t kSecretBegin = 0x80;
constexpr std::uint64_t kSecretBytes = 0x6C;

// The bytes that hide a drawing's header: the high half of a linear congruential sequence.
constexpr std::array<std::uint8_t, kSecretBytes> hidingBytes() {
    std::array<std::uint8_t, kSecretBytes> bytes{};
    std::uint32_t seed = 1;
    for (auto& byte : bytes) {
        seed = seed * 0x343FDU + 0x269EC3U;
        byte = static_cast<std::uint8_t>(seed >> 16U);
    }
    return bytes;
}

// Place of the copy of the hidden header, which ends the drawing.
Number hiddenCopy(Bytes head) {
    static constexpr auto hiding = hidingBytes();
    std::array<char, kSecretBytes> plain{};
    const auto secret = head.part(kSecretBegin, kSecretBytes);
    if (secret.size() < kSecretBytes)
        return std::nullopt;
    for (std::size_t i = 0; i < plain.size(); ++i)
        plain[i] = static_cast<char>(static_cast<unsigned char>(secret[i]) ^ hiding[i]);
    const Bytes bytes(std::string_view(plain.data(), plain.size()));
    return bytes.has(0, "AcFssFcAJMB") ? bytes.le64(0x34) : std::nullopt;
}

}  // namespace

// "Open Design format description of .dwg files": 0 "AC1012" to "AC1015": 21 le32 count of sections, from 25 on 9 bytes
// each: 1 le32 place, 5 le32 length. "AC1018", "AC1024" and later: 128 hidden header of 108 bytes: 0 "AcFssFcAJMB", 52
// le64 place of its copy at the end.
Opinion drawingOpinion(Bytes head, std::uint64_t size) {
    const auto version = head.part(4, 2);
    if (version >= "18" && version != "21")
        return needs(plus(hiddenCopy(head), kSecretBytes), size, "The header");
    const auto count = head.le32(21);
    if (version < "12" || version > "15" || !within(count, 3, 10))
        return {};
    std::uint64_t end = 0;
    for (std::uint64_t i = 0; i < *count; ++i)
        end = std::max(end, plus(head.le32(26 + 9 * i), head.le32(30 + 9 * i)).value_or(0));
    return needs(end, size, "The table of sections");
}

// "Windows Metafile Format" (MS-WMF): 0 9AC6CDD7 (22 bytes ahead) or none; header: 0 le16 1 or 2, 2 le16 9, 6 le32
// length of the rest in words of two bytes, with or without what stands ahead.
Opinion metafileOpinion(Bytes head, std::uint64_t size) {
    const auto at = head.has(0, "\xD7\xCD") ? 22U : 0U;
    const auto words = head.le32(at + 6);
    if (!within(head.le16(at), 1, 2) || head.le16(at + 2) != 9U || !words)
        return {};
    return needs(times(words, 2), size, "The header", 64);
}

// "glTF 2.0" (Khronos): 0 "glTF", 4 le32 version 2, 8 le32 length of the file.
Opinion sceneOpinion(Bytes head, std::uint64_t size) {
    return head.le32(4) == 2U ? needs(head.le32(8), size, "The header") : Opinion();
}

// "3D Studio File Format": 0 le16 4D4D, 2 le32 length of this chunk, the file; 6 le16 kind of the first chunk in it.
Opinion studioOpinion(Bytes head, std::uint64_t size) {
    const bool known = head.le16(6) == 2U || head.le16(6) == 0x3D3DU;
    return known ? needs(head.le32(2), size, "The main chunk") : Opinion();
}

// "HDF5 File Format 3.0": 8 version of the superblock. 0 and 1: 13 width of places, from 24 (28) on base,
// free space, end of the file. 2 and 3: 9 width, from 12 on base, extension, end.
Opinion hierarchicalDataOpinion(Bytes head, std::uint64_t size) {
    const auto version = head.u8(8);
    if (!within(version, 0, 3))
        return {};
    const auto width = head.u8(*version < 2 ? 13 : 9);
    if (width != 4U && width != 8U)
        return {};
    const auto base = *version < 2 ? 24 + 4 * *version : 12;
    const auto end = head.number(base + 2 * *width, *width, Order::Little);
    if (head.number(base, *width, Order::Little) != 0U || !end || *end >= (*width == 4U ? 0xFFFFFFFFU : kLargestSize))
        return {};
    return needs(end, size, "The superblock");
}

// "LAS 1.4" (ASPRS): 0 "LASF", 25 minor version, 96 le32 place of the points, 104 kind (80: packed), 105 le16 length of
// a point, 107 le32 count of points, from version 1.4 on 247 le64.
Opinion pointCloudOpinion(Bytes head, std::uint64_t size) {
    const auto minor = head.u8(25);
    const auto kind = head.u8(104);
    if (!minor || !kind)
        return {};
    if (*kind >= 0x80)
        return needs(head.le32(96), size, "The header");
    auto count = head.le32(107);
    if (*minor >= 4 && count == 0U)
        count = head.le64(247);
    return needs(plus(head.le32(96), times(head.le16(105), count)), size, "The header");
}

// "ASTM E2807" (E57): 0 "ASTM-E57", 16 le64 length of the file.
Opinion scanOpinion(Bytes head, std::uint64_t size) {
    return needs(head.le64(16), size, "The header");
}

// "FM 92 GRIB" (WMO): 7 edition: 1 with 4 be24, 2 with 8 be64 length of the first message, which "7777" ends.
Opinion gribOpinion(Bytes head, std::uint64_t size) {
    const auto edition = head.u8(7);
    if (edition == 2U)
        return needs(head.be64(8), size, "The first message");
    // The highest bit means units of 120 bytes, less some.
    const auto length = head.be24(4);
    return edition == 1U && length && *length < 0x800000U ? needs(length, size, "The first message") : Opinion();
}

// "FM 94 BUFR" (WMO): 4 be24 length of the first message, 7 edition from 2 on.
Opinion bufrOpinion(Bytes head, std::uint64_t size) {
    return within(head.u8(7), 2, 4) ? needs(head.be24(4), size, "The first message") : Opinion();
}

// "WAD" (id Software): 4 le32 count and 8 le32 place of entries of 16 bytes.
Opinion gameDataOpinion(Bytes head, std::uint64_t size) {
    return needs(plus(head.le32(8), times(head.le32(4), 16)), size, "The header");
}

}  // namespace quillon
