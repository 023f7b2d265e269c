// SPDX-License-Identifier: MIT
#include "ahead/source_asker.h"

namespace quillon {

namespace {

constexpr std::size_t kThreads = 32;
// What was not slow comes within this time, unless the processors are busy.
constexpr std::chrono::milliseconds kHoldUp{2};

void workUnlessCareIsNeeded(SourceTask& task, SourceTask::Tools& tools) {
    task.answer(*tools.care, [&] { task.work(tools); });
}

}  // namespace

SourceAsker::SourceAsker(StandingStill standingStill, std::shared_ptr<SourceCare> care)
    : standingStill_(standingStill),
      care_(std::move(care)),
      own_{care_, {}},
      threads_(
          kThreads,
          [care = care_]() -> AheadThreads::Work {
              auto tools = std::make_shared<SourceTask::Tools>(SourceTask::Tools{care, {}});
              return [tools](AheadTask& task) { workUnlessCareIsNeeded(static_cast<SourceTask&>(task), *tools); };
          },
          AtEnd::LeaveBehind) {
}

void SourceAsker::ask(const std::shared_ptr<SourceTask>& task) {
    if (task->isAsked)
        return;
    if (!threads_.any() || !quick_.isQuick())
        threads_.add();
    if (threads_.any())
        leave(task, &AheadThreads::leave);
}

void SourceAsker::leave(const std::shared_ptr<SourceTask>& task,
                        void (AheadThreads::*how)(std::shared_ptr<AheadTask>)) {
    task->isAsked = true;
    (threads_.*how)(task);
}

bool SourceAsker::isAtHand(SourceTask& task) {
    if (!task.isAtHand && task.isAsked && threads_.isDone(task))
        took(task);
    return task.isAtHand;
}

// A thread has given it back, done or not.
void SourceAsker::took(SourceTask& task) {
    task.isAsked = task.isAtHand = task.isAnswered;
    if (task.isAtHand)
        quick_.was(!task.wasSlow);
}

bool SourceAsker::arrives(const std::shared_ptr<SourceTask>& task, std::chrono::microseconds limit) {
    if (isAtHand(*task))
        return true;
    if (!task->isAsked) {
        task->itsTurn = true;
        if (!threads_.any())
            threads_.add();
        if (!threads_.any()) {
            workUnlessCareIsNeeded(*task, own_);
            took(*task);
            return true;
        }
        leave(task, &AheadThreads::leaveFirst);
    }
    const auto moment = std::min<std::chrono::microseconds>(limit, kHoldUp);
    bool done = threads_.isDoneWithin(*task, moment);
    if (!done && asksAhead())
        threads_.add();
    done = done || (limit > moment && threads_.isDoneWithin(*task, limit - moment));
    if (done)
        took(*task);
    return task->isAtHand;
}

}  // namespace quillon
