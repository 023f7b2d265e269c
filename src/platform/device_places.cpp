// SPDX-License-Identifier: MIT
#include "platform/device_places.h"

#include <bit>
#include <charconv>
#include <optional>
#include <system_error>

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "platform/folders.h"
#include "platform/mounts.h"
#include "platform/system_error.h"
#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// The system counts devices by these, whatever their sectors are.
constexpr std::uint64_t kCountedBytes = 512;

// The first line of one of the system's small files; empty when it is not there.
std::string lineOf(const NativePath& file) {
    const auto text = readWholeFile(file);
    if (!text)
        return {};
    const auto lines = splitLines(*text);
    return lines.empty() ? std::string() : std::string(lines.front());
}

std::optional<std::uint64_t> numberOf(const NativePath& file) {
    const std::string line = lineOf(file);
    std::uint64_t number = 0;
    const auto [end, problem] = std::from_chars(line.data(), line.data() + line.size(), number);
    return problem == std::errc() && end == line.data() + line.size() ? std::optional(number) : std::nullopt;
}

NativePath describedAt(const NativePath& system, const std::string& number) {
    std::error_code none;
    const auto folder = std::filesystem::canonical(system / "dev/block" / number, none);
    return none ? NativePath() : folder;
}

std::string devicePath(const NativePath& described) {
    return "/dev/" + replacedAll(described.filename().native(), "!", "/");
}

// The image behind a loop device.
std::optional<DevicePlace> imageBehind(const NativePath& described, std::uint64_t offset) {
    const std::string path = lineOf(described / "loop/backing_file");
    const auto begin = numberOf(described / "loop/offset");
    struct stat info {};
    if (path.empty() || !begin || ::stat(path.c_str(), &info) != 0)
        return std::nullopt;
    std::uint64_t bytes = static_cast<std::uint64_t>(info.st_size);
    if (S_ISBLK(info.st_mode))
        bytes = numberOf(describedAt("/sys",
                                     std::to_string(major(info.st_rdev)) + ":" + std::to_string(minor(info.st_rdev))) /
                         "size")
                    .value_or(0) *
                kCountedBytes;
    return DevicePlace{path, bytes, *begin + offset};
}

}  // namespace

std::vector<DevicePlace> devicesOf(const NativePath& system, const std::string& number) {
    std::vector<DevicePlace> devices;
    NativePath described = describedAt(system, number);
    const auto sectors = numberOf(described / "size");
    if (!sectors)
        return devices;
    devices.push_back({devicePath(described), *sectors * kCountedBytes, 0});
    std::uint64_t offset = 0;
    if (pathExists(described / "partition")) {
        const auto start = numberOf(described / "start");
        described = described.parent_path();
        const auto whole = numberOf(described / "size");
        if (!start || !whole)
            return devices;
        offset = *start * kCountedBytes;
        devices.push_back({devicePath(described), *whole * kCountedBytes, offset});
    }
    if (auto image = imageBehind(described, offset))
        devices.push_back(std::move(*image));
    return devices;
}

unsigned sectorBytesOf(const NativePath& system, const std::string& number) {
    constexpr std::uint64_t kLargest = 65536;
    const NativePath described = describedAt(system, number);
    for (const NativePath& folder : {described, described.parent_path()}) {
        const auto bytes = numberOf(folder / "queue/physical_block_size");
        if (bytes && *bytes >= kCountedBytes && *bytes <= kLargest && std::has_single_bit(*bytes))
            return static_cast<unsigned>(*bytes);
    }
    return static_cast<unsigned>(kCountedBytes);
}

Result<FileSystemPlace> fileSystemOf(const NativePath& folder) {
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0)
        return failure(systemError(folder.native()));
    const auto mount = mountOf(info.st_dev);
    if (!mount)
        return failure(ErrorKind::NotFound,
                       readable(folder.native()) + ": the system does not tell what is mounted there");
    const std::string number = std::to_string(major(info.st_dev)) + ":" + std::to_string(minor(info.st_dev));
    return FileSystemPlace{info.st_dev, mount->fileSystem, mount->options, sectorBytesOf("/sys", number),
                           devicesOf("/sys", number)};
}

}  // namespace quillon
