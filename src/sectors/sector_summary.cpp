// SPDX-License-Identifier: MIT
#include "sectors/sector_summary.h"

#include <algorithm>

#include <fmt/format.h>

#include "evidence/job_keys.h"
#include "evidence/schema.h"
#include "text/numbers.h"

namespace quillon {

namespace {

std::optional<Quality> qualityOf(std::optional<std::int64_t> grade) {
    if (!grade || *grade < 0 || *grade >= static_cast<std::int64_t>(kGradeCount))
        return std::nullopt;
    return kGrades[static_cast<Grade>(*grade)].quality.value;
}

Result<void> addJudged(EvidenceReader& evidence, SectorSummary& summary) {
    auto totals = evidence.prepare("SELECT grade, sum(files) FROM by_extension GROUP BY grade");
    if (!totals)
        return failure(totals.error());
    while (true) {
        const auto more = totals->step();
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        const auto quality = qualityOf(totals->integerOrNone(0));
        if (quality == Quality::Recovered)
            summary.goodAndWhole += totals->integer(1);
        if (quality == Quality::Recovered || quality == Quality::Lost)
            summary.judged += totals->integer(1);
    }
}

// Of an evidence that counts them with its totals.
Result<void> addCountedSectors(EvidenceReader& evidence, SectorSummary& summary) {
    auto sums = evidence.prepare("SELECT reason, sum(files), sum(bytes) FROM by_reason GROUP BY reason");
    if (!sums)
        return failure(sums.error());
    while (true) {
        const auto more = sums->step();
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        const std::int64_t files = sums->integer(1);
        if (sums->integer(0) == kSectorsKnown)
            summary.known += files;
        if (sums->integer(0) == kHurt) {
            summary.hurt += files;
            summary.unreadBytes += sums->integer(2);
        }
        if (sums->integer(0) == kHurtRecovered)
            summary.goodAndWhole -= files;
    }
}

Result<void> addSectors(EvidenceReader& evidence, SectorSummary& summary) {
    const auto counted = evidence.jobNumber(job_keys::kSectorsCounted);
    if (!counted)
        return failure(counted.error());
    if (*counted)
        return addCountedSectors(evidence, summary);
    auto sectors = evidence.prepare(
        "SELECT grade, count(*), sum(bad_bytes > 0), sum(bad_bytes) FROM file WHERE bad_bytes IS NOT NULL "
        "GROUP BY grade");
    if (!sectors)
        return failure(sectors.error());
    while (true) {
        const auto more = sectors->step();
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        summary.known += sectors->integer(1);
        summary.hurt += sectors->integer(2);
        summary.unreadBytes += sectors->integer(3);
        if (qualityOf(sectors->integerOrNone(0)) == Quality::Recovered)
            summary.goodAndWhole -= sectors->integer(2);
    }
}

}  // namespace

// Without the key the files need not be asked one by one.
Result<std::optional<SectorSummary>> readSectorSummary(EvidenceReader& evidence) {
    const auto origin = evidence.jobText(job_keys::kSectors);
    if (!origin)
        return failure(origin.error());
    SectorSummary summary;
    if (*origin) {
        const auto read = addSectors(evidence, summary).and_then([&] { return addJudged(evidence, summary); });
        if (!read)
            return failure(read.error());
    }
    return summary.known > 0 ? std::optional(summary) : std::nullopt;
}

std::string unreadSectorsText(std::int64_t hurt, std::int64_t known, std::int64_t bytes) {
    return fmt::format("{} {} of {} {} unread sectors, {} in all", grouped(hurt), hurt == 1 ? "file" : "files",
                       grouped(known), hurt == 1 ? "holds" : "hold",
                       sizeText(static_cast<std::uint64_t>(std::max<std::int64_t>(0, bytes))));
}

std::string summaryText(const SectorSummary& summary) {
    std::string text = unreadSectorsText(summary.hurt, summary.known, summary.unreadBytes);
    if (summary.judged > 0) {
        const double share = static_cast<double>(summary.goodAndWhole) / static_cast<double>(summary.judged);
        text += "\nGood and whole as far as known: " + percent(share);
    }
    return text;
}

}  // namespace quillon
