// SPDX-License-Identifier: MIT
#pragma once

// Some of the grades, as a person or a script chooses them. None stands for all.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "testing/grade.h"

namespace quillon {

/// By the names that evidence and scripts have; none for an unknown one.
[[nodiscard]] std::optional<Grade> gradeNamed(std::string_view name);

/// "good,common-header", as `gradesNamed` reads it; empty for all.
[[nodiscard]] std::string namesOfGrades(const std::vector<Grade>& grades);
/// Names that are unknown are passed over.
[[nodiscard]] std::vector<Grade> gradesNamed(std::string_view names);

/// One value for each grade, in the order of the score board: whether it is among these.
[[nodiscard]] std::vector<bool> ticksOf(const std::vector<Grade>& grades);
[[nodiscard]] std::vector<Grade> gradesOfTicks(const std::vector<bool>& ticks);

/// What the grades are called where they are ticked, in the same order.
[[nodiscard]] std::vector<std::string> captionsOfGrades();

/// An entry that ticks several grades at once.
struct GradePreset {
    const char* control;  ///< its object name
    const char* caption;
    std::vector<Grade> grades;
};
[[nodiscard]] std::vector<GradePreset> gradePresets();

/// How many, in few words: "all", "3 of 10".
[[nodiscard]] std::string countOfGrades(const std::vector<Grade>& grades);

}  // namespace quillon
