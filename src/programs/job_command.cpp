// SPDX-License-Identifier: MIT
#include "programs/job_command.h"

#include <istream>
#include <new>
#include <optional>
#include <ostream>

#include "app/application_folder.h"
#include "job/completion_report.h"
#include "job/earlier_run.h"
#include "job/job_driver.h"
#include "job/job_setup.h"
#include "job/lost_note_log.h"
#include "messaging/alert_exchange.h"
#include "platform/folders.h"
#include "platform/host.h"
#include "platform/user_folder.h"
#include "programs/command_dialogs.h"
#include "programs/command_loop.h"
#include "programs/hang_watch.h"
#include "programs/job_options.h"
#include "programs/job_result.h"
#include "programs/prepare_installation.h"
#include "programs/regrade_command.h"
#include "programs/scan_command.h"
#include "testing/messages_for.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kJsonLogRows = 10000;

// Prints each row of the job log as it comes; of a quiet job those that warn of what concerns all of it.
class LogPrinter final : public JobLogListener {
public:
    LogPrinter(std::ostream& err, CommandLoop& loop, const DateTexts& dates, const JobCommandOptions& options)
        : err_(err), loop_(loop), dates_(dates), quiet_(options.quiet && !options.logJson), json_(options.logJson) {}

    void logRowAdded(const LogRow& row) override {
        // What a job is about to do without being asked, and what it goes on without, is never passed over in silence.
        const bool warnsOfTheJob = row.colour == kLightOrange && row.path.empty();
        if (quiet_ && !warnsOfTheJob)
            return;
        loop_.clearLine();
        if (json_)
            err_ << logRowAsJson(row, dates_) << '\n' << std::flush;
        else
            err_ << dates_.time(row.time) << "  " << row.text << '\n' << std::flush;
    }

private:
    std::ostream& err_;
    CommandLoop& loop_;
    const DateTexts& dates_;
    bool quiet_;
    bool json_;
};

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
    options.part = chosen.part;
    options.jobId = chosen.part ? idOfPart(*chosen.part, job.installation().paths().fileListSeparator) : chosen.jobId;
    options.source = chosen.source;
    options.copy = chosen.target.has_value();
    options.checkFileQuality = options.checkFileQuality && chosen.test;
    options.useSkipList = options.useSkipList && chosen.skipList;
    options.useCommonHeaders = options.useCommonHeaders && chosen.commonHeaders;
    // The parts of a job are put together by their evidence.
    options.keepEvidence = (options.keepEvidence && chosen.evidence) || chosen.part;
    options.keepHeads = options.keepHeads && chosen.heads;
    options.lookAtEnds = chosen.ends;
    options.gentle = chosen.gentle;
    options.threads = chosen.threads;
    if (chosen.hangLimit > 0)
        options.hangLimit = std::chrono::seconds(chosen.hangLimit);
    options.copyGrades = chosen.copyGrades;
    options.copyCare = chosen.copyCare;
    options.showProgress = showProgress;
    options.resume = chosen.resume;
    // Whoever goes on with a job has been asked for its list; that of another source is none of it.
    const auto list = job.lists().finalPath();
    if (chosen.resume && list && hasEarlierRun(*list, chosen.source))
        options.confirmedList = *list;
    if (!chosen.alertComputer.empty()) {
        options.recipientIndex = 1;
        options.recipient = chosen.alertComputer;
    }
}

