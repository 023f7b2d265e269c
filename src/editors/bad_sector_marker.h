// SPDX-License-Identifier: MIT
#pragma once

// The picture of a sector that a bad sector marker fills: of one that is composed to be looked at, and of one of the
// list.

#include <string>
#include <string_view>

#include "app/installation.h"
#include "testing/sector_markers.h"

namespace quillon {

inline constexpr const char* kPreviewFileName = "bSector.test";

/// The marker, UTF-8, as page bytes repeated through one sector of 512 bytes. Characters outside the page become "?".
/// An empty marker gives no sector: an empty text.
[[nodiscard]] std::string markerSector(std::string_view marker);

/// A sector of 512 bytes that this marker marks, zeros where it does not stand; a marker that may stand anywhere stands
/// at the beginning. The marker has no fault.
[[nodiscard]] std::string markedSector(const SectorMarker& marker);

/// Writes the sector, with a line end behind it, to the preview file of the application folder, replacing it. Gives the
/// bytes of the file. An empty marker is an InvalidArgument failure, and nothing is written.
[[nodiscard]] Result<std::string> writePreview(const Installation& installation, std::string_view marker);

}  // namespace quillon
