// SPDX-License-Identifier: MIT
#pragma once

// What a check of a database finds wrong.

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

struct Problem {
    std::string file;      ///< below the database folder, as in "Database/png.dat"
    std::size_t line = 0;  ///< counted from 1; 0: the file as a whole
    std::string text;      ///< one sentence without a full stop

    friend bool operator==(const Problem&, const Problem&) = default;
};

using Problems = std::vector<Problem>;

}  // namespace quillon
