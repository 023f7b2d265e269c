// SPDX-License-Identifier: MIT
// The program `quillon-list`: hands its process to the command.

#include <iostream>

#include "platform/terminal.h"
#include "programs/list_command.h"

int main(int argc, char* argv[]) {
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool terminal = quillon::isTerminal(1);
    const bool asks = quillon::isTerminal(0) && quillon::isTerminal(2);
    return quillon::runListCommand(
        arguments, {std::cout, std::cerr, terminal, terminal && quillon::wantsColours(), asks ? &std::cin : nullptr,
                    quillon::isTerminal(2), quillon::countInterrupts, quillon::interruptCount});
}
