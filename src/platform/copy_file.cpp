// SPDX-License-Identifier: MIT
#include "platform/copy_file.h"

#include <algorithm>
#include <array>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/folders.h"
#include "platform/system_error.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::size_t kReadChunk = 256UL * 1024;
// One copy_file_range call moves at most this much: a screen stands still meanwhile, and a system that has much to
// write back lets the caller wait in it.
constexpr std::size_t kRangeChunk = 1024UL * 1024;

using CopyResult = tl::expected<void, CopyError>;

CopyResult failed(CopySide side, FileError error) {
    return tl::unexpected<CopyError>(CopyError{side, std::move(error)});
}

// One copy in progress: two open files, and what is known of the source.
class Transfer {
public:
    Transfer(int source, std::string_view sourcePath, int target, std::string_view targetPath,
             const CopyProgress& progress)
        : source_(source), sourcePath_(sourcePath), target_(target), targetPath_(targetPath), progress_(progress) {}

    CopyResult run(std::uint64_t total) {
        total_ = total;
        if (!progress_(0, total_))
            return cancelled();
        off_t at = 0;
        while (true) {
            // A file system without holes gives the file as one piece of data.
            const off_t data = ::lseek(source_, at, SEEK_DATA);
            if (data < 0 && errno == ENXIO)
                break;
            if (data < 0)
                return copyPiece(at, -1).and_then([&] { return finish(); });
            const off_t hole = ::lseek(source_, data, SEEK_HOLE);
            if (auto copied = copyPiece(data, hole < 0 ? -1 : hole); !copied)
                return copied;
            if (hole < 0)
                return finish();
            at = hole;
        }
        // No more data: what is left, if anything, is a hole. A file that was cut meanwhile ends where it ends now.
        struct stat now {};
        if (::fstat(source_, &now) != 0)
            return failed(CopySide::Source, systemError(sourcePath_));
        end_ = std::max(end_, now.st_size);
        return finish();
    }

private:
    CopyResult cancelled() { return failed(CopySide::Cancelled, {ErrorKind::PathAccess, "cancelled"}); }

    // The end of the file may lie in a hole; cutting to the length makes it so in the target.
    CopyResult finish() {
        if (::ftruncate(target_, end_) != 0)
            return failed(CopySide::Target, systemError(targetPath_));
        return {};
    }

    // Copies from `from` to `to`, or to the end of the source when `to` is -1.
    CopyResult copyPiece(off_t from, off_t to) {
        if (::lseek(source_, from, SEEK_SET) < 0)
            return failed(CopySide::Source, systemError(sourcePath_));
        if (::lseek(target_, from, SEEK_SET) < 0)
            return failed(CopySide::Target, systemError(targetPath_));
        off_t at = from;
        while (to < 0 || at < to) {
            const std::size_t wanted =
                to < 0 ? kRangeChunk : static_cast<std::size_t>(std::min<off_t>(to - at, kRangeChunk));
            const auto moved = useRange_ ? moveByRange(wanted) : moveByBuffer(wanted);
            if (!moved)
                return tl::unexpected<CopyError>(moved.error());
            if (*moved == 0)
                break;
            at += static_cast<off_t>(*moved);
            end_ = std::max(end_, at);
            if (!progress_(static_cast<std::uint64_t>(at), total_))
                return cancelled();
        }
        return {};
    }

    tl::expected<std::size_t, CopyError> moveByRange(std::size_t wanted) {
        const auto moved = retried([&] { return ::copy_file_range(source_, nullptr, target_, nullptr, wanted, 0); });
        if (moved > 0)
            return static_cast<std::size_t>(moved);
        // Whatever the reason - other volumes, no such call, a read error - reading and writing tells which side it
        // was.
        useRange_ = false;
        return moveByBuffer(wanted);
    }

