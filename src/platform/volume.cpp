// SPDX-License-Identifier: MIT
#include "platform/volume.h"

#include <optional>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include "platform/folders.h"
#include "platform/system_error.h"
#include "platform/whole_file.h"
#include "text/fields.h"

namespace quillon {

namespace {

std::optional<struct stat> look(const NativePath& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? std::optional(info) : std::nullopt;
}

struct Mount {
    std::string fileSystem;
    std::string device;
};

// "36 35 98:0 / /mnt rw,noatime shared:1 - ext4 /dev/sdb1 rw": the third field is the volume's number.
std::optional<Mount> mountOf(dev_t volume) {
    const auto table = readWholeFile("/proc/self/mountinfo");
    if (!table)
        return std::nullopt;
    const std::string number = std::to_string(major(volume)) + ":" + std::to_string(minor(volume));
    for (const auto line : splitLines(*table)) {
        const auto fields = splitFields(line, ' ');
        const auto behind = line.find(" - ");
        if (fields.size() < 3 || fields[2] != number || behind == line.npos)
            continue;
        const auto kind = splitFields(line.substr(behind + 3), ' ');
        if (kind.size() >= 2)
            return Mount{std::string(kind[0]), std::string(kind[1])};
    }
    return std::nullopt;
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