// Says on the error stream what a script cannot see in the report.
void tellEnd(const JobResult& result, const Job& job, const CommandDialogs& dialogs, std::ostream& err) {
    const EndRow& end = rowOf(result.cause);
    const bool untold = !result.detail.empty() && result.detail != dialogs.toldDetails();
    const std::string text = end.text + (untold ? " (" + result.detail + ")" : "");
    if (end.end == JobEnd::NotStarted || end.end == JobEnd::NoList) {
        err << (result.listStands ? "quillon-job: the job did not come to its end; the list so far stays"
                                  : "quillon-job: the job ended without a list");
        if (!dialogs.unasked().empty())
            err << (dialogs.unaskedNeedsOwnAnswer() ? "; answer at a terminal, as --yes does not: "
                                                    : "; give --yes to answer Yes to: ")
                << dialogs.unasked();
        else
            err << ": " << text;
        err << '\n';
    }
    if (end.end == JobEnd::Stopped)
        err << "quillon-job: stopped " << text
            << (result.cause == EndCause::StoppedInTesting && result.listStands ? "; the list so far stays\n" : "\n");
    if (end.end == JobEnd::Busy)
        err << "quillon-job: busy: " << text << '\n';
    for (const auto& loss : kJobLosses) {
        const std::int32_t count = job.state.counters.*loss.counter;
        const std::string why = loss.counter == &JobCounters::lostRows       ? job.state.lossReason
                                : loss.counter == &JobCounters::lostEvidence ? job.state.evidenceLoss
                                                                             : std::string();
        if (count > 0)
            err << "quillon-job: " << grouped(count) << ' ' << loss.text << (why.empty() ? "" : " (" + why + ")")
                << '\n';
    }
    for (const auto& gap : job.state.gaps) err << "quillon-job: the figures of the job do not agree: " << gap << '\n';
    if (job.state.report == ReportState::NotAcknowledged)
        err << "quillon-job: " << readable(std::string_view(job.state.options.recipient))
            << " has not acknowledged the alert\n";
}

// One job of the command, with all that it needs.
class JobRun {
public:
    JobRun(const JobCommandOptions& chosen, const CommandStreams& streams)
        : chosen_(chosen),
          streams_(streams),
          dialogs_(streams.in, streams.err,
                   {.alwaysYes = chosen.yes,
                    .discardPartial = chosen.discardPartial,
                    .terminal = streams.canAsk,
                    .stopAsked = [&streams] { return streams.interrupts() > 0; },
                    .inputWaits = streams.inputWaits}),
          showLine_(streams.errIsTerminal && !chosen.quiet && !chosen.logJson),
          loop_(clock_, streams.err, showLine_, streams.interrupts),
          installation_(chosen.appFolder ? *chosen.appFolder : applicationFolder()),
          job_(installation_, {clock_, dates_, dialogs_, loop_, hostName()}),
          printer_(streams.err, loop_, dates_, chosen) {
        job_.state.options.jobId = chosen.jobId;
        job_.state.options.source = chosen.source;
        job_.state.log.setListener(&printer_);
        job_.state.log.setLimit(chosen.json ? kJsonLogRows : 1);
        loop_.attach(job_);
    }

    int run() {
        JobResult result;
        if (installation_.appFolder().empty()) {
            streams_.err << "quillon-job: the folder of the program cannot be found; give --app\n";
        } else if (prepareInstallation(installation_, streams_.err, chosen_.quiet)) {
            if (!chosen_.quiet)
                tellOwnFoldersInSource(chosen_.source, installation_, streams_.err);
            result = runPrepared();
            loop_.clearLine();
            job_.state.counters.lostMessages = streams_.lostMessages();
            result.status = exitStatus(result.cause, job_.state, chosen_.alertOptional);
            tellEnd(result, job_, dialogs_, streams_.err);
            if (chosen_.scanSectors && result.cause == EndCause::Complete)
                scan(result);
        }
        return print(result);
    }

private:
    // Why no files can be copied to where they are to go, if that is so.
    [[nodiscard]] std::optional<EndCause> checkTarget() {
        if (!chosen_.target)
            return std::nullopt;
        if (!canBeFolder(*chosen_.target)) {
            const std::string target = readable(chosen_.target->native());
            dialogs_.tell("Permission Denied", "Unable to write to the target " + target);
            return EndCause::TargetDenied;
        }
        if (JobSetup(installation_, job_.surroundings(), job_.state).takeTarget(*chosen_.target))
            return std::nullopt;
        return job_.passContext().stopsAtOnce() ? EndCause::StoppedInChecks : EndCause::TargetRefused;
    }

