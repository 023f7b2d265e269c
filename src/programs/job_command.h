// SPDX-License-Identifier: MIT
#pragma once

// `quillon-job`: one job without a window, for scripts, servers and benches.

#include <chrono>
#include <cstdint>
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
    /// True when `in` has a line or its end; waits for it, but not longer than the pause.
    std::function<bool(std::chrono::milliseconds)> inputWaits = [](std::chrono::milliseconds) { return true; };
    /// Says a line at once, from whatever thread: the job's own may hang.
    std::function<void(const std::string&)> sayAtOnce = [](const std::string&) {};
    std::function<std::int32_t()> lostMessages = [] { return 0; };  ///< lines that `err` could not take
};

/// Runs the command with its arguments (without the program's name) and gives the exit status: docs/man/quillon-job.1,
/// and the table of ends in job/job_end.h.
[[nodiscard]] int runJobCommand(const std::vector<std::string>& arguments, const CommandStreams& streams);

}  // namespace quillon
