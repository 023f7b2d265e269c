// SPDX-License-Identifier: MIT
// The program `quillon-job`: hands its process to the command.

#include <iostream>

#include "platform/terminal.h"
#include "programs/job_command.h"
#include "programs/message_stream.h"

int main(int argc, char* argv[]) {
    std::ios::sync_with_stdio(false);
    quillon::countInterruptsAndEndAtSecond("quillon-job: stopping at the next row; once more ends at once\n");
    quillon::outliveBrokenWrites();
    quillon::MessageStream messages([](std::string_view text) { return quillon::writeToStream(2, text); });
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return quillon::runJobCommand(
        arguments, {std::cin, std::cout, messages, quillon::isTerminal(0), quillon::isTerminal(2),
                    quillon::interruptCount, quillon::inputWaits, [&messages] { return messages.lost(); }});
}
