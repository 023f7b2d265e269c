// SPDX-License-Identifier: MIT
#include "editors/bad_sector_marker.h"

#include "platform/whole_file.h"

namespace quillon {

std::string markerSector(std::string_view marker) {
    const PageText page = toPage(marker);
    std::string sector;
    if (page.bytes.empty())
        return sector;
    while (sector.size() < kMarkedSectorBytes) sector += page.bytes;
    sector.resize(kMarkedSectorBytes);
    return sector;
}

std::string markedSector(const SectorMarker& marker) {
    std::string sector(marker.position == 0 ? 0 : marker.position - 1, '\0');
    do sector += marker.bytes;
    while (marker.repeating && sector.size() < kMarkedSectorBytes);
    sector.resize(kMarkedSectorBytes, '\0');
    return sector;
}

Result<std::string> writePreview(const Installation& installation, std::string_view marker) {
    std::string bytes = markerSector(marker);
    if (bytes.empty())
        return failure(ErrorKind::InvalidArgument, "a marker without text fills no sector");
    bytes += "\r\n";
    return saveWholeFile(installation.appFolder() / kPreviewFileName, bytes).map([&bytes] { return bytes; });
}

}  // namespace quillon
