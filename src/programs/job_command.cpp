// SPDX-License-Identifier: MIT
#include "programs/job_command.h"

#include <istream>
#include <ostream>

#include "app/application_folder.h"
#include "app/folder_structure.h"
#include "job/completion_report.h"
#include "job/job_driver.h"
#include "job/job_setup.h"
#include "messaging/alert_exchange.h"
#include "platform/folders.h"
#include "platform/host.h"
#include "programs/command_dialogs.h"
#include "programs/command_loop.h"
#include "programs/job_options.h"
#include "programs/job_result.h"
#include "setup/default_installation.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kJsonLogRows = 10000;

// Prints each row of the job log as it comes.
class LogPrinter final : public JobLogListener {
public:
    LogPrinter(std::ostream& err, CommandLoop& loop, const DateTexts& dates, bool quiet)
        : err_(err), loop_(loop), dates_(dates), quiet_(quiet) {}

    void logRowAdded(const LogRow& row) override {
        if (quiet_)
            return;
        loop_.clearLine();
        err_ << dates_.time(row.time) << "  " << row.text << '\n' << std::flush;
    }

private:
    std::ostream& err_;
    CommandLoop& loop_;
    const DateTexts& dates_;
    bool quiet_;
};

// What an installation needs and does not have, each with a blank ahead; the shared folders only with sharing on.
std::string missingFolders(const Paths& paths) {
    std::vector<NativePath> needed = {paths.localSettings, paths.localDatabase, paths.zipPath};
    if (paths.useSharedDb)
        needed.insert(needed.end(), {paths.sharedPath, paths.sharedDatabase});
    std::string missing;
    for (const auto& folder : needed) {
        if (!pathExists(folder))
            missing += folder.empty() ? " (a path that is not set)" : " " + readable(folder.native());
    }
    return missing;
}

// Loads the settings, or sets up the default on a first run. False: it cannot be done, and `err` says why.
bool prepareInstallation(Installation& installation, std::ostream& err, bool quiet) {
    if (!pathExists(installation.paths().settingsFile)) {
        const auto done = setUpDefaultInstallation(installation);
        if (!done) {
            err << "quillon-job: cannot set up " << readable(installation.appFolder().native()) << ": "
                << done.error().text << '\n';
            return false;
        }
        if (!quiet)
            err << "First run: set up " << readable(done->localPath.native()) << " with the default database\n";
        return true;
    }
    const auto size = fileSize(installation.paths().settingsFile);
    auto loaded = installation.loadSettingsRecord();
    if (!loaded || !size || *size == 0) {
        err << "quillon-job: " << readable(installation.paths().settingsFile.native())
            << (loaded ? " is empty: set the installation up first" : " cannot be read: " + loaded.error().text)
            << '\n';
        return false;
    }
    // A failed check repairs what it can; the second one tells whether that was enough.
    if (checkFolderStructure(installation))
        return true;
    if (checkFolderStructure(installation))
        return true;
    err << "quillon-job: the folders of the installation are not whole and cannot be created:"
        << missingFolders(installation.paths()) << '\n';
    return false;
}

// The job leaves the source alone, but it writes to its own folders wherever they are.
void tellOwnFoldersInSource(const NativePath& source, const Installation& installation, std::ostream& err) {
    const NativePath root = realPath(source);
    for (const NativePath& own : {installation.appFolder(), installation.paths().localPath}) {
        if (!liesIn(realPath(own), root))
            continue;
        err << "quillon-job: " << readable(own.native()) << " lies in the source, and the job writes to it\n";
        return;
    }
}

// The options of the command take away from what the settings say.
void applyOptions(const JobCommandOptions& chosen, Job& job, bool showProgress) {
    JobSetup(job.installation(), job.surroundings(), job.state).loadSettings();
    JobOptions& options = job.state.options;
    options.jobId = chosen.jobId;
    options.source = chosen.source;
    options.target = chosen.target;
    options.copy = chosen.target.has_value();
    options.checkFileQuality = options.checkFileQuality && chosen.test;
    options.useSkipList = options.useSkipList && chosen.skipList;
    options.useCommonHeaders = options.useCommonHeaders && chosen.commonHeaders;
    options.showProgress = showProgress;
    if (!chosen.alertComputer.empty()) {
        options.recipientIndex = 1;
        options.recipient = chosen.alertComputer;
    }
}

