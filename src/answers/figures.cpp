// SPDX-License-Identifier: MIT
#include "answers/figures.h"

#include <numeric>

#include "sectors/sector_summary.h"

namespace quillon {

Figures& Figures::operator+=(const Figures& other) {
    files += other.files;
    bytes += other.bytes;
    for (std::size_t i = 0; i < kGradeCount; ++i) grades.values[i] += other.grades.values[i];
    for (std::size_t i = 0; i < kReasonCount; ++i) reasons[i] += other.reasons[i];
    notTested += other.notTested;
    doubtful += other.doubtful;
    sectorsKnown += other.sectorsKnown;
    hurt += other.hurt;
    hurtRecovered += other.hurtRecovered;
    unreadBytes += other.unreadBytes;
    return *this;
}

void count(Figures& figures, const FileSign& file, std::int64_t times) {
    figures.files += times;
    figures.bytes += file.bytes;
    (file.grade ? figures.grades[*file.grade] : figures.notTested) += times;
    if (file.reason)
        figures.reasons[static_cast<std::size_t>(*file.reason)] += times;
    if (file.doubtful)
        figures.doubtful += times;
}

void countSectors(Figures& figures, std::optional<Grade> grade, std::int64_t known, std::int64_t hurt,
                  std::int64_t bytes) {
    figures.sectorsKnown += known;
    figures.hurt += hurt;
    figures.unreadBytes += bytes;
    if (grade && kGrades[*grade].quality.value == Quality::Recovered)
        figures.hurtRecovered += hurt;
}

std::int64_t countOf(const Figures& figures, Quality quality) {
    return std::accumulate(kGrades.values.begin(), kGrades.values.end(), std::int64_t{0},
                           [&](std::int64_t sum, const GradeRow& row) {
                               return sum + (row.quality.value == quality ? figures.grades[row.grade] : 0);
                           });
}

std::int64_t judged(const Figures& figures) {
    return countOf(figures, Quality::Recovered) + countOf(figures, Quality::Lost);
}

std::optional<double> quality(const Figures& figures) {
    const auto base = judged(figures);
    if (base == 0)
        return std::nullopt;
    return static_cast<double>(countOf(figures, Quality::Recovered)) / static_cast<double>(base);
}

std::optional<double> wholeQuality(const Figures& figures) {
    const auto base = judged(figures);
    if (base == 0 || figures.sectorsKnown == 0)
        return std::nullopt;
    return static_cast<double>(countOf(figures, Quality::Recovered) - figures.hurtRecovered) /
           static_cast<double>(base);
}

std::string unreadSectorsText(const Figures& figures) {
    return unreadSectorsText(figures.hurt, figures.sectorsKnown, figures.unreadBytes);
}

}  // namespace quillon
