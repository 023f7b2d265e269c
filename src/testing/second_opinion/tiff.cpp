// SPDX-License-Identifier: MIT
// TIFF and what is built on it: camera raw files, DNG, JPEG XR.
#include <array>

#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

// A field of a directory: its values stand at `place`, `count` numbers of `width` bytes.
struct Field {
    std::uint64_t place = 0, count = 0, width = 0;
};

class PictureDirectory {
public:
    PictureDirectory(Bytes head, Order order, bool big) : head_(head), order_(order), big_(big) {}

    [[nodiscard]] Number number(std::uint64_t at, std::uint64_t width) const { return head_.number(at, width, order_); }
    [[nodiscard]] std::uint64_t wordBytes() const { return big_ ? 8 : 4; }
    [[nodiscard]] std::uint64_t countBytes() const { return big_ ? 8 : 2; }
    [[nodiscard]] std::uint64_t entryBytes() const { return big_ ? 20 : 12; }

    [[nodiscard]] std::optional<Field> fieldAt(std::uint64_t entry) const {
        constexpr std::uint64_t widths[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
        const auto type = number(entry + 2, 2);
        const auto count = number(entry + 4, wordBytes());
        const auto value = number(entry + 4 + wordBytes(), wordBytes());
        if (!count || !value || !within(type, 1, std::size(widths) - 1) || widths[*type] == 0)
            return std::nullopt;
        const auto bytes = *times(count, widths[*type]);
        const auto place = bytes <= wordBytes() ? entry + 4 + wordBytes() : *value;
        return Field{place, *count, widths[*type]};
    }

    // The values as far as they stand in the head.
    [[nodiscard]] Number valueOf(const Field& field, std::uint64_t i) const {
        return i < field.count ? number(*plus(field.place, i * field.width), field.width) : std::nullopt;
    }

private:
    Bytes head_;
    Order order_;
    bool big_;
};

// The fields of the first directory that tell where its pictures lie, as far as the head goes.
class PictureFields {
public:
    PictureFields(const PictureDirectory& directory, std::uint64_t first, std::uint64_t count) : directory_(directory) {
        for (std::uint64_t i = 0; i < count; ++i) {
            const auto entry = first + i * directory.entryBytes();
            const auto tag = directory.number(entry, 2);
            if (!tag)
                break;
            const auto* const known = std::ranges::find(kTags, *tag);
            if (known != kTags.end())
                fields_[static_cast<std::size_t>(known - kTags.begin())] = directory.fieldAt(entry);
        }
    }

    [[nodiscard]] std::optional<Field> field(std::uint64_t tag) const {
        return fields_[static_cast<std::size_t>(std::ranges::find(kTags, tag) - kTags.begin())];
    }
    [[nodiscard]] Number value(std::uint64_t tag, std::uint64_t ofNone) const {
        const auto found = field(tag);
        return found ? directory_.valueOf(*found, 0) : ofNone;
    }

private:
    static constexpr auto kTags =
        std::to_array<std::uint64_t>({256, 257, 258, 259, 273, 277, 279, 324, 325, 513, 514, 0xBCC0, 0xBCC1});

