// SPDX-License-Identifier: MIT
#pragma once

// The bad sector markers: what imaging tools write where a disk could not be read. docs/formats/rule-lists.md.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/kept_files.h"
#include "app/lost_note.h"
#include "app/rule_list_names.h"

namespace quillon {

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

/// Why a marker marks nothing, in the order in which it is looked for.
enum class MarkerFault : std::uint8_t {
    None,
    Empty,
    ZerosAlone,  ///< healthy files hold them, too
    TooLong,     ///< for a sector, from its position on
    TooShort,    ///< fewer than kLeastMarkerBytes that stand once
    OneByte,     ///< one byte again and again that stands once
};
[[nodiscard]] MarkerFault faultOf(const SectorMarker& marker);

/// The marker of a line. One that marks nothing has no bytes: it is too short, of zeros alone, of one byte again and
/// again without filling a sector, or would not fit into one.
[[nodiscard]] SectorMarker markerOfLine(std::string_view line);
/// Whether the bytes could stand in a line as text: printable ASCII without a comma.
[[nodiscard]] bool standsAsText(std::string_view bytes);
/// The line of a marker, as the list has it: hexadecimal where text could not stand there, or where it is asked for.
[[nodiscard]] std::string lineOfMarker(const SectorMarker& marker, bool hexadecimal = false);

class SectorMarkers {
public:
    /// The markers that manuals of imaging tools tell of; they serve where there is no list.
    [[nodiscard]] static SectorMarkers published();
    /// Their lines, as the list has them.
    [[nodiscard]] static std::vector<std::string_view> publishedLines();

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
/// `job`: the ID that the note of it names.
[[nodiscard]] Result<LostNote> fetchSectorMarkers(const Paths& paths, KeptFiles& kept, const std::string& job = {});

/// Reads the local list; without one the published markers. A failure: it cannot be read.
[[nodiscard]] Result<SectorMarkers> loadSectorMarkers(const Paths& paths);

}  // namespace quillon
