// SPDX-License-Identifier: MIT
#pragma once

// Writes blocks of heads, and keeps their digests true to the rows. For the sources of this folder only.

#include <map>

#include "evidence/head_blocks.h"

namespace quillon {

class HeadStore {
public:
    /// `leftOut`: the bytes of new heads are not kept.
    [[nodiscard]] static Result<HeadStore> prepare(Database& database, bool leftOut);

    /// The next head's place, for a row that will be written with it.
    [[nodiscard]] std::int64_t nextHead() const;
    /// Adds the head of this row, which has `nextHead` as its own.
    [[nodiscard]] Result<void> add(const EvidenceRow& row, const FileHead& head);

    /// Before a row with this head is changed or removed: its block is compared with its digest. One that does not
    /// agree stays so.
    [[nodiscard]] Result<void> beforeChange(std::int64_t head);
    /// Behind it; `digest` is that of the row now, or 0 when the head is no longer its own.
    void afterChange(std::int64_t head, std::int64_t digest);

    /// Writes the block in work and the digests that changed. Within a transaction.
    [[nodiscard]] Result<void> write();

private:
    // A block in the file, of which a row has changed.
    struct Changed {
        std::int64_t frameDigest = 0;
        std::vector<std::int64_t> rowDigests;
        bool whole = false;
    };

    HeadStore(HeadBlocks blocks, Statement insert, Statement update)
        : blocks_(std::move(blocks)), insert_(std::move(insert)), update_(std::move(update)) {}
    [[nodiscard]] Result<void> writeOpenBlock();

    HeadBlocks blocks_;
    Statement insert_;
    Statement update_;
    HeadFrames frames_;

    std::int64_t openId_ = 0;
    HeadBlock open_;
    std::vector<std::int64_t> openDigests_;
    bool openChanged_ = false;
    std::map<std::int64_t, Changed> changed_;
};

}  // namespace quillon
