// SPDX-License-Identifier: MIT
#pragma once

// What the system says of a file, as the types of folders.h. For the sources of this folder only.

#include <sys/stat.h>

#include "platform/folders.h"

namespace quillon {

[[nodiscard]] inline FileTime timeOf(const struct timespec& time) {
    return {time.tv_sec, static_cast<std::uint32_t>(time.tv_nsec)};
}

[[nodiscard]] inline FileStamp stampFrom(const struct stat& info) {
    return {timeOf(info.st_mtim), timeOf(info.st_ctim), static_cast<std::uint64_t>(info.st_size), info.st_ino};
}

}  // namespace quillon
