// SPDX-License-Identifier: MIT
#pragma once

// Whether this computer can teach the others: a share may let its files be read and not be replaced, and then every
// lesson of this workstation is gone with its next job.

#include <string>

#include "app/installation.h"

namespace quillon {

/// Makes, renames and deletes a file in the shared database and settings folders that are there. What cannot be done
/// is told with the folder and the reason, for a person; empty when all can. Nothing is left behind, as far as the
/// share lets it go. It may hang as long as the share does.
[[nodiscard]] std::string whatShareRefuses(const Paths& paths);

/// How it is said, in a box of this title or a row of the job log.
inline constexpr const char* kShareTrialTitle = "Shared DB";
[[nodiscard]] std::string shareTrialText(const std::string& refused);

}  // namespace quillon
