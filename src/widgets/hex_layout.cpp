// SPDX-License-Identifier: MIT
// Lines, columns and texts of a hex view.
#include "widgets/hex_layout.h"

#include <algorithm>

#include <fmt/format.h>

#include "text/page_text.h"
#include "text/unicode.h"

namespace quillon {
namespace {

constexpr int kHalf = kHexBytesPerLine / 2;

// The byte's place in the line from a column counted from the start of the hex pane: three columns a byte, and one more
// between the halves.
int byteOfHexColumn(int column) {
    const int firstHalf = kHalf * 3 + 1;
    return column < firstHalf ? std::min(column / 3, kHalf - 1) : kHalf + (column - firstHalf) / 3;
}

}  // namespace

int HexLayout::bytesInLine(int line) const {
    return std::clamp(bytes_ - line * kHexBytesPerLine, 0, kHexBytesPerLine);
}

int HexLayout::columnOf(int index, HexPane pane) const {
    const int place = index % kHexBytesPerLine;
    if (pane == HexPane::Text)
        return kTextStart + place;
    return kHexStart + place * 3 + (place >= kHalf ? 1 : 0);
}

std::optional<HexHit> HexLayout::hit(int line, int column) const {
    const int inLine = line < 0 ? 0 : bytesInLine(line);
    const int hexEnd = kTextStart - 2;
    if (inLine == 0 || column < kHexStart || (column >= hexEnd && column < kTextStart))
        return std::nullopt;
    const HexPane pane = column < kTextStart ? HexPane::Hex : HexPane::Text;
    const int place = pane == HexPane::Hex ? byteOfHexColumn(column - kHexStart) : column - kTextStart;
    return HexHit{line * kHexBytesPerLine + std::min(place, inLine - 1), pane};
}

int HexLayout::moved(int caret, HexKey key, int pageLines) const {
    if (bytes_ == 0)
        return 0;
    const int lineStart = caret - caret % kHexBytesPerLine;
    const int page = std::max(pageLines, 1) * kHexBytesPerLine;
    const int last = bytes_ - 1;
    switch (key) {
        case HexKey::Left:
            return std::max(caret - 1, 0);
        case HexKey::Right:
            return std::min(caret + 1, last);
        case HexKey::Up:
            return caret >= kHexBytesPerLine ? caret - kHexBytesPerLine : caret;
        case HexKey::Down:
            return caret + kHexBytesPerLine <= last ? caret + kHexBytesPerLine : caret;
        case HexKey::PageUp:
            return caret >= page ? caret - page : caret % kHexBytesPerLine;
        case HexKey::PageDown:
            return std::min(caret + page, last);
        case HexKey::LineStart:
            return lineStart;
        case HexKey::LineEnd:
            return std::min(lineStart + kHexBytesPerLine - 1, last);
        case HexKey::Start:
            return 0;
        case HexKey::End:
            return last;
    }
    return caret;
}

std::string hexOffset(int offset) {
    return fmt::format("{:08X}", offset);
}

std::string hexByte(unsigned char byte) {
    return fmt::format("{:02X}", byte);
}

char16_t hexCharacter(unsigned char byte) {
    const char16_t character = pageToUnicode(byte);
    const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
    // The soft hyphen and the hard blank have no picture of their own.
    return control || character == 0xAD || character == 0xA0 ? u'.' : character;
}

std::string hexLine(std::string_view bytes, int line) {
    const HexLayout layout(static_cast<int>(bytes.size()));
    const auto start = static_cast<std::size_t>(line) * kHexBytesPerLine;
    const std::string_view own = bytes.substr(std::min(start, bytes.size()), kHexBytesPerLine);
    std::string text = hexOffset(line * kHexBytesPerLine);
    for (std::size_t i = 0; i < own.size(); ++i) {
        text.resize(static_cast<std::size_t>(layout.columnOf(static_cast<int>(i), HexPane::Hex)), ' ');
        text += hexByte(static_cast<unsigned char>(own[i]));
    }
    text.resize(HexLayout::kTextStart, ' ');
    return text + hexText(own);
}

std::string hexPairs(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        if (!text.empty())
            text += ' ';
        text += hexByte(static_cast<unsigned char>(byte));
    }
    return text;
}

std::string hexText(std::string_view bytes) {
    std::u16string text;
    for (const char byte : bytes) text += hexCharacter(static_cast<unsigned char>(byte));
    return utf16ToUtf8(text);
}

}  // namespace quillon