    void sayHang(const std::string& line) const {
        if (!chosen_.quiet)
            streams_.sayAtOnce((showLine_ ? "\r\033[Kquillon-job: " : "quillon-job: ") + line + '\n');
    }

    [[nodiscard]] JobResult runPrepared() {
        applyOptions(chosen_, job_, showLine_);
        if (const auto refused = checkTarget())
            return {.cause = *refused};
        logLostNote(job_.passContext(), loadMessagesFor(changeByJob(job_.state.options.jobId), installation_, dialogs_,
                                                        job_.kept(), job_.messages));
        JobHost host;
        UdpSocket server;
        UdpSocket client;
        AlertExchange alerts(AlertScreen::Main, server, client, installation_, job_.surroundings(),
                             [this] { return job_.state.options.jobId; });
        // Without a recipient nobody is told of a process error either, and no ten seconds are spent on an empty name.
        JobDriver driver(job_, host, chosen_.alertComputer.empty() ? nullptr : &alerts);
        const HangWatch watch(loop_.workInHand(), [this](const std::string& line) { sayHang(line); });
        EndCause cause = EndCause::OutOfMemory;
        try {
            passOver(driver.run(), "the cause tells more");
            cause = driver.cause();
        } catch (const std::bad_alloc&) {
            // What ran is closed by now, and its memory free again.
        }
        return {
            .cause = cause, .detail = driver.detail(), .times = driver.phaseTimes(), .listStands = driver.listStands()};
    }

    // The job is complete whatever the scan finds; only its status tells what the scan lacks.
    void scan(JobResult& result) const {
        const auto list = job_.lists().finalPath();
        result.scan = list ? scanJob(*list, installation_, chosen_, streams_)
                           : ScanEnd{kExitNoList, "failed", list.error().text, {}};
        if (result.scan->status != kExitComplete && result.status != kExitLosses)
            result.status = result.scan->status;
    }

    [[nodiscard]] int print(const JobResult& result) {
        std::ostream& out = streams_.out;
        if (chosen_.json) {
            out << jobResultAsJson(job_, result, dates_) << '\n';
        } else if (result.cause == EndCause::Complete) {
            out << withPlainLineEnds(completionReport(job_.state, job_.surroundings().hostName));
            if (result.scan && result.scan->detail.empty())
                out << scanText(result.scan->counts);
            if (const auto list = job_.lists().finalPath())
                out << list->native() << '\n';
        }
        out.flush();
        if (out)
            return result.status;
        streams_.err << "quillon-job: the result could not be written to standard output\n";
        return result.status == kExitComplete || result.status == kExitAlert ? kExitLosses : result.status;
    }

    const JobCommandOptions& chosen_;
    const CommandStreams& streams_;
    const SystemClock clock_;
    const DateTexts dates_;
    CommandDialogs dialogs_;
    bool showLine_;
    CommandLoop loop_;
    Installation installation_;
    Job job_;
    LogPrinter printer_;
};

}  // namespace

int runJobCommand(const std::vector<std::string>& arguments, const CommandStreams& streams) {
    const ParsedJobCommand parsed = parseJobCommand(arguments, streams.out, streams.err);
    if (!parsed.options)
        return parsed.exitStatus;
    raiseOpenFileLimit();
    try {
        const JobCommandOptions& options = *parsed.options;
        if (options.scanSectors && options.source.empty())
            return runScanCommand(options, streams);
        return options.regrade ? runRegradeCommand(options, streams) : JobRun(options, streams).run();
    } catch (const std::bad_alloc&) {
        streams.err << "quillon-job: out of memory\n";
        return kExitNoList;
    }
}

}  // namespace quillon
