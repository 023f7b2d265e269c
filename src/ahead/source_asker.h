// SPDX-License-Identifier: MIT
#pragma once

// Decides who asks a source for what a walk needs: the walk's own thread in line while answers come from memory, as
// nothing is quicker, or threads, many at a time, as soon as a disk or a server makes one wait. A source that needs
// care is asked for one thing at a time.

#include <chrono>
#include <memory>

#include "ahead/ahead.h"
#include "ahead/source_folder.h"

namespace quillon {

class SourceAsker {
public:
    /// So many folders are asked for ahead, and so many pieces of work of one folder.
    static constexpr std::size_t kMost = QuickInARow::kEnough;

    SourceAsker(StandingStill standingStill, std::shared_ptr<SourceCare> care);

    /// True when the owner's thread is to do the next piece of work itself, however long it takes, and tell `was` of
    /// it.
    [[nodiscard]] bool mayDoInLine() const {
        return standingStill_ == StandingStill::Allowed && (quick_.isQuick() || care_->oneAtATime());
    }
    void was(bool quick) { quick_.was(quick); }
    [[nodiscard]] bool isQuick() const { return quick_.isQuick(); }

    /// Whether it is worth to ask for what is not needed yet.
    [[nodiscard]] bool asksAhead() const { return !mayDoInLine() && !care_->oneAtATime(); }
    /// Asks for something ahead.
    void ask(const std::shared_ptr<SourceTask>& task);

    /// True when the work, which is needed now, is at hand. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool arrives(const std::shared_ptr<SourceTask>& task, std::chrono::microseconds limit);
    /// The same of what is not needed yet.
    [[nodiscard]] bool isAtHand(SourceTask& task);

    [[nodiscard]] SourceCare& care() { return *care_; }

private:
    void leave(const std::shared_ptr<SourceTask>& task, void (AheadThreads::*how)(std::shared_ptr<AheadTask>));
    void took(SourceTask& task);

    StandingStill standingStill_;
    std::shared_ptr<SourceCare> care_;
    SourceTask::Tools own_;  // where no thread is to be had
    QuickInARow quick_;
    AheadThreads threads_;
};

}  // namespace quillon
