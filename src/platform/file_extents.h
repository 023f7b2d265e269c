// SPDX-License-Identifier: MIT
#pragma once

// Where on its device the bytes of a file lie, as its file system tells it. Nothing is read, written or synced.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/device_places.h"
#include "platform/directory.h"
#include "platform/result.h"

namespace quillon {

enum class ExtentKind : std::uint8_t {
    Data,       ///< the very bytes
    Unwritten,  ///< room that was kept; it reads as zeros, whatever the device holds there
    Inline,     ///< among the file system's own tables, beside other files
    Encoded,    ///< compressed or encrypted: what lies there are other bytes
    Unknown,    ///< not written to the device yet, or at a place that the file system does not tell
};

/// A hole of a file has no extent.
struct FileExtent {
    std::uint64_t logical = 0;   ///< in the file
    std::uint64_t physical = 0;  ///< in the file system
    std::uint64_t length = 0;    ///< bytes; may reach behind the end of the file
    ExtentKind kind = ExtentKind::Data;

    friend bool operator==(const FileExtent&, const FileExtent&) = default;
};

struct FilePlaces {
    std::uint64_t size = 0;    ///< of the file now
    std::uint64_t device = 0;  ///< number of the file system that it stands on
    std::vector<FileExtent> extents;
};

/// Where places come from: one small door, so that tests may tell them.
class PlaceReader {
public:
    virtual ~PlaceReader() = default;
    /// What a folder lies on; see fileSystemOf.
    [[nodiscard]] virtual Result<FileSystemPlace> systemOf(const NativePath& folder) = 0;
    /// A failure is one of opening (no regular file is a PermissionDenied), or the file system does not tell places.
    [[nodiscard]] virtual Result<FilePlaces> placesOf(std::string_view nativePath) = 0;
    /// Where the first bytes of the file lie in its file system, where that is quickly told.
    [[nodiscard]] virtual std::optional<std::uint64_t> firstPlaceOf(std::string_view nativePath) = 0;
};

/// Asks the system. Consecutive files of one folder share a folder handle. Where a file system cannot tell extents it
/// is asked for one block after the other, which only an administrator may.
class SystemPlaces final : public PlaceReader {
public:
    [[nodiscard]] Result<FileSystemPlace> systemOf(const NativePath& folder) override { return fileSystemOf(folder); }
    [[nodiscard]] Result<FilePlaces> placesOf(std::string_view nativePath) override;
    [[nodiscard]] std::optional<std::uint64_t> firstPlaceOf(std::string_view nativePath) override;

private:
    [[nodiscard]] Result<int> open(std::string_view nativePath);

    Directory folder_;
    std::string folderPath_;
};

/// The block of the file system that holds a block of the file; 0 for one that it does not tell, which may be a hole.
using BlockOf = std::function<Result<std::uint32_t>(std::uint32_t block)>;

/// Extents of a file of `size` bytes whose file system tells single blocks of `blockBytes` (not 0).
[[nodiscard]] Result<std::vector<FileExtent>> extentsByBlocks(std::uint64_t size, std::uint32_t blockBytes,
                                                              const BlockOf& blockOf);

}  // namespace quillon
