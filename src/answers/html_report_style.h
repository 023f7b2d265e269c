// SPDX-License-Identifier: MIT
#pragma once

// How the grades look on the page for the customer, and what they mean in plain words. For the sources of this folder
// only.

#include <array>
#include <string>

#include "testing/grade.h"

namespace quillon {

/// A grade on paper: the letter and the pattern tell it without its colour.
struct GradeSign {
    Grade grade;
    char letter;
    const char* pattern;  ///< lines in a square of 8, as SVG paths have them; empty for none
    const char* among;    ///< "9,000 unknown": as one of those that could not be judged
    const char* meaning;  ///< for somebody who knows nothing of headers
};

// clang-format off
inline constexpr std::array<GradeSign, kGradeCount> kGradeSigns{{
    {Grade::Good, 'G', "", "good", "The file begins as files of its kind have to begin."},
    {Grade::CommonHeader, 'H', "M3 4h2", "of a common type",
     "The file begins like one of the well-known kinds of files, and is taken for one."},
    {Grade::Corrupt, 'C', "M-2 2L2 -2M0 8L8 0M6 10L10 6", "corrupt",
     "The file does not begin as files of its kind do: it is damaged, or holds something else than its name says."},
    {Grade::Unknown, 'U', "M0 4h8", "unknown", "There is no rule for this kind of file, so nothing is said about it."},
    {Grade::NoExtension, 'N', "M4 0v8", "without an extension", "The name does not tell what kind of file it is."},
    {Grade::Encrypted, 'E', "M0 4h8M4 0v8", "encrypted", "The file is marked as encrypted: what it holds cannot be seen."},
    {Grade::AccessError, 'A', "M0 0L8 8M0 8L8 0", "unreadable", "The file could not be opened or read."},
    {Grade::InvalidName, 'I', "M-2 6L2 10M0 0L8 8M6 -2L10 2", "with an invalid name", "The name is none that a file can have."},
    {Grade::ZeroBytes, 'Z', "", "of zero bytes", "The file has a name and no content."},
    {Grade::TooSmall, 'S', "M4 2v4", "too small to test", "The file is shorter than 512 bytes, which is too short for the test."},
}};
// clang-format on

/// True when both tables tell the grades in one order.
consteval bool signsStandInBoardOrder() {
    for (std::size_t i = 0; i < kGradeSigns.size(); ++i)
        if (kGradeSigns.at(i).grade != kBoardOrder.at(i))
            return false;
    return true;
}
static_assert(signsStandInBoardOrder());

[[nodiscard]] constexpr const GradeSign& signOf(Grade grade) {
    return *std::ranges::find(kGradeSigns, grade, &GradeSign::grade);
}

/// What files without a grade look like.
inline constexpr const char* kNotTestedName = "not-tested";
inline constexpr char kNotTestedLetter = 'T';

/// All that stands between <style> and </style>.
[[nodiscard]] std::string reportStyle();

/// The patterns that the bars are filled with: `url(#g-<name of the grade>)`.
[[nodiscard]] std::string reportPatterns();

}  // namespace quillon
