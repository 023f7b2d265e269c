// SPDX-License-Identifier: MIT
#include "platform/source_files.h"

#include <algorithm>
#include <cstring>

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/system_error.h"

namespace quillon {

Result<void> SourceFiles::enter(std::string_view folder) {
    if (folder_.isOpen() && folder == folderPath_)
        return {};
    folder_.close();
    auto opened = Directory::openToLookUp(NativePath(folder));
    if (!opened)
        return failure(opened.error());
    folder_ = std::move(*opened);
    folderPath_ = folder;
    return {};
}

Result<int> SourceFiles::openRegular(std::string_view nativePath) {
    if (nativePath.find('\0') != nativePath.npos)
        return failure(systemError(nativePath, EINVAL));
    const auto slash = nativePath.rfind('/');
    const std::string_view parent = slash == nativePath.npos ? "." : nativePath.substr(0, slash + 1);
    const std::string_view name = slash == nativePath.npos ? nativePath : nativePath.substr(slash + 1);
    if (name.empty())
        return failure(systemError(nativePath, ENOENT));
    if (name.size() > NAME_MAX)
        return failure(systemError(nativePath, ENAMETOOLONG));
    if (auto entered = enter(parent); !entered)
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
    struct stat info {};
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return failure(systemError(nativePath, EACCES));
    }
    if (!leaveAccessTimes_ && info.st_uid == ::geteuid())
        ::fcntl(descriptor, F_SETFL, O_RDONLY | O_NONBLOCK | O_NOATIME);
    return descriptor;
}

Result<void> SourceFiles::readHead(std::string_view nativePath, HeaderBytes& head) {
    head.fill(' ');
    const auto descriptor = openRegular(nativePath);
    if (!descriptor)
        return failure(descriptor.error());
    ::posix_fadvise(*descriptor, 0, 0,
                    POSIX_FADV_RANDOM);  // one page, no read-ahead: fewer bad sectors to stumble over
    // A read that fails midway may have touched the buffer; only the bytes it reports count.
    HeaderBytes bytes;
    const auto count = retried([&] { return ::read(*descriptor, bytes.data(), bytes.size()); });
    if (count > 0)
        std::copy_n(bytes.begin(), count, head.begin());
    ::close(*descriptor);
    return {};
}

Result<File> SourceFiles::open(std::string_view nativePath) {
    const auto descriptor = openRegular(nativePath);
    if (!descriptor)
        return failure(descriptor.error());
    return File(*descriptor, NativePath(nativePath));
}

}  // namespace quillon
