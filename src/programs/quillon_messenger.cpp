// SPDX-License-Identifier: MIT
// The program `quillon-messenger`: hands its process to the command.

#include <cstdlib>
#include <iostream>

#include "platform/terminal.h"
#include "programs/messenger_command.h"

int main(int argc, char* argv[]) {
    std::ios::sync_with_stdio(false);
    quillon::countInterrupts();
    quillon::outliveBrokenWrites();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    quillon::MessengerProcess process{std::cout, std::cerr, quillon::interruptCount};
    process.endNow = [](int status) { std::_Exit(status); };
    return quillon::runMessengerCommand(arguments, process);
}
