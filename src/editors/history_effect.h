// SPDX-License-Identifier: MIT
#pragma once

// What a change of the database did: how many of the heads that jobs have kept were good before it and are behind it.

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "app/database_history.h"

namespace quillon {

/// Of each extension so many of the newest heads are asked, and so many in all.
inline constexpr std::size_t kMostEffectHeads = 5'000;
inline constexpr std::size_t kMostEffectHeadsInAll = 200'000;

/// Of one term file that a change touched. Good is what a record of its own meets, whatever common headers there are.
struct ChangeEffect {
    std::string extension;  ///< lower case
    std::int64_t heads = 0;
    std::int64_t before = 0;  ///< that were good by the records before the change
    std::int64_t after = 0;

    friend bool operator==(const ChangeEffect&, const ChangeEffect&) = default;
};

/// For each change, in the same order, those of its term files of whose extension heads are kept in the evidence of
/// this folder; evidence that cannot be read is passed over. Ends early, with what it has, when `stop` is set.
[[nodiscard]] std::vector<std::vector<ChangeEffect>> effectsOf(const std::vector<DatabaseChange>& changes,
                                                               const NativePath& listFolder,
                                                               const std::atomic<bool>& stop);

/// "Of 1,204 kept heads of jpg 1,100 were good before and 1,180 after", a line for each, UTF-8; empty for none.
[[nodiscard]] std::string effectText(const std::vector<ChangeEffect>& effects);

}  // namespace quillon
