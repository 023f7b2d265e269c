// SPDX-License-Identifier: MIT
#include "evidence/totals.h"

#include <algorithm>

#include <fmt/format.h>

#include "evidence/job_keys.h"
#include "evidence/schema.h"

namespace quillon {

namespace {

// A hostile tree has as many extensions as files.
constexpr std::size_t kMostAtOnce = 4096;

}  // namespace

Result<Totals> Totals::prepare(Database& database) {
    const std::string grow = "DO UPDATE SET files = files + excluded.files, bytes = bytes + excluded.bytes";
    auto extensions =
        database.prepare("INSERT INTO by_extension VALUES (?, ?, ?, ?) ON CONFLICT (extension, grade) " + grow);
    if (!extensions)
        return failure(extensions.error());
    auto reasons =
        database.prepare("INSERT INTO by_reason VALUES (?, ?, ?, ?) ON CONFLICT (reason, extension) " + grow);
    if (!reasons)
        return failure(reasons.error());
    return Totals(std::move(*extensions), std::move(*reasons));
}

Totals::Sum& Totals::Sums::operator[](std::int64_t number) {
    const auto known = std::ranges::find(all_, number, &std::pair<std::int64_t, Sum>::first);
    return known != all_.end() ? known->second : all_.emplace_back(number, Sum()).second;
}

Totals::OfExtension& Totals::of(std::string_view extension) {
    const auto found = changes_.find(extension);
    return found != changes_.end() ? found->second : changes_.emplace(extension, OfExtension()).first->second;
}

void Totals::countSectors(Sums& sums, std::optional<Grade> grade, std::optional<std::int64_t> badBytes,
                          std::int64_t sign) {
    if (!badBytes)
        return;
    sums[kSectorsKnown].files += sign;
    if (*badBytes <= 0)
        return;
    sums[kHurt].files += sign;
    sums[kHurt].bytes += sign * *badBytes;
    if (grade && kGrades[*grade].quality.value == Quality::Recovered)
        sums[kHurtRecovered].files += sign;
}

void Totals::changeSectors(std::string_view extension, std::optional<Grade> grade, std::optional<std::int64_t> before,
                           std::optional<std::int64_t> now) {
    Sums& sums = of(extension).reasons;
    countSectors(sums, grade, before, -1);
    countSectors(sums, grade, now, 1);
}

Result<void> Totals::count(const EvidenceRow& row, std::int64_t sign) {
    OfExtension& sums = of(row.extension);
    const auto change = [&](Sums& numbers, std::int64_t number) {
        Sum& sum = numbers[number];
        sum.files += sign;
        sum.bytes += sign * row.size;
    };
    change(sums.grades, row.grade ? static_cast<std::int64_t>(*row.grade) : kNotTested);
    if (row.reason)
        change(sums.reasons, static_cast<std::int64_t>(*row.reason));
    if (row.grade == Grade::Good && !row.doubt.empty())
        change(sums.reasons, kDoubtful);
    countSectors(sums.reasons, row.grade, row.badBytes, sign);
    return changes_.size() < kMostAtOnce ? Result<void>() : write();
}

Result<void> Totals::write() {
    for (const auto& [extension, sums] : changes_) {
        for (const auto& [grade, sum] : sums.grades) {
            if (auto written = extensions_.bind(extension, grade, sum.files, sum.bytes).run(); !written)
                return written;
        }
        for (const auto& [reason, sum] : sums.reasons) {
            if (auto written = reasons_.bind(reason, extension, sum.files, sum.bytes).run(); !written)
                return written;
        }
    }
    changes_.clear();
    return {};
}

Result<void> recountSectors(Database& database) {
    std::string recovered;
    for (const auto& row : kGrades.values) {
        if (row.quality.value == Quality::Recovered)
            recovered += (recovered.empty() ? "" : ", ") + std::to_string(static_cast<int>(row.grade.value));
    }
    // One look at the files; what there is none of has no row.
    return database.run(
        fmt::format("DELETE FROM by_reason WHERE reason IN ({0}, {1}, {2});"
                    "WITH seen AS MATERIALIZED (SELECT extension, count(*) AS known, sum(bad_bytes > 0) AS hurt, "
                    "sum(max(bad_bytes, 0)) AS bytes, sum(bad_bytes > 0 AND grade IN ({3})) AS recovered "
                    "FROM file WHERE bad_bytes IS NOT NULL GROUP BY extension) "
                    "INSERT INTO by_reason SELECT {0}, extension, known, 0 FROM seen "
                    "UNION ALL SELECT {1}, extension, hurt, bytes FROM seen WHERE hurt > 0 "
                    "UNION ALL SELECT {2}, extension, recovered, 0 FROM seen WHERE recovered > 0;"
                    "INSERT OR REPLACE INTO job VALUES ('{4}', 1)",
                    kSectorsKnown, kHurt, kHurtRecovered, recovered, job_keys::kSectorsCounted));
}

}  // namespace quillon
