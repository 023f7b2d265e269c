// SPDX-License-Identifier: MIT
#pragma once

// Owners of libzip's handles, and its failures as FileErrors. For the sources of this folder only.

#include <memory>
#include <string>

#include <zip.h>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// Drops an archive without writing; an archive that was closed by `zip_close` is released before.
struct DiscardZip {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ZipHandle = std::unique_ptr<zip_t, DiscardZip>;

struct CloseZipFile {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using ZipFileHandle = std::unique_ptr<zip_file_t, CloseZipFile>;

/// "<path>: <the words of libzip>". A missing file is NotFound, a refused one PermissionDenied, all else PathAccess.
[[nodiscard]] FileError zipError(const NativePath& path, zip_error_t* error);

/// Opens an archive for reading.
[[nodiscard]] Result<ZipHandle> openZip(const NativePath& archive);

}  // namespace quillon
