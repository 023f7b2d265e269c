// SPDX-License-Identifier: MIT
#pragma once

// The command `quillon-list`: questions about jobs, answered from their lists and evidence, and copies of their files.
// The lists stay as they are: "forget" deletes evidence, "copy" and "sectors" note in it what they found, and "merge"
// makes a new job.

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace quillon {

struct ListStreams {
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
    bool colours = false;  ///< a terminal whose user has not asked for none

    std::istream* in = nullptr;  ///< for answers; null: nobody can be asked
    bool errIsTerminal = false;
    /// From now on Ctrl-C is counted, and the work ends in order.
    std::function<void()> countInterrupts = [] {};
    std::function<int()> interrupts = [] { return 0; };
};

/// Gives the exit status: 0, 1 for differences found, 2 for trouble.
[[nodiscard]] int runListCommand(const std::vector<std::string>& arguments, const ListStreams& streams);

}  // namespace quillon
