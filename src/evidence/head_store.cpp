// SPDX-License-Identifier: MIT
#include "evidence/head_store.h"

#include "evidence/row_columns.h"

namespace quillon {

Result<HeadStore> HeadStore::prepare(Database& database, bool leftOut) {
    auto blocks = HeadBlocks::prepare(database);
    if (!blocks)
        return failure(blocks.error());
    auto insert = database.prepare("INSERT OR REPLACE INTO head_block VALUES (?, ?, ?)");
    if (!insert)
        return failure(insert.error());
    auto update = database.prepare("UPDATE head_block SET digest = ? WHERE id = ?");
    if (!update)
        return failure(update.error());
    // A row may name a block that a killed job did not come to write.
    auto last = database.prepare(
        "SELECT max(coalesce((SELECT max(id) FROM head_block), 0), coalesce((SELECT max(head) FROM file) / ?, 0))");
    if (!last)
        return failure(last.error());
    const auto found = last->bind(kHeadsInBlock).step();
    if (!found)
        return failure(found.error());
    HeadStore store(std::move(*blocks), std::move(*insert), std::move(*update));
    store.openId_ = last->integer(0) + 1;
    store.open_.leftOut = leftOut;
    return store;
}

std::int64_t HeadStore::nextHead() const {
    return openId_ * kHeadsInBlock + static_cast<std::int64_t>(open_.places.size());
}

Result<void> HeadStore::add(const EvidenceRow& row, const FileHead& head) {
    open_.places.push_back({row.id, head});
    openDigests_.push_back(rowDigest(row));
    openChanged_ = true;
    if (open_.places.size() < static_cast<std::size_t>(kHeadsInBlock))
        return {};
    auto written = writeOpenBlock();
    ++openId_;
    open_.places.clear();
    openDigests_.clear();
    return written;
}

Result<void> HeadStore::beforeChange(std::int64_t head) {
    const std::int64_t id = blockOf(head);
    if (id == openId_ || changed_.contains(id))
        return {};
    CheckedBlock checked;
    if (auto read = blocks_.read(id, {}, checked); !read)
        return read;
    changed_[id] = {checked.frameDigest, std::move(checked.rowDigests), checked.whole};
    return {};
}

void HeadStore::afterChange(std::int64_t head, std::int64_t digest) {
    const bool open = blockOf(head) == openId_;
    auto& digests = open ? openDigests_ : changed_[blockOf(head)].rowDigests;
    if (placeOf(head) < digests.size())
        digests[placeOf(head)] = digest;
    openChanged_ = openChanged_ || open;
}

Result<void> HeadStore::writeOpenBlock() {
    if (!openChanged_)
        return {};
    const auto frame = frames_.pack(open_);
    if (!frame)
        return failure(frame.error());
    openChanged_ = false;
    return insert_.bind(openId_, blockDigest(frameDigest(*frame), openDigests_), Blob{*frame}).run();
}

Result<void> HeadStore::write() {
    if (auto written = writeOpenBlock(); !written)
        return written;
    for (const auto& [id, block] : changed_) {
        if (!block.whole)
            continue;
        if (auto written = update_.bind(blockDigest(block.frameDigest, block.rowDigests), id).run(); !written)
            return written;
    }
    changed_.clear();
    return {};
}

}  // namespace quillon
