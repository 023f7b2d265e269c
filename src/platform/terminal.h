// SPDX-License-Identifier: MIT
#pragma once

namespace quillon {

/// True when the standard stream (0 input, 1 output, 2 error) is a terminal.
[[nodiscard]] bool isTerminal(int stream);

/// False when the user asked for no colours, by a variable NO_COLOR that is not empty.
[[nodiscard]] bool wantsColours();

/// Counts presses of Ctrl-C from now on instead of ending the process.
void countInterrupts();

/// How often Ctrl-C was pressed since `countInterrupts`.
[[nodiscard]] int interruptCount();

}  // namespace quillon
