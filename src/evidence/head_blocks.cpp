// SPDX-License-Identifier: MIT
#include "evidence/head_blocks.h"

#include <algorithm>

#include "evidence/digest.h"
#include "evidence/row_columns.h"

namespace quillon {

std::int64_t frameDigest(std::string_view frame) {
    Digest digest;
    digest.add(frame);
    return digest.value();
}

std::int64_t blockDigest(std::int64_t frameDigest, const std::vector<std::int64_t>& rowDigests) {
    Digest digest;
    digest.add(frameDigest);
    for (const auto row : rowDigests) digest.add(row);
    return digest.value();
}

namespace {

// Between two files of one block lie some that were not opened. Where many do, one question for each costs less.
constexpr std::int64_t kWidestGap = 16;

// The first place behind `first` whose file does not follow that of the place before.
std::size_t endOfRun(const std::vector<HeadBlock::Place>& places, std::size_t first) {
    std::size_t end = first + 1;
    while (end < places.size() && places[end].file > places[end - 1].file &&
           places[end].file - places[end - 1].file <= kWidestGap)
        ++end;
    return end;
}

}  // namespace

Result<HeadBlocks> HeadBlocks::prepare(Database& database) {
    auto block = database.prepare("SELECT digest, heads FROM head_block WHERE id = ?");
    if (!block)
        return failure(block.error());
    auto row = selectRow(database).and_then([&](const std::string& select) {
        return database.prepare(select + "WHERE f.id BETWEEN ? AND ? ORDER BY f.id");
    });
    if (!row)
        return failure(row.error());
    return HeadBlocks(std::move(*block), std::move(*row));
}

namespace {

// Compares a row with the places of its block from `place` on, which is that of the row behind it afterwards. A row
// that has another head, or is gone, keeps the digest 0.
void digestRow(std::int64_t block, std::size_t end, const EvidenceRow& row, std::size_t& place, CheckedBlock& checked) {
    const auto& places = checked.block.places;
    while (place < end && places[place].file < row.id) ++place;
    const std::int64_t head = block * kHeadsInBlock + static_cast<std::int64_t>(place);
    if (place < end && places[place].file == row.id && row.head == head)
        checked.rowDigests[place] = rowDigest(row);
}

bool holds(std::span<const EvidenceRow> rows, std::int64_t first, std::int64_t last) {
    return !rows.empty() && rows.front().id <= first && last <= rows.back().id;
}

}  // namespace

// The places of a run have files in the order of their ids.
Result<void> HeadBlocks::digestRows(const Run& run, CheckedBlock& checked) {
    const auto& places = checked.block.places;
    row_.bind(places[run.first].file, places[run.end - 1].file);
    auto more = row_.step();
    for (std::size_t place = run.first; more && *more; more = row_.step()) {
        readRow(row_, found_);
        digestRow(run.block, run.end, found_, place, checked);
    }
    row_.reset();
    return more ? Result<void>() : failure(more.error());
}

void HeadBlocks::digestKnown(const Run& run, std::span<const EvidenceRow> rows, CheckedBlock& checked) {
    const auto& places = checked.block.places;
    const std::int64_t last = places[run.end - 1].file;
    auto row = std::ranges::lower_bound(rows, places[run.first].file, {}, &EvidenceRow::id);
    for (std::size_t place = run.first; row != rows.end() && row->id <= last; ++row)
        digestRow(run.block, run.end, *row, place, checked);
}

Result<void> HeadBlocks::read(std::int64_t id, std::span<const EvidenceRow> rows, CheckedBlock& checked) {
    // The places keep their room: to clear it for each block takes longer than to fill it.
    checked.frameDigest = 0;
    checked.rowDigests.clear();
    checked.whole = false;
    const auto found = block_.bind(id).step();
    if (!found || !*found)
        checked.block = {};
    if (!found)
        return failure(found.error());
    if (!*found)
        return {};
    const std::int64_t digest = block_.integer(0);
    checked.frameDigest = frameDigest(block_.blob(1));
    const bool unpacked = frames_.unpack(block_.blob(1), checked.block);
    block_.reset();
    if (!unpacked) {
        checked.block = {};
        return {};
    }
    checked.rowDigests.assign(checked.block.places.size(), 0);
    for (std::size_t place = 0; place < checked.block.places.size();) {
        const auto& places = checked.block.places;
        const Run run{id, place, endOfRun(places, place)};
        if (holds(rows, places[run.first].file, places[run.end - 1].file))
            digestKnown(run, rows, checked);
        else if (auto digested = digestRows(run, checked); !digested)
            return digested;
        place = run.end;
    }
    checked.whole = digest == blockDigest(checked.frameDigest, checked.rowDigests);
    return {};
}

}  // namespace quillon
