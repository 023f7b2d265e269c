// SPDX-License-Identifier: MIT
#pragma once

// Archives for tests, built with libzip: good ones and such as nobody should unpack.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace quillon::test {

struct ZipEntry {
    std::string name;
    std::string bytes;
    unsigned mode = 0100644;  ///< type and permissions as a Unix writer stores them
    bool folder = false;
};

/// Writes an archive of these entries, replacing the file.
void writeZip(const NativePath& path, const std::vector<ZipEntry>& entries, std::string_view password = {});

/// The same with a name replaced in the bytes of the archive, for names that libzip itself would not write. Both must
/// have the same length.
void writeZipRenamed(const NativePath& path, const std::vector<ZipEntry>& entries, std::string_view from,
                     std::string_view to);

}  // namespace quillon::test
