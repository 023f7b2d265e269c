// SPDX-License-Identifier: MIT
// Files of boxes: MP4, QuickTime, HEIF, AVIF, JPEG 2000, JPEG XL, Canon's CR3.
#include "testing/second_opinion/boxes.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

// Sizes of the fields of an item's place, out of their nibbles.
struct ItemFields {
    std::uint64_t offset, length, base, index, version;
};

// The end of the last part of the item at `at`, which moves behind the item; nothing where the head ends.
Number itemEnd(Bytes head, const ItemFields& fields, std::uint64_t& at) {
    const auto number = [&](std::uint64_t width) {
        const auto value = head.number(at, width, Order::Big);
        at += width;
        return value;
    };
    number(fields.version < 2 ? 2 : 4);
    const auto method = fields.version == 0 ? Number(0) : number(2);
    const auto otherFile = number(2);
    const auto base = number(fields.base);
    const auto parts = number(2);
    if (!parts)
        return std::nullopt;
    std::uint64_t end = 0;
    for (std::uint64_t i = 0; i < *parts; ++i) {
        number(fields.version == 0 ? 0 : fields.index);
        const auto offset = number(fields.offset);
        const auto length = number(fields.length);
        const auto partEnd = plus(base, offset, length);
        if (!partEnd)
            return std::nullopt;
        // A length of zero is the rest of the file; other methods count from another place.
        if ((method.value_or(0) & 0xFU) == 0 && otherFile == 0U && *length != 0)
            end = std::max(end, *partEnd);
    }
    return end;
}

// The bytes that the items of a still picture reach, as far as their places stand in the head.
std::uint64_t itemsEnd(Bytes head, std::uint64_t body) {
    const auto sizes = head.be16(body + 4);
    const auto version = head.u8(body);
    if (!sizes || !version || *version > 2)
        return 0;
    const ItemFields fields{*sizes >> 12U, *sizes >> 8U & 0xFU, *sizes >> 4U & 0xFU, *sizes & 0xFU, *version};
    auto at = body + (*version < 2 ? 8U : 10U);
    const auto count = *version < 2 ? head.be16(body + 6) : head.be32(body + 6);
    std::uint64_t end = 0;
    for (std::uint64_t i = 0; count && i < *count; ++i) {
        const auto one = itemEnd(head, fields, at);
        if (!one)
            break;
        end = std::max(end, *one);
    }
    return end;
}

// The places of the items within a box of metadata whose body begins behind its version.
std::uint64_t metadataNeeds(Bytes head, std::uint64_t at) {
    while (const auto box = boxAt(head, at)) {
        if (box->kind == "iloc")
            return itemsEnd(head, box->body);
        if (!box->end)
            return 0;
        at = *box->end;
    }
    return 0;
}

struct Walk {
    std::uint64_t items = 0;  // the end of the last item of a still picture
    std::uint64_t end = 0;    // of the last visible box
    bool toTheEnd = false;    // the last visible box goes to the end of the file
    bool index = false, media = false, more = false;
};

Walk walkBoxes(Bytes head) {
    Walk walk;
    while (const auto box = boxAt(head, walk.end)) {
        walk.index |= isMediaIndex(box->kind);
        walk.media |= box->kind == "mdat";
        walk.more |= box->kind != "ftyp" && box->kind != "free" && box->kind != "skip" && box->kind != "wide";
        if (box->kind == "meta")
            walk.items = std::max(walk.items, metadataNeeds(head, box->body + 4));
        if (!box->end) {
            walk.toTheEnd = true;
            break;
        }
        walk.end = *box->end;
    }
    return walk;
}

// Three of the kinds are English words: text ahead of them makes a length of half a gigabyte and more.
bool isText(Bytes head) {
    constexpr std::string_view words[] = {"free", "skip", "wide", "meta"};
    return head.be32(0).value_or(0) >= 0x20000000U && std::ranges::find(words, head.part(4, 4)) != std::end(words);
}

}  // namespace

// ISO/IEC 14496-12, boxes: "mdat" is the media, "moov" or the first "moof" the index, which may follow it. A still
// picture has the places of its items in "meta", there "iloc": 0 version, 4 sizes of its fields in nibbles, 6 count,
// then items with their parts.
Opinion isoMediaOpinion(Bytes head, std::uint64_t size) {
    if (isText(head))
        return {};
    const auto walk = walkBoxes(head);
    if (auto cut = needs(walk.items, size, "The list of the picture's items"))
        return cut;
    if (auto cut = needs(walk.end, size, "The chain of boxes"))
        return cut;
    const bool isSeenToTheEnd = walk.toTheEnd || size - std::min(size, walk.end) < 8;
    if (isSeenToTheEnd && walk.media && !walk.index)
        return noIndex("Media data (mdat) fill the file to its end: the index (moov) is missing.");
    if (isSeenToTheEnd && !walk.toTheEnd && !walk.more && walk.end > 0)
        return emptyContainer("Nothing follows the type of the file.");
    return {};
}

}  // namespace quillon
