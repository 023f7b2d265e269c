// SPDX-License-Identifier: MIT
#include "platform/terminal.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <poll.h>
#include <unistd.h>

#include "platform/system_error.h"

namespace quillon {

namespace {

// A handler has nothing else to hold on to.
volatile std::sig_atomic_t interrupts = 0;
const char* saidAtFirst = nullptr;
timespec firstPress{};

constexpr long kSamePressNanoseconds = 50'000'000;

timespec monotonicNow() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

bool isSamePress(const timespec& now) {
    const long seconds = now.tv_sec - firstPress.tv_sec;
    return seconds <= 1 && seconds * 1'000'000'000 + now.tv_nsec - firstPress.tv_nsec < kSamePressNanoseconds;
}

extern "C" void onInterrupt(int /*signal*/) {
    interrupts = interrupts + 1;
}

// Nothing here but calls that a handler may make.
extern "C" void onInterruptOfWork(int signal) {
    const timespec now = monotonicNow();
    if (interrupts > 0 && !isSamePress(now))
        ::_exit(128 + signal);
    if (interrupts > 0)
        return;
    firstPress = now;
    interrupts = 1;
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(2, saidAtFirst, std::strlen(saidAtFirst));
    errno = before;
}

void handleBy(void (*handler)(int), int signal) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
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
    for (const int signal : {SIGINT, SIGTERM}) handleBy(onInterrupt, signal);
}

void countInterruptsAndEndAtSecond(const char* said) {
    saidAtFirst = said;
    for (const int signal : {SIGINT, SIGTERM}) handleBy(onInterruptOfWork, signal);
    if (!isIgnored(SIGHUP))
        handleBy(onInterruptOfWork, SIGHUP);
}

void outliveBrokenWrites() {
    for (const int signal : {SIGPIPE, SIGXFSZ}) handleBy(SIG_IGN, signal);
}

bool writeToStream(int stream, std::string_view text) {
    while (!text.empty()) {
        const auto count = retried([&] { return ::write(stream, text.data(), text.size()); });
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool inputWaits(std::chrono::milliseconds pause) {
    pollfd input{0, POLLIN, 0};
    return ::poll(&input, 1, static_cast<int>(pause.count())) > 0;
}

void ignoreBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

int interruptCount() {
    return interrupts;
}

}  // namespace quillon
