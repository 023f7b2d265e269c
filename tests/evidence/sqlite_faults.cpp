// SPDX-License-Identifier: MIT
#include "evidence/sqlite_faults.h"

#include <atomic>
#include <cstdarg>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace quillon::test {

namespace {

// SQLite has one table of system calls for the whole process.
std::atomic<int> left = 0;  // writes until the first that fails; below 0 all fail
std::atomic<bool> armed = false;
std::atomic<int> errorNumber = 0;
std::atomic<bool> failed = false;

bool failsNow() {
    if (!armed || --left > 0)
        return false;
    failed = true;
    errno = errorNumber;
    return true;
}

ssize_t writeOrFail(int file, const void* bytes, std::size_t size) {
    return failsNow() ? -1 : ::write(file, bytes, size);
}
ssize_t pwriteOrFail(int file, const void* bytes, std::size_t size, off_t offset) {
    return failsNow() ? -1 : ::pwrite(file, bytes, size, offset);
}
int openForReading(const char* path, int flags, int mode) {
    if ((flags & O_ACCMODE) != O_RDONLY) {
        errno = EACCES;
        return -1;
    }
    return ::open(path, flags, mode);
}

void replaceCall(const char* name, sqlite3_syscall_ptr call) {
    sqlite3_vfs* const vfs = sqlite3_vfs_find(nullptr);
    if (call == nullptr || vfs->xGetSystemCall(vfs, name) != nullptr)
        vfs->xSetSystemCall(vfs, name, call);
}

}  // namespace

SqliteFaults::SqliteFaults(int failAt, int number) {
    left = failAt;
    armed = failAt > 0;
    errorNumber = number;
    failed = false;
    replaceCall("write", reinterpret_cast<sqlite3_syscall_ptr>(writeOrFail));
    replaceCall("pwrite", reinterpret_cast<sqlite3_syscall_ptr>(pwriteOrFail));
    replaceCall("pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(pwriteOrFail));
}

SqliteFaults::~SqliteFaults() {
    for (const char* name : {"write", "pwrite", "pwrite64"}) replaceCall(name, nullptr);
}

bool SqliteFaults::met() const {
    return failed;
}

SqliteReadsOnly::SqliteReadsOnly() {
    replaceCall("open", reinterpret_cast<sqlite3_syscall_ptr>(openForReading));
}

SqliteReadsOnly::~SqliteReadsOnly() {
    replaceCall("open", nullptr);
}

}  // namespace quillon::test
