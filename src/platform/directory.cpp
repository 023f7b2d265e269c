// SPDX-License-Identifier: MIT
#include "platform/directory.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "platform/disk_calls.h"
#include "platform/file_stamp.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
constexpr std::size_t kListBuffer = 32UL * 1024;

// The kernel's own record of getdents64.
struct KernelEntry {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    unsigned char type;
    char name[1];
};

// Names come from the kernel with their zero byte or from EntryNames without one; calls need it.
class TerminatedName {
public:
    explicit TerminatedName(std::string_view name) {
        const std::size_t length = std::min(name.size(), text_.size() - 1);
        std::memcpy(text_.data(), name.data(), length);
        text_[length] = '\0';
    }
    [[nodiscard]] const char* get() const { return text_.data(); }

private:
    std::array<char, NAME_MAX + 2> text_;
};

constexpr int kLookUpFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

// Asks `open` for a folder and not to leave a trace in its access time; only the owner may ask for that. `open` takes
// flags.
template <typename Open>
int openLeavingTimes(int flags, Open open) {
    const bool mayBeListed = (flags & O_PATH) == 0;
    const int descriptor = retried([&] { return open(mayBeListed ? flags | O_NOATIME : flags); });
    return descriptor < 0 && errno == EPERM && mayBeListed ? retried([&] { return open(flags); }) : descriptor;
}

// A path too long for one call: each piece opened from the one before.
int openByPieces(const NativePath& path, int flags) {
    int at = retried([&] { return ::open(path.is_absolute() ? "/" : ".", kLookUpFlags); });
    for (const auto& piece : path.relative_path()) {
        if (at < 0)
            return at;
        if (piece.empty())
            continue;
        const int next = retried([&] { return ::openat(at, piece.c_str(), kLookUpFlags); });
        const int error = errno;
        ::close(at);
        errno = error;
        at = next;
    }
    if (at < 0)
        return at;
    const int folder = openLeavingTimes(flags, [at](int allFlags) { return ::openat(at, ".", allFlags); });
    const int error = errno;
    ::close(at);
    errno = error;
    return folder;
}

}  // namespace

void EntryNames::clear() {
    bytes_.clear();
    entries_.clear();
}

void EntryNames::release() {
    bytes_ = {};
    entries_ = {};
}

void EntryNames::add(std::string_view name) {
    entries_.push_back({static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint32_t>(name.size())});
    bytes_.append(name);
}

std::string_view EntryNames::operator[](std::size_t index) const {
    const Entry entry = entries_[index];
    return std::string_view(bytes_).substr(entry.offset, entry.length);
}

// Piece by piece, then the pieces together two and two, with a pause behind each step.
void EntryNames::sort(const Pause& pause) {
    const auto nameOf = [this](const Entry& e) { return std::string_view(bytes_).substr(e.offset, e.length); };
    const auto less = [&](const Entry& a, const Entry& b) { return nameOf(a) < nameOf(b); };
    const std::size_t size = entries_.size();
    const auto at = [&](std::size_t index) {
        return entries_.begin() + static_cast<std::ptrdiff_t>(std::min(index, size));
    };
    for (std::size_t first = 0; first < size; first += kPauseEvery) {
        std::sort(at(first), at(first + kPauseEvery), less);
        if (size > kPauseEvery)
            pause();
    }
    for (std::size_t width = kPauseEvery; width < size; width *= 2)
        for (std::size_t first = 0; first + width < size; first += 2 * width) {
            std::inplace_merge(at(first), at(first + width), at(first + 2 * width), less);
            pause();
        }
}

