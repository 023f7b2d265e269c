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

std::string rateText(double perSecond) {
    if (perSecond >= 1)
        return fmt::format("  {} files/s", grouped(static_cast<std::int64_t>(perSecond)));
    return perSecond > 0 ? fmt::format("  {:.1f} files/min", perSecond * 60) : std::string("  0 files/s");
}

}  // namespace

std::string timeLeftText(double seconds) {
    constexpr double kDay = 86400;
    if (seconds < kDay)
        return clockText(static_cast<std::int64_t>(seconds));
    if (seconds >= 10000 * kDay)
        return "more than 10,000 d";
    const auto hours = static_cast<std::int64_t>(seconds) / 3600;
    return fmt::format("{} d {} h", grouped(hours / 24), hours % 24);
}

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
    const JobCounters& counters = job_->state.counters;
    const bool counting = counters.rowsRead == 0;
    const std::int32_t done = counting ? counters.files : counters.rowsRead;
    const double seconds = static_cast<double>(clock_.milliseconds() - job_->state.startTick) / 1000.0;
    const double rate = seconds > 0 ? done / seconds : 0;
    std::string line = job_->state.texts.status + "  ";
    if (counting && done == 0) {
        line += grouped(counters.folders) + " folders";
    } else {
        line += grouped(done) + (counting ? "" : "/" + grouped(counters.files));
        line += rateText(rate);
    }
    if (!counting && rate > 0)
        line += "  " + timeLeftText((counters.files - done) / rate) + " left";
    err_ << "\r\033[K" << line << std::flush;
    lineShown_ = true;
}

void CommandLoop::clearLine() {
    if (lineShown_)
        err_ << "\r\033[K" << std::flush;
    lineShown_ = false;
}

}  // namespace quillon
