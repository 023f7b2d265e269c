// SPDX-License-Identifier: MIT
#pragma once

// The event loop of a command: Ctrl-C is Stop, a second's tick drives the throughput, and on a terminal a line shows
// how far the job is. A turn is a comparison of two numbers most of the time.

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "app/event_loop.h"
#include "job/job.h"
#include "programs/hang_watch.h"

namespace quillon {

class CommandLoop final : public EventLoop {
public:
    /// `interrupts` gives the number of presses of Ctrl-C so far.
    CommandLoop(const Clock& clock, std::ostream& err, bool showLine, std::function<int()> interrupts)
        : clock_(clock), err_(err), showLine_(showLine), interrupts_(std::move(interrupts)) {}

    /// The job must outlive the loop's last turn.
    void attach(Job& job) { job_ = &job; }

    void turn() override;
    [[nodiscard]] bool stopAsked() const override { return interrupts_() > 0; }
    void workingOn(std::string_view path) override;

    /// The file or folder that the job is at, for whoever watches it from another thread.
    [[nodiscard]] WorkInHand& workInHand() { return inHand_; }

    /// Takes the progress line off the terminal.
    void clearLine();

private:
    void look();
    void showLine();
    [[nodiscard]] std::string progressText() const;

    const Clock& clock_;
    std::ostream& err_;
    bool showLine_;
    std::function<int()> interrupts_;
    WorkInHand inHand_;
    Job* job_ = nullptr;
    int stopsSeen_ = 0;
    unsigned turns_ = 0;
    std::int64_t nextTick_ = 0;
    std::int64_t nextLine_ = 0;
    bool lineShown_ = false;
};

}  // namespace quillon
