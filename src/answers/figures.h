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

    std::int64_t sectorsKnown = 0;   ///< files of which is known whether their medium gave all bytes
    std::int64_t hurt = 0;           ///< of these, hold bytes that it did not give
    std::int64_t hurtRecovered = 0;  ///< of these, count as recovered
    std::int64_t unreadBytes = 0;    ///< how many bytes it did not give

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

/// Counts files of one grade, of which is known whether their medium gave all bytes: of `known` files `hurt` ones lack
/// `bytes`.
void countSectors(Figures& figures, std::optional<Grade> grade, std::int64_t known, std::int64_t hurt,
                  std::int64_t bytes);

/// How many tested files count as this.
[[nodiscard]] std::int64_t countOf(const Figures& figures, Quality quality);

/// How many files could be judged: the base of the quality.
[[nodiscard]] std::int64_t judged(const Figures& figures);

/// Recovery quality from 0 to 1: (good + common header) / (good + corrupt + common header); none when nothing could be
/// judged.
[[nodiscard]] std::optional<double> quality(const Figures& figures);

/// The same as far as is known of whole files: those that hold unread sectors are not among the recovered ones. None,
/// too, when no file was looked at for them.
[[nodiscard]] std::optional<double> wholeQuality(const Figures& figures);

/// "12 files of 43,016 hold unread sectors, 188.0 Kb in all".
[[nodiscard]] std::string unreadSectorsText(const Figures& figures);

/// Figures by the name of what they are of.
using FiguresBy = std::map<std::string, Figures, std::less<>>;

}  // namespace quillon
