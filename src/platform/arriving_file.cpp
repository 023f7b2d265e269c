// SPDX-License-Identifier: MIT
#include "platform/arriving_file.h"

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "platform/disk_calls.h"
#include "platform/system_error.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

int openNameless(int folder, unsigned mode) {
    return retried([&] { return disk().open(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode); });
}

bool linkFile(int file, Naming naming, int folder, const char* name) {
    if (naming == Naming::LinkHandle)
        return disk().link(file, "", folder, name, AT_EMPTY_PATH) == 0;
    const auto shown = fmt::format("/proc/self/fd/{}", file);
    return disk().link(AT_FDCWD, shown.c_str(), folder, name, AT_SYMLINK_FOLLOW) == 0;
}

std::string_view folderOf(std::string_view nativePath) {
    const auto slash = nativePath.rfind('/');
    return slash == nativePath.npos ? std::string_view(".") : nativePath.substr(0, slash + 1);
}

// Not every volume knows nameless files, not every one that knows them lets them be linked, and who may link by handle
// depends on the system: it is tried once.
Naming namingOf(int folder) {
    const int file = openNameless(folder, 0600);
    if (file < 0)
        return Naming::Rename;
    Naming found = Naming::Rename;
    const std::string name = temporaryName();
    for (const Naming naming : {Naming::LinkHandle, Naming::LinkProc}) {
        if (linkFile(file, naming, folder, name.c_str())) {
            found = disk().unlink(folder, name.c_str()) == 0 ? naming : Naming::Rename;
            break;
        }
    }
    passOver(disk().close(file), "it was only tried");
    return found;
}

}  // namespace

ArrivingFile::ArrivingFile(std::shared_ptr<const Directory> folder, std::string_view nativePath, Naming naming)
    : folder_(std::move(folder)),
      nativePath_(nativePath),
      name_(nativePath.substr(nativePath.rfind('/') + 1)),
      naming_(naming) {
}

ArrivingFile::ArrivingFile(ArrivingFile&& other) noexcept
    : folder_(std::move(other.folder_)),
      nativePath_(std::move(other.nativePath_)),
      name_(std::move(other.name_)),
      temporary_(std::exchange(other.temporary_, {})),
      naming_(other.naming_),
      descriptor_(std::exchange(other.descriptor_, -1)) {
}

ArrivingFile::~ArrivingFile() {
    if (descriptor_ >= 0)
        passOver(disk().close(descriptor_), "the file goes");
    if (!temporary_.empty())
        passOver(disk().unlink(folder_->handle(), temporary_.c_str()), "a name that no listing gives");
}

Result<ArrivingFile> ArrivingFile::begin(std::shared_ptr<const Directory> folder, std::string_view nativePath,
                                         Naming naming, unsigned mode) {
    ArrivingFile file(std::move(folder), nativePath, naming);
    file.descriptor_ = file.create(mode);
    if (file.descriptor_ < 0)
        return failure(systemError(nativePath));
    return file;
}

int ArrivingFile::create(unsigned mode) {
    if (naming_ != Naming::Rename)
        return openNameless(folder_->handle(), mode);
    std::string name = temporaryName();
    const int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = retried([&] { return disk().open(folder_->handle(), name.c_str(), flags, mode); });
    if (descriptor >= 0)
        temporary_ = std::move(name);
    return descriptor;
}

Result<void> ArrivingFile::arrive() {
    const bool arrived = naming_ == Naming::Rename ? close() && replaceByTemporary() : linkAndClose();
    if (!arrived)
        return failure(systemError(nativePath_));
    return {};
}

// A link replaces nothing; over an older file it gives a temporary name first.
bool ArrivingFile::linkAndClose() {
    if (!linkFile(descriptor_, naming_, folder_->handle(), name_.c_str())) {
        if (errno != EEXIST)
            return false;
        std::string name = temporaryName();
        if (!linkFile(descriptor_, naming_, folder_->handle(), name.c_str()))
            return false;
        temporary_ = std::move(name);
        return close() && replaceByTemporary();
    }
    if (close())
        return true;
    const int number = errno;  // bytes may be missing
    passOver(disk().unlink(folder_->handle(), name_.c_str()), "the failed close is what is reported");
    errno = number;
    return false;
}

bool ArrivingFile::replaceByTemporary() {
    if (disk().rename(folder_->handle(), temporary_.c_str(), name_.c_str()) != 0)
        return false;
    temporary_.clear();
    return true;
}

// A full or remote disk may tell only here that it did not keep the bytes.
bool ArrivingFile::close() {
    return disk().close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR;
}

Result<void> ArrivalFolder::enter(std::string_view folder) {
    if (folder_ && folder == path_)
        return {};
    folder_.reset();
    auto opened = Directory::openToLookUp(NativePath(folder));
    if (!opened)
        return failure(opened.error());
    folder_ = std::make_shared<const Directory>(std::move(*opened));
    path_ = folder;
    struct stat info {};
    if (::fstat(folder_->handle(), &info) == 0 && info.st_dev != device_) {
        device_ = info.st_dev;
        naming_ = namingOf(folder_->handle());
    }
    return {};
}

bool ArrivalFolder::forgetRemoved() {
    const bool removed = folder_ && folder_->isRemoved();
    if (removed)
        folder_.reset();
    return removed;
}

Result<ArrivingFile> ArrivalFolder::begin(std::string_view nativePath, unsigned mode) {
    if (nativePath.find('\0') != nativePath.npos)
        return failure(systemError(nativePath, EINVAL));
    return enter(folderOf(nativePath)).and_then([&] {
        return ArrivingFile::begin(folder_, nativePath, naming_, mode);
    });
}

}  // namespace quillon
