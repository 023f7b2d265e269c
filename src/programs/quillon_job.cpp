// SPDX-License-Identifier: MIT
// The program `quillon-job`: hands its process to the command.

#include <iostream>

#include "platform/terminal.h"
#include "programs/job_command.h"

int main(int argc, char* argv[]) {
    std::ios::sync_with_stdio(false);
    quillon::countInterrupts();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return quillon::runJobCommand(arguments, {std::cin, std::cout, std::cerr, quillon::isTerminal(0),
                                              quillon::isTerminal(2), quillon::interruptCount});
}
