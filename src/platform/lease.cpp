// SPDX-License-Identifier: MIT
#include "platform/lease.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>

#include "platform/disk_calls.h"
#include "platform/folders.h"
#include "platform/moment.h"
#include "platform/start_beside.h"
#include "platform/system_error.h"
#include "platform/temporary_name.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

constexpr const char* kLockName = "lock";
constexpr std::string_view kOwnerPrefix = "owner";
constexpr std::string_view kTakenPrefix = "taken";
constexpr int kMostRefusals = 3;
constexpr int kMostReleases = 50;
constexpr int kMostReleasesBeside = 250;  // as long as a lease
constexpr int kMostTriesAway = 100;
constexpr std::chrono::milliseconds kFirstWait{2};
constexpr std::chrono::milliseconds kLongestWait{40};

void removeFolder(const NativePath& folder) {
    passOver(disk().removeFolder(AT_FDCWD, folder.c_str()), "one that is not empty is somebody's");
}

// A folder with its files and the folders of owners in it.
void removeWithFiles(const NativePath& folder) {
    const auto names = listEntries(folder);
    for (const auto& name : names.value_or(std::vector<std::string>{})) {
        if (name.starts_with(kOwnerPrefix))
            removeWithFiles(folder / name);
        else
            passOver(removeFile(folder / name), "the folder then stays");
    }
    removeFolder(folder);
}

// The owner's folder in a lock; empty when there is none.
std::string ownerIn(const NativePath& lock) {
    const auto names = listEntries(lock).value_or(std::vector<std::string>{});
    const auto owner =
        std::ranges::find_if(names, [](const std::string& name) { return name.starts_with(kOwnerPrefix); });
    return owner == names.end() ? std::string() : *owner;
}

NativePath takenName(const NativePath& folder) {
    return folder / (std::string(kTakenPrefix) + temporaryName());
}

// A folder with the owner's folder in it, still under a name of its own, which nobody else has. Gives the number of the
// error, 0 for none.
int prepareFolders(const NativePath& folder, const std::string& owner) {
    for (const NativePath& path : {folder, folder / owner}) {
        if (disk().makeFolder(AT_FDCWD, path.c_str()) != 0 && errno != EEXIST)
            return errno;
    }
    return 0;
}

// The share does not answer, as while a mount connects again: it tells nothing of what is there.
bool isAway(int number) {
    constexpr int kAway[] = {EIO,       ETIMEDOUT,    ENOTCONN, ECONNRESET,  ECONNABORTED,
                             EHOSTDOWN, EHOSTUNREACH, ENETDOWN, ENETUNREACH, ESTALE};
    return std::ranges::find(kAway, number) != std::end(kAway);
}

bool isGone(const NativePath& path) {
    const auto looked = modificationTime(path);
    return !looked && looked.error().kind == ErrorKind::NotFound;
}

// What the rename of a folder says while others look at the lock, or take it or give it back. A share does not let go
// what somebody else has open, and does not always find what it renames beside others; but what is gone cannot come.
bool isInUse(int number, const NativePath& from) {
    return number == EEXIST || number == ENOTEMPTY || number == EBUSY || (number == ENOENT && pathExists(from));
}

// The wait for one lock, as this process sees it.
class Waiting {
public:
    Waiting(const NativePath& folder, LeaseTimes times, LeaseWatch* watch)
        : folder_(folder), lock_(folder / kLockName), times_(times), watch_(watch) {}

    Result<void> prepare(const NativePath& prepared, const std::string& owner) {
        while (const int number = prepareFolders(prepared, owner)) {
            away_ = isAway(number);
            if (!away_ || isAwayForLong() || isOver())
                return failure(systemError(prepared.native(), number));
            wait();
        }
        return {};
    }

    /// True when the prepared folder has become the lock. On failure somebody else has it, or nobody can.
    Result<bool> tryToTake(const NativePath& prepared, const std::string& owner) {
        if (disk().rename(AT_FDCWD, prepared.c_str(), lock_.c_str()) == 0)
            return true;
        const int number = errno;
        // A share may do what it then says it could not.
        if (!pathExists(prepared) && pathExists(lock_ / owner))
            return true;
        away_ = isAway(number);
        if (away_)
            return isAwayForLong() ? Result<bool>(failure(systemError(lock_.native(), number))) : false;
        // A lock that is gone by now was given back; but a folder that takes none fails again and again without one.
        const bool isTaken = isInUse(number, prepared) || (number != ENOENT && isFolder(lock_));
        refusals_ = isTaken ? 0 : refusals_ + 1;
        if (refusals_ >= kMostRefusals)
            return failure(systemError(lock_.native(), number));
        removeFolder(lock_);  // one that is empty is nobody's
        lookAtOwner();
        return false;
    }

    [[nodiscard]] bool isOver() const {
        if (watch_ != nullptr && watch_->isLeft())
            return true;
        const bool over = momentNow() - begun_ > times_.patience;
        if (over && watch_ != nullptr && away_)
            watch_->sawShareAway();
        else if (over && watch_ != nullptr && !stuck_)
            watch_->sawItInVain();
        return over;
    }

