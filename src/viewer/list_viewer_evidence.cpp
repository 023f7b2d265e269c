// SPDX-License-Identifier: MIT
// What the viewer does with the evidence beside its list: columns of our own, and grading anew from the kept heads.
#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "viewer/list_viewer.h"

namespace quillon {

namespace {

constexpr const char* kRegrade = "Regrade from kept heads";

// A person sees some dozens of rows at a time.
constexpr std::size_t kMostOwnCells = 4096;

// A text for each row would be most of the work.
constexpr std::int64_t kRowsBetweenTexts = 1024;

}  // namespace

// The list or its evidence may be others than before.
void ListViewer::lookAtEvidence() {
    ownCells_.clear();
    evidence_->open(listPath_);
    state.hasEvidence = evidence_->isThere();
    ++state.contents;
}

std::string ListViewer::ownCell(ViewRows::Id row, std::size_t column) {
    if (ownCells_.size() > kMostOwnCells)
        ownCells_.clear();
    const auto [place, isNew] = ownCells_.try_emplace(row);
    if (!isNew)
        return place->second[column];
    const EvidenceRow* const file = evidence_->find(state.rows.line(row), state.rows.path(row));
    for (std::size_t i = 0; file != nullptr && i < kOwnColumns.size(); ++i)
        place->second[i] = readable(std::string_view(kOwnColumns[i].text(*file)));
    return place->second[column];
}

// False: nothing is to be graded.
bool ListViewer::askRegradeScope(RegradeWish& wish) const {
    const std::u16string extension(state.extensions.chosenText());
    if (extension.empty())
        return true;
    const MessageBox question{kRegrade,
                              "Do you want to grade all rows of the list anew? No grades those with the extension " +
                                  readable(std::u16string_view(extension)) + " alone. The source is not read.",
                              BoxStyle::Question, BoxButtons::YesNoCancel};
    const BoxAnswer answer = job_.surroundings.dialogs.show(question);
    if (answer == BoxAnswer::No)
        wish.extension = extension;
    return answer == BoxAnswer::Yes || answer == BoxAnswer::No;
}

void ListViewer::followRegrade(RegradeWish& wish, RowLookup& lookup) {
    const std::u16string category(trimRight(std::u16string_view(filtered_)));
    wish.rowWritten = [this, &lookup, category, rows = std::int64_t{0}](const ListRow& row) mutable {
        if (rows++ % kRowsBetweenTexts == 0)
            state.status = "Graded again : " + grouped(rows);
        if (!row.isGraded() || trimRight(row[ListColumn::Result]).find(category) != std::u16string_view::npos)
            return;
        if (const ViewRows::Id* const shown = lookup.find(row[ListColumn::Path]))
            state.rows.remove(*shown);
    };
}

void ListViewer::regradeKept() {
    RegradeWish wish;
    if (!askRegradeScope(wish))
        return;
    goBusy();
    state.busyPointer = true;
    state.passRunning = true;
    host_.showState();
    RowLookup lookup(state.rows, {});
    followRegrade(wish, lookup);
    // It writes the evidence that is looked into here.
    evidence_->close();
    const RegradeResult result = Regrade(job_.job, std::move(wish)).run();
    state.passRunning = false;
    state.busyPointer = false;
    settleRows();
    lookAtEvidence();
    updateLabels();
    state.extensions.rebuild(state.rows);
    state.changed = true;
    goIdle();
    tellRegrade(result);
    host_.showState();
}

void ListViewer::tellRegrade(const RegradeResult& result) {
    Dialogs& dialogs = job_.surroundings.dialogs;
    if (result.end != RegradeEnd::Complete)
        return dialogs.warn(kRegrade, "The list stays as it was : " + result.detail);
    const RegradeCounts& counts = result.counts;
    state.status = "Graded again : " + grouped(counts.graded) + ", with another result : " + grouped(counts.changed) +
                   ", without a head : " + grouped(counts.kept);
    job_.context.log("Regrade from kept heads : " + state.status);
    if (counts.kept > 0)
        dialogs.tell(
            kRegrade,
            grouped(counts.kept) +
                " rows keep their result, as the evidence has no head of theirs to rely on. A retest reads them "
                "from the source.",
            BoxStyle::Information);
    host_.beep();
}

}  // namespace quillon
