// SPDX-License-Identifier: MIT
// Pictures whose head tells how many bytes their pixels take.
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

constexpr bool isOneOf(Number number, std::initializer_list<std::uint64_t> values) {
    return number && std::ranges::find(values, *number) != values.end();
}

struct BitmapFields {
    Number width, height, planes, bits, compression, pixelBytes;
};

BitmapFields bitmapFields(Bytes head, std::uint64_t headerBytes) {
    if (headerBytes == 12)
        return {head.le16(18), head.le16(20), head.le16(22), head.le16(24), 0, 0};
    auto height = head.le32(22);
    if (height && *height >= 0x80000000U)
        height = 0x100000000U - *height;
    const bool withCompression = headerBytes >= 40;
    return {head.le32(18),
            height,
            head.le16(26),
            head.le16(28),
            withCompression ? head.le32(30) : 0,
            withCompression ? head.le32(34) : 0};
}

bool isPlainBitmap(const BitmapFields& fields, std::uint64_t headerBytes) {
    constexpr std::uint64_t none = 0;
    constexpr std::uint64_t masks = 3;
    constexpr std::uint64_t alphaMasks = 6;
    constexpr std::uint64_t headerOfOs2 = 64;
    return fields.compression == none ||
           (headerBytes != headerOfOs2 && isOneOf(fields.compression, {masks, alphaMasks}));
}

// Rows are filled up to four bytes.
Number bitmapPixels(const BitmapFields& fields) {
    const auto rowBits = times(fields.width, fields.bits);
    return rowBits ? times(roundedUp(*rowBits, 32) / 8, fields.height) : std::nullopt;
}

}  // namespace

// "Bitmap Storage" (Microsoft): 0 "BM", 2 le32 length of the file (often wrong), 10 le32 place of the pixels, 14 le32
// length of the header that follows. It tells for 12: 18 and 20 le16 width and height, 22 le16 planes, 24 le16 bits;
// otherwise 18 and 22 le32 width and height (negative from the top), 26 le16 planes, 28 le16 bits, 30 le32
// compression, 34 le32 length of compressed pixels.
Opinion bitmapOpinion(Bytes head, std::uint64_t size) {
    const auto headerBytes = head.le32(14);
    if (!isOneOf(headerBytes, {12, 16, 40, 52, 56, 64, 108, 124}))
        return {};
    const auto fields = bitmapFields(head, *headerBytes);
    const auto place = head.le32(10);
    if (fields.planes != 1U || !isOneOf(fields.bits, {0, 1, 2, 4, 8, 16, 24, 32}) || !place ||
        *place < 14 + *headerBytes)
        return {};
    if (isPlainBitmap(fields, *headerBytes) && fields.bits != 0U)
        return needs(plus(place, bitmapPixels(fields)), size, "The bitmap header", 3);
    if (!fields.pixelBytes || *fields.pixelBytes == 0)
        return {};
    // Where both lengths stand, the smaller one is sure.
    const auto told = head.le32(2).value_or(0);
    const auto end = *plus(place, fields.pixelBytes);
    return needs(told == 0 ? end : std::min(told, end), size, "The bitmap header");
}

// "Icons in Win32" (Microsoft): 0 le16 0, 2 le16 1 or 2, 4 le16 count, from 6 on entries of 16 bytes: 8 le32 length,
// 12 le32 place. The first picture follows the entries.
Opinion iconOpinion(Bytes head, std::uint64_t size) {
    constexpr std::uint64_t slack = 128;  // a mask that some writers count and leave out
    const auto count = head.le16(4).value_or(0);
    std::uint64_t needed = 0;
    for (std::uint64_t entry = 6; entry < 6 + 16 * count && head.holds(entry, 16); entry += 16)
        needed = std::max(needed, *plus(head.le32(entry + 8), head.le32(entry + 12)));
    return needs(needed, size, "The table of icons", slack);
}

bool isIcon(Bytes head) {
    const auto count = head.le16(4);
    return within(count, 1, 256) && head.le32(18) == 6 + 16 * *count;
}

// "Apple Icon Image": 0 "icns", 4 be32 length of the file.
Opinion appleIconOpinion(Bytes head, std::uint64_t size) {
    const auto length = head.be32(4);
    return within(length, 8, 0x1FFFFFFFU) ? needs(length, size, "The icon's header") : Opinion();
}

// "Adobe Photoshop File Formats": 0 "8BPS", 4 be16 version, 12 be16 channels, 22 be16 depth, 26 be32 length of the
// colour table, behind it be32 length of the resources, behind them be32 (version 2: be64) length of the layers.
Opinion photoshopOpinion(Bytes head, std::uint64_t size) {
    const auto version = head.be16(4);
    if (!within(version, 1, 2))
        return {};
    if (!within(head.be16(12).value_or(1), 1, 56) || !isOneOf(head.be16(22).value_or(1), {1, 8, 16, 32}))
        return inconsistent("The header tells of channels or a depth that no picture has.");
    const auto resources = plus(head.be32(26), 30);
    auto end = resources;
    if (const auto length = resources ? head.be32(*resources) : std::nullopt)
        end = plus(resources, 4, length);
    const std::uint64_t layerLength = version == 2U ? 8 : 4;
    const auto layers = end ? head.number(*end, layerLength, Order::Big) : std::nullopt;
    // A picture ends with its pixels: two bytes of compression, and more.
    return needs(plus(end, layerLength, layers.value_or(0), 2), size, "The header");
}

// "SMPTE ST 268" (DPX): 0 "SDPX" for be32 or "XPDS" for le32, 4 place of the pixels, 16 length of the file (FFFFFFFF:
// unknown).
Opinion dpxOpinion(Bytes head, std::uint64_t size) {
    const auto order = head.has(0, "SDPX") ? Order::Big : Order::Little;
    const auto place = head.number(4, 4, order);
    const auto length = head.number(16, 4, order);
    if (!within(place, 768, 0xFFFFFF) || !length)
        return {};
    return needs(*length == 0xFFFFFFFFU ? plus(place, 1) : length, size, "The header");
}

// "Rasterfile" (Sun): 0 be32 59A66A95, 12 be32 depth, 16 be32 length of the pixels (0 in the oldest), 20 be32 type
// (2 is packed, and its length may be the plain one), 28 be32 length of the colour table.
Opinion sunRasterOpinion(Bytes head, std::uint64_t size) {
    if (!isOneOf(head.be32(12), {1, 4, 8, 24, 32}) || !isOneOf(head.be32(20), {0, 1, 3}))
        return {};
    return needs(plus(head.be32(16), head.be32(28), 32), size, "The header");
}

// "Enhanced Metafile Format" (MS-EMF): 0 le32 1, 40 " EMF", 48 le32 length of the file.
Opinion enhancedMetafileOpinion(Bytes head, std::uint64_t size) {
    return head.le32(0) == 1U ? needs(head.le32(48), size, "The header") : Opinion();
}

// "ICC.1" (International Color Consortium): 0 be32 length of the file, 36 "acsp".
Opinion colourProfileOpinion(Bytes head, std::uint64_t size) {
    return needs(head.be32(0), size, "The header", 3);
}

}  // namespace quillon
