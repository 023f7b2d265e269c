// SPDX-License-Identifier: MIT
#include "job/job_driver.h"

#include <algorithm>

#include <fmt/format.h>

#include "app/file_list.h"
#include "app/kept_files.h"
#include "job/completion_report.h"
#include "job/copy_pass.h"
#include "job/earlier_run.h"
#include "job/ends_pass.h"
#include "job/folder_walk.h"
#include "job/job_board.h"
#include "job/sector_scan_step.h"
#include "job/self_check.h"
#include "job/statistics.h"
#include "job/testing_pass.h"
#include "platform/folders.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

JobEnd JobDriver::run() {
    context_.state.outcome.reset();
    const JobEnd end = runSteps();
    context_.state.outcome = JobOutcome{cause_, listStands(), hasLosses(context_.state.counters)};
    const auto list = job_.lists().finalPath();
    if (context_.state.options.scanSectors && cause_ == EndCause::Complete && list)
        lookForBadSectors(context_, job_.installation(), *list);
    return end;
}

JobEnd JobDriver::runSteps() {
    begin();
    if (!context_.state.options.source)
        host_.pickSource();
    if (checkTarget() == Next::End)
        return endEarly();
    resetCounters(context_.state);
    moveLitterAway();
    // Kept: the stored field decides, not the check box, and it gates the skip list too (test
    // WithoutStoredCommonHeadersAJobNeitherRefreshesNorLoadsTheSkipList).
    if (job_.installation().settings.useCommonHeaders == 1 && refreshDatabases() == Next::End)
        return endEarly();
    if (!context_.state.options.showProgress)
        context_.state.progress.shown = false;
    if (stopAsked() || confirmOverwrite() == Next::End)
        return endEarly();
    context_.evidence.begin();
    testFolders();
    if (lockScreen() == Next::End || walkSource() == Next::End) {
        context_.evidence.end(wordOf(rowOf(cause_).end));
        return rowOf(cause_).end;
    }
    loadCommonHeaders(job_.installation(), context_, job_.commonList);
    testFiles();
    copyRawList();
    copyFiles();
    checkFigures();
    cause_ = causeBehindPasses();
    context_.evidence.end(wordOf(rowOf(cause_).end));
    lookAtEnds();
    finish();
    cause_ = causeBehindPasses();  // the report may have been given up
    return rowOf(cause_).end;
}

EndCause JobDriver::causeBehindPasses() const {
    if (cause_ != EndCause::Complete)
        return cause_;
    if (!listMade_)
        return EndCause::ListDenied;
    const bool unsent = alerts_ != nullptr && context_.state.report != ReportState::Acknowledged;
    return unsent && stopAsked() ? EndCause::StoppedInReport : EndCause::Complete;
}

bool JobDriver::listStands() const {
    const auto list = job_.lists().finalPath();
    return listMade_ && list && pathExists(*list);
}

void JobDriver::begin() {
    JobState& state = context_.state;
    times_ = {};
    step_.clear();
    askedToGoOn_.clear();
    cause_ = EndCause::Complete;
    detail_.clear();
    listMade_ = false;
    state.passes = {};
    state.resumed.reset();
    state.ends.reset();
    state.pace.begin();
    state.gaps.clear();
    state.report = ReportState::NotSent;
    state.startTick = context_.surroundings.clock.milliseconds();
    state.startTime = context_.surroundings.clock.now();
    state.copyCancelled = false;
    state.careTold = false;
    state.care =
        std::make_shared<SourceCare>(state.options.gentle ? SourceCare::Reason::Asked : SourceCare::Reason::None);
    enterPhase(state, JobPhase::Checking);
}

JobDriver::Next JobDriver::checkTarget() {
    const JobOptions& options = context_.state.options;
    if (!options.copy || options.target)
        return Next::GoOn;
    context_.surroundings.dialogs.tell(
        "Error", "You have selected to copy the files to another location, but not selected a location.");
    host_.focusTargetPicker();
    return endsBy(EndCause::NoTarget);
}

