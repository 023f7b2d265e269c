// SPDX-License-Identifier: MIT
#pragma once

#include "app/installation.h"
#include "platform/byte_watch.h"

namespace quillon {

/// Looks for the markers of the local settings in each sector that passes by. With a list that cannot be read nobody
/// watches; whoever tests files tells of it.
[[nodiscard]] ByteWatchMaker markerWatch(const Paths& paths);

}  // namespace quillon
