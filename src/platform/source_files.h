// SPDX-License-Identifier: MIT
#pragma once

// Opens files of a source for reading, and only for reading: read-only, never through a link as the last step, never
// waiting on a FIFO, leaving access times alone where the system lets it, and asking a damaged disk for as little as
// possible.

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/directory.h"
#include "platform/file.h"

namespace quillon {

inline constexpr std::size_t kHeaderBytes = 512;

/// The first bytes of a file, blanks (0x20) where no byte came.
using HeaderBytes = std::array<char, kHeaderBytes>;

/// Where heads of files come from: one small door, so that another implementation may read them ahead.
class HeadReader {
public:
    virtual ~HeadReader() = default;

    /// Replaces `head` by the first 512 bytes of the file. A failure is a failure of opening: no such file, no access,
    /// or no regular file. A read that fails or ends early is none; the bytes it did not give are blanks.
    [[nodiscard]] virtual Result<void> readHead(std::string_view nativePath, HeaderBytes& head) = 0;
};

/// Opens in line. Consecutive files of one folder share a folder handle.
class SourceFiles final : public HeadReader {
public:
    [[nodiscard]] Result<void> readHead(std::string_view nativePath, HeaderBytes& head) override;

    /// Opens a regular file; anything else is a PermissionDenied failure.
    [[nodiscard]] Result<File> open(std::string_view nativePath);

    /// Forgets the folder handle, so that nothing of the source stays open.
    void closeFolder() { folder_.close(); }

private:
    [[nodiscard]] Result<int> openRegular(std::string_view nativePath);
    [[nodiscard]] Result<void> enter(std::string_view folder);

    Directory folder_;
    std::string folderPath_;
    bool leaveAccessTimes_ = true;
};

}  // namespace quillon
