// SPDX-License-Identifier: MIT
#include "evidence/totals.h"

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

Result<void> Totals::count(const EvidenceRow& row, std::int64_t sign) {
    auto found = changes_.find(row.extension);
    if (found == changes_.end())
        found = changes_.emplace(row.extension, OfExtension()).first;
    const auto change = [&](Sums& sums, std::int64_t number) {
        Sum& sum = sums[number];
        sum.files += sign;
        sum.bytes += sign * row.size;
    };
    change(found->second.grades, row.grade ? static_cast<std::int64_t>(*row.grade) : kNotTested);
    if (row.reason)
        change(found->second.reasons, static_cast<std::int64_t>(*row.reason));
    if (row.grade == Grade::Good && !row.doubt.empty())
        change(found->second.reasons, kDoubtful);
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

}  // namespace quillon
