// SPDX-License-Identifier: MIT
#include "platform/system_error.h"

#include <cstring>

#include "text/list_text.h"

namespace quillon {

ErrorKind kindOfErrno(int number) {
    switch (number) {
        case EACCES:
        case EPERM:
        case EROFS:
            return ErrorKind::PermissionDenied;
        case EBADF:
        case EINVAL:
        case ENAMETOOLONG:
        case EILSEQ:
            return ErrorKind::BadName;
        case ENOENT:
            return ErrorKind::NotFound;
        case EADDRINUSE:
            return ErrorKind::AddressInUse;
        default:
            return ErrorKind::PathAccess;
    }
}

FileError systemError(std::string_view nativePath, int number) {
    const std::string words = std::strerror(number);
    return FileError{kindOfErrno(number), readable(nativePath) + ": " + words, words};
}

FileError systemError(std::string_view nativePath) {
    return systemError(nativePath, errno);
}

}  // namespace quillon
