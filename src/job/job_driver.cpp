// SPDX-License-Identifier: MIT
#include "job/job_driver.h"

#include "app/file_list.h"
#include "job/completion_report.h"
#include "job/copy_pass.h"
#include "job/folder_walk.h"
#include "job/job_board.h"
#include "job/share_steps.h"
#include "job/statistics.h"
#include "job/testing_pass.h"
#include "platform/folders.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

JobEnd JobDriver::run() {
    begin();
    if (!context_.state.options.source)
        host_.pickSource();
    if (checkTarget() == Next::End)
        return endEarly();
    resetCounters(context_.state);
    // Kept: the stored field decides, not the check box, and it gates the skip list too (test
    // WithoutStoredCommonHeadersAJobNeitherRefreshesNorLoadsTheSkipList).
    if (job_.installation().settings.useCommonHeaders == 1 && refreshDatabases() == Next::End)
        return endEarly();
    if (!context_.state.options.showProgress)
        context_.state.progress.shown = false;
    if (confirmOverwrite() == Next::End)
        return endEarly();
    context_.evidence.begin();
    testFolders();
    if (walkSource() == Next::End) {
        context_.evidence.end(wordOf(rowOf(cause_).end));
        return rowOf(cause_).end;
    }
    loadCommonList();
    testFiles();
    copyRawList();
    copyFiles();
    cause_ = causeBehindPasses();
    context_.evidence.end(wordOf(rowOf(cause_).end));
    finish();
    return rowOf(cause_).end;
}

EndCause JobDriver::causeBehindPasses() const {
    if (cause_ != EndCause::Complete)
        return cause_;
    return listMade_ ? EndCause::Complete : EndCause::ListDenied;
}

bool JobDriver::listStands() const {
    const auto list = job_.lists().finalPath();
    return listMade_ && list && pathExists(*list);
}

