// SPDX-License-Identifier: MIT
#pragma once

// Which volume a folder lies on, so that another one at the same place is noticed.

#include <cstdint>
#include <string>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// Empty texts for what the system does not tell.
struct Volume {
    std::string fileSystem;  ///< its kind, as the system calls it: "ext4", "ntfs3", "cifs"
    std::string uuid;        ///< as /dev/disk/by-uuid has it

    friend bool operator==(const Volume&, const Volume&) = default;
};

[[nodiscard]] Volume volumeOf(const NativePath& folder);

/// How many bytes this user can still write on the volume of a folder.
[[nodiscard]] Result<std::uint64_t> freeBytes(const NativePath& folder);

}  // namespace quillon
