// SPDX-License-Identifier: MIT
#pragma once

// The installation that a command of the job works in.

#include <iosfwd>

#include "app/installation.h"

namespace quillon {

/// Loads the settings, or sets up the default on a first run. False: it cannot be done, and `err` says why.
[[nodiscard]] bool prepareInstallation(Installation& installation, std::ostream& err, bool quiet);

}  // namespace quillon
