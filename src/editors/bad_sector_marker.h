// SPDX-License-Identifier: MIT
#pragma once

// The picture of a sector that a bad sector marker fills. No test and no file of the program knows a marker: it can
// only be looked at.

#include <string>
#include <string_view>

#include "app/installation.h"

namespace quillon {

inline constexpr const char* kPreviewFileName = "bSector.test";
inline constexpr std::size_t kSectorBytes = 512;

/// The marker, UTF-8, as page bytes repeated through one sector of 512 bytes. Characters outside the page become "?".
/// An empty marker gives no sector: an empty text.
[[nodiscard]] std::string markerSector(std::string_view marker);

/// Writes the sector, with a line end behind it, to the preview file of the application folder, replacing it. Gives the
/// bytes of the file. An empty marker is an InvalidArgument failure, and nothing is written.
[[nodiscard]] Result<std::string> writePreview(const Installation& installation, std::string_view marker);

}  // namespace quillon
