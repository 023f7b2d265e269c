// SPDX-License-Identifier: MIT
#include "archive/zip_handle.h"

#include <cerrno>

#include "text/list_text.h"

namespace quillon {

namespace {

ErrorKind kindOf(zip_error_t* error) {
    const int code = zip_error_code_zip(error);
    if (code == ZIP_ER_NOENT)
        return ErrorKind::NotFound;
    const int number = zip_error_code_system(error);
    if (zip_error_system_type(error) == ZIP_ET_SYS) {
        if (number == ENOENT)
            return ErrorKind::NotFound;
        if (number == EACCES || number == EPERM || number == EROFS)
            return ErrorKind::PermissionDenied;
    }
    return ErrorKind::PathAccess;
}

}  // namespace

FileError zipError(const NativePath& path, zip_error_t* error) {
    return {kindOf(error), readable(path.native()) + ": " + zip_error_strerror(error)};
}

Result<ZipHandle> openZip(const NativePath& archive) {
    int code = 0;
    ZipHandle handle(zip_open(archive.c_str(), ZIP_RDONLY, &code));
    if (handle)
        return handle;
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    auto failed = zipError(archive, &error);
    zip_error_fini(&error);
    return failure(std::move(failed));
}

}  // namespace quillon
