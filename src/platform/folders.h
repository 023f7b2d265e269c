// SPDX-License-Identifier: MIT
#pragma once

// Questions and small actions on paths: exists, create, list, remove, move. Whole-path calls for the program's own data
// folders; the walk over a source uses Directory instead.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// True for a file or a folder; links are followed. An empty path does not exist.
[[nodiscard]] bool pathExists(const NativePath& path);
[[nodiscard]] bool isFolder(const NativePath& path);
/// True for a file with bytes of its own, also behind links: no folder, no device, no pipe.
[[nodiscard]] bool isRegularFile(const NativePath& path);
/// True for a link itself, whether it leads anywhere or not.
[[nodiscard]] bool isLink(const NativePath& path);

/// Seconds and nanoseconds of a modification time, as the file system holds it.
struct FileTime {
    std::int64_t seconds = 0;
    std::uint32_t nanoseconds = 0;

    friend auto operator<=>(const FileTime&, const FileTime&) = default;
};

/// This moment by the clock that gives files their times.
[[nodiscard]] FileTime fileTimeNow();

/// What tells one state of a file from another.
struct FileStamp {
    FileTime modified;
    FileTime changed;
    std::uint64_t size = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

[[nodiscard]] Result<FileStamp> fileStamp(const NativePath& path);
[[nodiscard]] Result<std::uint64_t> fileSize(const NativePath& path);
[[nodiscard]] Result<FileTime> modificationTime(const NativePath& path);
[[nodiscard]] Result<void> setModificationTime(const NativePath& path, FileTime time);

/// Creates one folder; a folder that exists already is a success.
[[nodiscard]] Result<void> createFolder(const NativePath& path);

/// The names of the regular files directly in a folder (links to files count), sorted by bytes. Temporary files of a
/// save in progress are left out.
[[nodiscard]] Result<std::vector<std::string>> listFiles(const NativePath& folder);

/// All names directly in a folder but "." and "..", in no order.
[[nodiscard]] Result<std::vector<std::string>> listEntries(const NativePath& folder);

/// Removes a file. A file that is not there is a NotFound failure.
[[nodiscard]] Result<void> removeFile(const NativePath& path);

/// Makes a link that leads to `target`; a name that is taken is a failure.
[[nodiscard]] Result<void> createLink(const NativePath& target, const NativePath& link);

/// Moves a file by rename, within one volume; an existing target is replaced.
[[nodiscard]] Result<void> renameFile(const NativePath& from, const NativePath& to);

/// True when `name` can be the name of one file: not empty, not "." or "..", no separator ("/" or "\"), no zero byte,
/// at most 255 bytes. Text that a user types into a path has to pass here, so that it never leads out of its folder.
[[nodiscard]] bool isFileName(std::string_view name);

/// `folder`/`name`, or a BadName failure when `name` is no file name.
[[nodiscard]] Result<NativePath> childPath(const NativePath& folder, std::string_view name);

/// A path from the root on, without "." and "..", which are taken by their words: links are not looked at.
[[nodiscard]] Result<NativePath> absolutePath(const NativePath& path);

/// The place of a path behind all links. A part that does not exist stays as it reads.
[[nodiscard]] Result<NativePath> resolvedPath(const NativePath& path);

/// The place of a path behind all links, with no separator at its end. A part that does not exist stays as it reads,
/// and so does a path too long to be asked for.
[[nodiscard]] NativePath realPath(const NativePath& path);

/// True when `path` is `folder` or lies below it; both as `realPath` gives them.
[[nodiscard]] bool liesIn(const NativePath& path, const NativePath& folder);

/// A path from the root on, as the system goes it: ".." behind a link leads to the folder above the place of the link's
/// target. A path without ".." keeps its links.
[[nodiscard]] Result<NativePath> pathFromRoot(const NativePath& path);

/// The folder of the running program; empty when the system does not tell it.
[[nodiscard]] NativePath programFolder();

/// Raises the number of files that may be open at once to what the system allows the process.
void raiseOpenFileLimit();
/// How many files may be open at once.
[[nodiscard]] std::uint64_t openFileLimit();

}  // namespace quillon