    tl::expected<std::size_t, CopyError> moveByBuffer(std::size_t wanted) {
        if (buffer_.empty())
            buffer_.resize(kReadChunk);
        const std::size_t size = std::min(wanted, buffer_.size());
        const auto count = retried([&] { return ::read(source_, buffer_.data(), size); });
        if (count < 0)
            return tl::unexpected<CopyError>(CopyError{CopySide::Source, systemError(sourcePath_)});
        for (ssize_t done = 0; done < count;) {
            const auto put = retried(
                [&] { return ::write(target_, buffer_.data() + done, static_cast<std::size_t>(count - done)); });
            if (put < 0)
                return tl::unexpected<CopyError>(CopyError{CopySide::Target, systemError(targetPath_)});
            done += put;
        }
        return static_cast<std::size_t>(count);
    }

    int source_;
    std::string_view sourcePath_;
    int target_;
    std::string_view targetPath_;
    const CopyProgress& progress_;
    std::uint64_t total_ = 0;
    off_t end_ = 0;
    bool useRange_ = true;
    std::vector<char> buffer_;
};

// Times and mode as the source has them. A target volume that keeps no modes or no such times loses only those.
void carryOver(int target, const struct stat& info) {
    if (::fchmod(target, info.st_mode & 07777U) != 0)
        errno = 0;
    const struct timespec times[2] = {info.st_atim, info.st_mtim};
    if (::futimens(target, times) != 0)
        errno = 0;
}

}  // namespace

std::string CopyError::text() const {
    switch (side) {
        case CopySide::Source:
            return "source: " + error.text;
        case CopySide::Target:
            return "target: " + error.text;
        case CopySide::Cancelled:
            break;
    }
    return "cancelled";
}

Result<void> FileCopier::enterTarget(const NativePath& folder) {
    struct stat info {};
    const bool gone = targetFolder_.isOpen() && (::fstat(targetFolder_.handle(), &info) != 0 || info.st_nlink == 0);
    if (gone)  // removed, and perhaps made anew, since the last copy
        targetFolder_.close();
    if (targetFolder_.isOpen() && folder == targetFolderPath_)
        return {};
    targetFolder_.close();
    auto opened = Directory::openToLookUp(folder);
    if (!opened)
        return failure(opened.error());
    targetFolder_ = std::move(*opened);
    targetFolderPath_ = folder;
    return {};
}

CopyResult FileCopier::fillTemporary(const File& from, std::string_view source, const std::string& temporary,
                                     const NativePath& target, const CopyProgress& progress) {
    struct stat info {};
    if (::fstat(from.descriptor_, &info) != 0)
        return failed(CopySide::Source, systemError(source));
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = retried([&] { return ::openat(targetFolder_.handle(), temporary.c_str(), flags, 0600); });
    if (descriptor < 0)
        return failed(CopySide::Target, systemError(target.native()));
    File to(descriptor, target);
    Transfer transfer(from.descriptor_, source, descriptor, target.native(), progress);
    if (auto copied = transfer.run(static_cast<std::uint64_t>(info.st_size)); !copied)
        return copied;
    carryOver(descriptor, info);
    if (auto closed = to.close(); !closed)
        return failed(CopySide::Target, closed.error());
    return {};
}

CopyResult FileCopier::copy(std::string_view source, const NativePath& target, const CopyProgress& progress) {
    if (target.native().find('\0') != std::string::npos)
        return failed(CopySide::Target, systemError(target.native(), EINVAL));
    const auto from = sources_.open(source);
    if (!from)
        return failed(CopySide::Source, from.error());
    if (auto entered = enterTarget(target.parent_path()); !entered)
        return failed(CopySide::Target, entered.error());

    const std::string name = target.filename().native();
    const std::string temporary = temporaryName();
    auto copied = fillTemporary(*from, source, temporary, target, progress);
    if (copied && ::renameat(targetFolder_.handle(), temporary.c_str(), targetFolder_.handle(), name.c_str()) != 0) {
        copied = failed(CopySide::Target, systemError(target.native()));
    }
    if (!copied)
        ::unlinkat(targetFolder_.handle(), temporary.c_str(), 0);
    return copied;
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
