// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "app/installation.h"
#include "platform/byte_watch.h"
#include "testing/sector_markers.h"

namespace quillon {

/// Looks for these markers in each sector that passes by. No markers: nobody watches.
[[nodiscard]] ByteWatchMaker markerWatch(std::shared_ptr<const SectorMarkers> markers);
/// The same for the markers of the local settings. Whoever tests files tells of a list that cannot be read.
[[nodiscard]] ByteWatchMaker markerWatch(const Paths& paths);

}  // namespace quillon
