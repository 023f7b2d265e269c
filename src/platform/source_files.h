// SPDX-License-Identifier: MIT
#pragma once

// Opens files of a source for reading, and only for reading: read-only, never through a link as the last step, never
// waiting on a FIFO, leaving access times alone where the system lets it, and asking a damaged disk for as little as
// possible.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/directory.h"
#include "platform/file.h"
#include "platform/source_care.h"

struct stat;

namespace quillon {

inline constexpr std::size_t kHeaderBytes = 512;

/// The first bytes of a file, blanks (0x20) where no byte came.
using HeaderBytes = std::array<char, kHeaderBytes>;

/// The first bytes of a file as they came, and how many came.
struct FileHead {
    std::uint16_t length = 0;  ///< the rest of `bytes` are blanks
    HeaderBytes bytes{};

    [[nodiscard]] std::string_view given() const { return {bytes.data(), length}; }

    friend bool operator==(const FileHead&, const FileHead&) = default;
};

/// Where heads of files come from: one small door, so that another implementation may read them ahead.
class HeadReader {
public:
    virtual ~HeadReader() = default;

    /// Replaces `head` by the first 512 bytes of the file. A failure is a failure of opening: no such file, no access,
    /// or no regular file. A read that fails or ends early is none; the bytes it did not give are blanks. The result is
    /// how many bytes came.
    [[nodiscard]] virtual Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) = 0;
};

/// Opens in line. Consecutive files of one folder share a folder handle.
class SourceFiles final : public HeadReader {
public:
    /// `care` hears of heads and places that cannot be read or take long; null for none.
    explicit SourceFiles(std::shared_ptr<SourceCare> care = nullptr) : care_(std::move(care)) {}

    /// A head that cannot be read as the system reads, by whole pages, is asked for once more by itself: the sector
    /// that the drive cannot give may lie behind it. Not where the drive took two seconds to say so, which it would
    /// again.
    [[nodiscard]] Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override;

    /// As readHead for a head that lies in memory. No value, and a head of no meaning: it would wait. A disk would have
    /// to give it, or the file system is one of another computer or of a program, which may make every call wait; from
    /// the first folder of such a one until closeFolder nothing is tried any more.
    [[nodiscard]] Result<std::optional<std::size_t>> tryHead(std::string_view nativePath, HeaderBytes& head);

    /// Opens a regular file; anything else is a PermissionDenied failure.
    [[nodiscard]] Result<File> open(std::string_view nativePath);

    /// As open, for who reads a few places of the file by `readAt`: no more than their pages is asked of the disk.
    [[nodiscard]] Result<File> openForPlaces(std::string_view nativePath);
    /// Reads from `at` on; fewer bytes than the buffer holds come only at the end of the file.
    [[nodiscard]] Result<std::size_t> readAt(File& file, std::uint64_t at, std::span<std::byte> buffer) const;

    /// Forgets the folder handle, so that nothing of the source stays open.
    void closeFolder();

private:
    friend class FileCopier;
    enum class Volume { Memory, Disk, Elsewhere };

    [[nodiscard]] Result<int> openRegular(std::string_view nativePath);
    [[nodiscard]] Result<int> openRegular(std::string_view nativePath, struct stat& info);
    [[nodiscard]] Result<void> enter(std::string_view folder);
    [[nodiscard]] Volume volumeOfFolder() const;
    [[nodiscard]] std::size_t readInto(int descriptor, HeaderBytes& head, Moment start) const;

    std::shared_ptr<SourceCare> care_;
    Directory folder_;
    Volume volume_ = Volume::Disk;  // of the open folder
    std::string folderPath_;
    bool leaveAccessTimes_ = true;
};

}  // namespace quillon
