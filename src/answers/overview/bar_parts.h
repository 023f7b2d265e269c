// SPDX-License-Identifier: MIT
#pragma once

// The grades as parts of one bar. The arithmetic alone, without a window.

#include "testing/grade.h"

namespace quillon {

/// A part that was counted at all is at least so many pixels wide: one corrupt file among a million is what a person
/// looks for.
inline constexpr double kLeastPart = 2;

/// How wide each grade's part of a bar of `room` pixels is. Parts that would be narrower than the least width get that;
/// the others share the rest, so that all fit. Nothing counted: all are 0.
[[nodiscard]] ByGrade<double> barParts(const ByGrade<std::int64_t>& counts, double room);

}  // namespace quillon
