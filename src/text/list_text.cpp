// SPDX-License-Identifier: MIT
#include "text/list_text.h"

#include <algorithm>

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

constexpr std::u16string_view kSeparators = u"/\\";

}  // namespace

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
    for (std::size_t i = 0; i < nativePath.size();) {
        const char32_t character = nextUtf8(nativePath, i).value_or(kReplacementCharacter);
        const bool control = character < 0x20 || character == 0x7F || (character >= 0x80 && character < 0xA0);
        appendUtf8(out, control ? kReplacementCharacter : character);
    }
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
