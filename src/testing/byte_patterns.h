// SPDX-License-Identifier: MIT
#pragma once

// What a piece of data looks like when no format is known: filled, text, or noise.

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace quillon {

/// The longest pattern whose repetition counts as a fill; markers of imaging tools are shorter.
inline constexpr std::size_t kLongestFillPattern = 64;

/// The shortest piece, at most kLongestFillPattern bytes, of which `bytes` is the repetition; its last repetition may
/// be cut. None when it takes a longer one, or when `bytes` holds it less than four times.
[[nodiscard]] std::optional<std::string_view> fillPattern(std::string_view bytes);

/// The encoding of readable text: "ASCII", "UTF-8", "UTF-16 (little-endian)", "UTF-16 (big-endian)" or "Windows-1252";
/// none for anything else. A character that the end cuts is no fault.
[[nodiscard]] std::optional<std::string_view> textEncoding(std::string_view bytes);

/// Whether the bytes are as even as those of encrypted or well compressed data: at least 256 of them, and both their
/// values and the differences of neighbours within four to six standard deviations of chance by a chi-square test with
/// 255 degrees of freedom (160 to 400). Data with any order is beyond that: tables and ramps below, all else above.
[[nodiscard]] bool looksLikeNoise(std::string_view bytes);

}  // namespace quillon
