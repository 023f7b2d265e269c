// SPDX-License-Identifier: MIT
#pragma once

// Reading and saving small files as a whole. Every whole-file write of the program goes through `saveWholeFile`.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// The largest file that is read as a whole; beyond it the read fails. Far above any rule list or term file.
inline constexpr std::size_t kWholeFileLimit = 64UL * 1024 * 1024;

/// All bytes of a file. A missing file is a NotFound failure.
[[nodiscard]] Result<std::string> readWholeFile(const NativePath& path, std::size_t limit = kWholeFileLimit);

/// Where a save keeps its temporary file.
enum class TemporaryPlace {
    Beside,       ///< in the target's own folder
    AboveFolder,  ///< in the folder above, when that is the same volume and can be written: other computers list and
                  ///< copy all that lies in a database or settings folder
};

/// Replaces a file's content, so that a reader and a machine that dies see the old bytes or the new ones and nothing
/// between: temporary file on the same volume, write, fsync, close, rename, fsync of the folder.
///
/// The temporary file stands where `place` says, and never under a name that `listFiles` gives. A target that exists
/// keeps its mode. A link is followed. Where a share refuses the rename, it is tried again, for about four seconds
/// while the target is busy at another computer, and then fails. A share that refuses it for another reason has the
/// bytes written in place, while the temporary file still holds them all; if that fails too, the old bytes are written
/// back. On failure the old file is whole; where a share takes neither the new bytes nor the old ones any more, the
/// temporary file stays, with all the new ones.
[[nodiscard]] Result<void> saveWholeFile(const NativePath& path, std::string_view bytes,
                                         TemporaryPlace place = TemporaryPlace::Beside);

/// The same with its temporary file in a folder of the caller's, who gives the bytes their name only as long as that
/// folder stands under its name: once it is gone the save fails and the target is as it was. Where the folder is on
/// another volume, or takes no file, the temporary file stands as with AboveFolder.
[[nodiscard]] Result<void> saveWholeFileThrough(const NativePath& temporaryFolder, const NativePath& path,
                                                std::string_view bytes);

/// A file too large to be held in memory that takes its target's place when it is whole. Until then, and on any
/// failure, the target is as it was. One that is let go earlier leaves nothing behind; a program that is killed leaves
/// a file under a name that listings leave out.
class Replacement {
public:
    /// Makes an empty file beside the target. A target that exists gives its mode; a link is followed.
    [[nodiscard]] static Result<Replacement> begin(const NativePath& target);
    Replacement(Replacement&& other) noexcept;
    Replacement& operator=(Replacement&&) = delete;
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// The file to be written, once. Whoever takes it brings its bytes to the medium and closes it before `arrive`.
    [[nodiscard]] File takeFile() { return std::move(file_); }
    /// Gives the file its name. A share that refuses it is asked again, for about four seconds while the target is busy
    /// at another computer.
    [[nodiscard]] Result<void> arrive();

private:
    Replacement(File file, NativePath target);

    File file_;
    NativePath temporary_;  // empty once there is no such file any more
    NativePath target_;
};

/// Appends bytes and closes, saying whether all went well. Makes the file when it is missing. When not all of them fit,
/// none of them stay.
[[nodiscard]] Result<void> appendToFile(const NativePath& path, std::string_view bytes);

/// The failure of a save by the name of the file that the person knows, as the system tells it of the temporary one:
/// "<path> cannot be saved: No space left on device".
[[nodiscard]] FileError saveError(const NativePath& path, FileError error);

/// True for the name of a save in progress.
[[nodiscard]] bool isTemporaryName(std::string_view name);

/// True for a file that a save of this computer left when its process was killed: the process is gone, and the file is
/// older than a day. Of another computer's nobody can tell here.
[[nodiscard]] bool isSaveLitter(const NativePath& file);

/// True for a temporary name of a process of this computer that is gone.
[[nodiscard]] bool isOfGoneProcess(std::string_view temporaryName);

/// The beginning of the temporary names of this computer.
[[nodiscard]] std::string ownTemporaryPrefix();

/// A name for a temporary file that no other process or computer uses at this moment.
[[nodiscard]] std::string temporaryName();

/// Brings the bytes of a file to the medium that others have written.
[[nodiscard]] Result<void> syncFile(const NativePath& path);

/// Brings a folder's entries to the medium after a rename. Not every medium can; that is no failure of the save.
void syncFolder(const NativePath& folder);

}  // namespace quillon
