// SPDX-License-Identifier: MIT
#pragma once

// The switches of a job that stand beside the told ones: one row of one table makes the check box, its preference and
// its effect on the job. They are a person's at the window; a command has options for them.

#include <string_view>

#include "app/preferences.h"
#include "job/job_state.h"

namespace quillon {

struct OwnOption {
    const char* control;  ///< the object name of its check box
    const char* caption;
    const char* toolTip;
    Preference<bool> preference;       ///< missing: not ticked
    bool& (*of)(JobOptions& options);  ///< what the tick sets
    bool ofCopies = false;             ///< of use only where files are copied
};

inline constexpr OwnOption kOwnOptions[] = {
    {.control = "chkVerifyCopies",
     .caption = "&Verify copies",
     .toolTip = "Each copy is read back from the disk and compared, and check sums stand beside the copies",
     .preference = {"copy.verify"},
     .of = [](JobOptions& options) -> bool& { return options.copyCare.verify; },
     .ofCopies = true},
    {.control = "chkSalvage",
     .caption = "Salvage unreadable parts",
     .toolTip = "What cannot be read of a file is left as a gap of zeros, and the rest of it is copied",
     .preference = {"copy.salvage"},
     .of = [](JobOptions& options) -> bool& { return options.copyCare.salvage; },
     .ofCopies = true},
};

/// The grades that are copied, as `namesOfGrades` writes them; missing: all.
inline constexpr Preference<std::string> kCopiedGrades{"copy.grades"};

}  // namespace quillon
