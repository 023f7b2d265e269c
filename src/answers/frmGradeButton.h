// SPDX-License-Identifier: MIT
#pragma once

// The choice of grades that are copied, as a button with a menu of ticks.

#include <string>
#include <vector>

#include "testing/grade_choice.h"

namespace quillon {

class TickButton;

/// Called `copyGrades`, with the entries copyGradesAll, copyGradesGood and copyGrades_1 to copyGrades_10, which stand
/// in the order of the score board.
[[nodiscard]] TickButton* makeGradeButton();

/// Ticks these grades, none for all. `caption`: what stands ahead of their number, "&" marks its key.
void showGrades(TickButton& button, const std::string& caption, const std::vector<Grade>& grades);

}  // namespace quillon
