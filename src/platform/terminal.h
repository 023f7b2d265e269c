// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string_view>

namespace quillon {

/// True when the standard stream (0 input, 1 output, 2 error) is a terminal.
[[nodiscard]] bool isTerminal(int stream);

/// False when the user asked for no colours, by a variable NO_COLOR that is not empty.
[[nodiscard]] bool wantsColours();

/// Counts presses of Ctrl-C from now on instead of ending the process. SIGTERM counts as one.
void countInterrupts();

/// The same for a process that has work to bring to an end, and SIGHUP counts, too, unless the process was started to
/// outlive its terminal. The first one writes `said` to standard error, where that takes it at once; the second one
/// ends the process at once with status 128 and the signal's number, whatever a call waits for (where no thread may be
/// had, as soon as the call lets go). Within 50 milliseconds the same signal is the same press, and so are SIGTERM and
/// SIGHUP, which the end of a session sends together. `said` is never freed.
void countInterruptsAndEndAtSecond(const char* said);

/// A write that finds no reader, or a file that may grow no further, is from now on a failure of that write and does
/// not end the process.
void outliveBrokenWrites();

/// Writes to the standard stream (1 output, 2 error) at once; false when it could not be written whole.
[[nodiscard]] bool writeToStream(int stream, std::string_view text);

/// True when standard input has a line, or its end; false when none has come within `pause`, or a signal has.
[[nodiscard]] bool inputWaits(std::chrono::milliseconds pause);

/// How often Ctrl-C was pressed since its counting began.
[[nodiscard]] int interruptCount();

}  // namespace quillon
