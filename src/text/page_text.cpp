// SPDX-License-Identifier: MIT
#include "text/page_text.h"

#include <array>
#include <cstdint>

#include "text/unicode.h"

namespace quillon {

namespace {

// The characters of the bytes 80 to 9F; all other bytes are their own character.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// All bits or none, with no branch: the compiler then lowers many bytes at once. Every header that is read goes through
// here.
constexpr unsigned char maskOf(bool set) {
    return static_cast<unsigned char>(-static_cast<int>(set));
}

constexpr unsigned char lowerOf(unsigned char byte) {
    const auto isIn = [byte](unsigned char first, unsigned char last) {
        return maskOf(static_cast<unsigned char>(byte - first) <= static_cast<unsigned char>(last - first));
    };
    const unsigned letters = (isIn('A', 'Z') | isIn(0xC0, 0xD6) | isIn(0xD8, 0xDE)) & 0x20U;
    const unsigned carons = (isIn(0x8A, 0x8A) | isIn(0x8C, 0x8C) | isIn(0x8E, 0x8E)) & 0x10U;
    const unsigned diaeresis = isIn(0x9F, 0x9F) & 0x60U;
    return static_cast<unsigned char>(byte + (letters | carons | diaeresis));
}

constexpr std::size_t kBlock = 16;

char pageByteOf(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<char>(static_cast<unsigned char>(character));
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == character)
            return static_cast<char>(static_cast<unsigned char>(0x80 + i));
    }
    return '?';
}

}  // namespace

char16_t pageToUnicode(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80U] : static_cast<char16_t>(byte);
}

std::u16string pageBytesToUtf16(std::string_view bytes) {
    std::u16string out;
    out.reserve(bytes.size());
    for (const char c : bytes) out.push_back(pageToUnicode(static_cast<unsigned char>(c)));
    return out;
}

std::u16string toUtf16(const PageText& text) {
    return pageBytesToUtf16(text.bytes);
}

std::string toUtf8(const PageText& text) {
    std::string out;
    out.reserve(text.bytes.size());
    for (const char c : text.bytes) appendUtf8(out, pageToUnicode(static_cast<unsigned char>(c)));
    return out;
}

PageText toPage(std::u16string_view text) {
    PageText out;
    out.bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) out.bytes.push_back(pageByteOf(nextUtf16(text, i)));
    return out;
}

PageText toPage(std::string_view utf8) {
    PageText out;
    out.bytes.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();)
        out.bytes.push_back(pageByteOf(nextUtf8(utf8, i).value_or(kReplacementCharacter)));
    return out;
}

unsigned char pageLower(unsigned char byte) {
    return lowerOf(byte);
}

void lowerPageInPlace(std::span<char> bytes) {
    const auto lower = [](auto piece) {
        for (char& c : piece) c = static_cast<char>(lowerOf(static_cast<unsigned char>(c)));
    };
    for (; bytes.size() >= kBlock; bytes = bytes.subspan(kBlock)) lower(bytes.first<kBlock>());
    lower(bytes);
}

PageText lowered(PageText text) {
    lowerPageInPlace(text.bytes);
    return text;
}

}  // namespace quillon
