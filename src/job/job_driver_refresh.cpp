// SPDX-License-Identifier: MIT
// The start of a job: what is left of killed saves, and the refresh of the local database from the shared one.
#include <algorithm>

#include "app/run_beside.h"
#include "app/save_litter.h"
#include "app/share_gate.h"
#include "app/turn_until.h"
#include "job/job_driver.h"
#include "job/lost_note_log.h"
#include "job/share_steps.h"
#include "platform/folders.h"
#include "platform/start_beside.h"
#include "setup/share_trial.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kUnnoticed{20};

}  // namespace

// An archive folder may lie on a share whose server has gone: nobody waits behind a Stop for what is no more than tidy.
std::vector<NativePath> JobDriver::findLitter() {
    const Paths& paths = job_.installation().paths();
    const std::vector<NativePath> folders = {job_.installation().appFolder(), paths.localPath, paths.zipPath,
                                             paths.localDatabase, paths.localSettings};
    auto found = startBeside([folders] { return findSaveLitter(folders); });
    if (!found)
        return findSaveLitter(folders);
    const auto isOver = [&](std::chrono::milliseconds pause) {
        return hasCome(*found, pause) || context_.state.stopRequested || stopAsked();
    };
    if (!isOver(kUnnoticed))
        turnUntil(context_.surroundings.loop, isOver);
    return hasCome(*found, {}) ? found->get() : std::vector<NativePath>();
}

void JobDriver::moveLitterAway() {
    const std::vector<NativePath> litter = findLitter();
    if (litter.empty())
        return;
    const Installation installation = job_.installation();  // handlers may change it meanwhile
    KeptFiles kept(installation, context_.surroundings.clock, KeptBy::Rescue);
    tellLitter(answerBeside(context_.surroundings.loop, [&] { return moveUnderKept(litter, kept); }));
}

void JobDriver::tellLitter(std::size_t files) {
    if (files > 0)
        context_.log(grouped(static_cast<std::int64_t>(files)) + " files of saves that were cut short moved to Kept");
}

JobDriver::Next JobDriver::refreshDatabases() {
    ShareSteps share(context_, job_.installation(), job_.skipList);
    const bool withTermFiles = context_.state.options.checkFileQuality && share.paths().useSharedDb;
    if (withTermFiles && refreshTermFiles(share) == Next::End)
        return Next::End;
    if (stopAsked())
        return Next::End;
    refreshRuleLists(share);
    if (!withTermFiles)
        tryUnreadShare();
    return Next::GoOn;
}

// A job that takes nothing from the share is not held by it either. What its people teach goes there all the same.
void JobDriver::tryUnreadShare() {
    const Paths paths = job_.installation().paths();
    if (!paths.useSharedDb)
        return;
    auto refused = startBeside([paths] { return whatShareRefuses(paths); });
    if (!refused)
        return;
    const Clock& clock = context_.surroundings.clock;
    const std::int64_t start = clock.milliseconds();
    const auto isSilent = [&] { return clock.milliseconds() - start >= kShareSilence; };
    const auto isOver = [&](std::chrono::milliseconds pause) {
        return hasCome(*refused, pause) || context_.state.stopRequested || stopAsked() || isSilent();
    };
    if (!isOver(kUnnoticed))
        turnUntil(context_.surroundings.loop, isOver);
    if (hasCome(*refused, {}))
        tellRefused(refused->get());
    else if (isSilent())
        context_.log("The shared folder " + readable(paths.sharedPath.native()) +
                         " does not answer: whether it can be written is not known",
                     kLightOrange);
}

void JobDriver::tellRefused(const std::string& refused) {
    if (!refused.empty())
        context_.log(shareTrialText(refused), kLightOrange);
}

JobDriver::Next JobDriver::refreshTermFiles(ShareSteps& share) {
    const auto orphans = share.findOrphans();
    if (orphans.shareLooksEmpty && !orphans.names.empty())
        context_.log(emptyShareText(orphans, share.paths()), kLightOrange);
    RefreshSummary refresh;
    refresh.moved = share.moveAway(orphans);
    if (refresh.moved.failed > 0)
        report({ErrorKind::PermissionDenied,
                grouped(static_cast<std::int64_t>(refresh.moved.failed)) + " term files could not be moved away"});
    context_.log("Copying ext database from network drive");
    step_ = "attempting to load the  shared DB";
    auto names = share.sharedFiles();
    const bool fromShare = !names.empty();
    if (!fromShare && askWithoutDatabase(names) == Next::End) {
        refresh.compared = orphans.looked;
        tellRefresh(refresh);  // what was moved away has gone whatever comes of the job
        return Next::End;
    }
    if (context_.state.options.checkFileQuality)
        refresh.fetched = share.copyChanged(names);
    // A name that the share has told and does not have any more is missing here: the share may have gone. Names of the
    // local database, which serves without one, are not.
    const std::size_t notFetched = refresh.fetched.failed + (fromShare ? refresh.fetched.missing : 0);
    context_.state.counters.notFetched += static_cast<std::int32_t>(notFetched);
    refresh.compared = std::max(names.size(), orphans.looked);
    tellRefresh(refresh);
    tellLitter(share.moveLitterAway());
    tellRefused(share.whatIsRefused());
    return Next::GoOn;
}

void JobDriver::tellRefresh(const RefreshSummary& refresh) {
    for (const auto* lost : {&refresh.moved.lostNote, &refresh.fetched.lostNote}) logLostNote(context_, *lost);
    const std::string text = refreshText(refresh);
    if (text.empty())
        return;
    const bool failed = refresh.fetched.failed + refresh.moved.failed > 0;
    context_.log(text, failed ? std::optional<std::uint32_t>(kLightOrange) : std::nullopt);
}

// The shared database is not to be found: with the local one, without any, or not at all.
JobDriver::Next JobDriver::askWithoutDatabase(std::vector<std::string>& names) {
    Dialogs& dialogs = context_.surroundings.dialogs;
    const auto withLocal = dialogs.show(
        {"No Database", "Unable to find shared database. Do you want to continue the check with the local copy?",
         BoxStyle::Question, BoxButtons::YesNo, true});
    if (withLocal != BoxAnswer::Yes)
        return endsBy(EndCause::NoDatabase);
    names = databaseFiles(job_.installation().paths().localDatabase);
    if (!names.empty())
        return Next::GoOn;
    const auto answer =
        dialogs.show({"No Database", "Unable to find local database. Do you want to disable the file quality testing?",
                      BoxStyle::Question, BoxButtons::YesNoCancel, true});
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
        tellFetched(share.fetchSkips());
        const SkipListState skips = share.loadSkips();
        if (skips == SkipListState::Missing) {
            options.useSkipList = false;
            options.useSkipListEnabled = false;
        }
    }
    tellFetched(share.fetchMarkers());
    tellFetched(share.fetchCommon());
    const NativePath local = fileIn(share.paths().localSettings, kCommonHeadersFileName);
    if (!pathExists(local)) {
        options.useCommonHeaders = false;
        options.useCommonHeadersEnabled = false;
    }
}

void JobDriver::tellFetched(const Result<LostNote>& fetched) {
    if (fetched)
        logLostNote(context_, *fetched);
    else
        reportNotFetched(fetched.error());
}

void JobDriver::reportNotFetched(const FileError& error) {
    ++context_.state.counters.notFetched;
    report(error);
}

void JobDriver::report(const FileError& error) {
    context_.surroundings.dialogs.tell(
        "Error",
        "The following error has occurred : " + error.text + " while " + step_ + ".\r\n" +
            " Please ensure you have the correct permissions on the drive under test and the database locations.");
}

}  // namespace quillon
