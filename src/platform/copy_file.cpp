// SPDX-License-Identifier: MIT
#include "platform/copy_file.h"

#include <algorithm>
#include <limits>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/disk_calls.h"
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

tl::unexpected<CopyError> failed(CopySide side, FileError error) {
    return tl::unexpected<CopyError>(CopyError{side, std::move(error)});
}

// A hole takes no blocks. One that does not show here is too small to be worth a look.
bool mayHaveHoles(const struct stat& info) {
    return info.st_blocks * 512 < info.st_size;
}

// One copy in progress: two open files at their beginnings, and what is known of the source.
class Transfer {
public:
    /// `buffer` is for this transfer alone; it is made when it is needed, and good for the next transfer.
    Transfer(int source, std::string_view sourcePath, int target, std::string_view targetPath,
             std::vector<char>& buffer, const CopyProgress& progress)
        : source_(source),
          sourcePath_(sourcePath),
          target_(target),
          targetPath_(targetPath),
          buffer_(buffer),
          progress_(progress) {}

    CopyResult run(const struct stat& info) {
        size_ = info.st_size;
        if (!progress_(0, static_cast<std::uint64_t>(size_)))
            return tl::unexpected<CopyError>(CopyError::cancelled());
        // The two calls of a small file are cheaper than one that moves pages.
        useRange_ = static_cast<std::size_t>(size_) >= kReadChunk;
        return mayHaveHoles(info) ? copyData() : copyPiece(0, -1);
    }

private:
    // Piece by piece, so that holes stay holes.
    CopyResult copyData() {
        off_t at = 0;
        while (true) {
            // A file system without holes gives the file as one piece of data.
            const off_t data = ::lseek(source_, at, SEEK_DATA);
            if (data < 0 && errno == ENXIO)
                break;
            if (data < 0)
                return goTo(at).and_then([&] { return copyPiece(at, -1); }).and_then([&] { return finish(); });
            const off_t hole = ::lseek(source_, data, SEEK_HOLE);
            if (auto copied = goTo(data).and_then([&] { return copyPiece(data, hole < 0 ? -1 : hole); }); !copied)
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

    // The end of the file may lie in a hole; cutting to the length makes it so in the target.
    CopyResult finish() {
        if (disk().truncate(target_, end_) != 0)
            return failed(CopySide::Target, systemError(targetPath_));
        return {};
    }

    CopyResult goTo(off_t place) {
        if (::lseek(source_, place, SEEK_SET) < 0)
            return failed(CopySide::Source, systemError(sourcePath_));
        if (::lseek(target_, place, SEEK_SET) < 0)
            return failed(CopySide::Target, systemError(targetPath_));
        return {};
    }

    // Copies from `from`, where both files stand, to `to`, or to the end of the source when `to` is -1.
    CopyResult copyPiece(off_t from, off_t to) {
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
            if (!progress_(static_cast<std::uint64_t>(at), static_cast<std::uint64_t>(size_)))
                return tl::unexpected<CopyError>(CopyError::cancelled());
            if (at == size_ && *moved < std::min(wanted, kReadChunk))  // there was no more to be had
                break;
        }
        return {};
    }

    tl::expected<std::size_t, CopyError> moveByRange(std::size_t wanted) {
        const auto moved = retried([&] { return disk().copyRange(source_, target_, wanted); });
        if (moved > 0)
            return static_cast<std::size_t>(moved);
        // Whatever the reason - other volumes, no such call, a read error - reading and writing tells which side it
        // was.
        useRange_ = false;
        return moveByBuffer(wanted);
    }

    tl::expected<std::size_t, CopyError> moveByBuffer(std::size_t wanted) {
        buffer_.resize(kReadChunk);
        const std::size_t size = std::min(wanted, buffer_.size());
        const auto count = retried([&] { return disk().read(source_, buffer_.data(), size); });
        if (count < 0)
            return failed(CopySide::Source, systemError(sourcePath_));
        for (ssize_t done = 0; done < count;) {
            const auto put = retried(
                [&] { return disk().write(target_, buffer_.data() + done, static_cast<std::size_t>(count - done)); });
            if (put < 0)
                return failed(CopySide::Target, systemError(targetPath_));
            done += put;
        }
        return static_cast<std::size_t>(count);
    }

    int source_;
    std::string_view sourcePath_;
    int target_;
    std::string_view targetPath_;
    std::vector<char>& buffer_;
    const CopyProgress& progress_;
    off_t size_ = 0;  // of the source as it was opened
    off_t end_ = 0;
    bool useRange_ = true;
};

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
    if (auto arrived = prepared->arrive(); !arrived)
        return failed(CopySide::Target, arrived.error());
    return {};
}

tl::expected<ArrivingFile, CopyError> FileCopier::prepare(std::string_view source, std::string_view target,
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
    Transfer transfer(*descriptor, source, to->handle(), target, buffer_, progress);
    if (auto copied = transfer.run(info); !copied) {
        copied.error().opened = true;
        return tl::unexpected<CopyError>(std::move(copied.error()));
    }
    carryOver(to->handle(), info);
    return *std::move(to);
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
