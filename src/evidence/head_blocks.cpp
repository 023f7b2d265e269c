// SPDX-License-Identifier: MIT
#include "evidence/head_blocks.h"

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

// Rows of the places from `first` to before `end`, whose files come in the order of their ids. A row that has another
// head, or is gone, keeps the digest 0.
Result<void> HeadBlocks::digestRows(std::int64_t id, std::size_t first, std::size_t end, CheckedBlock& checked) {
    const auto& places = checked.block.places;
    row_.bind(places[first].file, places[end - 1].file);
    auto more = row_.step();
    for (std::size_t place = first; more && *more; more = row_.step()) {
        readRow(row_, found_);
        while (place < end && places[place].file < found_.id) ++place;
        const std::int64_t head = id * kHeadsInBlock + static_cast<std::int64_t>(place);
        if (place < end && places[place].file == found_.id && found_.head == head)
            checked.rowDigests[place] = rowDigest(found_);
    }
    row_.reset();
    return more ? Result<void>() : failure(more.error());
}

Result<void> HeadBlocks::read(std::int64_t id, CheckedBlock& checked) {
    checked = {};
    const auto found = block_.bind(id).step();
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
        const std::size_t end = endOfRun(checked.block.places, place);
        if (auto digested = digestRows(id, place, end, checked); !digested)
            return digested;
        place = end;
    }
    checked.whole = digest == blockDigest(checked.frameDigest, checked.rowDigests);
    return {};
}

}  // namespace quillon
