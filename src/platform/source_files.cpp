// SPDX-License-Identifier: MIT
#include "platform/source_files.h"

#include <algorithm>
#include <cstring>
#include <span>

#include <fcntl.h>
#include <linux/limits.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "platform/moment.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

// Of media in use; also the alignment that any of them asks of a buffer.
constexpr std::size_t kLargestBlock = 4096;

struct PathParts {
    std::string_view folder;
    std::string_view name;
};

PathParts splitPath(std::string_view nativePath) {
    const auto slash = nativePath.rfind('/');
    if (slash == nativePath.npos)
        return {".", nativePath};
    return {nativePath.substr(0, slash + 1), nativePath.substr(slash + 1)};
}

// One page and no read-ahead: a damaged disk has fewer bad sectors to stumble over.
void adviseOnePage(int descriptor) {
    ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_RANDOM);
}

// The head of a file of this size by a look that never waits. Nothing where a disk has to be asked: its answer is under
// way from here on.
std::optional<std::size_t> headInMemory(int descriptor, off_t size, HeaderBytes& head) {
    HeaderBytes bytes;
    const iovec place{bytes.data(), bytes.size()};
    const auto count = retried([&] { return ::preadv2(descriptor, &place, 1, 0, RWF_NOWAIT); });
    if (count < std::min<off_t>(size, static_cast<off_t>(bytes.size())))
        return std::nullopt;
    std::copy_n(bytes.begin(), count, head.begin());
    return static_cast<std::size_t>(count);
}

// The sizes that one logical block of the medium may have, smallest first.
std::span<const std::size_t> blockSizes(int descriptor) {
    static constexpr std::array<std::size_t, 2> sizes = {512, kLargestBlock};
#ifdef STATX_DIOALIGN
    struct statx info {};
    if (::statx(descriptor, "", AT_EMPTY_PATH, STATX_DIOALIGN, &info) == 0 && (info.stx_mask & STATX_DIOALIGN) != 0) {
        const auto fits = std::ranges::lower_bound(sizes, info.stx_dio_offset_align);
        return {fits, sizes.end()};
    }
#endif
    return sizes;
}

// Past the page cache, which reads a whole page and fails when any of its sectors does. A size that the volume does
// not take is refused before the medium is asked.
std::size_t readFirstBlock(int descriptor, HeaderBytes& head) {
    if (::fcntl(descriptor, F_SETFL, O_RDONLY | O_NONBLOCK | O_DIRECT) != 0)
        return 0;
    alignas(kLargestBlock) std::array<char, kLargestBlock> block;
    for (const std::size_t size : blockSizes(descriptor)) {
        const auto count = retried([&] { return ::pread(descriptor, block.data(), size, 0); });
        if (count >= 0) {
            const auto given = std::min(static_cast<std::size_t>(count), head.size());
            std::copy_n(block.begin(), given, head.begin());
            return given;
        }
        if (errno != EINVAL)
            break;
    }
    return 0;
}

}  // namespace

Result<void> SourceFiles::enter(std::string_view folder) {
    if (folder_.isOpen() && folder == folderPath_)
        return {};
    folder_.close();
    auto opened = Directory::openToLookUp(NativePath(folder));
    if (!opened)
        return failure(opened.error());
    folder_ = std::move(*opened);
    folderPath_ = folder;
    volume_ = volumeOfFolder();
    return {};
}

SourceFiles::Volume SourceFiles::volumeOfFolder() const {
    struct statfs info {};
    if (::fstatfs(folder_.handle(), &info) != 0)
        return Volume::Elsewhere;
    const auto kind = static_cast<std::uint32_t>(info.f_type);
    if (kind == TMPFS_MAGIC || kind == RAMFS_MAGIC)
        return Volume::Memory;
    return isOnDisk(folder_.handle()) ? Volume::Disk : Volume::Elsewhere;
}

// A read that fails midway may have touched the buffer; only the bytes it reports count. How many bytes came. `start`:
// when the file was first asked for something.
std::size_t SourceFiles::readInto(int descriptor, HeaderBytes& head, Moment start) const {
    HeaderBytes bytes;
    const auto count = retried([&] { return ::read(descriptor, bytes.data(), bytes.size()); });
    if (count < 0) {
        const bool unreadable = errno == EIO;
        if (care_ && unreadable)
            care_->readFailed();
        return unreadable && momentNow() - start < SourceCare::kPatience ? readFirstBlock(descriptor, head) : 0;
    }
    std::copy_n(bytes.begin(), count, head.begin());
    return static_cast<std::size_t>(count);
}

