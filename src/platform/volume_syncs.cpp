// SPDX-License-Identifier: MIT
#include "platform/volume_syncs.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <new>
#include <utility>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>

#include "platform/disk_calls.h"
#include "platform/many_at_once.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

using Clock = std::chrono::steady_clock;

// A sync that takes longer waits for a server or for the cache of a disk. As many wait at once as a batch has files
// with temporary names; a few are not worth a thread.
constexpr std::chrono::milliseconds kSlow{10};
constexpr std::size_t kMostThreads = 64;
constexpr std::size_t kWorthThreads = 4;

Result<void> syncHandle(int handle, const std::string& path) {
    const bool synced = retried([&] { return disk().sync(handle); }) == 0;
    if (!synced && errno != EINVAL && errno != EROFS)  // not every medium can
        return failure(systemError(path));
    return {};
}

std::string_view folderOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return path.substr(0, slash == path.npos ? 0 : slash + 1);
}

Result<void> syncFolder(std::string_view path) {
    const auto folder = Directory::open(NativePath(path));
    if (!folder)
        return failure(folder.error());
    return syncHandle(folder->handle(), std::string(path));
}

// Each once, in order.
std::vector<std::string_view> foldersOf(const std::vector<const std::string*>& paths) {
    std::vector<std::string_view> folders;
    for (const std::string* path : paths) folders.push_back(folderOf(*path));
    std::ranges::sort(folders);
    folders.erase(std::unique(folders.begin(), folders.end()), folders.end());  // Clang 14 knows no ranges::unique
    return folders;
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

// What became of the files, and of the folders behind them. One after the other while that is quick; a medium that lets
// wait does so for many at the same time.
std::vector<Result<void>> VolumeSyncs::syncEach(const std::vector<const ArrivingFile*>& files,
                                                const std::vector<std::string_view>& folders) {
    std::vector<Result<void>> synced(files.size() + folders.size());
    const auto sync = [&](std::size_t place) {
        synced[place] = place < files.size() ? syncHandle(files[place]->handle(), files[place]->nativePath())
                                             : syncFolder(folders[place - files.size()]);
    };
    const auto isSlow = [](Clock::time_point begun) { return Clock::now() - begun > kSlow; };
    std::size_t done = 0;
    while (done < synced.size() && (!isSlow_ || synced.size() - done < kWorthThreads)) {
        const auto begun = Clock::now();
        sync(done++);
        isSlow_ = isSlow(begun);
    }
    if (done == synced.size())
        return synced;
    const auto begun = Clock::now();
    if (!workOnAll(synced.size() - done, kMostThreads, [&](std::size_t place) { sync(done + place); }))
        throw std::bad_alloc();
    isSlow_ = isSlow(begun);
    return synced;
}

VolumeSyncs::Answer VolumeSyncs::sync(const Wish& wish) {
    Answer answer{std::vector<Result<void>>(wish.files.size()), std::vector<Result<void>>(wish.named.size())};
    if (syncVolumes(wish))
        return answer;
    const auto folders = foldersOf(wish.named);
    std::vector<Result<void>> synced = syncEach(wish.files, folders);
    for (std::size_t i = 0; i < wish.named.size(); ++i) {
        const auto folder = std::ranges::lower_bound(folders, folderOf(*wish.named[i])) - folders.begin();
        answer.named[i] = synced[wish.files.size() + static_cast<std::size_t>(folder)];
    }
    std::move(synced.begin(), synced.begin() + static_cast<std::ptrdiff_t>(wish.files.size()), answer.files.begin());
    return answer;
}

}  // namespace quillon
