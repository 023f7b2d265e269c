// SPDX-License-Identifier: MIT
#pragma once

// A disk that fails on demand: the system's calls, of which one or all from one on fail or come short. Nothing waits.

#include <cerrno>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "platform/disk_calls.h"

namespace quillon::test {

/// How a call is disturbed.
struct Fault {
    int number = EIO;         ///< what `errno` says
    bool lasting = false;     ///< this call and all behind it; else this one alone
    bool shortWrite = false;  ///< a write takes half of its bytes first, and the next one fails
};

/// In the place of the system's calls while it lives; one at a time, and no thread may write before or behind it.
class FailingFiles final : public DiskCalls {
public:
    FailingFiles();
    ~FailingFiles() override;
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    /// The n-th call from now on, counted from 1, is disturbed; of the kind `call` ("write", as DiskCalls names it), or
    /// of any when that is empty.
    void failAt(int n, Fault fault, std::string call = "");
    /// Every call of this kind fails with this number, however it is called: a volume that does not know it.
    void refuse(const std::string& call, int number);

    /// Does this first, whenever such a call is made, on its thread; before a "wait", in place of the time.
    void ahead(const std::string& call, std::function<void()> work);

    /// How many calls were made since `failAt`, or from the beginning.
    [[nodiscard]] int calls() const;
    /// Whether the disturbed call was met, and its kind.
    [[nodiscard]] bool met() const;
    [[nodiscard]] std::string metCall() const;
    /// How often the program waited for a refused call, and for how long altogether.
    [[nodiscard]] int waits() const;
    [[nodiscard]] std::chrono::milliseconds waited() const;

    int open(int folder, const char* path, int flags, unsigned mode) override;
    ssize_t read(int file, void* buffer, std::size_t size) override;
    ssize_t write(int file, const void* bytes, std::size_t size) override;
    ssize_t copyRange(int from, int to, std::size_t size) override;
    int truncate(int file, std::int64_t length) override;
    int sync(int file) override;
    int syncVolume(int file) override;
    int close(int file) override;
    int setMode(const char* path, unsigned mode) override;
    int setMode(int file, unsigned mode) override;
    int setTimes(const char* path, const struct timespec* times) override;
    int setTimes(int file, const struct timespec* times) override;
    int setAttribute(int file, const char* name, const void* bytes, std::size_t size) override;
    int rename(int folder, const char* from, const char* to) override;
    int link(int file, const char* path, int folder, const char* name, int flags) override;
    int unlink(int folder, const char* path) override;
    int makeFolder(int folder, const char* path) override;
    int removeFolder(int folder, const char* path) override;
    void wait(std::chrono::milliseconds time) override;

private:
    void doAhead(const std::string& call) const;
    [[nodiscard]] int errorOf(const std::string& call);
    [[nodiscard]] bool fails(const std::string& call);

    mutable std::mutex mutex_;
    DiskCalls* before_;
    Fault fault_;
    std::string kind_;
    int at_ = 0;  // 0: none
    int calls_ = 0;
    bool cut_ = false;  // the next write fails
    std::string metCall_;
    std::vector<std::pair<std::string, int>> refused_;
    std::vector<std::pair<std::string, std::function<void()>>> ahead_;
    int waits_ = 0;
    std::chrono::milliseconds waited_{0};
};

/// One kind of work that turns an old state into a new one.
struct DisturbedWork {
    std::string name;
    /// Makes the old state, whatever was there.
    std::function<void()> prepare;
    /// Does the work. True: it says that all was done.
    std::function<bool()> run;
    std::function<bool()> isOld;
    std::function<bool()> isNew;
    /// Names that are too many, such as temporary files; empty where there are none.
    std::function<std::string()> leftover;
    /// The new state may stand though a failure was reported: the last step that can fail comes behind it.
    bool newMayStand = false;
    /// Calls that the volume does not know at all, with their error.
    std::vector<std::pair<std::string, int>> refused = {};
};

/// Does the work again and again, with its first call disturbed, its second and so on, until it is done undisturbed,
/// once for every way to disturb it. Behind each the old state or the new one stands: the new one when the work says
/// so. Only where a removal was what failed may something be left over, and the new state may stand that was to be
/// taken back.
void disturbEveryCall(const DisturbedWork& work);

}  // namespace quillon::test
