// SPDX-License-Identifier: MIT
// The bytes of lists in tests: UTF-16 without a byte-order mark, as the program writes them.
#pragma once

#include <string>
#include <string_view>

namespace quillon::test {

inline std::string utf16Bytes(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

inline std::u16string utf16Text(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                             (static_cast<unsigned char>(bytes[i + 1]) << 8)));
    }
    return text;
}

}  // namespace quillon::test