    const PictureDirectory& directory_;
    std::array<std::optional<Field>, kTags.size()> fields_;
};

// The bytes that the pieces of a picture reach: their two lists, and those pieces whose numbers stand in the head. None
// is longer than `limit`.
std::uint64_t piecesEnd(const PictureDirectory& directory, std::optional<Field> places, std::optional<Field> lengths,
                        std::uint64_t limit = kLargestSize) {
    if (!places || !lengths || places->count != lengths->count)
        return 0;
    std::uint64_t end = 0;
    for (const auto& list : {*places, *lengths}) {
        if (list.count > 1)
            end = std::max(end, *plus(list.place, times(list.count, list.width)));
    }
    for (std::uint64_t i = 0; i < places->count; ++i) {
        const auto place = directory.valueOf(*places, i);
        const auto length = directory.valueOf(*lengths, i);
        if (!place || !length)
            break;
        constexpr std::uint64_t unknown = 0xFFFFFFFFU;  // some cameras' own layout
        if (*place < unknown && *length < unknown)
            end = std::max(end, *plus(place, std::min(*length, limit)));
    }
    return end;
}

// Old writers told too great a length of a single plain strip: its rows tell the true one.
std::uint64_t stripLimit(const PictureFields& fields) {
    constexpr std::uint64_t plain = 1;
    const auto strips = fields.field(273);
    if (!strips || strips->count != 1 || fields.value(259, plain) != plain)
        return kLargestSize;
    const auto rowBits = times(times(fields.value(256, 0), fields.value(258, 1)), fields.value(277, 1));
    return rowBits ? times(roundedUp(*rowBits, 8) / 8, fields.value(257, 0)).value_or(1) : 1;
}

// Tags: 273 and 279 strips, 324 and 325 tiles, 513 and 514 a JPEG preview, BCC0 and BCC1 a JPEG XR picture; of a plain
// picture 256 and 257 width and height, 258 bits of each of 277 samples, 259 compression.
std::uint64_t contentEnd(const PictureDirectory& directory, std::uint64_t first, std::uint64_t count) {
    const PictureFields fields(directory, first, count);
    return std::max({piecesEnd(directory, fields.field(273), fields.field(279), stripLimit(fields)),
                     piecesEnd(directory, fields.field(324), fields.field(325)),
                     piecesEnd(directory, fields.field(513), fields.field(514)),
                     piecesEnd(directory, fields.field(0xBCC0), fields.field(0xBCC1))});
}

}  // namespace

// "TIFF Revision 6.0" (Adobe) and BigTIFF: 0 "II" for le or "MM" for be, 2 16-bit version 43 for the big form (then 8
// 64-bit place of the first directory), else 4 32-bit place. A directory: 16-bit (64-bit) count, entries of 12 (20)
// bytes (16-bit tag, 16-bit type, 32-bit (64-bit) count, value or place), place of the next one.
Opinion tiffOpinion(Bytes head, std::uint64_t size) {
    const auto order = head.has(0, "I") ? Order::Little : Order::Big;
    const bool big = head.number(2, 2, order) == 43U;
    const PictureDirectory directory(head, order, big);
    const auto at = directory.number(big ? 8 : 4, directory.wordBytes());
    if (!at || *at < 8)
        return {};
    const auto count = directory.number(*at, directory.countBytes());
    if (!count)
        return needs(plus(at, directory.countBytes(), directory.entryBytes()), size,
                     "The place of the first directory");
    if (*count == 0 || *count > 4096)
        return {};
    const auto first = *at + directory.countBytes();
    const auto end = plus(first, times(count, directory.entryBytes()));
    if (auto cut = needs(end, size, "The first directory"))
        return cut;
    return needs(contentEnd(directory, first, *count), size, "The first directory's picture");
}

// "RAF" (Fujifilm): 0 "FUJIFILMCCD-RAW", 84, 92 and 100 be32 places of preview, header and pixels, each with its be32
// length.
Opinion fujifilmOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t end = 0;
    for (const std::uint64_t at : {84U, 92U, 100U})
        end = std::max(end, plus(head.be32(at), head.be32(at + 4)).value_or(0));
    return needs(end, size, "The header");
}

// "MRW" (Minolta): 0 "\0MRM", 4 be32 length of the header behind these 8 bytes. Pixels follow.
Opinion minoltaOpinion(Bytes head, std::uint64_t size) {
    return needs(plus(head.be32(4), 9), size, "The header");
}

// ITU-T T.800 (JPEG 2000 codestream): 0 FF4F FF51; segments with be16 length; FF90 begins a part of a tile: 6 be32 its
// length (0: to the end).
Opinion codestreamOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 2;
    while (const auto marker = head.be16(at)) {
        const auto part = head.be32(at + 6);
        if (marker == 0xFF90U)
            return part && *part != 0 ? needs(plus(at, part, 2), size, "The first tile") : Opinion();
        const auto length = head.be16(at + 2);
        if (*marker < 0xFF00U || !length || *length < 2)
            return {};
        at += 2 + *length;
    }
    return needs(at, size, "The chain of segments");
}

}  // namespace quillon
