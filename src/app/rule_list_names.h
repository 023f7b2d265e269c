// SPDX-License-Identifier: MIT
#pragma once

// The rule lists of a settings folder, by name. docs/formats/rule-lists.md.

#include <array>

#include "app/installation.h"

namespace quillon {

inline constexpr const char* kBadSectorsFileName = "BadSectors.dat";

/// All of them: whatever copies, notes or spells the rules of a database goes through these.
inline constexpr std::array kRuleListNames{kErrorsFileName, kSkipListFileName, kCommonHeadersFileName,
                                           kBadSectorsFileName};

}  // namespace quillon
