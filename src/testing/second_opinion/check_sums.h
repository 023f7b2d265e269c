// SPDX-License-Identifier: MIT
#pragma once

// The check sums that stand in heads.

#include <cstdint>
#include <string_view>

namespace quillon {

/// CRC-32 of ISO 3309, as zip, gzip, PNG and others use it.
[[nodiscard]] std::uint32_t crc32Of(std::string_view bytes);

/// The check sum of an Ogg page (polynomial 0x04C11DB7, not reflected, begins with 0). The four bytes from 22 on, its
/// own field, count as zeros.
[[nodiscard]] std::uint32_t oggSumOf(std::string_view page);

/// xxHash of 32 bits with seed 0, for fewer than 16 bytes.
[[nodiscard]] std::uint32_t shortXxHashOf(std::string_view bytes);

}  // namespace quillon
