// SPDX-License-Identifier: MIT
#include "testing/grade_choice.h"

#include <algorithm>

#include "text/fields.h"

namespace quillon {

std::optional<Grade> gradeNamed(std::string_view name) {
    const auto found =
        std::ranges::find_if(kGrades.values, [&](const GradeRow& row) { return row.name.value == name; });
    return found == kGrades.values.end() ? std::nullopt : std::optional<Grade>(found->grade.value);
}

std::string namesOfGrades(const std::vector<Grade>& grades) {
    std::string names;
    for (const Grade grade : grades) names += (names.empty() ? "" : ",") + std::string(kGrades[grade].name.value);
    return names;
}

std::vector<Grade> gradesNamed(std::string_view names) {
    std::vector<Grade> grades;
    for (const std::string_view name : splitFields(names, ',')) {
        if (const auto grade = gradeNamed(name))
            grades.push_back(*grade);
    }
    return grades;
}

std::vector<bool> ticksOf(const std::vector<Grade>& grades) {
    std::vector<bool> ticks;
    for (const Grade grade : kBoardOrder) ticks.push_back(grades.empty() || std::ranges::count(grades, grade) > 0);
    return ticks;
}

std::vector<Grade> gradesOfTicks(const std::vector<bool>& ticks) {
    std::vector<Grade> grades;
    for (std::size_t i = 0; i < kBoardOrder.size(); ++i) {
        if (ticks[i])
            grades.push_back(kBoardOrder[i]);
    }
    return grades.size() == kBoardOrder.size() ? std::vector<Grade>() : grades;
}

std::vector<std::string> captionsOfGrades() {
    std::vector<std::string> captions;
    for (const Grade grade : kBoardOrder) captions.emplace_back(kGrades[grade].bar.name.value);
    return captions;
}

std::vector<GradePreset> gradePresets() {
    return {{"copyGradesAll", "&All grades", {}},
            {"copyGradesGood", "&Good and common header only", {Grade::Good, Grade::CommonHeader}}};
}

std::string countOfGrades(const std::vector<Grade>& grades) {
    return grades.empty() ? "all" : std::to_string(grades.size()) + " of " + std::to_string(kGradeCount);
}

}  // namespace quillon
