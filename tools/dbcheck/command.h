// SPDX-License-Identifier: MIT
#pragma once

// `dbcheck`: lints a header database and judges it by samples. docs/database.md tells how to read its report.

#include <iosfwd>
#include <string>
#include <vector>

namespace quillon {

inline constexpr int kDbcheckGood = 0;
inline constexpr int kDbcheckBad = 1;    ///< a lint finding, or a figure beyond its threshold
inline constexpr int kDbcheckUsage = 2;  ///< wrong usage, or a folder or table that cannot be read

/// Runs the command with its arguments (without the program's name). The report goes to `out`, what is wrong to `err`.
[[nodiscard]] int runDbcheck(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace quillon
