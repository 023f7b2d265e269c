// SPDX-License-Identifier: MIT
#pragma once

// The system calls through which files are made, filled, named and removed, and through which copies read. For the
// sources of this folder only.

#include <chrono>
#include <cstddef>
#include <cstdint>

#include <sys/types.h>

struct timespec;

namespace quillon {

namespace test {
class FailingFiles;
}

/// The system's own calls. As these, a failed one gives -1 and sets `errno`. A path is relative to `folder`, or to the
/// working folder where that is AT_FDCWD.
class DiskCalls {
public:
    virtual ~DiskCalls() = default;

    [[nodiscard]] virtual int open(int folder, const char* path, int flags, unsigned mode);
    [[nodiscard]] virtual ssize_t read(int file, void* buffer, std::size_t size);
    [[nodiscard]] virtual ssize_t write(int file, const void* bytes, std::size_t size);
    [[nodiscard]] virtual ssize_t copyRange(int from, int to, std::size_t size);
    [[nodiscard]] virtual int truncate(int file, std::int64_t length);
    [[nodiscard]] virtual int sync(int file);
    [[nodiscard]] virtual int syncVolume(int file);
    /// The file is closed also when this fails.
    [[nodiscard]] virtual int close(int file);

    [[nodiscard]] virtual int setMode(const char* path, unsigned mode);
    [[nodiscard]] virtual int setMode(int file, unsigned mode);
    /// Access and modification time.
    [[nodiscard]] virtual int setTimes(const char* path, const struct timespec* times);
    [[nodiscard]] virtual int setTimes(int file, const struct timespec* times);

    /// An extended attribute.
    [[nodiscard]] virtual int setAttribute(int file, const char* name, const void* bytes, std::size_t size);

    [[nodiscard]] virtual int rename(int folder, const char* from, const char* to);
    /// Names a file, which `path` and `flags` tell as linkat takes them, in `folder`.
    [[nodiscard]] virtual int link(int file, const char* path, int folder, const char* name, int flags);
    [[nodiscard]] virtual int unlink(int folder, const char* path);
    [[nodiscard]] virtual int makeFolder(int folder, const char* path);
    /// An empty one; any other stays.
    [[nodiscard]] virtual int removeFolder(int folder, const char* path);

    /// Lets time pass before a refused call is tried again.
    virtual void wait(std::chrono::milliseconds time);

private:
    // Tests alone put calls that fail in the place of these, from before the first thread that writes until behind the
    // last one. No program can: what is one thing for the whole process would otherwise be passed to everything that
    // may save something, or be changed under somebody's feet.
    friend class test::FailingFiles;
    static DiskCalls* replace(DiskCalls* calls);
};

/// The calls to use.
[[nodiscard]] DiskCalls& disk();

}  // namespace quillon
