// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/byte_watch.h"
#include "testing/sector_markers.h"

namespace quillon {

/// Looks for these markers in each sector that passes by. No markers: nobody watches.
[[nodiscard]] ByteWatchMaker markerWatch(std::shared_ptr<const SectorMarkers> markers);

}  // namespace quillon
