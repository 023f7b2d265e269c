// SPDX-License-Identifier: MIT
#pragma once

// `quillon-job`: one job without a window, for scripts, servers and benches.

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace quillon {

/// What the command takes from its process.
struct CommandStreams {
    std::istream& in;
    std::ostream& out;    ///< the report and the list's path, or one JSON object
    std::ostream& err;    ///< log rows, boxes, questions, and on a terminal a progress line
    bool canAsk = false;  ///< a person sits at `in`
    bool errIsTerminal = false;
    std::function<int()> interrupts = [] { return 0; };  ///< presses of Ctrl-C so far
};

/// Runs the command with its arguments (without the program's name) and gives the exit status: docs/man/quillon-job.1,
/// and the table of ends in job/job_end.h.
[[nodiscard]] int runJobCommand(const std::vector<std::string>& arguments, const CommandStreams& streams);

}  // namespace quillon