// True when the job's list is not there yet, or the person has said Yes to this very list.
bool JobDriver::mayReplaceList() {
    NativePath& confirmed = context_.state.options.confirmedList;
    const auto list = job_.lists().finalPath();
    if (!list || *list == confirmed || !pathExists(*list))
        return true;
    const std::string text = "You are about to overwrite the existing file (" + readable(list->native()) +
                             "), are you sure you want to do this";
    if (!context_.surroundings.dialogs.ask("Overwrite file", text))
        return false;
    confirmed = *list;
    return true;
}

JobDriver::Next JobDriver::confirmOverwrite() {
    if (!mayReplaceList())
        return endsBy(EndCause::OverwriteRefused);
    askToGoOn();
    context_.state.stopRequested = false;
    enterPhase(context_.state, JobPhase::Starting);
    host_.updateToolbar();
    context_.state.startTime = context_.surroundings.clock.now();
    return Next::GoOn;
}

// Once for each list. No begins anew, and the old list and its evidence lie under Kept either way.
void JobDriver::askToGoOn() {
    JobOptions& options = context_.state.options;
    const auto list = job_.lists().finalPath();
    if (!host_.asksToGoOn() || !list || *list == askedToGoOn_)
        return;
    askedToGoOn_ = *list;
    options.resume = options.checkFileQuality && options.source && wasLeftUnfinished(*list, *options.source) &&
                     context_.surroundings.dialogs.ask(
                         "Go on with the job?",
                         "The last run of this job did not complete. Do you want to go on with it? Files that it has "
                         "read, and that are the same in size and time, are not read again. No reads all of them.");
}

void JobDriver::testFolders() {
    runTimed(times_.folderTests, "Starting Folder tests ", "Folder tests completed in (HH:MM:SS) : ", [this] {
        enterPhase(context_.state, JobPhase::FolderTest);
        if (context_.state.options.source)
            ListFolders(context_, *context_.state.options.source);
    });
}

// Job ID and folders could be changed up to here, and from here on they stay as they are: whatever list goes now, the
// person knows of it.
JobDriver::Next JobDriver::lockScreen() {
    enterPhase(context_.state, JobPhase::Walk);
    const bool mayReplace = mayReplaceList();
    context_.state.options.confirmedList.clear();
    if (mayReplace) {
        askToGoOn();
        return Next::GoOn;
    }
    leave();
    return endsBy(EndCause::OverwriteRefused);
}

void JobDriver::leave() {
    enterPhase(context_.state, JobPhase::Idle);
    context_.state.mayRun = true;
    host_.updateToolbar();
}

JobDriver::Next JobDriver::walkSource() {
    JobState& state = context_.state;
    state.startTime = context_.surroundings.clock.now();
    const auto tick = context_.surroundings.clock.milliseconds();
    const LocalTime start = logStart("Start file count ");
    auto rawList = createRawList();
    if (!rawList) {
        tellPermissionDenied();
        state.stopRequested = true;
    } else {
        if (state.options.source && !context_.stopsAtOnce())
            FolderWalk(context_, job_.skipList, *rawList).run(*state.options.source);
        passOver(context_.stopsAtOnce(), "its flags are read next");
        if (const auto closed = rawList->close(); !closed)
            context_.rowLost(closed.error());
    }
    if (state.stopRequested) {
        state.mayView = true;
        leave();
        lock_.reset();
        return cause_ == EndCause::Complete ? endsBy(EndCause::StoppedInWalk) : Next::End;
    }
    showSize(state);
    times_.fileCount = context_.surroundings.clock.milliseconds() - tick;
    logEnd("File count completed in (HH:MM:SS) : ", start);
    return Next::GoOn;
}

