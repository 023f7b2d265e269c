// SPDX-License-Identifier: MIT
#include "job/rows_ahead.h"

#include "app/turn_until.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

std::optional<std::u16string_view> RowsAhead::next() {
    leaveRow();
    lookAhead();
    if (count_ == 0)
        return std::nullopt;
    inWork_ = true;
    const Row& row = ring_[first_];
    const auto arrives = [this](std::chrono::milliseconds pause) { return job_.heads().firstArrives(pause); };
    if (row.asked && !arrives(kTurnInterval))
        turnUntil(job_.surroundings().loop, arrives);
    return row.line;
}

void RowsAhead::leaveRow() {
    if (!inWork_)
        return;
    if (ring_[first_].asked)
        job_.heads().dropFirst();
    first_ = (first_ + 1) % ring_.size();
    --count_;
    inWork_ = false;
}

void RowsAhead::lookAhead() {
    while (count_ < job_.heads().worthAsking()) {
        const auto line = reader_.next();
        if (!line)
            return;
        Row& row = ring_[(first_ + count_) % ring_.size()];
        ++count_;
        row.line = *line;
        askForHead(row);
    }
}

// A file that will not be opened is not asked for: whether it may be is the test's own rule. Should the test come to
// another answer when the row's turn comes, the head is read then, or was read in vain.
void RowsAhead::askForHead(Row& row) {
    splitInto(fields_, std::u16string_view(row.line), u',');
    row.asked = fields_.size() > 1 && job_.mayOpen(fields_, extensionInList(fields_[kPathColumn], extension_));
    if (!row.asked)
        return;
    toNative(fields_[kPathColumn], nativePath_);
    job_.heads().ask(nativePath_);
}

}  // namespace quillon
