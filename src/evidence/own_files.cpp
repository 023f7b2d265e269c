// SPDX-License-Identifier: MIT
#include "evidence/own_files.h"

#include <sqlite3.h>

namespace quillon {

namespace {

constexpr const char* kName = "quillon";

sqlite3_vfs& baseOf(sqlite3_vfs* own) {
    return *static_cast<sqlite3_vfs*>(own->pAppData);
}

int openOwn(sqlite3_vfs* own, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    file->pMethods = nullptr;  // nothing to close
    if ((flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_MAIN_JOURNAL)) == 0)
        return SQLITE_CANTOPEN;
    return baseOf(own).xOpen(&baseOf(own), name, file, flags, outFlags);
}
int removeOwn(sqlite3_vfs* own, const char* name, int syncFolder) {
    return baseOf(own).xDelete(&baseOf(own), name, syncFolder);
}
int lookAt(sqlite3_vfs* own, const char* name, int flags, int* result) {
    return baseOf(own).xAccess(&baseOf(own), name, flags, result);
}
int fullPath(sqlite3_vfs* own, const char* name, int size, char* out) {
    return baseOf(own).xFullPathname(&baseOf(own), name, size, out);
}
int someBytes(sqlite3_vfs* own, int size, char* out) {
    return baseOf(own).xRandomness(&baseOf(own), size, out);
}
int waitFor(sqlite3_vfs* own, int microseconds) {
    return baseOf(own).xSleep(&baseOf(own), microseconds);
}
int today(sqlite3_vfs* own, double* day) {
    return baseOf(own).xCurrentTime(&baseOf(own), day);
}
int lastError(sqlite3_vfs* own, int size, char* out) {
    return baseOf(own).xGetLastError(&baseOf(own), size, out);
}

// Registered once, as SQLite keeps its list of these for the whole process.
sqlite3_vfs* registered() {
    static sqlite3_vfs own = [] {
        sqlite3_vfs made{};
        sqlite3_vfs* const base = sqlite3_vfs_find(nullptr);
        if (base == nullptr)
            return made;
        made.iVersion = 1;
        made.szOsFile = base->szOsFile;
        made.mxPathname = base->mxPathname;
        made.zName = kName;
        made.pAppData = base;
        made.xOpen = openOwn;
        made.xDelete = removeOwn;
        made.xAccess = lookAt;
        made.xFullPathname = fullPath;
        made.xRandomness = someBytes;
        made.xSleep = waitFor;
        made.xCurrentTime = today;
        made.xGetLastError = lastError;
        return made;
    }();
    static const bool done = own.xOpen != nullptr && sqlite3_vfs_register(&own, 0) == SQLITE_OK;
    return done ? &own : nullptr;
}

}  // namespace

Result<const char*> ownFilesOnly() {
    if (registered() == nullptr)
        return failure(ErrorKind::PathAccess, "the database library cannot be started");
    return kName;
}

}  // namespace quillon
