// SPDX-License-Identifier: MIT
#include "platform/source_care.h"

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include "platform/system_error.h"

namespace quillon {

namespace {

// File systems of disks in this computer. All others may be a server's or a program's.
constexpr std::array<std::uint32_t, 14> kDiskVolumes = {
    EXT4_SUPER_MAGIC,
    BTRFS_SUPER_MAGIC,
    XFS_SUPER_MAGIC,
    F2FS_SUPER_MAGIC,
    OVERLAYFS_SUPER_MAGIC,
    MSDOS_SUPER_MAGIC,
    EXFAT_SUPER_MAGIC,
    ISOFS_SUPER_MAGIC,
    UDF_SUPER_MAGIC,
    SQUASHFS_MAGIC,
    0x7366746e,  // ntfs3
    0x482b,      // hfsplus
    0x4244,      // hfs
    0x2fc12fc1,  // zfs
};

// A program may serve a disk of this computer, too (ntfs-3g); its volume then has the number of a block device.
bool isServedDisk(int descriptor) {
    struct stat info {};
    return ::fstat(descriptor, &info) == 0 && major(info.st_dev) != 0;
}

}  // namespace

bool isOnDisk(int descriptor) {
    struct statfs info {};
    return ::fstatfs(descriptor, &info) == 0 &&
           std::ranges::find(kDiskVolumes, static_cast<std::uint32_t>(info.f_type)) != kDiskVolumes.end();
}

Moment::duration SourceCare::ended(Moment start, int descriptor) {
    const Moment::duration took = momentNow() - start;
    if (took >= kPatience && (isOnDisk(descriptor) || isServedDisk(descriptor)))
        set(Reason::SlowCall);
    return took;
}

void SourceCare::failed(const FileError& error) {
    static const std::string readError = systemError({}, EIO).cause;
    if (error.cause == readError)
        readFailed();
}

void SourceCare::set(Reason reason) {
    Reason none = Reason::None;
    passOver(reason_.compare_exchange_strong(none, reason), "the first reason stays");
}

}  // namespace quillon
