// SPDX-License-Identifier: MIT
#include "job/rows_ahead.h"

namespace quillon {

namespace {

// Between two turns of the event loop while a source keeps the next row waiting.
constexpr std::chrono::milliseconds kWait{10};

}  // namespace

ListRow* RowsAhead::next() {
    leaveRow();
    lookAhead();
    if (rows_.count() == 0)
        return nullptr;
    inWork_ = true;
    while (rows_.first().asked && !job_.heads().firstArrives(kWait)) job_.turn();
    return &rows_.first().row;
}

void RowsAhead::leaveRow() {
    if (!inWork_)
        return;
    if (rows_.first().asked)
        job_.heads().dropFirst();
    rows_.dropFirst();
    inWork_ = false;
}

void RowsAhead::lookAhead() {
    while (rows_.count() < job_.heads().worthAsking()) {
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
    ahead.asked = job_.mayOpen(ahead.row);
    if (ahead.asked)
        job_.heads().ask(ahead.row.nativePath());
}

Result<void> RowsAhead::readHead(std::string_view nativePath, HeaderBytes& head) {
    return rows_.first().asked ? job_.heads().readFirst(head) : job_.heads().readHead(nativePath, head);
}

}  // namespace quillon
