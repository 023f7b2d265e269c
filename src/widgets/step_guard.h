// SPDX-License-Identifier: MIT
#pragma once

namespace quillon {

/// Counts how many steps of a screen are on the stack. A step may turn the event loop for seconds; a screen that closes
/// meanwhile would take the ground from under it, so it puts the closing off until the count is 0.
class StepGuard {
public:
    explicit StepGuard(int& running) : running_(running) { ++running_; }
    ~StepGuard() { --running_; }
    StepGuard(const StepGuard&) = delete;
    StepGuard& operator=(const StepGuard&) = delete;

private:
    int& running_;
};

}  // namespace quillon
