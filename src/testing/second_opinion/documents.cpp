// SPDX-License-Identifier: MIT
// Documents that tell their own length.
#include <charconv>

#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

// The whole number behind a key of a dictionary, white space between them.
Number numberBehind(std::string_view text, std::string_view key) {
    const auto at = text.find(key);
    if (at == text.npos)
        return std::nullopt;
    const auto rest = text.substr(at + key.size());
    const auto digits = rest.substr(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
    std::uint64_t value = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    // A number that reaches the end of the text may go on behind it.
    if (parsed.ec != std::errc() || parsed.ptr == digits.data() + digits.size())
        return std::nullopt;
    return value;
}

}  // namespace

// ISO 32000, "Linearized PDF": the first object is a dictionary with /Linearized, its /L is the length of the file. A
// document that was changed later is longer.
Opinion pdfOpinion(Bytes head, std::uint64_t size) {
    const auto text = head.part(0, kHeaderBytes);
    const auto begin = text.find("/Linearized");
    const auto object = text.find("obj");
    // Only the first object makes a document linearised.
    if (begin == text.npos || object == text.npos || object > begin || text.find("obj", object + 3) < begin)
        return {};
    const auto end = text.find(">>", begin);
    const auto dictionary = text.substr(object, end == text.npos ? end : end + 2 - object);
    constexpr std::uint64_t lineEnds = 16;
    return needs(numberBehind(dictionary, "/L "), size, "The linearised document", lineEnds);
}

// "Digital Imaging and Communications in Medicine", part 10: 128 "DICM", 132 (0002,0000) "UL", 140 le32 length of the
// group behind these 12 bytes.
Opinion dicomOpinion(Bytes head, std::uint64_t size) {
    return head.has(132, "\2\0\0\0UL"sv) ? needs(plus(head.le32(140), 144), size, "The first group") : Opinion();
}

// "Palm File Format": 76 be16 count of records, from 78 on entries of 8 bytes: 0 be32 place.
Opinion mobileBookOpinion(Bytes head, std::uint64_t size) {
    const auto count = head.be16(76);
    if (!count)
        return {};
    if (*count == 0)
        return emptyContainer("The book has no records.");
    std::uint64_t end = 78 + 8 * *count;
    for (std::uint64_t i = 0; i < *count; ++i) end = std::max(end, head.be32(78 + 8 * i).value_or(0));
    return needs(end, size, "The table of records");
}

// "Encapsulated PostScript", DOS form: 0 C5D0D3C6, 4, 12 and 20 le32 places of text, metafile and TIFF, each with its
// le32 length.
Opinion postScriptOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t end = 0;
    for (const std::uint64_t at : {4U, 12U, 20U})
        end = std::max(end, plus(head.le32(at), head.le32(at + 4)).value_or(0));
    return needs(end, size, "The header");
}

}  // namespace quillon
