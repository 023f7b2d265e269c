// SPDX-License-Identifier: MIT
#include "platform/terminal.h"

#include <csignal>
#include <cstdlib>

#include <unistd.h>

namespace quillon {

namespace {

volatile std::sig_atomic_t interrupts = 0;

extern "C" void onInterrupt(int /*signal*/) {
    interrupts = interrupts + 1;
}

}  // namespace

bool isTerminal(int stream) {
    return ::isatty(stream) == 1;
}

bool wantsColours() {
    const char* refused = std::getenv("NO_COLOR");
    return refused == nullptr || *refused == '\0';
}

void countInterrupts() {
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

int interruptCount() {
    return interrupts;
}

}  // namespace quillon
