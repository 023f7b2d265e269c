// SPDX-License-Identifier: MIT
#include "testing/second_opinion/end_marks.h"

#include <algorithm>

#include "testing/second_opinion/check_sums.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kNone = std::string_view::npos;

std::uint64_t little(std::string_view bytes, std::size_t at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = width; i > 0; --i) value = value << 8U | static_cast<unsigned char>(bytes[at + i - 1]);
    return value;
}

// Without blanks, line ends and zeros behind the last character.
std::string_view trimmed(std::string_view text) {
    const auto last = text.find_last_not_of(" \t\r\n\0\x1A"sv);
    return last == kNone ? std::string_view() : text.substr(0, last + 1);
}

// Coded pixels hold no FF without one of these behind it; other data do, some 250 times in 64 KB. A picture has `few`
// of them at least.
bool isCodedPicture(std::string_view bytes, std::size_t few) {
    std::size_t marks = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
        if (bytes[i] != '\xFF')
            continue;
        const auto next = static_cast<unsigned char>(bytes[i + 1]);
        const bool inScan = next == 0 || next == 0xFF || (next >= 0xD0 && next <= 0xD7);
        const bool ahead = next == 0xC4 || (next >= 0xDA && next <= 0xDD);
        if (!inScan && !ahead)
            return false;
        ++marks;
    }
    return marks >= few;
}

}  // namespace

// ITU-T T.81: FF D9 behind the last scan, which begins with FF DA. A preview has an end of its own, ahead of the scan.
// A photo may carry a film or a maker's data, longer than these bytes: what is no coded picture is none that was cut.
bool jpegEnds(EndBytes end) {
    constexpr std::size_t fewInLongEnd = 16;
    const auto mark = end.bytes.rfind("\xFF\xD9"sv);
    const auto scan = end.bytes.rfind("\xFF\xDA\0"sv);
    if (mark != kNone && (scan == kNone || mark > scan))
        return true;
    if (end.isWhole())
        return scan != kNone && !isCodedPicture(end.bytes.substr(scan), 0);
    return end.isLong && !isCodedPicture(scan == kNone ? end.bytes : end.bytes.substr(scan), fewInLongEnd);
}

// "Portable Network Graphics": the last chunk, its check sum with it.
bool pngEnds(EndBytes end) {
    return end.bytes.find("IEND\xAE\x42\x60\x82"sv) != kNone;
}

// "Graphics Interchange Format": an empty sub-block and 3B. Some writers end with the empty sub-block alone.
bool gifEnds(EndBytes end) {
    const auto near = end.bytes.substr(end.bytes.size() - std::min<std::size_t>(end.bytes.size(), 512));
    const bool lacksMark = near.size() > 1 && near.back() == '\0' && near[near.size() - 2] != '\0';
    return lacksMark || trimmed(near).ends_with(';') || near.find("\0;"sv) != kNone;
}

// ISO 32000: "%%EOF", behind each change of the document. What follows the last one has no more objects.
bool pdfEnds(EndBytes end) {
    const auto mark = end.bytes.rfind("%%EOF");
    return mark != kNone && end.bytes.find("endobj", mark) == kNone && end.bytes.find(" obj", mark) == kNone;
}

// "APPNOTE.TXT" (PKWARE): "PK\5\6", 12 le32 length and 16 le32 place of the directory (FFFFFFFF: in another record),
// which ends here, or some records ahead. A package within the package is no end, as its directory has another place.
// Some writers tell places of large packages without their high half.
bool zipEnds(EndBytes end) {
    constexpr std::size_t record = 22;
    constexpr std::size_t locator = 20;
    for (auto at = end.bytes.rfind("PK\5\6"sv); at != kNone;
         at = at == 0 ? kNone : end.bytes.rfind("PK\5\6"sv, at - 1)) {
        if (at + record > end.bytes.size())
            continue;
        const auto length = little(end.bytes, at + 12, 4);
        const auto place = little(end.bytes, at + 16, 4);
        const auto gap = (end.begin + at - place - length) & 0xFFFFFFFFU;
        const bool isLarge = at >= locator && end.bytes.substr(at - locator, 4) == "PK\6\7";
        if (gap == 0 || isLarge)
            return true;
    }
    return false;
}

// "RAR 5.0 archive format": a block of kind 5: le32 CRC-32 of the rest: length 3, kind, flags 4, flags of the archive.
bool rar5Ends(EndBytes end) {
    for (auto at = end.bytes.rfind("\x03\x05\x04"sv); at != kNone && at >= 4;
         at = end.bytes.rfind("\x03\x05\x04"sv, at - 1)) {
        if (at + 4 <= end.bytes.size() && little(end.bytes, at - 4, 4) == crc32Of(end.bytes.substr(at, 4)))
            return true;
    }
    return false;
}

// "The .xz File Format": "YZ", then zeros in fours.
bool xzEnds(EndBytes end) {
    const auto last = end.bytes.find_last_not_of('\0');
    return last != kNone && last > 0 && end.bytes.substr(last - 1, 2) == "YZ";
}

// "Rich Text Format" (Microsoft): one group in braces. Some writers put a line or a character of their own behind it.
bool richTextEnds(EndBytes end) {
    const auto text = trimmed(end.bytes);
    return text.substr(text.size() - std::min<std::size_t>(text.size(), 4)).find('}') != kNone;
}

// XML: the last tag or remark is closed.
bool markupEnds(EndBytes end) {
    const auto text = trimmed(end.bytes);
    if (!text.ends_with('>'))
        return false;
    const auto tag = text.rfind('<');
    return tag == kNone || text.ends_with("-->") || text.substr(tag, 2) == "</" || text.substr(tag, 2) == "<!" ||
           text.ends_with("/>") || text.ends_with("?>");
}

}  // namespace quillon
