// SPDX-License-Identifier: MIT
#include "programs/command_loop.h"

#include <ostream>

#include <fmt/format.h>

#include "job/job_board.h"
#include "job/job_driver.h"
#include "job/statistics.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// The clock is looked at once in so many turns, as a turn may come every few microseconds.
constexpr unsigned kTurnsPerLook = 32;
constexpr std::int64_t kTickMilliseconds = 1000;
constexpr std::int64_t kLineMilliseconds = 200;

}  // namespace

void CommandLoop::workingOn(std::string_view path) {
    inHand_.turnTo(path);
}

void CommandLoop::turn() {
    if (job_ == nullptr)
        return;
    // What is pressed during the checks waits until they have ended: the job takes back what stopped the one before.
    if (job_->state.phase != JobPhase::Checking && interrupts_() > stopsSeen_) {
        ++stopsSeen_;
        if (!job_->state.stopRequested)
            job_->passContext().stop();
    }
    if (++turns_ % kTurnsPerLook == 0)
        look();
}

void CommandLoop::look() {
    const auto now = clock_.milliseconds();
    if (now >= nextTick_) {
        nextTick_ = now + kTickMilliseconds;
        if (boardOf(job_->state).timer)
            timerTick(job_->state, clock_);
    }
    if (showLine_ && now >= nextLine_) {
        nextLine_ = now + kLineMilliseconds;
        showLine();
    }
}

void CommandLoop::showLine() {
    lookAtPace(job_->state, clock_.milliseconds());
    err_ << "\r\033[K" << progressText() << std::flush;
    lineShown_ = true;
}

std::string CommandLoop::progressText() const {
    const JobState& state = job_->state;
    const JobCounters& counters = state.counters;
    const Pace& pace = state.pace.pace();
    std::string text = state.texts.status;
    const auto add = [&text](const std::string& piece) { text += "  " + piece; };
    if (counters.rowsRead == 0 && counters.files == 0) {
        add(grouped(counters.folders) + " folders");
        if (pace.files > 0)
            add("at least " + grouped(pace.files) + " files");
        return text;
    }
    if (counters.rowsRead > 0)
        add(grouped(counters.rowsRead) + "/" + grouped(counters.files));
    else
        add((state.phase == JobPhase::Walk ? "at least " : "") + grouped(counters.files));
    if (pace.share)
        add(fmt::format("{:.0f} %", *pace.share * 100));
    add(rateText(pace.filesPerSecond));
    if (pace.secondsLeft)
        add(timeLeftText(*pace.secondsLeft) + " left");
    return text;
}

void CommandLoop::clearLine() {
    if (lineShown_)
        err_ << "\r\033[K" << std::flush;
    lineShown_ = false;
}

}  // namespace quillon
