// SPDX-License-Identifier: MIT
#pragma once

// How much is asked of a source at once. A healthy one is asked for many things ahead; a dying disk is not: from its
// first read error on, or from a call that takes above two seconds, there is one request at a time and nothing ahead,
// as each further one may be the last that it answers. A server that hangs wears nothing out and is no such disk.

#include <atomic>
#include <chrono>

#include "platform/directory.h"
#include "platform/moment.h"

namespace quillon {

/// Shared by all threads of one job.
class SourceCare {
public:
    enum class Reason { None, Asked, ReadError, SlowCall };

    /// A drive that has tried this long for a sector has tried all that it knows.
    static constexpr std::chrono::seconds kPatience{2};

    SourceCare() = default;
    explicit SourceCare(Reason reason) : reason_(reason) {}

    /// True when there is to be one request at a time and nothing ahead.
    [[nodiscard]] bool oneAtATime() const { return reason_.load(std::memory_order_relaxed) != Reason::None; }
    /// Why. The first reason stays.
    [[nodiscard]] Reason reason() const { return reason_; }

    /// A call began at `start` and has ended; `descriptor` is a file or folder of the volume that was asked. Gives the
    /// time that it took.
    Moment::duration ended(Moment start, int descriptor);
    /// A read of the source failed.
    void readFailed() { set(Reason::ReadError); }
    /// The same for a failure of any call, if it is one of reading.
    void failed(const FileError& error);

private:
    void set(Reason reason);

    std::atomic<Reason> reason_ = Reason::None;
};

/// False for a volume of another computer or of a program, which may make every call wait.
[[nodiscard]] bool isOnDisk(int descriptor);

}  // namespace quillon
