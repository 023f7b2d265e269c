// SPDX-License-Identifier: MIT
#include "sectors/map_join.h"

#include <algorithm>
#include <limits>

#include <fmt/format.h>

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::uint64_t kFarthest = std::numeric_limits<std::uint64_t>::max();

// Their places are byte positions on the one device that they lie on.
constexpr std::array<std::string_view, 9> kPlacedKinds = {"ext2", "ext3",  "ext4",    "xfs",  "ntfs3",
                                                          "vfat", "msdos", "fuseblk", "exfat"};

std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
    return a > kFarthest - b ? kFarthest : a + b;
}

std::optional<std::string> whyNotPlaced(const FileSystemPlace& system) {
    if (system.kind == "btrfs")
        return "btrfs tells places in a space of its own, which may lie on several devices, and not those of the disk";
    if (system.devices.empty())
        return fmt::format("its file system ({}) lies on no device of this computer, so no map tells of it",
                           system.kind);
    if (std::ranges::find(kPlacedKinds, system.kind) == kPlacedKinds.end())
        return fmt::format("its file system ({}) does not tell places on the disk", system.kind);
    for (const auto option : splitFields(std::string_view(system.options))) {
        if (option.starts_with("rtdev="))
            return "its file system keeps files on a second device";
    }
    return std::nullopt;
}

std::string sizesOf(const FileSystemPlace& system) {
    std::string text;
    for (const auto& device : system.devices)
        text += fmt::format("{}{} ends at {}", text.empty() ? "" : ", ", readable(std::string_view(device.path)),
                            device.bytes);
    return text;
}

}  // namespace

Result<MapPlace> placeOnMap(const FileSystemPlace& system, const RescueMap& map, std::optional<std::uint64_t> offset) {
    if (const auto why = whyNotPlaced(system))
        return failure(ErrorKind::InvalidArgument, *why);
    const std::uint64_t bytes = system.devices.front().bytes;
    bool known = false;
    for (const auto& device : system.devices) {
        if (offset && *offset != device.offset)
            continue;
        known = true;
        if (device.bytes == map.end)
            return MapPlace{device.path, device.offset, bytes, system.sectorBytes};
    }
    if (offset && !known) {
        if (sum(*offset, bytes) <= map.end)
            return MapPlace{{}, *offset, bytes, system.sectorBytes};
        return failure(ErrorKind::InvalidArgument,
                       fmt::format("at offset {} the file system ({} bytes) reaches behind the map's end at {}",
                                   *offset, bytes, map.end));
    }
    return failure(
        ErrorKind::InvalidArgument,
        fmt::format("the map ends at {}, and {}: it is the map of another device", map.end, sizesOf(system)));
}

MapJoin::MapJoin(const RescueMap& map, const MapPlace& place)
    : missing_(map.missing), system_{place.offset, sum(place.offset, place.bytes)} {
    append(missing_, {map.end, kFarthest});  // nothing is known to be read there
}

ByteRange MapJoin::onDevice(const FileExtent& extent) const {
    const std::uint64_t begin = sum(system_.begin, extent.physical);
    return {begin, sum(begin, extent.length)};
}

MappedFile MapJoin::look(const FilePlaces& file) {
    MappedFile found;
    for (const auto& extent : file.extents) {
        if (extent.kind == ExtentKind::Data) {
            const auto parts = partsIn(missing_, onDevice(extent));
            claimed_.insert(claimed_.end(), parts.begin(), parts.end());
        }
        if (extent.logical >= file.size)
            continue;
        FileExtent own = extent;
        own.length = std::min(extent.length, file.size - extent.logical);
        found.bytes[static_cast<std::size_t>(own.kind)] += own.length;
        if (own.kind != ExtentKind::Data)
            continue;
        const ByteRange place = onDevice(own);
        for (const auto& part : partsIn(missing_, place)) {
            found.onDevice.push_back(part);
            found.unread.push_back({own.logical + (part.begin - place.begin), own.logical + (part.end - place.begin)});
        }
    }
    putInOrder(found.unread);
    return found;
}

std::uint64_t MapJoin::unclaimed() const {
    ByteRanges claimed = claimed_;
    putInOrder(claimed);
    std::uint64_t claimedBytes = 0;
    for (const auto& range : claimed) claimedBytes += bytesIn(partsIn({system_}, range));
    return bytesIn(partsIn(missing_, system_)) - claimedBytes;
}

}  // namespace quillon
