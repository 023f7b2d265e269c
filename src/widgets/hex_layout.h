// SPDX-License-Identifier: MIT
#pragma once

// The arithmetic of a hex view, without a window: which byte stands in which line and character column, what a click
// hits, where a key takes the caret, and the texts of a line. Sixteen bytes a line:
//
//   00000010  4D 5A 90 00 03 00 00 00  04 00 00 00 FF FF 00 00  MZ..............

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

inline constexpr int kHexBytesPerLine = 16;

enum class HexPane { Hex, Text };
enum class HexKey { Left, Right, Up, Down, PageUp, PageDown, LineStart, LineEnd, Start, End };

struct HexHit {
    int index = 0;  ///< byte from 0
    HexPane pane = HexPane::Hex;

    friend bool operator==(const HexHit&, const HexHit&) = default;
};

class HexLayout {
public:
    /// Character columns; a character is as wide as any other.
    static constexpr int kOffsetColumns = 8;
    static constexpr int kHexStart = kOffsetColumns + 2;
    static constexpr int kTextStart = kHexStart + kHexBytesPerLine * 3 - 1 + 1 + 2;
    static constexpr int kColumns = kTextStart + kHexBytesPerLine;

    explicit HexLayout(int bytes = 0) : bytes_(bytes) {}

    [[nodiscard]] int bytes() const { return bytes_; }
    /// Lines with bytes; 0 for no bytes.
    [[nodiscard]] int lines() const { return (bytes_ + kHexBytesPerLine - 1) / kHexBytesPerLine; }
    [[nodiscard]] int lineOf(int index) const { return index / kHexBytesPerLine; }
    /// Bytes in a line: 16, or fewer in the last one.
    [[nodiscard]] int bytesInLine(int line) const;

    /// First character column of a byte in a pane. In the hex pane a byte takes two columns.
    [[nodiscard]] int columnOf(int index, HexPane pane) const;

    /// The byte under a character of a line. The gaps of a pane count to the byte before them, a place behind the last
    /// byte to the last one; the offset column, the gap between the panes and lines without bytes hit nothing.
    [[nodiscard]] std::optional<HexHit> hit(int line, int column) const;

    /// Where a key takes the caret; stays within the bytes. `pageLines` are the lines of a page, at least 1.
    [[nodiscard]] int moved(int caret, HexKey key, int pageLines) const;

private:
    int bytes_;
};

/// "000001F0": the offset of a line, eight hexadecimal digits.
[[nodiscard]] std::string hexOffset(int offset);

/// "4D": one byte as two hexadecimal digits.
[[nodiscard]] std::string hexByte(unsigned char byte);

/// The character of a byte in the text pane: the page's character when it can be printed, else ".".
[[nodiscard]] char16_t hexCharacter(unsigned char byte);

/// A whole line as text, as in the example above; UTF-8. For readers of the screen and for copying.
[[nodiscard]] std::string hexLine(std::string_view bytes, int line);

/// Bytes as pairs of digits with blanks between: "4D 5A".
[[nodiscard]] std::string hexPairs(std::string_view bytes);

/// Bytes as the text pane shows them; UTF-8.
[[nodiscard]] std::string hexText(std::string_view bytes);

}  // namespace quillon
