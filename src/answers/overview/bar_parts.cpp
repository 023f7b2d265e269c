// SPDX-License-Identifier: MIT
#include "answers/overview/bar_parts.h"

#include <algorithm>

namespace quillon {

ByGrade<double> barParts(const ByGrade<std::int64_t>& counts, double room) {
    double total = 0;
    for (const std::int64_t count : counts.values) total += static_cast<double>(std::max<std::int64_t>(count, 0));
    const auto isNarrow = [&](double count) { return room * count < kLeastPart * total; };
    double others = total;
    double shared = room;
    for (const std::int64_t files : counts.values) {
        const auto count = static_cast<double>(files);
        if (count <= 0 || !isNarrow(count))
            continue;
        others -= count;
        shared -= kLeastPart;
    }
    ByGrade<double> widths;
    for (std::size_t i = 0; i < kGradeCount; ++i) {
        const auto count = static_cast<double>(counts.values[i]);
        if (count > 0)
            widths.values[i] = isNarrow(count) ? kLeastPart : std::max(shared * count / others, kLeastPart);
    }
    return widths;
}

}  // namespace quillon
