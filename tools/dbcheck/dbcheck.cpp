// SPDX-License-Identifier: MIT
// The program `dbcheck`: hands its process to the command.

#include <iostream>

#include "dbcheck/command.h"

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return quillon::runDbcheck(arguments, std::cout, std::cerr);
}
