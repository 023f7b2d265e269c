// SPDX-License-Identifier: MIT
#pragma once

// A lock between computers that share a folder, whatever kind of mount each of them has: it needs nothing but that a
// rename fails where the name is taken. A folder `lock` with the owner's folder in it is the lock. Who dies leaves it
// behind, so an owner has it for a time only: whoever saw one owner for longer than that renames the folder away.
//
// An owner that was merely slow comes back without it. What it is about to put in place waits in its own folder in the
// lock, which went away with it, so its rename fails and it begins anew: no check and no clock can come between.

#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// How long an owner may be seen before the lock is taken from it, and how long to wait for the lock in all. An owner
/// of this computer whose process is gone loses it at once.
struct LeaseTimes {
    std::chrono::milliseconds lease{10'000};
    std::chrono::milliseconds patience{30'000};
};

/// What a wait for a lock says to other threads, and hears from them.
class LeaseWatch {
public:
    /// The computer that has the lock, as was seen last; empty before, and where it has no name.
    [[nodiscard]] std::string owner() const {
        const std::lock_guard lock(mutex_);
        return owner_.value_or("");
    }
    /// Whether an owner was seen at all.
    [[nodiscard]] bool hasSeenOwner() const {
        const std::lock_guard lock(mutex_);
        return owner_.has_value();
    }
    void saw(std::string owner) {
        const std::lock_guard lock(mutex_);
        owner_ = std::move(owner);
    }
    /// Nobody wants the lock any more: the wait ends when it looks up next.
    void leave() { left_ = true; }
    [[nodiscard]] bool isLeft() const { return left_; }
    /// The wait has ended without the lock, though each owner gave it back in its time: too many want it.
    void sawItInVain() { inVain_ = true; }
    [[nodiscard]] bool isInVain() const { return inVain_; }
    /// The wait has ended as the share did not answer, so that nothing is known of the lock.
    void sawShareAway() { away_ = true; }
    [[nodiscard]] bool isShareAway() const { return away_; }

private:
    mutable std::mutex mutex_;
    std::optional<std::string> owner_;
    std::atomic<bool> left_ = false;
    std::atomic<bool> inVain_ = false;
    std::atomic<bool> away_ = false;
};

class Lease {
public:
    /// Waits for the lock of this folder, which exists. A failure: the folder takes no files, or the lock did not come
    /// free in time, or the wait was left. `watch` may be null.
    [[nodiscard]] static Result<Lease> take(const NativePath& folder, LeaseTimes times = {},
                                            LeaseWatch* watch = nullptr);
    Lease(Lease&& other) noexcept;
    Lease& operator=(Lease&&) = delete;
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    /// Gives the lock back, if it is still ours.
    ~Lease();

    /// Where the owner keeps what it is about to put in place.
    [[nodiscard]] NativePath folder() const { return held_ / owner_; }
    /// False once somebody else has taken the lock; a share that does not answer takes nothing.
    [[nodiscard]] bool isHeld() const;
    /// A lock that the share does not let go at once, as somebody looks at it, is given back on another thread, so that
    /// nobody waits for that here. A program that ends right behind leaves such a lock, which others then take.
    void endBeside() { endsBeside_ = true; }
    /// What is in the folder is for the next owner to see to (takenLeases), as this one cannot tell what became of it.
    void leaveToOthers() { leftToOthers_ = true; }

    /// Whether somebody has the lock of this folder at this moment.
    [[nodiscard]] static bool isTaken(const NativePath& folder);

private:
    Lease(NativePath held, std::string owner) : held_(std::move(held)), owner_(std::move(owner)) {}

    NativePath held_;
    std::string owner_;  // the name of our folder in it; empty: given away
    bool endsBeside_ = false;
    bool leftToOthers_ = false;
};

/// The locks that were taken from their owners, and those that a process of this computer had made and not taken when
/// it died; whoever has seen to what these left in them removes them.
[[nodiscard]] std::vector<NativePath> takenLeases(const NativePath& folder);
/// The files that were left in such a lock.
[[nodiscard]] std::vector<NativePath> leftInLease(const NativePath& taken);
/// Removes such a lock with all that is in it; one that cannot go stays.
void removeTakenLease(const NativePath& taken);

}  // namespace quillon
