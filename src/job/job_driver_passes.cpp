// SPDX-License-Identifier: MIT
// The passes of a job behind the walk, in their order: testing, copying, file ends.
#include <algorithm>

#include <fmt/format.h>

#include "app/kept_files.h"
#include "job/copy_pass.h"
#include "job/ends_pass.h"
#include "job/job_board.h"
#include "job/job_driver.h"
#include "job/self_check.h"
#include "job/testing_pass.h"
#include "testing/marker_watch.h"
#include "text/numbers.h"

namespace quillon {

void JobDriver::testFiles() {
    JobState& state = context_.state;
    if (!state.options.checkFileQuality)
        return;
    runTimed(times_.testing, "Start file quality testing ", "File testing completed in (HH:MM:SS) : ", [this, &state] {
        enterPhase(state, JobPhase::Testing);
        state.startTick = context_.surroundings.clock.milliseconds();
        if (state.counters.files > 0)
            state.progress.maximum = state.counters.files;
        // The end of the job before this one has hidden them.
        if (state.options.showProgress)
            state.progress.shown = state.fileLineShown = true;
        if (const auto list = job_.lists().finalPath())
            context_.evidence.listComes(*list);
        TestingPass pass(context_, job_.lists(), job_.grader(), alerts_);
        try {
            pass.run(ListEncoding::Utf16);
        } catch (...) {
            listMade_ = pass.madeList();
            throw;
        }
        listMade_ = pass.madeList();
        if (pass.wasStopped())
            cause_ = EndCause::StoppedInTesting;
        if (pass.listError())
            detail_ = pass.listError()->text;
    });
}

// Without testing the raw list is the final one.
void JobDriver::copyRawList() {
    if (context_.state.options.checkFileQuality)
        return;
    const auto copied = job_.lists().copyRawToFinal(listEnd(context_.state.counters), context_.surroundings.loop);
    listMade_ = copied.has_value();
    if (listMade_)
        context_.state.passes.list = {context_.state.passes.raw.written, 0};
    if (const auto list = job_.lists().finalPath(); copied && list) {
        context_.evidence.listCreated(*list);
        context_.evidence.listedOnly(job_.lists().rawPath());
    }
    if (!copied && stopAsked())
        cause_ = EndCause::StoppedInTesting;
    else if (!copied)
        detail_ = copied.error().text;
    if (!copied && copied.error().kind == ErrorKind::PermissionDenied) {
        tellPermissionDenied();
        context_.state.stopRequested = true;
    }
    context_.log("File list process complete");
}

void JobDriver::copyFiles() {
    JobState& state = context_.state;
    if (!state.options.copy)
        return;
    if (stopAsked()) {
        if (cause_ == EndCause::Complete && listMade_)
            cause_ = EndCause::StoppedInCopying;
        return;
    }
    enterPhase(state, JobPhase::Copying);
    state.progress.shown = state.fileLineShown = true;
    runTimed(times_.copying, "Started copying Files", "File copying completed in (HH:MM:SS) : ", [this] {
        const auto encoding = listMade_ ? std::optional(ListEncoding::Utf16) : std::nullopt;
        CopyPass(context_, job_.lists(), job_.messages, encoding, markerWatch(job_.installation().paths())).run();
    });
    state.progress.shown = state.fileLineShown = false;
    if (state.stopRequested && cause_ == EndCause::Complete && listMade_)
        cause_ = EndCause::StoppedInCopying;
    const bool whole = cause_ == EndCause::Complete && state.counters.notCopied == 0;
    state.passes.copying = whole ? PassEnd::Whole : PassEnd::Short;
}

// A job without a list says so itself.
void JobDriver::checkFigures() {
    if (!listMade_)
        return;
    context_.state.gaps = gapsOf(context_.state.passes, context_.state.counters);
    for (const auto& gap : context_.state.gaps) context_.log("The figures of the job do not agree : " + gap, kLightRed);
}

// Behind all passes, as it goes by what they left in the evidence.
void JobDriver::lookAtEnds() {
    JobState& state = context_.state;
    const auto list = job_.lists().finalPath();
    if (!looksAtEnds(state.options) || cause_ != EndCause::Complete || !list)
        return;
    if (state.counters.lostEvidence > 0)
        return context_.log("File ends are not looked at, as the evidence is lost", kLightOrange);
    enterPhase(state, JobPhase::Ends);
    state.progress.shown = state.options.showProgress;
    state.progress.maximum = std::max(state.counters.files, 1);
    runTimed(times_.ends, "Start looking at file ends ", "File ends completed in (HH:MM:SS) : ", [this, &state, &list] {
        const auto figures = EndsPass(context_).run(evidenceBeside(*list));
        if (!figures)
            return context_.log("File ends could not be looked at : " + figures.error().text, kLightRed);
        state.ends = *figures;
        context_.log(fmt::format("File ends read : {}, doubtful : {}, not readable : {}, known : {}",
                                 grouped(figures->read), grouped(figures->doubted), grouped(figures->unread),
                                 grouped(figures->known)));
    });
    if (state.stopRequested)
        cause_ = EndCause::StoppedInEnds;
}

}  // namespace quillon