// One job at a time in one application folder: a second one may not take the raw list away from the first.
Result<ListWriter> JobDriver::createRawList() {
    auto lock = FolderLock::tryToTake(job_.installation().appFolder());
    if (lock && !*lock) {
        passOver(endsBy(EndCause::Busy), "the failure that follows ends the job");
        return failure(ErrorKind::PermissionDenied, "another job runs");
    }
    if (lock) {
        lock_ = std::move(*lock);
        passOver(removeFile(job_.lists().rawPath()), "creating it anew tells what matters");
    }
    auto rawList = lock ? ListWriter::create(job_.lists().rawPath()) : failure(lock.error());
    if (!rawList)
        passOver(endsBy(EndCause::RawListDenied, rawList.error().text), "as above");
    return rawList;
}

void JobDriver::tellPermissionDenied() {
    const std::string file = readable(job_.lists().rawPath().native());
    context_.surroundings.dialogs.tell("Permission Denied",
                                       "Unable to create the file " + file + " it may be open in another application");
}

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

// Only copies that are hashed show their bytes. A list that cannot be read was told by the testing pass.
std::shared_ptr<const SectorMarkers> JobDriver::markersToWatch() const {
    if (!context_.state.options.copyCare.manner().hash)
        return nullptr;
    auto markers = loadSectorMarkers(job_.installation().paths());
    return markers ? std::make_shared<const SectorMarkers>(*std::move(markers)) : nullptr;
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
        CopyPass(context_, job_.lists(), job_.messages, encoding, markersToWatch()).run();
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

void JobDriver::finish() {
    JobState& state = context_.state;
    context_.surroundings.loop.workingOn({});
    lock_.reset();
    timerTick(state, context_.surroundings.clock);
    enterPhase(state, JobPhase::Reporting);
    if (state.options.checkFileQuality)
        state.mayView = true;
    state.progress.shown = false;
    if (alerts_ != nullptr && !stopAsked())
        sendCompletionReport(state, context_.surroundings, *alerts_);
    leave();
}

JobDriver::Next JobDriver::endsBy(EndCause cause, std::string detail) {
    cause_ = cause;
    detail_ = std::move(detail);
    return Next::End;
}

JobEnd JobDriver::endEarly() {
    if (context_.stopsAtOnce())
        passOver(endsBy(EndCause::StoppedInChecks), "whatever the last answer was");
    enterPhase(context_.state, JobPhase::Idle);
    return rowOf(cause_).end;
}

void JobDriver::runTimed(std::int64_t& milliseconds, const std::string& start, const std::string& end,
                         const std::function<void()>& phase) {
    const Clock& clock = context_.surroundings.clock;
    const auto tick = clock.milliseconds();
    const LocalTime began = logStart(start);
    phase();
    milliseconds = clock.milliseconds() - tick;
    logEnd(end, began);
}

// The elapsed time of a phase is the difference of the times that stand in its two rows.
LocalTime JobDriver::logStart(const std::string& text) {
    const LocalTime now = context_.surroundings.clock.now();
    context_.state.log.add({now, text, std::nullopt});
    return now;
}

void JobDriver::logEnd(const std::string& text, const LocalTime& start) {
    const auto& surroundings = context_.surroundings;
    const LocalTime now = surroundings.clock.now();
    const std::int64_t day = 24LL * 60 * 60;
    const std::int64_t seconds = (now.secondOfDay() - start.secondOfDay() + day) % day;
    LocalTime elapsed;
    elapsed.hour = static_cast<int>(seconds / 3600);
    elapsed.minute = static_cast<int>(seconds / 60 % 60);
    elapsed.second = static_cast<int>(seconds % 60);
    context_.state.log.add({now, text + surroundings.dates.time(elapsed), std::nullopt});
}

void askToStop(const PassContext& context) {
    if (context.surroundings.dialogs.ask("Stop process?", "Do you want to stop the process?"))
        context.stop();
}

}  // namespace quillon
