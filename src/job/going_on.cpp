// SPDX-License-Identifier: MIT
#include "job/going_on.h"

#include <algorithm>

#include "app/kept_files.h"
#include "evidence/rules_digest.h"
#include "job/earlier_runs.h"
#include "platform/folders.h"
#include "text/numbers.h"
#include "text/unicode.h"

namespace quillon {

void GoingOn::log(std::string text, std::optional<std::uint32_t> colour) {
    state_.log.add({surroundings_.clock.now(), std::move(text), colour});
}

void GoingOn::reset() {
    list_.clear();
    run_.reset();
    samePlace_ = created_ = false;
    files_ = found_ = 0;
}

void GoingOn::listComes(const NativePath& list) {
    if (!state_.options.resume)
        return;
    list_ = list;
    state_.resumed.emplace();
    KeptFiles kept(installation_, surroundings_.clock);
    const auto ready =
        bringTogether(list, kept, surroundings_.loop).and_then([&] { return setAside(list, surroundings_.loop); });
    if (!ready)
        log("There is no earlier run to go on with : " + ready.error().text, kLightOrange);
}

void GoingOn::listCreated(const NativePath& list) {
    const NativePath earlier = earlierEvidenceBeside(list);
    created_ = true;
    if (!pathExists(earlier))
        return;
    if (!state_.resumed)
        return passOver(removeFile(earlier), "the evidence of that run lies under Kept");
    auto run = EarlierRun::open(earlier);
    if (!run)
        return log("There is no earlier run to go on with : " + run.error().text, kLightOrange);
    now_ = placeNow(state_.options.source.value_or(NativePath()));
    samePlace_ = run->facts().isOfSamePlace(now_);
    if (!samePlace_)
        log("The earlier run was of another source or file system : all files are read", kLightOrange);
    if (run->facts().headsLeftOut)
        now_.rules = rulesDigest(installation_.paths(), messages_);
    files_ = run->files();
    state_.resumed->from = run->facts().end;
    describer_.emplace(now_.source);
    run_ = std::move(*run);
    log("Going on with an earlier run, which knows " + grouped(files_) + " files");
}

KnownFile GoingOn::find(const ListRow& row, std::optional<std::int64_t> modified, bool opens) {
    ResumeFigures& figures = *state_.resumed;
    describer_->describe(row, listed_);
    const auto found = run_->find(describer_->below(row.nativePath()), row_);
    if (found && !*found) {
        ++figures.added;
        return {};
    }
    ++found_;
    if (found && (row_.size != listed_.size || !modified || row_.modified != modified)) {
        ++figures.changed;
        return {};
    }
    KnownFile known = found && opens && samePlace_ ? takenOver() : KnownFile();
    ++(found && (!opens || !known.isEmpty()) ? figures.known : figures.again);
    return known;
}

KnownFile GoingOn::takenOver() {
    KnownFile known;
    const FileHead* const head = run_->headToTake(row_);
    if (head == nullptr)
        return known;
    known.tail = run_->tailToTake(row_);
    if (!run_->facts().headsLeftOut) {
        known.head = *head;
        return known;
    }
    now_.commonHeaders = state_.options.useCommonHeaders;
    if (!run_->facts().goesBySameRules(now_))
        return {};
    known.verdict.emplace();
    known.verdict->grade = *row_.grade;
    known.verdict->text = row_.result ? utf8ToUtf16(*row_.result) : messages_[*row_.grade];
    known.verdict->findings = {row_.reason, row_.detail, {}, {}};
    if (!isDoubtedByTail(row_) && !row_.doubt.empty()) {
        known.verdict->findings.doubt = row_.doubt;
        known.verdict->findings.doubtDetail = row_.doubtDetail;
    }
    return known;
}

void GoingOn::end(bool whole) {
    if (list_.empty())
        return;
    const NativePath earlier = earlierEvidenceBeside(list_);
    const bool all = created_ && state_.passes.rowsRead >= state_.counters.files;
    if (run_ && all)
        state_.resumed->gone = std::max<std::int64_t>(0, files_ - found_);
    if (run_)
        tellFigures();
    const bool done = created_ ? all && whole : pathExists(evidenceBeside(list_));
    reset();
    // Until here another run could go on with it.
    if (done && pathExists(earlier))
        passOver(removeFile(earlier), "the next run that goes on finds it of no more use");
}

void GoingOn::tellFigures() {
    const ResumeFigures& figures = *state_.resumed;
    log("Not read again : " + grouped(figures.known) + ", read again : " + grouped(figures.again) + ", changed : " +
        grouped(figures.changed) + ", new : " + grouped(figures.added) + ", gone : " + grouped(figures.gone));
}

}  // namespace quillon
