// SPDX-License-Identifier: MIT
#include "job/job_driver.h"

#include "app/file_list.h"
#include "job/completion_report.h"
#include "job/earlier_run.h"
#include "job/folder_walk.h"
#include "job/job_board.h"
#include "job/sector_scan_step.h"
#include "job/statistics.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

JobEnd JobDriver::run() {
    context_.state.outcome.reset();
    const JobEnd end = runSteps();
    context_.state.outcome = JobOutcome{cause_, listStands(), hasLosses(context_.state)};
    const auto list = job_.lists().finalPath();
    const bool stopped = context_.state.stopRequested || stopAsked();
    if (context_.state.options.scanSectors && cause_ == EndCause::Complete && !stopped && list)
        lookForBadSectors(context_, job_.installation(), *list, ScanOf::RunningJob);
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
    if (job_.installation().settings.useCommonHeaders != 1)
        tryUnreadShare();
    else if (refreshDatabases() == Next::End)
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
    lookAtReportMessages(job_.installation(), job_.messages, context_);
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
            context_.rowsLost(closed.error());
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
    MessageBox box{"Permission Denied", "Unable to create the file " + file + " it may be open in another application"};
    box.details = detail_;
    context_.surroundings.dialogs.show(box);
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
