// SPDX-License-Identifier: MIT
#include "text/list_text.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "text/unicode.h"

namespace quillon {

namespace {

constexpr char16_t kEscape = 0xDC00;

// Bytes that mean something in a row and so cannot stand in it as themselves.
constexpr bool mustEscape(unsigned char byte) {
    return byte < 0x20 || byte == '>' || byte == '\\';
}

constexpr bool isPlain(unsigned char byte) {
    return byte >= 0x20 && byte < 0x80 && byte != '>' && byte != '\\' && byte != ',';
}

// One character that is not plain; `i` moves behind it.
void appendSpecial(std::u16string& out, std::string_view nativePath, std::size_t& i) {
    const auto byte = static_cast<unsigned char>(nativePath[i]);
    if (byte == ',') {
        out.push_back(u'>');
        ++i;
    } else if (mustEscape(byte)) {
        out.push_back(static_cast<char16_t>(kEscape + byte));
        ++i;
    } else {
        const auto character = nextUtf8(nativePath, i);
        appendUtf16(out, character ? *character : static_cast<char32_t>(kEscape + byte));
    }
}

constexpr bool isEscaped(char32_t character) {
    return character >= kEscape && character <= kEscape + 0xFFU;
}

struct Range {
    char32_t first;
    char32_t last;
};

// Characters that hide or move what stands beside them: directions, line ends, joints, fillers, marks of annotations,
// tags. The joiners U+200C and U+200D and the selectors from U+FE00 are not among them, as words of several scripts and
// many pictures are written with them.
constexpr std::array<Range, 19> kHidden = {{{0xAD, 0xAD},
                                            {0x34F, 0x34F},
                                            {0x61C, 0x61C},
                                            {0x115F, 0x1160},
                                            {0x17B4, 0x17B5},
                                            {0x180B, 0x180F},
                                            {0x200B, 0x200B},
                                            {0x200E, 0x200F},
                                            {0x2028, 0x202E},
                                            {0x2060, 0x206F},
                                            {0x3164, 0x3164},
                                            {0xFEFF, 0xFEFF},
                                            {0xFFA0, 0xFFA0},
                                            {0xFFF0, 0xFFFB},
                                            {0xFFFE, 0xFFFF},
                                            {0x110BD, 0x110BD},
                                            {0x1BCA0, 0x1BCA3},
                                            {0x1D173, 0x1D17A},
                                            {0xE0000, 0xE0FFF}}};

void appendReadable(std::string& out, char32_t character) {
    const bool control = character < 0x20 || character == 0x7F || (character >= 0x80 && character < 0xA0);
    if (isHidden(character))
        out += fmt::format("<U+{:04X}>", static_cast<std::uint32_t>(character));
    else
        appendUtf8(out, control ? kReplacementCharacter : character);
}

constexpr std::u16string_view kSeparators = u"/\\";

}  // namespace

bool isHidden(char32_t character) {
    return character >= kHidden.front().first && std::ranges::any_of(kHidden, [character](const Range& range) {
               return character >= range.first && character <= range.last;
           });
}

void appendListText(std::u16string& out, std::string_view nativePath) {
    for (std::size_t i = 0; i < nativePath.size();) {
        // Nearly all of nearly every path is a run of plain characters.
        std::size_t end = i;
        while (end < nativePath.size() && isPlain(static_cast<unsigned char>(nativePath[end]))) {
            ++end;
        }
        out.append(nativePath.begin() + static_cast<std::ptrdiff_t>(i),
                   nativePath.begin() + static_cast<std::ptrdiff_t>(end));
        if (end == nativePath.size()) {
            return;
        }
        i = end;
        appendSpecial(out, nativePath, i);
    }
}

std::u16string toListText(std::string_view nativePath) {
    std::u16string out;
    out.reserve(nativePath.size());
    appendListText(out, nativePath);
    return out;
}

void toNative(std::u16string_view listPath, std::string& out) {
    // Most paths are ASCII to their end, where each unit is one byte.
    out.resize(listPath.size());
    const auto ascii = [](char16_t unit) { return unit == u'>' ? ',' : static_cast<char>(unit); };
    std::size_t i = 0;
    // No branch within a block: the compiler then takes it at once.
    constexpr std::size_t kBlock = 16;
    for (; i + kBlock <= listPath.size(); i += kBlock) {
        const char16_t* const units = listPath.data() + i;
        char16_t all = 0;
        for (std::size_t place = 0; place < kBlock; ++place) all |= units[place];
        if (all >= 0x80)
            break;
        std::array<char, kBlock> bytes;
        for (std::size_t place = 0; place < kBlock; ++place) bytes[place] = ascii(units[place]);
        std::ranges::copy(bytes, out.begin() + static_cast<std::ptrdiff_t>(i));
    }
    for (; i < listPath.size() && listPath[i] < 0x80; ++i) out[i] = ascii(listPath[i]);
    out.resize(i);
    while (i < listPath.size()) {
        if (listPath[i] < 0x80) {
            out.push_back(ascii(listPath[i++]));
            continue;
        }
        const char32_t character = nextUtf16(listPath, i);
        if (isEscaped(character)) {
            out.push_back(static_cast<char>(static_cast<unsigned char>(character - kEscape)));
        } else {
            appendUtf8(out, character);
        }
    }
}

std::string toNative(std::u16string_view listPath) {
    std::string out;
    out.reserve(listPath.size());
    toNative(listPath, out);
    return out;
}

std::string foldedName(std::string_view nativeName) {
    return toNative(lowered(toListText(nativeName)));
}

std::u16string withCommas(std::u16string_view listPath) {
    std::u16string out(listPath);
    std::replace(out.begin(), out.end(), u'>', u',');
    return out;
}

std::string readable(std::string_view nativePath) {
    // Nearly every path is printable as it is, and a window shows one for each row that it tests.
    if (std::all_of(nativePath.begin(), nativePath.end(), [](char c) { return c >= 0x20 && c < 0x7F; }))
        return std::string(nativePath);
    std::string out;
    out.reserve(nativePath.size());
    for (std::size_t i = 0; i < nativePath.size();)
        appendReadable(out, nextUtf8(nativePath, i).value_or(kReplacementCharacter));
    return out;
}

std::string readable(std::u16string_view listPath) {
    return readable(std::string_view(toNative(listPath)));
}

std::u16string_view fileNameOf(std::u16string_view path) {
    const auto separator = path.find_last_of(kSeparators);
    return separator == std::u16string_view::npos ? path : path.substr(separator + 1);
}

std::u16string_view extensionOf(std::u16string_view path) {
    const auto name = fileNameOf(path);
    const auto dot = name.rfind(u'.');
    return dot == std::u16string_view::npos ? std::u16string_view{} : name.substr(dot + 1);
}

std::u16string_view parentOf(std::u16string_view path) {
    const auto separator = path.find_last_of(kSeparators);
    return separator == std::u16string_view::npos ? std::u16string_view{} : path.substr(0, separator);
}

}  // namespace quillon
