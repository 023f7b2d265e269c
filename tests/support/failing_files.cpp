// SPDX-License-Identifier: MIT
#include "support/failing_files.h"

#include <algorithm>
#include <cstring>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace quillon::test {

FailingFiles::FailingFiles() : before_(DiskCalls::replace(this)) {
}

FailingFiles::~FailingFiles() {
    EXPECT_EQ(DiskCalls::replace(before_), this) << "disks that fail do not overlap";
    // A thread that nobody waits for may have made its last call long ago; this is what says so to a checker of
    // threads.
    const std::lock_guard lock(mutex_);
}

void FailingFiles::failAt(int n, Fault fault, std::string call) {
    const std::lock_guard lock(mutex_);
    at_ = n;
    fault_ = fault;
    kind_ = std::move(call);
    calls_ = 0;
    cut_ = false;
    metCall_.clear();
}

void FailingFiles::refuse(const std::string& call, int number) {
    const std::lock_guard lock(mutex_);
    refused_.emplace_back(call, number);
}

void FailingFiles::ahead(const std::string& call, std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    ahead_.emplace_back(call, std::move(work));
}

int FailingFiles::calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

bool FailingFiles::met() const {
    const std::lock_guard lock(mutex_);
    return !metCall_.empty();
}

std::string FailingFiles::metCall() const {
    const std::lock_guard lock(mutex_);
    return metCall_;
}

int FailingFiles::waits() const {
    const std::lock_guard lock(mutex_);
    return waits_;
}

std::chrono::milliseconds FailingFiles::waited() const {
    const std::lock_guard lock(mutex_);
    return waited_;
}

void FailingFiles::doAhead(const std::string& call) const {
    for (const auto& [kind, work] : ahead_) {
        if (kind == call)
            work();
    }
}

// 0: the call is to be made.
int FailingFiles::errorOf(const std::string& call) {
    doAhead(call);
    const std::lock_guard lock(mutex_);
    const auto refused = std::ranges::find(refused_, call, &std::pair<std::string, int>::first);
    if (refused != refused_.end())
        return refused->second;
    if (!kind_.empty() && kind_ != call)
        return 0;
    ++calls_;
    if (at_ == 0 || calls_ < at_ || (calls_ > at_ && !fault_.lasting))
        return 0;
    if (metCall_.empty())
        metCall_ = call;
    return fault_.number;
}

bool FailingFiles::fails(const std::string& call) {
    const int number = errorOf(call);
    if (number != 0)
        errno = number;
    return number != 0;
}

int FailingFiles::open(int folder, const char* path, int flags, unsigned mode) {
    return fails("open") ? -1 : DiskCalls::open(folder, path, flags, mode);
}

ssize_t FailingFiles::read(int file, void* buffer, std::size_t size) {
    return fails("read") ? -1 : DiskCalls::read(file, buffer, size);
}

ssize_t FailingFiles::write(int file, const void* bytes, std::size_t size) {
    int number = errorOf("write");
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(cut_, false))
            number = fault_.number;
        else if (number != 0 && fault_.shortWrite && size > 1) {
            cut_ = true;
            size /= 2;
            number = 0;
        }
    }
    if (number == 0)
        return DiskCalls::write(file, bytes, size);
    errno = number;
    return -1;
}

ssize_t FailingFiles::copyRange(int from, int to, std::size_t size) {
    return fails("copyRange") ? -1 : DiskCalls::copyRange(from, to, size);
}

int FailingFiles::truncate(int file, std::int64_t length) {
    return fails("truncate") ? -1 : DiskCalls::truncate(file, length);
}

// What has come to the medium no test can see; to wait for it would take most of the time.
int FailingFiles::sync(int /*file*/) {
    return fails("sync") ? -1 : 0;
}

int FailingFiles::syncVolume(int /*file*/) {
    return fails("syncVolume") ? -1 : 0;
}

int FailingFiles::close(int file) {
    const int number = errorOf("close");
    const int closed = DiskCalls::close(file);
    if (number == 0)
        return closed;
    errno = number;
    return -1;
}

