// SPDX-License-Identifier: MIT
#pragma once

// Files that come under their names only when they are whole. Until then a file has no name at all, so that a program
// that is killed leaves nothing of it; on volumes that know no such files it has a temporary name.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/directory.h"
#include "platform/result.h"

namespace quillon {

/// How a volume lets a file get its name late.
enum class Naming {
    LinkHandle,  ///< without a name, linked by its handle
    LinkProc,    ///< without a name, linked by what /proc shows of its handle; slower, but asks for no privilege
    Rename,      ///< under a temporary name, renamed
};

/// A file in the making. One that is let go before `arrive` leaves nothing behind.
class ArrivingFile {
public:
    /// Makes an empty file with the permissions `mode`, less what the process's mask takes, that will be the last part
    /// of `nativePath` in `folder`.
    [[nodiscard]] static Result<ArrivingFile> begin(std::shared_ptr<const Directory> folder,
                                                    std::string_view nativePath, Naming naming, unsigned mode);
    ArrivingFile(ArrivingFile&& other) noexcept;
    ArrivingFile& operator=(ArrivingFile&&) = delete;
    ArrivingFile(const ArrivingFile&) = delete;
    ArrivingFile& operator=(const ArrivingFile&) = delete;
    ~ArrivingFile();

    [[nodiscard]] int handle() const { return descriptor_; }
    [[nodiscard]] Naming naming() const { return naming_; }
    [[nodiscard]] const std::string& nativePath() const { return nativePath_; }

    /// Closes the file and gives it its name; an older file of this name is replaced as a whole, or stays when this
    /// fails.
    [[nodiscard]] Result<void> arrive();
    /// True when its folder was removed since it was opened: no file arrives there, not even where it was made anew.
    [[nodiscard]] bool isStranded() const { return folder_->isRemoved(); }

private:
    ArrivingFile(std::shared_ptr<const Directory> folder, std::string_view nativePath, Naming naming);
    [[nodiscard]] int create(unsigned mode);
    [[nodiscard]] bool replaceByTemporary();
    [[nodiscard]] bool linkAndClose();
    [[nodiscard]] bool close();

    std::shared_ptr<const Directory> folder_;
    std::string nativePath_;
    std::string name_;
    std::string temporary_;  // while there is a file of this name
    Naming naming_;
    int descriptor_ = -1;
};

/// The folder that files arrive in, held open while consecutive files have the same.
class ArrivalFolder {
public:
    /// Begins a file in its folder, which must exist, with the permissions `mode`, less what the process's mask takes.
    [[nodiscard]] Result<ArrivingFile> begin(std::string_view nativePath, unsigned mode);

    /// No file arrives in a folder that was removed since it was opened, not even where it was made anew. True when
    /// that happened: the next file finds the new one.
    [[nodiscard]] bool forgetRemoved();

private:
    [[nodiscard]] Result<void> enter(std::string_view folder);

    std::shared_ptr<const Directory> folder_;  // also of its files, which may come later than it is left
    std::string path_;
    std::uint64_t device_ = 0;
    Naming naming_ = Naming::Rename;  // of device_, once a folder was entered
};

}  // namespace quillon
