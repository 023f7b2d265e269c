// SPDX-License-Identifier: MIT
#include "platform/terminal.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include <poll.h>
#include <unistd.h>

#include "platform/moment.h"
#include "platform/result.h"
#include "platform/start_beside.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

std::atomic<int> interrupts = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a handler counts");

constexpr std::chrono::milliseconds kSamePress{50};

extern "C" void onInterrupt(int /*signal*/) {
    ++interrupts;
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

// A thread that stands in a call which only the end of the process can break, as of a share without a server, keeps a
// signal to itself and handles it never. So all threads leave them to this one, which does nothing else.
void waitForPresses(const sigset_t& signals, const char* said) {
    int first = 0;
    Moment firstPress;
    while (true) {
        int signal = 0;
        if (::sigwait(&signals, &signal) != 0)
            continue;
        if (first == 0) {
            first = signal;
            firstPress = momentNow();
            interrupts = 1;
            passOver(writeToStream(2, said), "the job stops, heard or not");
        } else if (signal != first || momentNow() - firstPress >= kSamePress) {
            ::_exit(128 + signal);
        }
    }
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
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM}) ::sigaddset(&signals, signal);
    if (!isIgnored(SIGHUP))
        ::sigaddset(&signals, SIGHUP);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &signals, &before);
    if (startBeside([signals, said] { waitForPresses(signals, said); }))
        return;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    countInterrupts();
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
