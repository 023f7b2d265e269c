// SPDX-License-Identifier: MIT
#include "platform/file.h"

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/disk_calls.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

void closeQuietly(int descriptor) {
    if (descriptor >= 0)
        passOver(disk().close(descriptor), "whoever has to know whether the bytes arrived has called close");
}

}  // namespace

File::File(int descriptor, std::string path) : descriptor_(descriptor), path_(std::move(path)) {
}

File::File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {
}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        closeQuietly(descriptor_);
        descriptor_ = std::exchange(other.descriptor_, -1);
        path_ = std::move(other.path_);
    }
    return *this;
}

File::~File() {
    closeQuietly(descriptor_);
}

Result<File> File::open(const NativePath& path, int flags, unsigned mode) {
    // A name with a zero byte would be cut by the system and name another file.
    if (path.empty() || path.native().find('\0') != std::string::npos)
        return failure(systemError(path.native(), EINVAL));
    // Without waiting: a FIFO in the place of a data file must not stop the program.
    const int always = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const int descriptor = retried([&] { return disk().open(AT_FDCWD, path.c_str(), flags | always, mode); });
    if (descriptor < 0)
        return failure(systemError(path.native()));
    return File(descriptor, path.native());
}

Result<File> File::openForReading(const NativePath& path) {
    auto file = open(path, O_RDONLY, 0);
    if (!file)
        return file;
    struct stat info {};
    if (::fstat(file->descriptor_, &info) != 0)
        return failure(systemError(path.native()));
    if (S_ISDIR(info.st_mode))
        return failure(systemError(path.native(), EISDIR));
    return file;
}

Result<File> File::create(const NativePath& path) {
    return open(path, O_RDWR | O_CREAT | O_TRUNC, 0666);
}

Result<File> File::createNew(const NativePath& path, unsigned mode) {
    return open(path, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
}

Result<File> File::openForChanging(const NativePath& path) {
    return open(path, O_RDWR, 0);
}

Result<File> File::openForAppending(const NativePath& path) {
    return open(path, O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW, 0666);
}

Result<std::size_t> File::read(std::span<std::byte> buffer) {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const auto count =
            retried([&] { return disk().read(descriptor_, buffer.data() + done, buffer.size() - done); });
        if (count < 0)
            return failure(systemError(path_));
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

Result<void> File::write(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const auto count = retried([&] { return disk().write(descriptor_, bytes.data(), bytes.size()); });
        if (count < 0)
            return failure(systemError(path_));
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

Result<void> File::write(std::string_view bytes) {
    return write(std::as_bytes(std::span(bytes.data(), bytes.size())));
}

Result<std::uint64_t> File::size() const {
    struct stat info {};
    if (::fstat(descriptor_, &info) != 0)
        return failure(systemError(path_));
    return static_cast<std::uint64_t>(info.st_size);
}

Result<void> File::seek(std::uint64_t offset) {
    if (::lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) < 0)
        return failure(systemError(path_));
    return {};
}

Result<void> File::truncate(std::uint64_t length) {
    if (retried([&] { return disk().truncate(descriptor_, static_cast<std::int64_t>(length)); }) != 0)
        return failure(systemError(path_));
    return seek(length);
}

Result<void> File::sync() {
    // A medium that has no such call keeps the bytes as well as it can; that is no failure of the save.
    if (retried([&] { return disk().sync(descriptor_); }) != 0 && errno != EINVAL && errno != EROFS)
        return failure(systemError(path_));
    return {};
}

Result<void> File::close() {
    if (descriptor_ < 0)
        return {};
    const int descriptor = std::exchange(descriptor_, -1);
    // The descriptor is gone whatever close says; only the report is of interest.
    if (disk().close(descriptor) != 0 && errno != EINTR)
        return failure(systemError(path_));
    return {};
}

}  // namespace quillon
