// SPDX-License-Identifier: MIT
#pragma once

// On which devices a folder's file system lies: its own block device, the disk that this is a partition of, the image
// behind a loop device.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/file.h"

namespace quillon {

struct DevicePlace {
    std::string path;          ///< of a device below /dev, or of an image
    std::uint64_t bytes = 0;   ///< size of all of it
    std::uint64_t offset = 0;  ///< where the file system begins on it

    friend bool operator==(const DevicePlace&, const DevicePlace&) = default;
};

struct FileSystemPlace {
    std::uint64_t number = 0;          ///< device number of its files
    std::string kind;                  ///< as the system calls it
    std::string options;               ///< with commas between them
    unsigned sectorBytes = 512;        ///< what the medium reads at once
    std::vector<DevicePlace> devices;  ///< its own first, then what that lies on; empty when it lies on none
};

/// The file system of a folder. NotFound: there is no such folder, or nothing is mounted there.
[[nodiscard]] Result<FileSystemPlace> fileSystemOf(const NativePath& folder);

/// The devices of the block device "<major>:<minor>", as `system`, which is /sys but in tests, describes them. Empty
/// when it is none.
[[nodiscard]] std::vector<DevicePlace> devicesOf(const NativePath& system, const std::string& number);
/// Its physical sector; 512 when that is not told.
[[nodiscard]] unsigned sectorBytesOf(const NativePath& system, const std::string& number);

}  // namespace quillon
