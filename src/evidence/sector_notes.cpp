// SPDX-License-Identifier: MIT
#include "evidence/sector_notes.h"

#include <fmt/format.h>

#include "evidence/job_keys.h"
#include "evidence/schema.h"
#include "evidence/totals.h"

namespace quillon {

Result<SectorNotes> SectorNotes::open(const NativePath& evidence) {
    if (auto checked = checkEvidenceFile(evidence); !checked)
        return failure(checked.error());
    auto database = Database::open(evidence, Access::Writing);
    if (!database)
        return failure(database.error());
    if (auto checked = checkSchema(*database); !checked)
        return failure(checked.error());
    auto update = database->prepare("UPDATE file SET bad_bytes = ?2, bad_ranges = ?3 WHERE id = ?1");
    auto job = database->prepare("INSERT OR REPLACE INTO job VALUES (?, ?)");
    if (!update || !job)
        return failure(update ? job.error() : update.error());
    SectorNotes notes(std::move(*database));
    notes.update_ = std::move(*update);
    notes.job_ = std::move(*job);
    return notes;
}

Result<void> SectorNotes::begin() {
    if (begun_)
        return {};
    auto begun = database_.run("BEGIN IMMEDIATE");
    begun_ = begun.has_value();
    return begun;
}

// Thousands of files may change between two commits, by a scan that may be killed behind any of them.
Result<void> SectorNotes::beginChange() {
    auto begun = begin();
    if (!begun || !counted_)
        return begun;
    auto told = database_.run(fmt::format("DELETE FROM job WHERE key = '{}'", job_keys::kSectorsCounted));
    counted_ = !told;
    return told;
}

Result<void> SectorNotes::setAllWhole() {
    return beginChange().and_then([this] { return database_.run("UPDATE file SET bad_bytes = 0, bad_ranges = NULL"); });
}

Result<void> SectorNotes::forgetAll() {
    return beginChange().and_then([this] {
        return database_.run("UPDATE file SET bad_bytes = NULL, bad_ranges = NULL WHERE bad_bytes IS NOT NULL");
    });
}

Result<void> SectorNotes::write(std::int64_t id, std::optional<std::int64_t> bytes, std::optional<std::string> ranges) {
    return beginChange().and_then([&] { return update_.bind(id, bytes, ranges).run(); });
}

Result<void> SectorNotes::setUnread(std::int64_t id, const ByteRanges& unread) {
    if (unread.empty())
        return write(id, 0, std::nullopt);
    return write(id, static_cast<std::int64_t>(bytesIn(unread)), rangesText(unread, kMostRangesKept));
}

Result<void> SectorNotes::setUnknown(std::int64_t id) {
    return write(id, std::nullopt, std::nullopt);
}

Result<void> SectorNotes::setOrigin(const char* origin) {
    auto set = begin().and_then([&] { return job_.bind(job_keys::kSectors, origin).run(); }).and_then([&] {
        return recountSectors(database_);
    });
    counted_ = counted_ || set;
    return set;
}

Result<void> SectorNotes::commit() {
    if (!begun_)
        return {};
    auto committed = database_.run("COMMIT");
    begun_ = !committed;
    return committed;
}

}  // namespace quillon