Directory::Directory(Directory&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {
}

Directory& Directory::operator=(Directory&& other) noexcept {
    if (this != &other) {
        close();
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

Directory::~Directory() {
    close();
}

void Directory::close() {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

Result<Directory> Directory::openWith(const NativePath& path, int flags) {
    if (path.native().find('\0') != std::string::npos)
        return failure(systemError(path.native(), EINVAL));
    int descriptor = openLeavingTimes(flags, [&path](int allFlags) { return ::open(path.c_str(), allFlags); });
    if (descriptor < 0 && errno == ENAMETOOLONG)
        descriptor = openByPieces(path, flags);
    if (descriptor < 0)
        return failure(systemError(path.native()));
    return Directory(descriptor);
}

Result<Directory> Directory::open(const NativePath& path) {
    return openWith(path, kFolderFlags);
}

Result<Directory> Directory::openToLookUp(const NativePath& path) {
    return openWith(path, kLookUpFlags);
}

Result<Directory> Directory::openFolder(std::string_view name) const {
    return openFolderWith(name, kFolderFlags | O_NOFOLLOW);
}

Result<Directory> Directory::lookUpFolder(std::string_view name) const {
    return openFolderWith(name, kLookUpFlags);
}

Result<Directory> Directory::openFolderWith(std::string_view name, int flags) const {
    const TerminatedName terminated(name);
    const int descriptor =
        openLeavingTimes(flags, [&](int allFlags) { return ::openat(descriptor_, terminated.get(), allFlags); });
    if (descriptor < 0)
        return failure(systemError(name));
    return Directory(descriptor);
}

bool Directory::isRemoved() const {
    struct stat info {};
    return ::fstat(descriptor_, &info) == 0 && info.st_nlink == 0;
}

bool Directory::canBeEntered() const {
    struct stat info {};
    return ::fstatat(descriptor_, "./.", &info, 0) == 0;
}

Result<void> Directory::list(EntryNames& files, EntryNames& folders, const Pause& pause) const {
    files.clear();
    folders.clear();
    std::size_t nextPause = EntryNames::kPauseEvery;
    alignas(KernelEntry) std::array<char, kListBuffer> buffer;
    if (::lseek(descriptor_, 0, SEEK_SET) < 0)
        return failure(systemError("."));
    while (true) {
        const auto count =
            retried([&] { return ::syscall(SYS_getdents64, descriptor_, buffer.data(), buffer.size()); });
        if (count < 0)
            return failure(systemError("."));
        if (count == 0)
            return {};
        if (files.size() + folders.size() >= nextPause) {
            nextPause = files.size() + folders.size() + EntryNames::kPauseEvery;
            pause();
        }
        for (long at = 0; at < count;) {
            const auto* entry = reinterpret_cast<const KernelEntry*>(buffer.data() + at);
            at += entry->length;
            const std::string_view name = entry->name;
            if (name == "." || name == "..")
                continue;
            auto type = entry->type;
            if (type == DT_UNKNOWN) {  // some file systems tell the kind only when asked for the entry itself
                struct stat info {};
                if (::fstatat(descriptor_, entry->name, &info, AT_SYMLINK_NOFOLLOW) != 0)
                    continue;
                type = static_cast<unsigned char>(IFTODT(info.st_mode));
            }
            if (type == DT_REG)
                files.add(name);
            if (type == DT_DIR)
                folders.add(name);
        }
    }
}

Result<void> Directory::createFolder(std::string_view name) const {
    const TerminatedName terminated(name);
    if (disk().makeFolder(descriptor_, terminated.get()) == 0 || errno == EEXIST)
        return {};
    return failure(systemError(name));
}

Result<FileStamp> Directory::stampOf(std::string_view name) const {
    const TerminatedName terminated(name);
    struct stat info {};
    if (retried([&] { return ::fstatat(descriptor_, terminated.get(), &info, 0); }) != 0) {
        return failure(systemError(name));
    }
    return stampFrom(info);
}

Result<FileStamp> Directory::stamp() const {
    struct stat info {};
    if (::fstat(descriptor_, &info) != 0) {
        return failure(systemError("."));
    }
    return stampFrom(info);
}

Result<EntryInfo> Directory::describe(std::string_view name) const {
    const TerminatedName terminated(name);
    struct statx info {};
    constexpr unsigned mask = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME;
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    if (retried([&] { return ::statx(descriptor_, terminated.get(), flags, mask, &info); }) != 0)
        return failure(systemError(name));
    EntryInfo entry;
    entry.regular = S_ISREG(info.stx_mode);
    entry.size = info.stx_size;
    entry.modified = {info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec};
    entry.mode = info.stx_mode;
    entry.compressed = (info.stx_attributes & STATX_ATTR_COMPRESSED) != 0;
    entry.encrypted = (info.stx_attributes & STATX_ATTR_ENCRYPTED) != 0;
    entry.device = makedev(info.stx_dev_major, info.stx_dev_minor);
    return entry;
}

}  // namespace quillon
