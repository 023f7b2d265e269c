// SPDX-License-Identifier: MIT
#pragma once

// Comma fields without quoting, as all lists and term files have them, and the cutting of blanks.

#include <bit>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The first place of an ASCII character from `from` on; npos when there is none.
[[nodiscard]] inline std::size_t findAscii(std::string_view text, char character, std::size_t from = 0) {
    return text.find(character, from);
}
/// Looks for the low byte first: many times quicker than going from unit to unit.
[[nodiscard]] inline std::size_t findAscii(std::u16string_view text, char16_t character, std::size_t from = 0) {
    static_assert(std::endian::native == std::endian::little, "the low byte of a unit comes first");
    const auto* const bytes = reinterpret_cast<const char*>(text.data());
    for (std::size_t at = from * 2; at < text.size() * 2; ++at) {
        const auto* const hit = static_cast<const char*>(std::memchr(bytes + at, character, text.size() * 2 - at));
        if (hit == nullptr)
            break;
        at = static_cast<std::size_t>(hit - bytes);
        if (at % 2 == 0 && text[at / 2] == character)
            return at / 2;
    }
    return text.npos;
}

/// Splits at every separator; n separators give n + 1 fields and an empty text gives none, as the readers of the lists
/// count them. The views look into `text`. The vector is replaced, keeping its room.
template <typename Char>
void splitInto(std::vector<std::basic_string_view<Char>>& fields, std::basic_string_view<Char> text, Char separator) {
    fields.clear();
    if (text.empty())
        return;
    std::size_t start = 0;
    while (true) {
        const auto end = findAscii(text, separator, start);
        if (end == text.npos)
            break;
        fields.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    fields.push_back(text.substr(start));
}

template <typename Char>
[[nodiscard]] std::vector<std::basic_string_view<Char>> split(std::basic_string_view<Char> text, Char separator) {
    std::vector<std::basic_string_view<Char>> fields;
    splitInto(fields, text, separator);
    return fields;
}

[[nodiscard]] inline std::vector<std::string_view> splitFields(std::string_view text, char separator = ',') {
    return split(text, separator);
}
[[nodiscard]] inline std::vector<std::u16string_view> splitFields(std::u16string_view text, char16_t separator = u',') {
    return split(text, separator);
}

/// Blanks (U+0020 alone) cut on the left, on the right, on both sides.
template <typename Char>
[[nodiscard]] std::basic_string_view<Char> trimLeft(std::basic_string_view<Char> text) {
    const auto first = text.find_first_not_of(Char(' '));
    return first == text.npos ? std::basic_string_view<Char>{} : text.substr(first);
}
template <typename Char>
[[nodiscard]] std::basic_string_view<Char> trimRight(std::basic_string_view<Char> text) {
    return text.substr(0, text.find_last_not_of(Char(' ')) + 1);
}
template <typename Char>
[[nodiscard]] std::basic_string_view<Char> trim(std::basic_string_view<Char> text) {
    return trimLeft(trimRight(text));
}
[[nodiscard]] inline std::string_view trimLeft(std::string_view text) {
    return trimLeft<char>(text);
}
[[nodiscard]] inline std::string_view trimRight(std::string_view text) {
    return trimRight<char>(text);
}
[[nodiscard]] inline std::string_view trim(std::string_view text) {
    return trim<char>(text);
}
[[nodiscard]] inline std::u16string_view trimLeft(std::u16string_view text) {
    return trimLeft<char16_t>(text);
}
[[nodiscard]] inline std::u16string_view trimRight(std::u16string_view text) {
    return trimRight<char16_t>(text);
}
[[nodiscard]] inline std::u16string_view trim(std::u16string_view text) {
    return trim<char16_t>(text);
}

/// The lines of an 8-bit file read as a whole: a line ends at CR LF, at LF or at CR; the last line needs no end, and a
/// file that ends in a line end has no empty line behind it. The views look into `text`.
[[nodiscard]] inline std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = text.find_first_of("\r\n", start);
        if (end == text.npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
        start = end + (pair ? 2 : 1);
    }
    return lines;
}

/// `text` with every `from` replaced by `to`. An empty `from` occurs nowhere.
[[nodiscard]] inline std::string replacedAll(std::string text, std::string_view from, std::string_view to) {
    if (from.empty())
        return text;
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace quillon