int FailingFiles::setMode(const char* path, unsigned mode) {
    return fails("setMode") ? -1 : DiskCalls::setMode(path, mode);
}

int FailingFiles::setMode(int file, unsigned mode) {
    return fails("setMode") ? -1 : DiskCalls::setMode(file, mode);
}

int FailingFiles::setTimes(const char* path, const struct timespec* times) {
    return fails("setTimes") ? -1 : DiskCalls::setTimes(path, times);
}

int FailingFiles::setTimes(int file, const struct timespec* times) {
    return fails("setTimes") ? -1 : DiskCalls::setTimes(file, times);
}

int FailingFiles::setAttribute(int file, const char* name, const void* bytes, std::size_t size) {
    return fails("setAttribute") ? -1 : DiskCalls::setAttribute(file, name, bytes, size);
}

int FailingFiles::rename(int folder, const char* from, const char* to) {
    return fails("rename") ? -1 : DiskCalls::rename(folder, from, to);
}

int FailingFiles::link(int file, const char* path, int folder, const char* name, int flags) {
    return fails("link") ? -1 : DiskCalls::link(file, path, folder, name, flags);
}

int FailingFiles::unlink(int folder, const char* path) {
    return fails("unlink") ? -1 : DiskCalls::unlink(folder, path);
}

int FailingFiles::makeFolder(int folder, const char* path) {
    return fails("makeFolder") ? -1 : DiskCalls::makeFolder(folder, path);
}

int FailingFiles::removeFolder(int folder, const char* path) {
    return fails("removeFolder") ? -1 : DiskCalls::removeFolder(folder, path);
}

void FailingFiles::wait(std::chrono::milliseconds time) {
    doAhead("wait");
    const std::lock_guard lock(mutex_);
    ++waits_;
    waited_ += time;
}

namespace {

// More than any work has calls: whatever never comes to its end is found.
constexpr int kMostCalls = 2000;

std::string describe(const DisturbedWork& work, int n, const Fault& fault, const FailingFiles& disk) {
    return fmt::format("{}: {} (call {}{}{}, {})", work.name, disk.metCall(), n, fault.lasting ? " and later" : "",
                       fault.shortWrite ? ", short" : "", std::strerror(fault.number));
}

void expectOldOrNew(const DisturbedWork& work, bool done, const std::string& what, bool removalFailed) {
    const bool isNew = work.isNew();
    EXPECT_TRUE(isNew || !done) << what << ": said to be done, but it is not";
    const bool newMayStand = work.newMayStand || removalFailed;
    EXPECT_TRUE(done || work.isOld() || (isNew && newMayStand)) << what << ": reported, but the old state is gone";
    EXPECT_EQ(removalFailed ? "" : work.leftover(), "") << what;
}

// True when the work came to its end before the n-th call.
bool disturbCall(const DisturbedWork& work, int n, const Fault& fault) {
    work.prepare();
    bool done = false;
    std::string what;
    bool met = false;
    bool removalFailed = false;
    {
        FailingFiles disk;
        for (const auto& [call, number] : work.refused) disk.refuse(call, number);
        disk.failAt(n, fault);
        done = work.run();
        met = disk.met();
        what = describe(work, n, fault, disk);
        removalFailed = met && (disk.metCall() == "unlink" || fault.lasting);
    }
    expectOldOrNew(work, done, what, removalFailed);
    return !met;
}

}  // namespace

void disturbEveryCall(const DisturbedWork& work) {
    const Fault faults[] = {{ENOSPC}, {EIO}, {EIO, true}, {ENOSPC, false, true}, {EACCES}, {ETXTBSY}};
    for (const auto& fault : faults) {
        int n = 1;
        while (n < kMostCalls && !disturbCall(work, n, fault)) ++n;
        EXPECT_GT(n, 2) << work.name << ": no call was disturbed";
        EXPECT_LT(n, kMostCalls) << work.name << ": never comes to its end";
    }
}

}  // namespace quillon::test