int exitStatus(JobEnd end, const JobState& state) {
    const JobCounters& counters = state.counters;
    if (end == JobEnd::Stopped)
        return kExitStopped;
    if (end != JobEnd::Complete)
        return kExitNoList;
    const bool losses = counters.lostRows > 0 || counters.copyErrors > 0 || counters.unlistedFolders > 0;
    return losses || !state.gaps.empty() ? kExitLosses : kExitComplete;
}

// Says on the error stream what a script cannot see in the report.
void tellEnd(JobEnd end, const Job& job, const CommandDialogs& dialogs, std::ostream& err) {
    const JobCounters& counters = job.state.counters;
    if (end == JobEnd::NotStarted || end == JobEnd::NoList) {
        err << "quillon-job: the job ended without a list";
        if (!dialogs.unasked().empty())
            err << "; give --yes to answer Yes to: " << dialogs.unasked();
        err << '\n';
    }
    if (end == JobEnd::Stopped)
        err << "quillon-job: stopped\n";
    const auto tell = [&err](std::int32_t count, const std::string& what) {
        if (count > 0)
            err << "quillon-job: " << grouped(count) << what << '\n';
    };
    const std::string& reason = job.state.lossReason;
    tell(counters.lostRows, " rows of a list could not be written" + (reason.empty() ? "" : " (" + reason + ")"));
    tell(counters.copyErrors, " files could not be copied");
    tell(counters.unlistedFolders, " folders could not be read to their end");
    for (const auto& gap : job.state.gaps) err << "quillon-job: the figures of the job do not agree: " << gap << '\n';
}

int runJob(const JobCommandOptions& chosen, Installation& installation, const CommandStreams& streams) {
    const SystemClock clock;
    const DateTexts dates;
    CommandDialogs dialogs(streams.in, streams.err, chosen.yes, streams.canAsk);
    const bool showLine = streams.errIsTerminal && !chosen.quiet;
    CommandLoop loop(clock, streams.err, showLine, streams.interrupts);
    Job job(installation, {clock, dates, dialogs, loop, hostName()});
    LogPrinter printer(streams.err, loop, dates, chosen.quiet);
    job.state.log.setListener(&printer);
    job.state.log.setLimit(chosen.json ? kJsonLogRows : 1);
    loop.attach(job);
    applyOptions(chosen, job, showLine);
    loadReportMessages(installation, dialogs, job.kept(), job.messages);

    JobHost host;
    UdpSocket server;
    UdpSocket client;
    AlertExchange alerts(AlertScreen::Main, server, client, installation, job.surroundings(),
                         [&job] { return job.state.options.jobId; });
    // Without a recipient nobody is told of a process error either, and no ten seconds are spent on an empty name.
    JobDriver driver(job, host, chosen.alertComputer.empty() ? nullptr : &alerts);
    const JobEnd end = driver.run();
    loop.clearLine();
    tellEnd(end, job, dialogs, streams.err);
    if (chosen.json) {
        streams.out << jobResultAsJson(job, driver.phaseTimes(), end, dates) << '\n';
    } else if (end == JobEnd::Complete) {
        streams.out << withPlainLineEnds(completionReport(job.state, job.surroundings().hostName));
        if (const auto list = job.lists().finalPath())
            streams.out << list->native() << '\n';
    }
    streams.out.flush();
    const int status = exitStatus(end, job.state);
    if (streams.out)
        return status;
    streams.err << "quillon-job: the result could not be written to standard output\n";
    return status == kExitComplete ? kExitLosses : status;
}

}  // namespace

int runJobCommand(const std::vector<std::string>& arguments, const CommandStreams& streams) {
    const ParsedJobCommand parsed = parseJobCommand(arguments, streams.out, streams.err);
    if (!parsed.options)
        return parsed.exitStatus;
    raiseOpenFileLimit();
    const JobCommandOptions& options = *parsed.options;
    Installation installation(options.appFolder ? *options.appFolder : applicationFolder());
    if (!prepareInstallation(installation, streams.err, options.quiet))
        return kExitNoList;
    if (!options.quiet)
        tellOwnFoldersInSource(options.source, installation, streams.err);
    return runJob(options, installation, streams);
}

}  // namespace quillon
