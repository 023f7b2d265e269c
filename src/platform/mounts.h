// SPDX-License-Identifier: MIT
#pragma once

// What is mounted where, as the system tells it.

#include <cstdint>
#include <optional>
#include <string>

namespace quillon {

struct Mount {
    std::string fileSystem;  ///< its kind: "ext4", "ntfs3", "fuseblk"
    std::string device;      ///< what was mounted, mostly a path below /dev
    std::string options;     ///< of the file system, with commas between them
};

/// `volume`: a file's device number. None when nothing that is mounted has it.
[[nodiscard]] std::optional<Mount> mountOf(std::uint64_t volume);

}  // namespace quillon
