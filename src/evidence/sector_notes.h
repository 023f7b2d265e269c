// SPDX-License-Identifier: MIT
#pragma once

// Writes into the evidence of a job which bytes of its files the medium did not give. Nothing else of it changes. What
// is written stands in the file behind `commit`. For one thread at a time.

#include <cstdint>
#include <optional>

#include "evidence/database.h"
#include "text/byte_ranges.h"

namespace quillon {

/// So many ranges of a file are kept.
inline constexpr std::size_t kMostRangesKept = 1000;

class SectorNotes {
public:
    /// Opens what is there; fails as the reader of the evidence does.
    [[nodiscard]] static Result<SectorNotes> open(const NativePath& evidence);

    /// Every file counts as given whole.
    [[nodiscard]] Result<void> setAllWhole();
    /// Nothing is known of any file.
    [[nodiscard]] Result<void> forgetAll();
    /// These bytes of the file with this id were not given.
    [[nodiscard]] Result<void> setUnread(std::int64_t id, const ByteRanges& unread);
    /// It is not known of the file whether all its bytes were given.
    [[nodiscard]] Result<void> setUnknown(std::int64_t id);
    /// How all this came to be known, for the job: the value of job_keys::kSectors. Behind all that was noted: totals
    /// are counted here, and until then the evidence says that they are not.
    [[nodiscard]] Result<void> setOrigin(const char* origin);

    [[nodiscard]] Result<void> commit();

private:
    explicit SectorNotes(Database database) : database_(std::move(database)) {}
    [[nodiscard]] Result<void> begin();
    [[nodiscard]] Result<void> beginChange();
    [[nodiscard]] Result<void> write(std::int64_t id, std::optional<std::int64_t> bytes,
                                     std::optional<std::string> ranges);

    Database database_;
    Statement update_;
    Statement job_;
    bool begun_ = false;
    bool counted_ = true;
};

}  // namespace quillon
