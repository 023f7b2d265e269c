// SPDX-License-Identifier: MIT
#include "platform/copy_file.h"

#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "platform/copy_transfer.h"
#include "platform/disk_calls.h"
#include "platform/folders.h"
#include "platform/system_error.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

using CopyResult = tl::expected<void, CopyError>;

tl::unexpected<CopyError> failed(CopySide side, FileError error) {
    return tl::unexpected<CopyError>(CopyError{side, std::move(error)});
}

// What a file is made with, which spares most files a change: it can be written until it is whole, and gets no special
// bits before.
unsigned firstMode(const struct stat& info) {
    return (info.st_mode & 0777U) | 0200U;
}

// Times and mode as the source has them. A target volume that keeps no modes or no such times loses only those.
void carryOver(int target, const struct stat& info) {
    struct stat made {};
    const bool asWanted = ::fstat(target, &made) == 0 && made.st_mode == info.st_mode;
    if (!asWanted)
        passOver(disk().setMode(target, info.st_mode & 07777U), "the volume keeps no modes");
    const struct timespec times[2] = {info.st_atim, info.st_mtim};
    passOver(disk().setTimes(target, times), "the volume keeps no such times");
}

// Attributes of the user, alternate streams of NTFS among them where its driver shows these so; what belongs to the
// system is the target's own matter. Gives how many the target does not have.
std::size_t carryAttributes(int source, int target) {
    constexpr std::string_view kOfUser = "user.";
    std::size_t lost = 0;
    const ssize_t length = ::flistxattr(source, nullptr, 0);
    std::string names(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    const ssize_t given = names.empty() ? 0 : ::flistxattr(source, names.data(), names.size());
    names.resize(given > 0 ? static_cast<std::size_t>(given) : 0);
    std::string value;
    for (std::size_t at = 0; at < names.size(); at += std::string_view(names.c_str() + at).size() + 1) {
        const char* const name = names.c_str() + at;
        if (!std::string_view(name).starts_with(kOfUser))
            continue;
        const ssize_t size = ::fgetxattr(source, name, nullptr, 0);
        value.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        const bool read = size >= 0 && ::fgetxattr(source, name, value.data(), value.size()) == size;
        lost += read && disk().setAttribute(target, name, value.data(), value.size()) == 0 ? 0 : 1;
    }
    return lost;
}

}  // namespace

CopyResult FileCopier::copy(std::string_view source, std::string_view target, const CopyProgress& progress) {
    auto copied = copyOnce(source, target, progress);
    if (!copied && copied.error().side == CopySide::Target && targets_.forgetRemoved())
        copied = copyOnce(source, target, progress);
    return copied;
}

CopyResult FileCopier::copyOnce(std::string_view source, std::string_view target, const CopyProgress& progress) {
    auto prepared = prepare(source, target, std::numeric_limits<std::uint64_t>::max(), progress);
    if (!prepared)
        return tl::unexpected<CopyError>(std::move(prepared.error()));
    if (auto arrived = prepared->file.arrive(); !arrived)
        return failed(CopySide::Target, arrived.error());
    return {};
}

tl::expected<PreparedCopy, CopyError> FileCopier::prepare(std::string_view source, std::string_view target,
                                                          std::uint64_t largest, const CopyProgress& progress) {
    struct stat info {};
    const auto descriptor = sources_.openRegular(source, info);
    if (!descriptor)
        return failed(CopySide::Source, descriptor.error());
    const File from(*descriptor, {});
    if (static_cast<std::uint64_t>(info.st_size) > largest)
        return failed(CopySide::Source, systemError(source, EFBIG));
    auto to = targets_.begin(target, firstMode(info));
    if (!to)
        return failed(CopySide::Target, to.error());
    if (manner_.watch && !watch_)
        watch_ = manner_.watch();
    auto copied =
        CopyTransfer({*descriptor, source, to->handle(), target}, manner_, buffer_, progress, watch_.get()).run(info);
    if (!copied) {
        copied.error().opened = true;
        return tl::unexpected<CopyError>(std::move(copied.error()));
    }
    if (manner_.attributes)
        copied->lostAttributes = carryAttributes(*descriptor, to->handle());
    carryOver(to->handle(), info);
    copied->sourceModified = FileTime{info.st_mtim.tv_sec, static_cast<std::uint32_t>(info.st_mtim.tv_nsec)};
    return PreparedCopy{*std::move(to), *std::move(copied)};
}

Result<DataFile> readDataFile(const NativePath& path) {
    const auto modified = modificationTime(path);
    if (!modified)
        return failure(modified.error());
    auto bytes = readWholeFile(path);
    if (!bytes)
        return failure(bytes.error());
    return DataFile{*std::move(bytes), *modified};
}

Result<void> saveDataFile(const NativePath& path, const DataFile& file) {
    return saveWholeFile(path, file.bytes, TemporaryPlace::AboveFolder).and_then([&] {
        return setModificationTime(path, file.modified);
    });
}

Result<void> copyDataFile(const NativePath& source, const NativePath& target) {
    return readDataFile(source).and_then([&target](const DataFile& file) { return saveDataFile(target, file); });
}

}  // namespace quillon
