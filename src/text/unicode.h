// SPDX-License-Identifier: MIT
#pragma once

// Steps through UTF-8 and UTF-16 one character at a time, and the simple lower-casing of characters. Everything else in
// this folder that looks inside Unicode text does it through these.

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

[[nodiscard]] constexpr bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
[[nodiscard]] constexpr bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The character at `index`, which moves behind it. Strict: overlong forms, surrogates and values above 10FFFF are not
/// valid. An invalid byte gives no value and moves the index by that one byte.
[[nodiscard]] std::optional<char32_t> nextUtf8(std::string_view text, std::size_t& index);

/// The character at `index`, which moves behind it. A lone surrogate is given as it stands.
[[nodiscard]] char32_t nextUtf16(std::u16string_view text, std::size_t& index);

/// Appends one character. A surrogate value is written in the three-byte form, so that nothing is lost on the way to
/// a path that cannot exist.
void appendUtf8(std::string& out, char32_t character);
void appendUtf16(std::u16string& out, char32_t character);

[[nodiscard]] std::u16string utf8ToUtf16(std::string_view text);  ///< invalid bytes become U+FFFD
[[nodiscard]] std::string utf16ToUtf8(std::u16string_view text);  ///< lone surrogates become U+FFFD

/// One code unit above ASCII in lower case.
[[nodiscard]] char16_t lowerHighUnit(char16_t unit);

/// One code unit in lower case; characters outside the basic plane are left alone.
[[nodiscard]] inline char16_t lowerUnit(char16_t unit) {
    if (unit >= 0x80) {
        return lowerHighUnit(unit);
    }
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

[[nodiscard]] std::u16string lowered(std::u16string text);

}  // namespace quillon
