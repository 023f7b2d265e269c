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

Result<HeadBlocks> HeadBlocks::prepare(Database& database) {
    auto block = database.prepare("SELECT digest, heads FROM head_block WHERE id = ?");
    if (!block)
        return failure(block.error());
    auto row = database.prepare(std::string(kSelectRow) + "WHERE f.id = ?");
    if (!row)
        return failure(row.error());
    return HeadBlocks(std::move(*block), std::move(*row));
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
    for (std::size_t place = 0; place < checked.block.places.size(); ++place) {
        const auto row = row_.bind(checked.block.places[place].file).step();
        if (!row)
            return failure(row.error());
        if (*row)
            readRow(row_, found_);
        const std::int64_t head = id * kHeadsInBlock + static_cast<std::int64_t>(place);
        checked.rowDigests.push_back(*row && found_.head == head ? rowDigest(found_) : 0);
    }
    row_.reset();
    checked.whole = digest == blockDigest(checked.frameDigest, checked.rowDigests);
    return {};
}

}  // namespace quillon
