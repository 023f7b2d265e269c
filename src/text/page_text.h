// SPDX-License-Identifier: MIT
#pragma once

// The 8-bit page: text of settings, term files, rule lists, datagrams and header buffers. The page is Windows-1252, one
// byte per character; the five bytes that the page leaves open (81 8D 8F 90 9D) stand for the control character of the
// same number, so that every byte has a character and every text survives a round trip.

#include <compare>
#include <span>
#include <string>
#include <string_view>

namespace quillon {

/// Text in the 8-bit page. A type of its own, so that no page bytes are taken for UTF-8 or for a path by accident.
struct PageText {
    std::string bytes;

    // NOLINTNEXTLINE(modernize-use-nullptr): takes the 0 that the compiler compares with for a pointer
    friend auto operator<=>(const PageText&, const PageText&) = default;
};

/// The character of one page byte.
[[nodiscard]] char16_t pageToUnicode(unsigned char byte);

/// Page bytes as UTF-16. Every byte gives exactly one code unit.
[[nodiscard]] std::u16string toUtf16(const PageText& text);
[[nodiscard]] std::u16string pageBytesToUtf16(std::string_view bytes);

/// Page bytes as UTF-8, for showing.
[[nodiscard]] std::string toUtf8(const PageText& text);

/// UTF-16 as page bytes. A character outside the page becomes "?"; a surrogate pair is one character and one "?".
[[nodiscard]] PageText toPage(std::u16string_view text);

/// UTF-8 as page bytes. A character outside the page and a byte that is not valid UTF-8 become "?".
[[nodiscard]] PageText toPage(std::string_view utf8);

/// The page's lower-casing: one byte for one byte, also for the high letters.
[[nodiscard]] unsigned char pageLower(unsigned char byte);

/// Lower-cases page bytes in place.
void lowerPageInPlace(std::span<char> bytes);

[[nodiscard]] PageText lowered(PageText text);

}  // namespace quillon
