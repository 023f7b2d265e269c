// SPDX-License-Identifier: MIT
#include "testing/suggest/shared_runs.h"

#include <algorithm>

namespace quillon {

// First how many heads agree for exactly so many bytes from a place on, walking each head from its end; then the sums.
SharedRuns::SharedRuns(const HeaderBytes& pivot, const std::vector<HeaderBytes>& heads) {
    for (const HeaderBytes& head : heads) {
        std::size_t agree = 0;
        for (std::size_t i = kHeaderBytes; i-- > 0;) {
            agree = head[i] == pivot[i] ? std::min(agree + 1, kLongestRun) : 0;
            ++(*counts_)[i][agree];
        }
    }
    for (auto& place : *counts_) {
        for (std::size_t length = kLongestRun; length-- > 0;) place[length] += place[length + 1];
    }
}

}  // namespace quillon