void JobDriver::begin() {
    JobState& state = context_.state;
    times_ = {};
    step_.clear();
    cause_ = EndCause::Complete;
    detail_.clear();
    listMade_ = false;
    state.report = ReportState::NotSent;
    state.startTick = context_.surroundings.clock.milliseconds();
    state.startTime = context_.surroundings.clock.now();
    state.copyCancelled = false;
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

JobDriver::Next JobDriver::refreshDatabases() {
    ShareSteps share(context_, job_.installation(), job_.skipList);
    if (context_.state.options.checkFileQuality && share.paths().useSharedDb && refreshTermFiles(share) == Next::End)
        return Next::End;
    refreshRuleLists(share);
    return Next::GoOn;
}

JobDriver::Next JobDriver::refreshTermFiles(ShareSteps& share) {
    const auto orphans = share.deleteOrphans();
    if (orphans.failed > 0)
        report({ErrorKind::PermissionDenied,
                grouped(static_cast<std::int64_t>(orphans.failed)) + " term files could not be moved away"});
    context_.log("Copying ext database from network drive");
    step_ = "attempting to load the  shared DB";
    auto names = share.sharedFiles();
    if (names.empty() && askWithoutDatabase(names) == Next::End)
        return Next::End;
    if (context_.state.options.checkFileQuality)
        share.copyChanged(names);
    return Next::GoOn;
}

// The shared database is not to be found: with the local one, without any, or not at all.
JobDriver::Next JobDriver::askWithoutDatabase(std::vector<std::string>& names) {
    Dialogs& dialogs = context_.surroundings.dialogs;
    if (!dialogs.ask("No Database",
                     "Unable to find shared database. Do you want to continue the check with the local copy?")) {
        return endsBy(EndCause::NoDatabase);
    }
    names = databaseFiles(job_.installation().paths().localDatabase);
    if (!names.empty())
        return Next::GoOn;
    const auto answer =
        dialogs.show({"No Database", "Unable to find local database. Do you want to disable the file quality testing?",
                      BoxStyle::Question, BoxButtons::YesNoCancel});
    if (answer == BoxAnswer::Cancel)
        return endsBy(EndCause::NoDatabase);
    if (answer == BoxAnswer::Yes)
        context_.state.options.checkFileQuality = false;
    return Next::GoOn;
}

void JobDriver::refreshRuleLists(ShareSteps& share) {
    JobOptions& options = context_.state.options;
    step_ = "attempting to load the shared skiplist and common headers ";
    if (options.useSkipList) {
        if (auto fetched = share.fetchSkips(); !fetched)
            report(fetched.error());
        if (share.loadSkips() == SkipListState::Missing) {
            options.useSkipList = false;
            options.useSkipListEnabled = false;
        }
    }
    if (auto fetched = share.fetchCommon(); !fetched)
        report(fetched.error());
    const NativePath local = fileIn(share.paths().localSettings, kCommonHeadersFileName);
    if (!pathExists(local)) {
        options.useCommonHeaders = false;
        options.useCommonHeadersEnabled = false;
    }
}

JobDriver::Next JobDriver::confirmOverwrite() {
    JobOptions& options = context_.state.options;
    const auto list = job_.lists().finalPath();
    if (list && pathExists(*list) && !options.overwriteConfirmed) {
        const std::string text = "You are about to overwrite the existing file (" + readable(list->native()) +
                                 "), are you sure you want to do this";
        if (!context_.surroundings.dialogs.ask("Overwrite file", text))
            return endsBy(EndCause::OverwriteRefused);
    }
    options.overwriteConfirmed = false;
    context_.state.stopRequested = false;
    context_.state.unlockedByRecount = false;
    enterPhase(context_.state, JobPhase::Starting);
    host_.updateToolbar();
    context_.state.startTime = context_.surroundings.clock.now();
    return Next::GoOn;
}

void JobDriver::testFolders() {
    runTimed(times_.folderTests, "Starting Folder tests ", "Folder tests completed in (HH:MM:SS) : ", [this] {
        enterPhase(context_.state, JobPhase::FolderTest);
        if (context_.state.options.source)
            ListFolders(context_, *context_.state.options.source);
    });
}

void JobDriver::leave() {
    enterPhase(context_.state, JobPhase::Idle);
    context_.state.mayRun = true;
    host_.updateToolbar();
}

JobDriver::Next JobDriver::walkSource() {
    JobState& state = context_.state;
    state.unlockedByRecount = false;
    enterPhase(state, JobPhase::Walk);
    state.startTime = context_.surroundings.clock.now();
    const auto tick = context_.surroundings.clock.milliseconds();
    const LocalTime start = logStart("Start file count ");
    auto rawList = createRawList();
    if (!rawList) {
        tellPermissionDenied();
        state.stopRequested = true;
    } else {
        if (state.options.source)
            FolderWalk(context_, job_.skipList, *rawList).run(*state.options.source);
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

void JobDriver::loadCommonList() {
    const NativePath list = fileIn(job_.installation().paths().localSettings, kCommonHeadersFileName);
    if (!context_.state.options.useCommonHeaders || !pathExists(list))
        return;
    passOver(job_.commonList.load(list), "the list of the last job then serves");
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
        TestingPass pass(context_, job_.lists(), job_.grader(), alerts_);
        pass.run();
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
    const auto copied = job_.lists().copyRawToFinal(context_.surroundings.loop);
    listMade_ = copied.has_value();
    if (const auto list = job_.lists().finalPath(); copied && list) {
        context_.evidence.listCreated(*list);
        context_.evidence.listedOnly(job_.lists().rawPath());
    }
    if (!copied)
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
    enterPhase(state, JobPhase::Copying);
    state.progress.shown = state.fileLineShown = true;
    runTimed(times_.copying, "Started copying Files",
             "File copying completed in (HH:MM:SS) : ", [this] { CopyPass(context_, job_.lists()).run(); });
    state.progress.shown = state.fileLineShown = false;
    if (state.stopRequested && cause_ == EndCause::Complete && listMade_)
        cause_ = EndCause::StoppedInCopying;
}

void JobDriver::finish() {
    JobState& state = context_.state;
    lock_.reset();
    timerTick(state, context_.surroundings.clock);
    enterPhase(state, JobPhase::Reporting);
    if (state.options.checkFileQuality)
        state.mayView = true;
    state.progress.shown = false;
    if (alerts_ != nullptr)
        sendCompletionReport(state, context_.surroundings, *alerts_);
    leave();
}

JobDriver::Next JobDriver::endsBy(EndCause cause, std::string detail) {
    cause_ = cause;
    detail_ = std::move(detail);
    return Next::End;
}

JobEnd JobDriver::endEarly() {
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

void JobDriver::report(const FileError& error) {
    context_.surroundings.dialogs.tell(
        "Error",
        "The following error has occurred : " + error.text + " while " + step_ + ".\r\n" +
            " Please ensure you have the correct permissions on the drive under test and the database locations.");
}

void askToStop(const PassContext& context) {
    if (context.surroundings.dialogs.ask("Stop process?", "Do you want to stop the process?"))
        stopJob(context);
}

void stopJob(const PassContext& context) {
    context.state.stopRequested = true;
    context.state.copyCancelled = true;
    context.log("Process stopped by user");
}

}  // namespace quillon
