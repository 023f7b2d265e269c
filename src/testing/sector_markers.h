// SPDX-License-Identifier: MIT
#pragma once

// The bad sector markers: what imaging tools write where a disk could not be read. docs/formats/rule-lists.md.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/installation.h"
#include "app/kept_files.h"

namespace quillon {

inline constexpr const char* kBadSectorsFileName = "BadSectors.dat";
inline constexpr std::size_t kMarkedSectorBytes = 512;

/// A marker of fewer bytes would stand in healthy files, too.
inline constexpr std::size_t kLeastMarkerBytes = 4;

/// One line of the list.
struct SectorMarker {
    std::size_t position = 0;  ///< of its first byte in the sector, from 1; 0 for anywhere
    std::string bytes;
    bool repeating = false;  ///< from its position on it fills the sector, again and again
    std::string name;        ///< UTF-8

    friend bool operator==(const SectorMarker&, const SectorMarker&) = default;
};

/// The marker of a line. One that marks nothing has no bytes: it is too short, of zeros alone, of one byte again and
/// again without filling a sector, or would not fit into one.
[[nodiscard]] SectorMarker markerOfLine(std::string_view line);
/// The line of a marker, as the list has it: hexadecimal where text could not stand there.
[[nodiscard]] std::string lineOfMarker(const SectorMarker& marker);

class SectorMarkers {
public:
    /// The markers that manuals of imaging tools tell of; they serve where there is no list.
    [[nodiscard]] static SectorMarkers published();

    /// Replaces all by the lines of a file, in order; those that mark nothing are left out.
    void assign(const std::vector<std::string_view>& lines);

    [[nodiscard]] const std::vector<SectorMarker>& all() const { return markers_; }

    /// The first marker that stands in the sector: up to 512 bytes, fewer where a file ends; of these at least
    /// kLeastMarkerBytes must be of the marker. Null when none does.
    [[nodiscard]] const SectorMarker* find(std::string_view sector) const;

private:
    std::vector<SectorMarker> markers_;
};

/// With sharing on, puts the shared list over the local one when there is one. After a failure the local one serves.
[[nodiscard]] Result<void> fetchSectorMarkers(const Paths& paths, KeptFiles& kept);

/// Reads the local list; without one the published markers. A failure: it cannot be read.
[[nodiscard]] Result<SectorMarkers> loadSectorMarkers(const Paths& paths);

}  // namespace quillon
