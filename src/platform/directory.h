// SPDX-License-Identifier: MIT
#pragma once

// A folder held open, for walking a source: its entries come with their kind, its files are described and its
// subfolders opened relative to the handle, so that no path is looked up from the root twice and paths may be of any
// length. To list a folder leaves its access time alone where the system lets it.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/folders.h"
#include "platform/result.h"

namespace quillon {

/// Called now and then during a step that a very large folder makes long, once for some thousands of names.
using Pause = std::function<void()>;

/// The names in one folder, kept in one block of memory.
class EntryNames {
public:
    /// So many names are worked on between two pauses.
    static constexpr std::size_t kPauseEvery = 2048;

    void clear();
    void add(std::string_view name);
    /// Sorts by bytes.
    void sort(const Pause& pause = [] {});
    [[nodiscard]] std::size_t size() const { return entries_.size(); }
    [[nodiscard]] bool empty() const { return entries_.empty(); }
    [[nodiscard]] std::string_view operator[](std::size_t index) const;
    /// Gives memory back that a very large folder took.
    void release();

private:
    struct Entry {
        std::uint32_t offset;
        std::uint32_t length;
    };
    std::string bytes_;
    std::vector<Entry> entries_;
};

/// What the file system says of one file.
struct EntryInfo {
    bool regular = false;
    std::uint64_t size = 0;
    FileTime modified;
    unsigned mode = 0;
    bool compressed = false;
    bool encrypted = false;
    std::uint64_t device = 0;
};

/// A directory handle.
class Directory {
public:
    Directory() = default;
    Directory(Directory&& other) noexcept;
    Directory& operator=(Directory&& other) noexcept;
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    ~Directory();

    /// Opens by path; links are followed, as a source may be named by one. A path longer than the system takes at once
    /// is walked piece by piece.
    [[nodiscard]] static Result<Directory> open(const NativePath& path);
    /// Opens by path only to look names up in: enough for a folder that may be entered but not listed.
    [[nodiscard]] static Result<Directory> openToLookUp(const NativePath& path);
    /// Opens a subfolder; a link is refused.
    [[nodiscard]] Result<Directory> openFolder(std::string_view name) const;

    /// Opens a subfolder only to look names up in; a link is followed.
    [[nodiscard]] Result<Directory> lookUpFolder(std::string_view name) const;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    void close();

    /// True when the folder was removed since it was opened.
    [[nodiscard]] bool isRemoved() const;

    /// True when names in the folder can be looked up. A folder may be readable and yet not enterable.
    [[nodiscard]] bool canBeEntered() const;

    /// Replaces both lists by the regular files and the folders in here, unsorted. Links, FIFOs, sockets and devices
    /// are in neither. What was listed before a read error stays in the lists.
    [[nodiscard]] Result<void> list(
        EntryNames& files, EntryNames& folders, const Pause& pause = [] {}) const;

    /// Creates a subfolder; one that exists already is a success.
    [[nodiscard]] Result<void> createFolder(std::string_view name) const;

    /// The state of a file in here; a link is followed.
    [[nodiscard]] Result<FileStamp> stampOf(std::string_view name) const;
    /// The state of the folder itself, wherever it has gone since it was opened.
    [[nodiscard]] Result<FileStamp> stamp() const;

    /// Describes an entry without following a link.
    [[nodiscard]] Result<EntryInfo> describe(std::string_view name) const;

    [[nodiscard]] int handle() const { return descriptor_; }

private:
    explicit Directory(int descriptor) : descriptor_(descriptor) {}
    [[nodiscard]] static Result<Directory> openWith(const NativePath& path, int flags);
    [[nodiscard]] Result<Directory> openFolderWith(std::string_view name, int flags) const;
    int descriptor_ = -1;
};

}  // namespace quillon
