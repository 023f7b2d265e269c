// SPDX-License-Identifier: MIT
// The program `quillon-job`: hands its process to the command.

#include <iostream>

#include "platform/result.h"
#include "platform/terminal.h"
#include "programs/job_command.h"
#include "programs/message_stream.h"

int main(int argc, char* argv[]) {
    std::ios::sync_with_stdio(false);
    quillon::countInterruptsAndEndAtSecond("quillon-job: stopping at the next row; once more ends at once\n");
    quillon::outliveBrokenWrites();
    quillon::MessageStream messages([](std::string_view text) { return quillon::writeToStream(2, text); });
    const auto sayAtOnce = [](const std::string& line) {
        quillon::passOver(quillon::writeToStream(2, line), "who hears nothing waits all the same");
    };
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return quillon::runJobCommand(arguments, {.in = std::cin,
                                              .out = std::cout,
                                              .err = messages,
                                              .canAsk = quillon::isTerminal(0),
                                              .errIsTerminal = quillon::isTerminal(2),
                                              .interrupts = quillon::interruptCount,
                                              .inputWaits = quillon::inputWaits,
                                              .sayAtOnce = sayAtOnce,
                                              .lostMessages = [&messages] { return messages.lost(); }});
}
