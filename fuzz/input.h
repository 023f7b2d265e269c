// SPDX-License-Identifier: MIT
#pragma once

// Pieces of a fuzz input, and the check of a fuzz target.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace quillon::fuzz {

/// The input as text. Owned, so that a sanitizer sees a read behind its end.
inline std::string bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Cuts off what stands ahead of the first zero byte; all of it without one.
inline std::string_view takePiece(std::string_view& rest) {
    const auto end = rest.find('\0');
    const auto piece = rest.substr(0, end);
    rest = end == rest.npos ? std::string_view() : rest.substr(end + 1);
    return piece;
}

/// One code unit for each byte.
inline std::u16string widened(std::string_view bytes) {
    std::u16string out;
    for (const char c : bytes) out.push_back(static_cast<unsigned char>(c));
    return out;
}

/// One code unit for two bytes, low byte first.
inline std::u16string unitsOf(std::string_view bytes) {
    std::u16string out;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        const auto high = static_cast<unsigned char>(bytes[i + 1]);
        out.push_back(static_cast<char16_t>(low | (high << 8U)));
    }
    return out;
}

/// Ends the run with the fact that does not hold, as a finding.
inline void require(bool holds, const char* fact) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", fact);
    std::abort();
}

}  // namespace quillon::fuzz
