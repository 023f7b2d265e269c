// SPDX-License-Identifier: MIT
// The program `quillon-messenger`: hands its process to the command.

#include <iostream>

#include "platform/terminal.h"
#include "programs/messenger_command.h"

int main(int argc, char* argv[]) {
    std::ios::sync_with_stdio(false);
    quillon::countInterrupts();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return quillon::runMessengerCommand(arguments, {std::cout, std::cerr, quillon::interruptCount});
}
