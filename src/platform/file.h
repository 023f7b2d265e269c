// SPDX-License-Identifier: MIT
#pragma once

// An open file. Closes itself; interrupted calls are repeated; the path stands in every error text.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace quillon {

/// A path as the system gave it: bytes of any kind, never normalised.
using NativePath = std::filesystem::path;

class File {
public:
    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File();

    /// Opens a data file of the program's own for reading. Links are followed.
    [[nodiscard]] static Result<File> openForReading(const NativePath& path);
    /// Opens for writing and empties the file, making it when it is missing.
    [[nodiscard]] static Result<File> create(const NativePath& path);
    /// Makes a file that must not exist yet.
    [[nodiscard]] static Result<File> createNew(const NativePath& path, unsigned mode = 0666);
    /// Opens an existing file for reading and writing at its start, keeping its bytes.
    [[nodiscard]] static Result<File> openForChanging(const NativePath& path);
    /// Opens for writing at the end, making the file when it is missing. A link in its place is an error.
    [[nodiscard]] static Result<File> openForAppending(const NativePath& path);

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// Reads up to the size of `buffer`; fewer bytes come only at the end of the file.
    [[nodiscard]] Result<std::size_t> read(std::span<std::byte> buffer);
    [[nodiscard]] Result<void> write(std::span<const std::byte> bytes);
    [[nodiscard]] Result<void> write(std::string_view bytes);
    [[nodiscard]] Result<std::uint64_t> size() const;
    [[nodiscard]] Result<void> seek(std::uint64_t offset);
    /// Cuts the file to a length and goes on writing there.
    [[nodiscard]] Result<void> truncate(std::uint64_t length);
    /// Brings the bytes to the medium.
    [[nodiscard]] Result<void> sync();
    /// Closes and says whether the close went well: a full or remote disk may tell only here. A second close is a
    /// success.
    [[nodiscard]] Result<void> close();

    [[nodiscard]] NativePath path() const { return path_; }

private:
    friend class SourceFiles;
    friend class FileCopier;
    File(int descriptor, std::string path);
    [[nodiscard]] static Result<File> open(const NativePath& path, int flags, unsigned mode);

    int descriptor_ = -1;
    std::string path_;
};

}  // namespace quillon
