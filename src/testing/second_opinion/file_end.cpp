// SPDX-License-Identifier: MIT
#include "testing/second_opinion/file_end.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "testing/second_opinion/boxes.h"
#include "testing/second_opinion/end_marks.h"
#include "testing/second_opinion/second_opinion.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

struct KnownEnd {
    std::string_view format;  // as the second opinion on the head names it, or the beginning of the head
    bool byName = true;       // which of the two
    bool (*ends)(EndBytes end);
    std::string_view mark;
};

constexpr auto kEnds = std::to_array<KnownEnd>({
    {"JPEG", true, jpegEnds, "The end of the picture (FF D9)"},
    {"PNG", true, pngEnds, "The last chunk (IEND)"},
    {"GIF", true, gifEnds, "The last mark (3B)"},
    {"PDF", true, pdfEnds, "The last mark (%%EOF)"},
    {"zip", true, zipEnds, "The end record with its directory"},
    {"RAR 5", true, rar5Ends, "The block that ends the archive"},
    {"xz", true, xzEnds, "The footer (YZ)"},
    {"{\\rtf", false, richTextEnds, "The last brace"},
    {"<?xml", false, markupEnds, "The last closed tag"},
});

constexpr std::string_view kFilm = "ISO media";
constexpr std::string_view kPacketFilm = "ASF";
// The beginnings of kinds: packets; indexes by time, by packet, of objects and of time codes.
constexpr std::array<std::string_view, 5> kPacketObjects = {"\x36\x26\xB2\x75", "\x90\x08\x00\x33"sv,
                                                            "\xD3\x29\xE2\xD6", "\xF8\x03\xB1\xFE", "\xD0\x3F\xB7\x3C"};

const KnownEnd* knownEnd(std::string_view head) {
    const auto format = secondOpinionFormat(head);
    for (const auto& end : kEnds) {
        if (end.byName ? format == end.format : head.starts_with(end.format))
            return &end;
    }
    return nullptr;
}

Opinion missing(const KnownEnd& end, std::string_view tail, std::uint64_t size) {
    const bool zeros = tail.find_first_not_of('\0') == std::string_view::npos;
    return Doubt{
        DoubtKind::Cut, *plus(size, 1),
        fmt::format("{} is missing at the end of the file{}.", end.mark, zeros ? ", which holds zeros instead" : "")};
}

Result<EndBytes> lastBytes(std::uint64_t count, std::uint64_t size, EndReader& reader, std::string& buffer) {
    const auto begin = size - std::min(count, size);
    auto bytes = reader.read(begin, size - begin);
    if (!bytes)
        return failure(bytes.error());
    buffer = std::move(*bytes);
    return EndBytes{buffer, begin, count == kLongEnd};
}

Result<Opinion> markOpinion(const KnownEnd& known, std::uint64_t size, EndReader& reader) {
    std::string buffer;
    for (const auto count : {kShortEnd, kLongEnd}) {
        const auto end = lastBytes(count, size, reader, buffer);
        if (!end)
            return failure(end.error());
        if (known.ends(*end))
            return Opinion();
        if (end->isWhole())
            break;
    }
    const auto tail = std::string_view(buffer).substr(buffer.size() - std::min<std::size_t>(buffer.size(), kShortEnd));
    return missing(known, tail, size);
}

// The bytes of a box's header, out of the head or of the file.
Result<std::string> boxHeader(Bytes head, std::uint64_t at, std::uint64_t size, EndReader& reader, int& reads) {
    constexpr std::uint64_t header = 16;
    const auto count = std::min(header, size - at);
    if (head.holds(at, count))
        return std::string(head.part(at, count));
    ++reads;
    return reader.read(at, count);
}

// Box by box to the end of the file; what is no box is padding or a maker's data, and too many boxes are left alone.
Result<Opinion> filmOpinion(Bytes head, std::uint64_t size, EndReader& reader) {
    bool index = false;
    bool media = false;
    std::uint64_t at = 0;
    int reads = 0;
    while (at < size && reads < kBoxReads) {
        const auto header = boxHeader(head, at, size, reader, reads);
        if (!header)
            return failure(header.error());
        const auto box = boxAt(Bytes(*header), 0);
        if (!box)
            return Opinion();
        index |= isMediaIndex(box->kind);
        media |= box->kind == "mdat";
        const auto end = box->end ? *plus(at, box->end) : size;
        if (auto cut = needs(end, size, fmt::format("The box \"{}\"", box->kind)))
            return cut;
        at = end;
    }
    if (at == size && media && !index)
        return noIndex("The file ends with its media data (mdat): the index (moov) is missing.");
    return Opinion();
}

// "Advanced Systems Format" (Microsoft): 16 le64 length of the header; behind it objects: 16 bytes that tell their
// kind, le64 length, which counts these. What is no object is padding, and a length of none that of a stream whose
// writer did not come back.
Result<Opinion> packetFilmOpinion(Bytes head, std::uint64_t size, EndReader& reader) {
    constexpr std::uint64_t object = 24;
    auto at = head.le64(16).value_or(size);
    for (int reads = 0; at < size && size - at >= object && reads < kBoxReads; ++reads) {
        const auto bytes = reader.read(at, object);
        if (!bytes)
            return failure(bytes.error());
        const auto length = Bytes(*bytes).le64(16);
        if (!length || *length < object ||
            std::ranges::find(kPacketObjects, bytes->substr(0, 4)) == kPacketObjects.end())
            return Opinion();
        const auto end = plus(at, length);
        if (auto cut = needs(end, size, "The last object of the film"))
            return cut;
        at = *end;
    }
    return Opinion();
}

}  // namespace

bool hasKnownEnd(std::string_view head, std::uint64_t size) {
    return size > 0 && (knownEnd(head) != nullptr || secondOpinionFormat(head) == kFilm ||
                        secondOpinionFormat(head) == kPacketFilm);
}

Result<Opinion> fileEndOpinion(std::string_view head, std::uint64_t size, EndReader& reader) {
    if (size == 0)
        return Opinion();
    if (secondOpinionFormat(head) == kFilm)
        return filmOpinion(Bytes(head), size, reader);
    if (secondOpinionFormat(head) == kPacketFilm)
        return packetFilmOpinion(Bytes(head), size, reader);
    const auto* const known = knownEnd(head);
    return known == nullptr ? Opinion() : markOpinion(*known, size, reader);
}

}  // namespace quillon
