// SPDX-License-Identifier: MIT
#include "job/rows_ahead.h"

#include <algorithm>
#include <utility>

#include "text/list_text.h"

namespace quillon {

namespace {

// So many heads in a row that came in line at once make the source a quick one.
constexpr unsigned kQuickRows = 64;

}  // namespace

RowsAhead::RowsAhead(ListReader& list, FileGrader& grader, EventLoop& loop, KnownFiles& known)
    : list_(list), grader_(grader), loop_(loop), known_(known), wait_(grader.context()) {
    const JobState& state = grader.context().state;
    const StandingStill standingStill = loop.mayStandStill() ? StandingStill::Allowed : StandingStill::Never;
    if (state.options.threads > 1)
        batches_.emplace(standingStill, static_cast<std::size_t>(state.options.threads), state.care);
}

ListRow* RowsAhead::next() {
    leaveRow();
    wait_.tellCare();
    lookAhead();
    if (rows_.count() == 0)
        return nullptr;
    inWork_ = true;
    AheadRow& first = rows_.first();
    loop_.workingOn(first.row.nativePath());
    return headComes(first) ? &first.row : nullptr;
}

// False: a command was told to stop.
bool RowsAhead::headComes(AheadRow& row) {
    if (row.head == Head::InBatch && !batchComes(row))
        return false;
    if (row.head == Head::Later)
        ask(row);
    if (row.head != Head::Asked)
        return true;
    const Came came = waitFor(row, [this](auto limit) { return grader_.heads().firstArrives(limit); });
    if (came == Came::GivenUp)
        giveUp(row);
    return came != Came::Stopped;
}

// As above. The heads of a batch that hangs are asked for one by one, and so are those that a batch has left out.
bool RowsAhead::batchComes(AheadRow& row) {
    if (!batchAtHand_) {
        const Came came = waitFor(row, [this](auto limit) { return batches_->firstArrives(limit); });
        batchAtHand_ = came == Came::Yes;
        if (came == Came::Stopped)
            return false;
    }
    if (!batchAtHand_)
        leaveBatches();
    else if (!batches_->first(row.place).answered)
        row.head = Head::Later;
    return true;
}

template <typename Arrives>
RowsAhead::Came RowsAhead::waitFor(const AheadRow& row, Arrives arrives) {
    bool stopped = false;
    const auto ends = [this, &stopped] {
        stopped = loop_.stopAsked();
        return stopped || isLongEnough();
    };
    if (wait_.until(row.row.nativePath(), arrives, ends))
        return Came::Yes;
    return stopped ? Came::Stopped : Came::GivenUp;
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
    row.head = Head::GivenUp;
    patience_ = std::chrono::seconds(1);
}

void RowsAhead::leaveRow() {
    if (!inWork_)
        return;
    const AheadRow& row = rows_.first();
    if (row.head == Head::Asked)
        grader_.heads().dropFirst();
    if (row.endsBatch) {
        batchAtHand_ ? batches_->dropFirst() : batches_->giveUpFirst();
        batchAtHand_ = false;
    }
    rows_.dropFirst();
    decided_ -= decided_ > 0 ? 1 : 0;
    inWork_ = false;
}

void RowsAhead::lookAhead() {
    if (batches_)
        chooseBatches();
    inBatches_ ? askForBatches() : askForHeads();
}

void RowsAhead::chooseBatches() {
    const bool quick = grader_.heads().worthAsking() == 1 && !grader_.context().state.care->oneAtATime();
    quickRows_ = quick ? quickRows_ + 1 : 0;
    if (inBatches_ && (!quick || batches_->sawSlow()))
        leaveBatches();
    else if (!inBatches_ && quickRows_ > kQuickRows && rows_.count() == 0)
        inBatches_ = true;
}

// What was asked for in batches and has not come is asked for one by one, in the order of the rows.
void RowsAhead::leaveBatches() {
    const std::size_t known = batchAtHand_ ? 1 : 0;
    for (std::size_t i = 0, batch = 0; i < rows_.count(); ++i) {
        AheadRow& row = rows_[i];
        if (row.head == Head::InBatch && (batch >= known || !batches_->first(row.place).answered))
            row.head = Head::Later;
        const bool ends = std::exchange(row.endsBatch, row.endsBatch && batch < known);
        batch += ends ? 1 : 0;
    }
    while (batches_->asked() > known) batches_->giveUpLast();
    batches_->forgetSlow();
    inBatches_ = false;
    quickRows_ = 0;
    decided_ = 0;
}

void RowsAhead::askForHeads() {
    while (decided_ < grader_.heads().worthAsking()) {
        if (decided_ == rows_.count() && !readRow())
            return;
        AheadRow& row = rows_[decided_++];
        if (row.head == Head::Later)
            ask(row);
    }
}

// Adds a row whose head is yet to be asked for. False at the end of the list.
bool RowsAhead::readRow() {
    AheadRow& ahead = rows_.add();
    listEnded_ = !list_.next(ahead.row);
    if (listEnded_) {
        rows_.dropLast();
        return false;
    }
    ahead.endsBatch = false;
    ahead.head = wantsHead(ahead) ? Head::Later : Head::NotNeeded;
    return true;
}

// A file that will not be opened is not asked for: whether it may be is the test's own rule. Should the test come to
// another answer when the row's turn comes, the head is read then, or was read in vain.
bool RowsAhead::wantsHead(AheadRow& row) {
    const bool opens = grader_.mayOpen(row.row);
    row.known = known_.find(row.row, opens);
    return opens && row.known.isEmpty();
}

void RowsAhead::ask(AheadRow& row) {
    row.head = Head::Asked;
    loop_.workingOn(row.row.nativePath());
    grader_.heads().ask(row.row.nativePath());
}

// Some at once, since to wake a thread for each would cost more than it does.
void RowsAhead::askForBatches() {
    if (rows_.count() > kMostRows / 2)
        return;
    while (!listEnded_ && rows_.count() + HeadBatches::kHeads <= kMostRows && batches_->asked() < HeadBatches::kBatches)
        askForBatch();
}

void RowsAhead::askForBatch() {
    batches_->begin();
    std::size_t rows = 0;
    for (; rows < HeadBatches::kHeads && readRow(); ++rows) {
        AheadRow& row = rows_.last();
        if (row.head == Head::NotNeeded)
            continue;
        row.head = Head::InBatch;
        row.place = batches_->add(row.row.nativePath());
    }
    if (rows > 0)
        rows_.last().endsBatch = true;
    batches_->ask();
}

// A head that was given up is one that cannot be read.
Result<std::size_t> RowsAhead::readHead(std::string_view nativePath, HeaderBytes& head) {
    const AheadRow& row = rows_.first();
    if (row.known.head) {
        head = row.known.head->bytes;
        return std::size_t{row.known.head->length};
    }
    if (row.head == Head::Asked)
        return grader_.heads().readFirst(head);
    if (row.head == Head::NotNeeded || row.head == Head::Later)
        return grader_.heads().readHead(nativePath, head);
    head.fill(' ');
    if (row.head == Head::GivenUp)
        return 0;
    const HeadBatches::Head& read = batches_->first(row.place);
    head = read.bytes;
    return read.result;
}

const KnownVerdict* RowsAhead::knownVerdict() {
    const auto& verdict = rows_.first().known.verdict;
    return verdict ? &*verdict : nullptr;
}

}  // namespace quillon
