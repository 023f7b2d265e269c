// SPDX-License-Identifier: MIT
#pragma once

// The event loop of a subcommand that works for a while: Ctrl-C ends the work in order, and a terminal shows how far
// it is.

#include <functional>
#include <string>

#include "app/event_loop.h"
#include "platform/moment.h"
#include "programs/list_command.h"

namespace quillon {

class ListLoop final : public EventLoop {
public:
    /// All must outlive this. `line`: how far the work is, asked for some times a second.
    ListLoop(const ListStreams& streams, std::function<std::string()> line);
    ~ListLoop() override { clearLine(); }
    ListLoop(const ListLoop&) = delete;
    ListLoop& operator=(const ListLoop&) = delete;

    void turn() override;
    [[nodiscard]] bool stopAsked() const override { return streams_.interrupts() > 0; }
    /// Takes the line off the terminal.
    void clearLine();

private:
    const ListStreams& streams_;
    std::function<std::string()> line_;
    Moment next_;
    bool shown_ = false;
};

}  // namespace quillon
