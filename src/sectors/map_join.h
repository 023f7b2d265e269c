// SPDX-License-Identifier: MIT
#pragma once

// Which bytes of which files lie where a device was not read, without reading any of them: the places of the files, as
// the file system tells them, meet the missing areas of a map.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/device_places.h"
#include "platform/file_extents.h"
#include "sectors/rescue_map.h"

namespace quillon {

/// Where a file system lies on the device that a map is of.
struct MapPlace {
    std::string device;          ///< path of the device or image; empty when only its offset was told
    std::uint64_t offset = 0;    ///< of the file system on it
    std::uint64_t bytes = 0;     ///< size of the file system's own device
    unsigned sectorBytes = 512;  ///< physical sector
};

/// Finds that device among those of the file system: the one that ends where the map ends, and that has the file system
/// at `offset` where one is given. An offset that no known device has is taken as it is told when the file system has
/// room on the map there. InvalidArgument, with the reason for a person: the file system does not tell places, lies on
/// no device, or the map is of none of its devices.
[[nodiscard]] Result<MapPlace> placeOnMap(const FileSystemPlace& system, const RescueMap& map,
                                          std::optional<std::uint64_t> offset);

inline constexpr std::size_t kExtentKinds = 5;

struct MappedFile {
    ByteRanges unread;                                ///< in the file; none behind its end
    ByteRanges onDevice;                              ///< where these lie on the map's device, in no order
    std::array<std::uint64_t, kExtentKinds> bytes{};  ///< of the file, by ExtentKind; holes are in none

    [[nodiscard]] std::uint64_t of(ExtentKind kind) const { return bytes[static_cast<std::size_t>(kind)]; }
    /// False: of some bytes no map can tell whether they were read.
    [[nodiscard]] bool isPlaced() const {
        return of(ExtentKind::Inline) + of(ExtentKind::Encoded) + of(ExtentKind::Unknown) == 0;
    }
};

class MapJoin {
public:
    MapJoin(const RescueMap& map, const MapPlace& place);

    [[nodiscard]] MappedFile look(const FilePlaces& file);

    /// How many missing bytes of the file system no file had that was looked at.
    [[nodiscard]] std::uint64_t unclaimed() const;

private:
    [[nodiscard]] ByteRange onDevice(const FileExtent& extent) const;

    ByteRanges missing_;
    ByteRange system_;    // on the device
    ByteRanges claimed_;  // on the device, in no order
};

}  // namespace quillon
