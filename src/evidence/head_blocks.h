// SPDX-License-Identifier: MIT
#pragma once

// Blocks of heads as they come out of the database, each compared with its digest. For the sources of this folder only.

#include <span>

#include "evidence/database.h"
#include "evidence/head_frame.h"

namespace quillon {

/// A block and what its digest is made of.
struct CheckedBlock {
    HeadBlock block;
    std::int64_t frameDigest = 0;
    std::vector<std::int64_t> rowDigests;  ///< of the row at each place; 0 where the row has another head, or is gone
    bool whole = false;                    ///< the digest agrees: what is here is what was written
};

/// The digest that is kept with a block.
[[nodiscard]] std::int64_t blockDigest(std::int64_t frameDigest, const std::vector<std::int64_t>& rowDigests);

[[nodiscard]] std::int64_t frameDigest(std::string_view frame);

[[nodiscard]] constexpr std::int64_t blockOf(std::int64_t head) {
    return head / kHeadsInBlock;
}
[[nodiscard]] constexpr std::size_t placeOf(std::int64_t head) {
    return static_cast<std::size_t>(head % kHeadsInBlock);
}

class HeadBlocks {
public:
    [[nodiscard]] static Result<HeadBlocks> prepare(Database& database);

    /// Reads a block; one that is not there, or is no block, is not whole and has no places. `rows`: some that were
    /// read already, all there are from the first of them to the last, in the order of their ids; the others are read.
    [[nodiscard]] Result<void> read(std::int64_t id, std::span<const EvidenceRow> rows, CheckedBlock& checked);

private:
    HeadBlocks(Statement block, Statement row) : block_(std::move(block)), row_(std::move(row)) {}
    struct Run {
        std::int64_t block = 0;
        std::size_t first = 0;  // place
        std::size_t end = 0;    // the one behind
    };
    [[nodiscard]] Result<void> digestRows(const Run& run, CheckedBlock& checked);
    static void digestKnown(const Run& run, std::span<const EvidenceRow> rows, CheckedBlock& checked);

    Statement block_;
    Statement row_;
    HeadFrames frames_;
    EvidenceRow found_;
};

}  // namespace quillon
