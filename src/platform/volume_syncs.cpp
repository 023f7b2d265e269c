// SPDX-License-Identifier: MIT
#include "platform/volume_syncs.h"

#include <cerrno>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>

#include "platform/disk_calls.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

Result<void> syncHandle(int handle, const std::string& path) {
    const bool synced = retried([&] { return disk().sync(handle); }) == 0;
    if (!synced && errno != EINVAL && errno != EROFS)  // not every medium can
        return failure(systemError(path));
    return {};
}

Result<void> syncFolderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    const auto folder = Directory::open(path.substr(0, slash == path.npos ? 0 : slash + 1));
    if (!folder)
        return failure(folder.error());
    return syncHandle(folder->handle(), path);
}

bool isServedByProgram(int handle) {
    struct statfs volume {};
    return ::fstatfs(handle, &volume) == 0 && static_cast<std::uint32_t>(volume.f_type) == FUSE_SUPER_MAGIC;
}

}  // namespace

bool syncWholeVolume(int handle) {
    return retried([handle] { return disk().syncVolume(handle); }) == 0 && !isServedByProgram(handle);
}

VolumeSyncs::~VolumeSyncs() {
    for (const auto& [volume, handle] : volumes_) passOver(disk().close(handle), "nothing was written through it");
}

// False where one of them could not say that all is well.
bool VolumeSyncs::syncVolumes(const Wish& wish) {
    for (const ArrivingFile* file : wish.files) {
        struct stat info {};
        if (::fstat(file->handle(), &info) != 0)
            return false;
        if (volumes_.contains(info.st_dev))
            continue;
        const int handle = ::fcntl(file->handle(), F_DUPFD_CLOEXEC, 0);
        if (handle < 0)
            return false;
        volumes_[info.st_dev] = handle;
    }
    bool synced = true;
    for (const auto& [volume, handle] : volumes_) synced = syncWholeVolume(handle) && synced;
    return synced;
}

VolumeSyncs::Answer VolumeSyncs::sync(const Wish& wish) {
    Answer answer{std::vector<Result<void>>(wish.files.size()), std::vector<Result<void>>(wish.named.size())};
    if (syncVolumes(wish))
        return answer;
    for (std::size_t i = 0; i < wish.files.size(); ++i)
        answer.files[i] = syncHandle(wish.files[i]->handle(), wish.files[i]->nativePath());
    for (std::size_t i = 0; i < wish.named.size(); ++i) answer.named[i] = syncFolderOf(*wish.named[i]);
    return answer;
}

}  // namespace quillon
