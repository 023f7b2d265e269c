// SPDX-License-Identifier: MIT
#include "evidence/name_text.h"

#include <algorithm>

#include "text/unicode.h"

namespace quillon {

namespace {

bool isPlain(char c) {
    return c >= 0x20 && c < 0x7F && c != '\\';
}

// C0, DEL and C1.
bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

void appendEscaped(std::string& out, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        out += "\\x";
        out += digits[byte >> 4U];
        out += digits[byte & 0xFU];
    }
}

}  // namespace

void nameText(std::string_view name, std::string& out) {
    out.clear();
    if (std::ranges::all_of(name, isPlain)) {
        out = name;
        return;
    }
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t start = at;
        const auto character = nextUtf8(name, at);
        const std::string_view bytes = name.substr(start, at - start);
        if (!character || isControl(*character))
            appendEscaped(out, bytes);
        else if (*character == U'\\')
            out += "\\\\";
        else
            out += bytes;
    }
}

std::string nameText(std::string_view name) {
    std::string text;
    nameText(name, text);
    return text;
}

}  // namespace quillon
