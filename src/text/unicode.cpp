// SPDX-License-Identifier: MIT
#include "text/unicode.h"

#include <clocale>
#include <cwctype>
#include <memory>
#include <vector>

namespace quillon {

namespace {

struct Utf8Lead {
    std::size_t length;
    char32_t bits;
    char32_t least;  // the smallest character that may use this length
};

std::optional<Utf8Lead> leadOf(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF)
        return Utf8Lead{2, byte & 0x1FU, 0x80};
    if (byte >= 0xE0 && byte <= 0xEF)
        return Utf8Lead{3, byte & 0x0FU, 0x800};
    if (byte >= 0xF0 && byte <= 0xF4)
        return Utf8Lead{4, byte & 0x07U, 0x10000};
    return std::nullopt;
}

// The lower-case forms of the basic plane, asked once from the C library's own Unicode locale, whatever locale the
// user has: a skip list must mean the same on every workstation.
std::vector<char16_t> makeLowerTable() {
    std::vector<char16_t> table(0x10000);
    const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    for (std::size_t unit = 0; unit < table.size(); ++unit) {
        const auto lower =
            locale != nullptr ? towlower_l(static_cast<wint_t>(unit), locale) : towlower(static_cast<wint_t>(unit));
        table[unit] = lower < 0x10000 ? static_cast<char16_t>(lower) : static_cast<char16_t>(unit);
    }
    if (locale != nullptr)
        freelocale(locale);
    return table;
}

}  // namespace

std::optional<char32_t> nextUtf8(std::string_view text, std::size_t& index) {
    const auto first = static_cast<unsigned char>(text[index]);
    const std::size_t start = index++;
    if (first < 0x80)
        return first;
    const auto lead = leadOf(first);
    if (!lead || text.size() - start < lead->length)
        return std::nullopt;
    char32_t character = lead->bits;
    for (std::size_t i = 1; i < lead->length; ++i) {
        const auto byte = static_cast<unsigned char>(text[start + i]);
        if ((byte & 0xC0U) != 0x80)
            return std::nullopt;
        character = (character << 6) | (byte & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < lead->least || character > 0x10FFFF || surrogate)
        return std::nullopt;
    index = start + lead->length;
    return character;
}

char32_t nextUtf16(std::u16string_view text, std::size_t& index) {
    const char16_t unit = text[index++];
    if (!isHighSurrogate(unit) || index == text.size() || !isLowSurrogate(text[index]))
        return unit;
    const char16_t low = text[index++];
    return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (static_cast<char32_t>(low) - 0xDC00);
}

void appendUtf8(std::string& out, char32_t character) {
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

void appendUtf16(std::u16string& out, char32_t character) {
    if (character < 0x10000) {
        out.push_back(static_cast<char16_t>(character));
        return;
    }
    const char32_t offset = character - 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
}

std::u16string utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) appendUtf16(out, nextUtf8(text, i).value_or(kReplacementCharacter));
    return out;
}

std::string utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const char32_t character = nextUtf16(text, i);
        const bool lone = character >= 0xD800 && character <= 0xDFFF;
        appendUtf8(out, lone ? kReplacementCharacter : character);
    }
    return out;
}

char16_t lowerHighUnit(char16_t unit) {
    static const std::vector<char16_t> table = makeLowerTable();
    return table[unit];
}

std::u16string lowered(std::u16string text) {
    for (char16_t& unit : text) unit = lowerUnit(unit);
    return text;
}

}  // namespace quillon
