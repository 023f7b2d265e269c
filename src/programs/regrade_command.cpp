// SPDX-License-Identifier: MIT
#include "programs/regrade_command.h"

#include <ostream>

#include "app/application_folder.h"
#include "job/job_end.h"
#include "job/job_setup.h"
#include "job/regrade.h"
#include "platform/host.h"
#include "programs/command_dialogs.h"
#include "programs/command_loop.h"
#include "programs/job_result.h"
#include "programs/prepare_installation.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kLogRows = 10000;

int statusOf(const RegradeResult& result, const JobCounters& counters) {
    switch (result.end) {
        case RegradeEnd::Complete:
            return hasLosses(counters) || result.counts.damaged > 0 ? kExitLosses : kExitComplete;
        case RegradeEnd::Busy:
            return kExitBusy;
        case RegradeEnd::Stopped:
            return kExitStopped;
        default:
            return kExitNoList;
    }
}

void tellRows(std::ostream& out, const RegradeResult& result, const std::string& quality) {
    const RegradeCounts& counts = result.counts;
    out << "Rows of the list : " << grouped(counts.rows) << "\nGraded again : " << grouped(counts.graded)
        << "\nOf these with another result : " << grouped(counts.changed)
        << "\nResult kept, as there is no head : " << grouped(counts.kept)
        << "\nOf these with damaged evidence : " << grouped(counts.damaged) << "\nRecovery quality : " << quality;
    if (!result.qualityBefore.empty())
        out << " (before : " << result.qualityBefore << ')';
    out << '\n';
}

class RegradeRun {
public:
    RegradeRun(const JobCommandOptions& chosen, const CommandStreams& streams)
        : chosen_(chosen),
          streams_(streams),
          dialogs_(streams.in, streams.err,
                   {.alwaysYes = chosen.yes,
                    .terminal = streams.canAsk,
                    .stopAsked = [&streams] { return streams.interrupts() > 0; },
                    .inputWaits = streams.inputWaits}),
          loop_(clock_, streams.err, false, streams.interrupts),
          installation_(chosen.appFolder ? *chosen.appFolder : applicationFolder()),
          job_(installation_, {clock_, dates_, dialogs_, loop_, hostName()}) {
        loop_.attach(job_);
    }

    int run() {
        job_.state.log.setLimit(kLogRows);
        RegradeResult result;
        result.detail = "the installation is not whole";
        if (installation_.appFolder().empty())
            streams_.err << "quillon-job: the folder of the program cannot be found; give --app\n";
        else if (prepareInstallation(installation_, streams_.err, chosen_.quiet))
            result = runPrepared();
        return print(result);
    }

private:
    [[nodiscard]] RegradeResult runPrepared() {
        JobSetup(installation_, job_.surroundings(), job_.state).loadSettings();
        JobOptions& options = job_.state.options;
        options.jobId = chosen_.jobId;
        options.useCommonHeaders = options.useCommonHeaders && chosen_.commonHeaders;
        const RegradeResult result = Regrade(job_).run();
        job_.state.counters.lostMessages = streams_.lostMessages();
        tellLog();
        tellEnd(result);
        return result;
    }

    void tellLog() const {
        for (const auto& row : job_.state.log.rows()) {
            if (chosen_.logJson)
                streams_.err << logRowAsJson(row, dates_) << '\n';
            else if (!chosen_.quiet)
                streams_.err << dates_.time(row.time) << "  " << row.text << '\n';
        }
    }

    // Says on the error stream what a script cannot see in the rows.
    void tellEnd(const RegradeResult& result) const {
        if (result.end != RegradeEnd::Complete)
            streams_.err << "quillon-job: " << wordOf(result.end) << ": " << result.detail << '\n';
        if (result.unfinished)
            streams_.err << "quillon-job: the list is not whole: its job was cut short\n";
        for (const auto& loss : kJobLosses) {
            const std::int32_t count = job_.state.counters.*loss.counter;
            if (count > 0)
                streams_.err << "quillon-job: " << grouped(count) << ' ' << loss.text << '\n';
        }
        if (job_.state.counters.lostEvidence > 0)
            streams_.err << "quillon-job: " << job_.state.evidenceLoss << '\n';
    }

    [[nodiscard]] int print(const RegradeResult& result) const {
        std::ostream& out = streams_.out;
        const int status = statusOf(result, job_.state.counters);
        if (chosen_.json) {
            out << regradeResultAsJson(job_, result, status, dates_) << '\n';
        } else if (result.end == RegradeEnd::Complete) {
            tellRows(out, result, job_.state.texts.quality);
            if (const auto list = job_.lists().finalPath())
                out << list->native() << '\n';
        }
        out.flush();
        if (out)
            return status;
        streams_.err << "quillon-job: the result could not be written to standard output\n";
        return status == kExitComplete ? kExitLosses : status;
    }

    const JobCommandOptions& chosen_;
    const CommandStreams& streams_;
    const SystemClock clock_;
    const DateTexts dates_;
    CommandDialogs dialogs_;
    CommandLoop loop_;
    Installation installation_;
    Job job_;
};

}  // namespace

int runRegradeCommand(const JobCommandOptions& chosen, const CommandStreams& streams) {
    return RegradeRun(chosen, streams).run();
}

}  // namespace quillon
