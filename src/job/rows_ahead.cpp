// SPDX-License-Identifier: MIT
#include "job/rows_ahead.h"

#include "app/turn_until.h"

namespace quillon {

ListRow* RowsAhead::next() {
    leaveRow();
    lookAhead();
    if (rows_.count() == 0)
        return nullptr;
    inWork_ = true;
    AheadRow& first = rows_.first();
    const auto arrives = [this](std::chrono::milliseconds pause) { return grader_.heads().firstArrives(pause); };
    loop_.workingOn(first.row.nativePath());
    if (first.asked && !arrives(kTurnInterval))
        turnUntil(loop_, arrives);
    return &first.row;
}

void RowsAhead::leaveRow() {
    if (!inWork_)
        return;
    if (rows_.first().asked)
        grader_.heads().dropFirst();
    rows_.dropFirst();
    inWork_ = false;
}

void RowsAhead::lookAhead() {
    while (rows_.count() < grader_.heads().worthAsking()) {
        AheadRow& ahead = rows_.add();
        if (!list_.next(ahead.row)) {
            rows_.dropLast();
            return;
        }
        askForHead(ahead);
    }
}

// A file that will not be opened is not asked for: whether it may be is the test's own rule. Should the test come to
// another answer when the row's turn comes, the head is read then, or was read in vain.
void RowsAhead::askForHead(AheadRow& ahead) {
    const bool opens = grader_.mayOpen(ahead.row);
    ahead.known = known_.find(ahead.row, opens);
    ahead.asked = opens && ahead.known.isEmpty();
    if (!ahead.asked)
        return;
    loop_.workingOn(ahead.row.nativePath());
    grader_.heads().ask(ahead.row.nativePath());
}

Result<std::size_t> RowsAhead::readHead(std::string_view nativePath, HeaderBytes& head) {
    const AheadRow& first = rows_.first();
    if (first.known.head) {
        head = first.known.head->bytes;
        return std::size_t{first.known.head->length};
    }
    return first.asked ? grader_.heads().readFirst(head) : grader_.heads().readHead(nativePath, head);
}

const KnownVerdict* RowsAhead::knownVerdict() {
    const auto& verdict = rows_.first().known.verdict;
    return verdict ? &*verdict : nullptr;
}

}  // namespace quillon
