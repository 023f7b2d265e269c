// SPDX-License-Identifier: MIT
#include "platform/disk_calls.h"

#include <atomic>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillon {

namespace {

DiskCalls& systemCalls() {
    static DiskCalls calls;
    return calls;
}

// Null for the system's own.
constinit std::atomic<DiskCalls*> replaced = nullptr;

}  // namespace

int DiskCalls::open(int folder, const char* path, int flags, unsigned mode) {
    return ::openat(folder, path, flags, static_cast<mode_t>(mode));
}

ssize_t DiskCalls::read(int file, void* buffer, std::size_t size) {
    return ::read(file, buffer, size);
}

ssize_t DiskCalls::write(int file, const void* bytes, std::size_t size) {
    return ::write(file, bytes, size);
}

ssize_t DiskCalls::copyRange(int from, int to, std::size_t size) {
    return ::copy_file_range(from, nullptr, to, nullptr, size, 0);
}

int DiskCalls::truncate(int file, std::int64_t length) {
    return ::ftruncate(file, static_cast<off_t>(length));
}

int DiskCalls::sync(int file) {
    return ::fsync(file);
}

int DiskCalls::syncVolume(int file) {
    return ::syncfs(file);
}

int DiskCalls::close(int file) {
    return ::close(file);
}

int DiskCalls::setMode(const char* path, unsigned mode) {
    return ::chmod(path, static_cast<mode_t>(mode));
}

int DiskCalls::setMode(int file, unsigned mode) {
    return ::fchmod(file, static_cast<mode_t>(mode));
}

int DiskCalls::setTimes(const char* path, const struct timespec* times) {
    return ::utimensat(AT_FDCWD, path, times, 0);
}

int DiskCalls::setTimes(int file, const struct timespec* times) {
    return ::futimens(file, times);
}

int DiskCalls::setAttribute(int file, const char* name, const void* bytes, std::size_t size) {
    return ::fsetxattr(file, name, bytes, size, 0);
}

int DiskCalls::rename(int folder, const char* from, const char* to) {
    return ::renameat(folder, from, folder, to);
}

int DiskCalls::link(int file, const char* path, int folder, const char* name, int flags) {
    return ::linkat(file, path, folder, name, flags);
}

int DiskCalls::unlink(int folder, const char* path) {
    return ::unlinkat(folder, path, 0);
}

int DiskCalls::makeFolder(int folder, const char* path) {
    return ::mkdirat(folder, path, 0777);
}

int DiskCalls::removeFolder(int folder, const char* path) {
    return ::unlinkat(folder, path, AT_REMOVEDIR);
}

void DiskCalls::wait(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

DiskCalls* DiskCalls::replace(DiskCalls* calls) {
    return replaced.exchange(calls);
}

DiskCalls& disk() {
    DiskCalls* const calls = replaced.load(std::memory_order_acquire);
    return calls != nullptr ? *calls : systemCalls();
}

}  // namespace quillon