    void wait() {
        disk().wait(pause_);
        pause_ = std::min(2 * pause_, kLongestWait);
    }

private:
    // A mount takes its seconds to connect again; a share that is off is not waited for like an owner.
    bool isAwayForLong() {
        const bool forLong = ++triesAway_ >= kMostTriesAway;
        if (forLong && watch_ != nullptr)
            watch_->sawShareAway();
        return forLong;
    }

    void lookAtOwner() {
        const auto seen = listEntries(lock_);
        if (!seen && seen.error().kind != ErrorKind::PermissionDenied)
            seenSince_ = momentNow();  // nobody was seen; a lock that may not be looked into is seen
        const std::string owner = ownerIn(lock_);
        if (owner != owner_) {
            owner_ = owner;
            seenSince_ = momentNow();
        }
        const std::string name = owner.substr(std::min(owner.size(), kOwnerPrefix.size()));
        if (watch_ != nullptr && !owner.empty())
            watch_->saw(computerOfTemporary(name));
        const bool gone = isOfGoneProcess(name);
        stuck_ = gone || momentNow() - seenSince_ >= times_.lease;
        if (!stuck_)
            return;
        const NativePath taken = takenName(folder_);
        passOver(disk().rename(AT_FDCWD, lock_.c_str(), taken.c_str()), "another one was quicker");
    }

    const NativePath& folder_;
    NativePath lock_;
    LeaseTimes times_;
    LeaseWatch* watch_;
    Moment begun_ = momentNow();
    int refusals_ = 0;
    int triesAway_ = 0;
    bool away_ = false;  // at the last try
    std::string owner_;
    Moment seenSince_ = begun_;
    bool stuck_ = false;  // the owner's time is over, and yet it has the lock
    std::chrono::milliseconds pause_ = kFirstWait;
};

// A lock on its way back: in one step, and under a name that is nobody's lock. A share may take its time to let a
// folder go, and does not while somebody looks at it. A lock that stays would hold all others up for as long as a
// lease.
class GivingBack {
public:
    GivingBack(NativePath held, const std::string& owner, bool leftToOthers)
        : held_(std::move(held)),
          owner_(held_ / owner),
          done_(takenName(held_.parent_path())),
          leftToOthers_(leftToOthers) {}

    /// False when it is to be tried again. What is somebody else's by now stays.
    [[nodiscard]] bool tryOnce() const {
        if (!pathExists(owner_))
            return isGone(owner_);  // where nothing is known, it may be somebody else's
        if (disk().rename(AT_FDCWD, held_.c_str(), done_.c_str()) != 0)
            return !isAway(errno) && !isInUse(errno, owner_);
        if (!leftToOthers_)
            removeWithFiles(done_);
        return true;
    }
    void tryAgain(int most) const {
        std::chrono::milliseconds pause = kFirstWait;
        for (int tries = 1; tries < most; ++tries) {
            disk().wait(pause);
            pause = std::min(2 * pause, kLongestWait);
            if (tryOnce())
                return;
        }
    }

private:
    NativePath held_;
    NativePath owner_;
    NativePath done_;
    bool leftToOthers_;
};

}  // namespace

Result<Lease> Lease::take(const NativePath& folder, LeaseTimes times, LeaseWatch* watch) {
    const NativePath prepared = folder / temporaryName();
    std::string owner = std::string(kOwnerPrefix) + prepared.filename().native();
    Waiting waiting(folder, times, watch);
    if (auto made = waiting.prepare(prepared, owner); !made) {
        removeWithFiles(prepared);
        return failure(made.error());
    }
    while (true) {
        const auto taken = waiting.tryToTake(prepared, owner);
        if (taken && *taken)
            return Lease(folder / kLockName, std::move(owner));
        if (!taken || waiting.isOver()) {
            removeWithFiles(prepared);
            return taken ? failure(systemError((folder / kLockName).native(), EBUSY)) : failure(taken.error());
        }
        waiting.wait();
    }
}

Lease::Lease(Lease&& other) noexcept
    : held_(std::move(other.held_)),
      owner_(std::exchange(other.owner_, std::string())),
      endsBeside_(other.endsBeside_),
      leftToOthers_(other.leftToOthers_) {
}

Lease::~Lease() {
    if (owner_.empty())
        return;
    const GivingBack back(held_, owner_, leftToOthers_);
    if (back.tryOnce() || (endsBeside_ && startBeside([back] { back.tryAgain(kMostReleasesBeside); })))
        return;
    back.tryAgain(kMostReleases);
}

bool Lease::isTaken(const NativePath& folder) {
    return pathExists(folder / kLockName);
}

bool Lease::isHeld() const {
    return !owner_.empty() && !isGone(held_ / owner_);
}

std::vector<NativePath> takenLeases(const NativePath& folder) {
    std::vector<NativePath> taken;
    for (const auto& name : listEntries(folder).value_or(std::vector<std::string>{})) {
        if (name.starts_with(kTakenPrefix) || isOfGoneProcess(name))
            taken.push_back(folder / name);
    }
    return taken;
}

std::vector<NativePath> leftInLease(const NativePath& taken) {
    std::vector<NativePath> files;
    const std::string owner = ownerIn(taken);
    for (const auto& name : listEntries(taken / owner).value_or(std::vector<std::string>{}))
        files.push_back(taken / owner / name);
    return files;
}

void removeTakenLease(const NativePath& taken) {
    removeWithFiles(taken);
}

}  // namespace quillon
