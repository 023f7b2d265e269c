// SPDX-License-Identifier: MIT
#pragma once

// Boxes of ISO/IEC 14496-12 and of "QuickTime File Format" (Apple): 0 be32 length (0: to the end of the file; 1: 8
// be64), 4 kind.

#include <cstdint>
#include <optional>
#include <string_view>

#include "testing/second_opinion/bytes.h"

namespace quillon {

struct Box {
    std::string_view kind;
    std::uint64_t body = 0;  // place of what follows the box's own header
    Number end;              // nothing: it goes to the end of the file
};

/// The box that begins at `at`; nothing for what is none: a kind that is no printable text, a length below its own
/// header, or a header that is not whole there.
[[nodiscard]] std::optional<Box> boxAt(Bytes head, std::uint64_t at);

/// Whether a box of this kind tells what the media are, ahead of them or behind: "moov", "moof", "meta".
[[nodiscard]] bool isMediaIndex(std::string_view kind);

}  // namespace quillon
