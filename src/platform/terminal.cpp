// SPDX-License-Identifier: MIT
#include "platform/terminal.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "platform/moment.h"
#include "platform/result.h"
#include "platform/start_beside.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

std::atomic<int> interrupts = 0;
std::atomic<Moment::rep> firstPress = 0;
std::atomic<int> firstSignal = 0;  // set behind its time
std::atomic<const char*> saidAtFirst = nullptr;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<Moment::rep>::is_always_lock_free &&
                  std::atomic<const char*>::is_always_lock_free,
              "handlers use them");

constexpr std::chrono::milliseconds kSamePress{50};

extern "C" void onInterrupt(int /*signal*/) {
    ++interrupts;
}

// A reader that does not read, or a terminal that is held, would keep whoever writes.
void sayWithoutWaiting(const char* said) {
    pollfd error{2, POLLOUT, 0};
    if (::poll(&error, 1, 0) > 0 && (error.revents & POLLOUT) != 0)
        passOver(writeToStream(2, said), "the job stops, heard or not");
}

// A person presses Ctrl-C; all other signals come from what ends a session, which sends several.
bool isSamePress(int first, int signal) {
    const bool ofOneSender = first == signal || (first != SIGINT && signal != SIGINT);
    return ofOneSender && momentNow().time_since_epoch() - Moment::duration(firstPress) < kSamePress;
}

extern "C" void onPress(int signal) {
    const int error = errno;  // of what the signal came between
    Moment::rep none = 0;
    if (firstPress.compare_exchange_strong(none, momentNow().time_since_epoch().count())) {
        firstSignal = signal;
        interrupts = 1;
        sayWithoutWaiting(saidAtFirst);
    } else if (const int first = firstSignal; first != 0 && !isSamePress(first, signal)) {
        ::_exit(128 + signal);
    }
    errno = error;
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

// The thread that the system picks for a signal may stand in a call which only the end of the process can break, as of
// a share without a server. What waits for the process is taken from there by this thread, which does nothing else.
void watchPresses(const sigset_t& signals) {
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    const int waiting = ::signalfd(-1, &signals, SFD_CLOEXEC);
    if (waiting < 0)
        return;
    signalfd_siginfo press{};
    while (retried([&] { return ::read(waiting, &press, sizeof press); }) == static_cast<ssize_t>(sizeof press))
        onPress(static_cast<int>(press.ssi_signo));
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
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (signal == SIGHUP && isIgnored(signal))
            continue;
        ::sigaddset(&signals, signal);
        handleBy(onPress, signal);
    }
    passOver(startBeside([signals] { watchPresses(signals); }), "without it a call that hangs keeps the second press");
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

int interruptCount() {
    return interrupts;
}

}  // namespace quillon
