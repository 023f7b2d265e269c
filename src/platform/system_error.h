// SPDX-License-Identifier: MIT
#pragma once

// Error numbers of the system as FileErrors. For the sources of this folder only.

#include <string>
#include <string_view>

#include "platform/result.h"

namespace quillon {

/// The kind of an `errno` value: EACCES, EPERM, EROFS -> PermissionDenied; EBADF, EINVAL, ENAMETOOLONG, EILSEQ ->
/// BadName; ENOENT -> NotFound; EADDRINUSE -> AddressInUse; all others -> PathAccess.
[[nodiscard]] ErrorKind kindOfErrno(int number);

/// "<path>: <the system's words>" for the current `errno` or the one given.
[[nodiscard]] FileError systemError(std::string_view nativePath);
[[nodiscard]] FileError systemError(std::string_view nativePath, int number);

/// Repeats a system call while it is interrupted.
template <typename Call>
auto retried(Call call) -> decltype(call());

}  // namespace quillon

#include <cerrno>

namespace quillon {

template <typename Call>
auto retried(Call call) -> decltype(call()) {
    while (true) {
        const auto result = call();
        if (result != -1 || errno != EINTR)
            return result;
    }
}

}  // namespace quillon
