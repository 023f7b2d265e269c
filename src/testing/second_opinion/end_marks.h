// SPDX-License-Identifier: MIT
#pragma once

// The last marks of formats, looked for in the last bytes of a file. All answer whether the file ends as it should;
// bytes behind the mark (padding, a film behind a photo, a maker's notes) are none of their business.

#include <cstdint>
#include <string_view>

namespace quillon {

/// The last bytes of a file and where they begin in it.
struct EndBytes {
    std::string_view bytes;
    std::uint64_t begin = 0;
    bool isLong = false;  ///< nothing more will be read: what the mark alone does not tell has to be told now

    /// Whether these are all bytes of the file.
    [[nodiscard]] bool isWhole() const { return begin == 0; }
};

[[nodiscard]] bool jpegEnds(EndBytes end);
[[nodiscard]] bool pngEnds(EndBytes end);
[[nodiscard]] bool gifEnds(EndBytes end);
[[nodiscard]] bool pdfEnds(EndBytes end);
[[nodiscard]] bool zipEnds(EndBytes end);
[[nodiscard]] bool rar5Ends(EndBytes end);
[[nodiscard]] bool xzEnds(EndBytes end);
[[nodiscard]] bool richTextEnds(EndBytes end);
[[nodiscard]] bool markupEnds(EndBytes end);

}  // namespace quillon
