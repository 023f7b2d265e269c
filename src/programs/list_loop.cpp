// SPDX-License-Identifier: MIT
#include "programs/list_loop.h"

#include <ostream>
#include <utility>

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kLineInterval{200};
constexpr const char* kClearLine = "\r\033[K";

}  // namespace

ListLoop::ListLoop(const ListStreams& streams, std::function<std::string()> line)
    : streams_(streams), line_(std::move(line)), next_(momentNow() + kLineInterval) {
    streams_.countInterrupts();
}

void ListLoop::turn() {
    if (!streams_.errIsTerminal || momentNow() < next_)
        return;
    next_ = momentNow() + kLineInterval;
    streams_.err << kClearLine << line_() << std::flush;
    shown_ = true;
}

void ListLoop::clearLine() {
    if (std::exchange(shown_, false))
        streams_.err << kClearLine << std::flush;
}

}  // namespace quillon
