// SPDX-License-Identifier: MIT
#pragma once

namespace quillon {

/// How many steps of one kind are on the stack. A step may turn the event loop for seconds: a handler that comes in
/// meanwhile asks here before it begins what must not run twice, or takes the ground from under the step.
class Steps {
public:
    [[nodiscard]] bool running() const { return count_ > 0; }

private:
    friend class StepGuard;
    int count_ = 0;
};

/// A step from here to the end of the block.
class StepGuard {
public:
    explicit StepGuard(Steps& steps) : steps_(steps) { ++steps_.count_; }
    ~StepGuard() { --steps_.count_; }
    StepGuard(const StepGuard&) = delete;
    StepGuard& operator=(const StepGuard&) = delete;

private:
    Steps& steps_;
};

}  // namespace quillon
