// SPDX-License-Identifier: MIT
#pragma once

// Counts of files: of a job, of a folder with all below it, of an extension, of a reason.

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "testing/grade.h"
#include "testing/reason.h"

namespace quillon {

struct Figures {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    ByGrade<std::int64_t> grades;
    std::array<std::int64_t, kReasonCount> reasons{};
    std::int64_t notTested = 0;  ///< files without a grade
    std::int64_t doubtful = 0;   ///< good files whose head speaks against them

    Figures& operator+=(const Figures& other);

    friend bool operator==(const Figures&, const Figures&) = default;
};

/// What is counted of one file.
struct FileSign {
    std::optional<Grade> grade;
    std::optional<Reason> reason;
    std::int64_t bytes = 0;
    bool doubtful = false;
};
/// `times`: how many files are alike; `bytes` is their sum then.
void count(Figures& figures, const FileSign& file, std::int64_t times = 1);

/// How many tested files count as this.
[[nodiscard]] std::int64_t countOf(const Figures& figures, Quality quality);

/// How many files could be judged: the base of the quality.
[[nodiscard]] std::int64_t judged(const Figures& figures);

/// Recovery quality from 0 to 1: (good + common header) / (good + corrupt + common header); none when nothing could be
/// judged.
[[nodiscard]] std::optional<double> quality(const Figures& figures);

/// Figures by the name of what they are of.
using FiguresBy = std::map<std::string, Figures, std::less<>>;

}  // namespace quillon