Result<int> SourceFiles::openRegular(std::string_view nativePath) {
    struct stat info {};
    return openRegular(nativePath, info);
}

Result<int> SourceFiles::openRegular(std::string_view nativePath, struct stat& info) {
    if (nativePath.find('\0') != nativePath.npos)
        return failure(systemError(nativePath, EINVAL));
    const auto [folder, name] = splitPath(nativePath);
    if (name.empty())
        return failure(systemError(nativePath, ENOENT));
    if (name.size() > NAME_MAX)
        return failure(systemError(nativePath, ENAMETOOLONG));
    if (auto entered = enter(folder); !entered)
        return failure(entered.error());

    std::array<char, NAME_MAX + 1> terminated;
    std::memcpy(terminated.data(), name.data(), name.size());
    terminated[name.size()] = '\0';
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC;
    const auto openWith = [&](int extra) {
        return retried([&] { return ::openat(folder_.handle(), terminated.data(), flags | extra); });
    };
    int descriptor = openWith(leaveAccessTimes_ ? O_NOATIME : 0);
    if (descriptor < 0 && errno == EPERM && leaveAccessTimes_) {
        // Only the owner may leave access times alone. One who met a file of another owner meets more of them: from
        // now on the files of this user alone are asked to.
        descriptor = openWith(0);
        if (descriptor >= 0)
            leaveAccessTimes_ = false;
    }
    if (descriptor < 0)  // a link gives ELOOP and a socket ENXIO: no regular file
        return failure(systemError(nativePath, errno == ELOOP || errno == ENXIO ? EACCES : errno));
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return failure(systemError(nativePath, EACCES));
    }
    if (!leaveAccessTimes_ && info.st_uid == ::geteuid())
        ::fcntl(descriptor, F_SETFL, O_RDONLY | O_NONBLOCK | O_NOATIME);
    return descriptor;
}

Result<std::size_t> SourceFiles::readHead(std::string_view nativePath, HeaderBytes& head) {
    head.fill(' ');
    const Moment start = momentNow();
    const auto descriptor = openRegular(nativePath);
    if (!descriptor)
        return failure(descriptor.error());
    adviseOnePage(*descriptor);
    const std::size_t count = readInto(*descriptor, head, start);
    if (care_)
        care_->ended(start, *descriptor);
    ::close(*descriptor);
    return count;
}

Result<std::optional<std::size_t>> SourceFiles::tryHead(std::string_view nativePath, HeaderBytes& head) {
    head.fill(' ');
    // The folder first, so that no file of a volume elsewhere is opened.
    if (volume_ != Volume::Elsewhere) {
        if (const auto entered = enter(splitPath(nativePath).folder); !entered)
            return failure(entered.error());
    }
    if (volume_ == Volume::Elsewhere)
        return std::nullopt;
    struct stat info {};
    const auto descriptor = openRegular(nativePath, info);
    if (!descriptor)
        return failure(descriptor.error());
    adviseOnePage(*descriptor);
    const auto count = volume_ == Volume::Memory ? readInto(*descriptor, head, momentNow())
                                                 : headInMemory(*descriptor, info.st_size, head);
    ::close(*descriptor);
    return count;
}

void SourceFiles::closeFolder() {
    folder_.close();
    volume_ = Volume::Disk;
}

Result<File> SourceFiles::openForPlaces(std::string_view nativePath) {
    const Moment start = momentNow();
    auto file = open(nativePath);
    if (!file)
        return file;
    adviseOnePage(file->descriptor_);
    if (care_)
        care_->ended(start, file->descriptor_);
    return file;
}

Result<std::size_t> SourceFiles::readAt(File& file, std::uint64_t at, std::span<std::byte> buffer) const {
    const Moment start = momentNow();
    const auto count = file.seek(at).and_then([&] { return file.read(buffer); });
    if (care_ && !count)
        care_->failed(count.error());
    if (care_)
        care_->ended(start, file.descriptor_);
    return count;
}

Result<File> SourceFiles::open(std::string_view nativePath) {
    const auto descriptor = openRegular(nativePath);
    if (!descriptor)
        return failure(descriptor.error());
    return File(*descriptor, std::string(nativePath));
}

}  // namespace quillon
