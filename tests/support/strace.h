// SPDX-License-Identifier: MIT
#pragma once

// Runs programs under strace, which makes single system calls fail or kills the program at them.

#include <map>
#include <string>
#include <vector>

namespace quillon::test {

/// The status of a program that was killed, as `runShell` tells it.
inline constexpr int kKilledStatus = 128 + 9;

/// What a shell would say: the exit status, or 128 and the signal.
[[nodiscard]] int runShell(const std::string& command);

/// False, with the reason on standard output, where no program can be traced: no strace, no permission, or a sanitizer
/// in the build, whose own system calls cannot be told from the program's.
[[nodiscard]] bool canTrace();

/// Every call that changes a file system, as far as the programs may use it, with commas between.
[[nodiscard]] std::string changingCalls();

/// The shell command that runs `program` (quoted, with its arguments) under strace with these options.
[[nodiscard]] std::string traced(const std::string& options, const std::string& program);

/// The options that disturb each of these calls once: killed at it, failing at it, failing from it on. A call that a
/// program makes only once it has been disturbed is met when `more` calls of each kind are added.
[[nodiscard]] std::vector<std::string> everyFault(const std::map<std::string, int>& counts, int more = 0);

/// How often an undisturbed run of `program`, which must end with status 0, makes each of these calls. `log` is the
/// path of a file to use and remove.
[[nodiscard]] std::map<std::string, int> countCalls(const std::string& calls, const std::string& program,
                                                    const std::string& log);

/// The main of tests that trace a program, which is their one argument and comes back quoted in `program`. Ends with
/// the status of the tests, or with that of a skipped test where no program can be traced.
[[nodiscard]] int runTracingTests(int count, char* arguments[], std::string& program);

}  // namespace quillon::test
