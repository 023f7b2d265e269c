// SPDX-License-Identifier: MIT
#include "job/rows_ahead.h"

#include "text/list_text.h"

namespace quillon {

ListRow* RowsAhead::next() {
    leaveRow();
    wait_.tellCare();
    lookAhead();
    if (rows_.count() == 0)
        return nullptr;
    inWork_ = true;
    AheadRow& first = rows_.first();
    loop_.workingOn(first.row.nativePath());
    if (first.asked && !headComes(first))
        return nullptr;
    return &first.row;
}

// False: a command was told to stop.
bool RowsAhead::headComes(AheadRow& row) {
    bool stopped = false;
    const auto arrives = [this](std::chrono::milliseconds limit) { return grader_.heads().firstArrives(limit); };
    const auto ends = [this, &stopped] {
        stopped = loop_.stopAsked();
        return stopped || isLongEnough();
    };
    if (wait_.until(row.row.nativePath(), arrives, ends))
        return true;
    if (!stopped)
        giveUp(row);
    return !stopped;
}

bool RowsAhead::isLongEnough() {
    const JobState& state = grader_.context().state;
    if (state.options.hangLimit && wait_.waited() >= *state.options.hangLimit)
        return true;
    return state.stopRequested && wait_.waited() >= patience_;
}

// The source hangs: the next one that does so is given up sooner by a person who has pressed Stop.
void RowsAhead::giveUp(AheadRow& row) {
    const std::string& path = row.row.nativePath();
    grader_.context().logAbout(path, "No answer, given up : " + readable(path), kLightRed);
    grader_.heads().giveUpFirst();
    row.givenUp = true;
    patience_ = std::chrono::seconds(1);
}

void RowsAhead::leaveRow() {
    if (!inWork_)
        return;
    if (rows_.first().asked && !rows_.first().givenUp)
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
    ahead.givenUp = false;
    const bool opens = grader_.mayOpen(ahead.row);
    ahead.known = known_.find(ahead.row, opens);
    ahead.asked = opens && ahead.known.isEmpty();
    if (!ahead.asked)
        return;
    loop_.workingOn(ahead.row.nativePath());
    grader_.heads().ask(ahead.row.nativePath());
}

// A head that was given up is one that cannot be read.
Result<std::size_t> RowsAhead::readHead(std::string_view nativePath, HeaderBytes& head) {
    const AheadRow& first = rows_.first();
    if (first.known.head) {
        head = first.known.head->bytes;
        return std::size_t{first.known.head->length};
    }
    if (first.givenUp) {
        head.fill(' ');
        return 0;
    }
    return first.asked ? grader_.heads().readFirst(head) : grader_.heads().readHead(nativePath, head);
}

const KnownVerdict* RowsAhead::knownVerdict() {
    const auto& verdict = rows_.first().known.verdict;
    return verdict ? &*verdict : nullptr;
}

}  // namespace quillon
