// SPDX-License-Identifier: MIT
#include "job/completion_report.h"

#include <array>

#include "messaging/notification.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr const char* kRule = "----------------------------------";

struct ReportLine {
    const char* caption;
    std::int32_t JobCounters::*counter;
};
constexpr std::array<ReportLine, 9> kMessageLines = {{
    {"Corrupt Files : ", &JobCounters::corrupt},
    {"Unknown Files : ", &JobCounters::unknown},
    {"Skipped Files : ", &JobCounters::skipped},
    {"Files of zero bytes : ", &JobCounters::zeroBytes},
    {"Invalid File Names : ", &JobCounters::badName},
    {"Access Errors : ", &JobCounters::accessErrors},
    {"Encrypted Files : ", &JobCounters::encrypted},
    {"Small Files (<512 bytes): ", &JobCounters::small},
    {"Folder Errors: ", &JobCounters::folderErrors},
}};

bool hasCopyLine(const JobState& state) {
    return state.options.copy && state.counters.copyErrors > 0;
}

}  // namespace

std::string completionReport(const JobState& state, const std::string& hostName) {
    const JobCounters& counters = state.counters;
    std::string report;
    const auto line = [&report](const std::string& text) { report += text + kLineEnd; };
    line("File list complete for job ID : " + state.options.jobId + " on " + hostName);
    line("Total Files : " + grouped(counters.files) + " (Quality : " + state.texts.quality + ")");
    line("Good Files : " + grouped(counters.good));
    line("");
    line("Please note the following messages");
    line(kRule);
    for (const auto& entry : kMessageLines) {
        if (counters.*entry.counter > 0)
            line(entry.caption + grouped(counters.*entry.counter));
    }
    line(kRule);
    if (hasCopyLine(state)) {
        // The label's text, and behind it the bare number.
        line(grouped(counters.copyErrors) + " : " + std::to_string(counters.copyErrors) +
             " files were unable to be copied.");
    }
    return report;
}

void sendCompletionReport(Job& job, AlertSender& alerts) {
    JobState& state = job.state;
    if (state.options.recipientIndex <= 0)
        return;
    const std::string& recipient = state.options.recipient;
    Dialogs& dialogs = job.surroundings().dialogs;
    const Notified notified = sendNotification(
        alerts, dialogs,
        {recipient, "File list complete for Job ID : " + state.options.jobId,
         completionReport(state, job.surroundings().hostName), static_cast<std::int16_t>(hasCopyLine(state) ? 1 : 0)},
        "Recipient of message is the same as the sender !");
    if (notified != Notified::ThisComputer && alerts.ackState() == AckState::None) {
        dialogs.warn("File list complete", "File listing complete, but could not send notification to " + recipient);
    }
}

}  // namespace quillon
