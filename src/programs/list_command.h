// SPDX-License-Identifier: MIT
#pragma once

// The command `quillon-list`: questions about jobs, answered from their lists and evidence. It deletes by "forget"
// and makes a new job by "merge"; nothing else is changed.

#include <iosfwd>
#include <string>
#include <vector>

namespace quillon {

struct ListStreams {
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
    bool colours = false;  ///< a terminal whose user has not asked for none
};

/// Gives the exit status: 0, 1 for differences found, 2 for trouble.
[[nodiscard]] int runListCommand(const std::vector<std::string>& arguments, const ListStreams& streams);

}  // namespace quillon
