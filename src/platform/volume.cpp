// SPDX-License-Identifier: MIT
#include "platform/volume.h"

#include <optional>

#include <sys/stat.h>
#include <sys/statvfs.h>

#include "platform/folders.h"
#include "platform/mounts.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

std::optional<struct stat> look(const NativePath& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? std::optional(info) : std::nullopt;
}

std::string uuidOf(const std::string& device) {
    const NativePath folder = "/dev/disk/by-uuid";
    const auto wanted = look(device);
    const auto names = listEntries(folder);
    if (!wanted || !S_ISBLK(wanted->st_mode) || !names)
        return {};
    for (const auto& name : *names) {
        const auto found = look(folder / name);
        if (found && S_ISBLK(found->st_mode) && found->st_rdev == wanted->st_rdev)
            return name;
    }
    return {};
}

}  // namespace

Volume volumeOf(const NativePath& folder) {
    const auto info = look(folder);
    const auto mount = info ? mountOf(info->st_dev) : std::nullopt;
    return mount ? Volume{mount->fileSystem, uuidOf(mount->device)} : Volume();
}

Result<std::uint64_t> freeBytes(const NativePath& folder) {
    struct statvfs info {};
    if (::statvfs(folder.c_str(), &info) != 0)
        return failure(systemError(folder.native()));
    return std::uint64_t{info.f_bavail} * info.f_frsize;
}

}  // namespace quillon
