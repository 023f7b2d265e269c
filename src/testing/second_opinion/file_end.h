// SPDX-License-Identifier: MIT
#pragma once

// The second opinion from the end of a file: formats that write their last mark there. The head of a package or picture
// tells a cut seldom, its end nearly always.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"
#include "testing/second_opinion/doubt.h"

namespace quillon {

/// Where bytes of one file come from, by their place.
class EndReader {
public:
    virtual ~EndReader() = default;
    /// `count` bytes from `at` on; both lie within the file's size. A failure: they cannot be read.
    [[nodiscard]] virtual Result<std::string> read(std::uint64_t at, std::uint64_t count) = 0;
};

inline constexpr std::uint64_t kShortEnd = 512;
/// The end record of a zip package may have a comment of 64 KB behind it.
inline constexpr std::uint64_t kLongEnd = 66 * 1024;
/// Boxes of a film that are looked at, 16 bytes each.
inline constexpr int kBoxReads = 8;

/// Whether `fileEndOpinion` would read anything for this head and size.
[[nodiscard]] bool hasKnownEnd(std::string_view head, std::uint64_t size);

/// `head` and `size` as for `secondOpinion`. Reads the last 512 bytes, and the last 66 KB where no mark stands there;
/// of a film the outer boxes instead. Nothing: the end stands, or nobody can tell. A failure: the end cannot be read,
/// which is no doubt.
[[nodiscard]] Result<Opinion> fileEndOpinion(std::string_view head, std::uint64_t size, EndReader& reader);

}  // namespace quillon
