// SPDX-License-Identifier: MIT
#include "answers/copy_look.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "evidence/digest.h"
#include "platform/folders.h"
#include "platform/volume.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/windows_name.h"

namespace quillon {

namespace {

constexpr std::int64_t kLargestOnFat = 0xFFFFFFFF;

bool isFat(const std::string& fileSystem) {
    return fileSystem == "vfat" || fileSystem == "msdos";
}

std::string sentence(std::int64_t count, const char* what, const std::string& first) {
    return fmt::format("{} {}: {}{}", grouped(count), what, readable(std::string_view(first)), count > 1 ? " ..." : "");
}

}  // namespace

TargetVolume targetVolumeOf(const NativePath& target) {
    NativePath there = target;
    while (!pathExists(there) && there.has_relative_path()) there = there.parent_path();
    const auto bytes = freeBytes(there);
    return {volumeOf(there).fileSystem, bytes ? std::optional(*bytes) : std::nullopt};
}

void CopyLook::Hits::add(std::string_view path) {
    if (++count == 1)
        first = path;
}

// These keep names as Windows has them, or hand them to it.
bool CopyLook::isOfWindows() const {
    constexpr std::array<std::string_view, 9> kKinds = {"vfat",    "msdos", "exfat", "ntfs", "ntfs3",
                                                        "fuseblk", "cifs",  "smb3",  "smbfs"};
    return std::ranges::find(kKinds, volume_.fileSystem) != kKinds.end();
}

void CopyLook::add(const CopyTask& task, std::int64_t bytes) {
    bytes_ += bytes;
    if (isFat(volume_.fileSystem) && bytes > kLargestOnFat)
        large_.add(task.source);
    if (task.target && task.target->starts_with(root_))
        lookAtNames(std::string_view(*task.target).substr(root_.size()));
}

void CopyLook::lookAtNames(std::string_view path) {
    const auto behind = path.rfind('/') + 1;  // 0 where there is none
    const std::string_view folder = path.substr(0, behind);
    if (folder != lastFolder_) {
        lastFolder_ = folder;
        const auto parts = splitFields(folder, '/');
        lastFolderIsOdd_ =
            !std::ranges::all_of(parts, [](std::string_view part) { return part.empty() || windowsCanOpen(part); });
    }
    if (lastFolderIsOdd_ || !windowsCanOpen(path.substr(behind)))
        odd_.add(path);
    Digest digest;
    digest.add(foldedName(path));
    if (!folded_.insert(static_cast<std::uint64_t>(digest.value())).second)
        alike_.add(path);
}

std::vector<std::string> CopyLook::findings() const {
    std::vector<std::string> found;
    if (volume_.freeBytes && bytes_ > 0 && static_cast<std::uint64_t>(bytes_) > *volume_.freeBytes)
        found.push_back(fmt::format("{} bytes are needed, and {} are free on the target", grouped(bytes_),
                                    grouped(static_cast<std::int64_t>(*volume_.freeBytes))));
    if (large_.count > 0)
        found.push_back(
            sentence(large_.count, "files are larger than the 4 GB that the target can hold", large_.first));
    if (odd_.count > 0)
        found.push_back(
            sentence(odd_.count,
                     isOfWindows() ? "names are none that the target can hold" : "names are none that Windows can open",
                     odd_.first));
    if (alike_.count > 0)
        found.push_back(sentence(alike_.count,
                                 isOfWindows()
                                     ? "names differ from another one only in case, which the target takes for the same"
                                     : "names differ from another one only in case, which Windows takes for the same",
                                 alike_.first));
    return found;
}

}  // namespace quillon
