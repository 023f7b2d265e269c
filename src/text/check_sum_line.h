// SPDX-License-Identifier: MIT
#pragma once

// Lines of a list of check sums, as `sha256sum` writes and `sha256sum -c` reads them. docs/formats/manifest.md.

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// A file and its check sum.
struct CheckSum {
    std::string digest;  ///< 64 hexadecimal digits in lower case
    std::string name;    ///< bytes; never empty

    friend bool operator==(const CheckSum&, const CheckSum&) = default;
};

/// With the line's end. A name with a backslash, a line feed or a carriage return has these as \\, \n and \r, and the
/// line begins with a backslash.
[[nodiscard]] std::string checkSumLine(std::string_view digest, std::string_view name);

/// Of a line without its end. None for an empty line, a remark (#) and whatever else is no such line.
[[nodiscard]] std::optional<CheckSum> readCheckSumLine(std::string_view line);

}  // namespace quillon
