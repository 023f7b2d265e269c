// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace quillon {

/// The one door of the core to the front end's event loop. Long passes turn it once per row; an implementation is cheap
/// by construction and really runs the loop only when some milliseconds have passed. During a turn any handler of the
/// front end may run: Stop, timers, socket events.
class EventLoop {
public:
    virtual ~EventLoop() = default;
    virtual void turn() = 0;

    /// False where a window hangs on the loop: a step that would wait for a disk then waits beside the loop, turning
    /// it.
    [[nodiscard]] virtual bool mayStandStill() const { return true; }

    /// True once a command was told to stop: what runs ends at its next row, and who waits for something gives it up.
    /// A window's Stop is the job's alone and never comes here.
    [[nodiscard]] virtual bool stopAsked() const { return false; }

    /// The file or folder that the thread of the passes turns to, so that one which hangs can be named. Native bytes.
    virtual void workingOn(std::string_view /*path*/) {}
};

}  // namespace quillon
