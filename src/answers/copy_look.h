// SPDX-License-Identifier: MIT
#pragma once

// What a target will not hold, looked at before the first byte is copied.

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "job/copy_queue.h"

namespace quillon {

/// A volume that copies are to go to.
struct TargetVolume {
    std::string fileSystem;                  ///< its kind, as the system calls it; empty when it is not known
    std::optional<std::uint64_t> freeBytes;  ///< for this user
};

/// Of the nearest folder above that is there.
[[nodiscard]] TargetVolume targetVolumeOf(const NativePath& target);

class CopyLook {
public:
    /// `target`: the folder that all copies lie below.
    CopyLook(TargetVolume volume, const NativePath& target)
        : volume_(std::move(volume)), root_(withOneSlash(target.native())) {}

    /// A file that is to be copied, of so many bytes.
    void add(const CopyTask& task, std::int64_t bytes);

    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    /// A sentence for each thing that will not go well, without a full stop; none when all will.
    [[nodiscard]] std::vector<std::string> findings() const;

private:
    // How many files, and the first of them.
    struct Hits {
        std::int64_t count = 0;
        std::string first;

        void add(std::string_view path);
    };
    void lookAtNames(std::string_view path);
    [[nodiscard]] bool isOfWindows() const;

    TargetVolume volume_;
    std::string root_;  // ends in "/"
    std::int64_t bytes_ = 0;
    Hits large_;
    Hits odd_;
    Hits alike_;
    std::string lastFolder_;
    bool lastFolderIsOdd_ = false;
    std::unordered_set<std::uint64_t> folded_;  // digests of paths in lower case
};

}  // namespace quillon
