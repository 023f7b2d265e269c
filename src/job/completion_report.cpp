// SPDX-License-Identifier: MIT
#include "job/completion_report.h"

#include "messaging/notification.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr const char* kRule = "----------------------------------";

bool hasCopyLine(const JobState& state) {
    return state.options.copy && state.counters.copyErrors > 0;
}

}  // namespace

std::string completionReport(const JobState& state, const std::string& hostName) {
    const JobCounters& counters = state.counters;
    std::string report;
    const auto line = [&report](const std::string& text) { report += text + kLineEnd; };
    const auto message = [&line](const char* caption, std::int32_t count) {
        if (count > 0)
            line(caption + grouped(count));
    };
    line("File list complete for job ID : " + readable(std::string_view(state.options.jobId)) + " on " + hostName);
    line("Total Files : " + grouped(counters.files) + " (Quality : " + state.texts.quality + ")");
    line(kGrades[Grade::Good].reportLine.value + grouped(counters[Grade::Good]));
    line("");
    line("Please note the following messages");
    line(kRule);
    for (const Grade grade : kReportOrder) {
        message(kGrades[grade].reportLine, counters[grade]);
        if (grade == Grade::Unknown)
            message("Skipped Files : ", counters.skipped);
    }
    message("Folder Errors: ", counters.folderErrors);
    line(kRule);
    if (hasCopyLine(state)) {
        // The label's text, and behind it the bare number.
        line(grouped(counters.copyErrors) + " : " + std::to_string(counters.copyErrors) +
             " files were unable to be copied.");
    }
    return report;
}

void sendCompletionReport(JobState& state, const Surroundings& surroundings, AlertSender& alerts) {
    if (state.options.recipientIndex <= 0)
        return;
    const std::string& recipient = state.options.recipient;
    Dialogs& dialogs = surroundings.dialogs;
    const Notified notified = sendNotification(
        alerts, dialogs,
        {recipient, "File list complete for Job ID : " + state.options.jobId,
         completionReport(state, surroundings.hostName), static_cast<std::int16_t>(hasCopyLine(state) ? 1 : 0)},
        "Recipient of message is the same as the sender !");
    const bool acknowledged = notified != Notified::ThisComputer && alerts.ackState() == AckState::Acknowledged;
    state.report = acknowledged ? ReportState::Acknowledged : ReportState::NotAcknowledged;
    if (notified != Notified::ThisComputer && alerts.ackState() == AckState::None) {
        const std::string cause = alerts.silenceCause();
        if (!cause.empty())
            state.log.add(
                {surroundings.clock.now(), "No answer from " + readable(recipient) + " : " + cause, kLightOrange});
        MessageBox box{"File list complete",
                       "File listing complete, but could not send notification to " + readable(recipient),
                       BoxStyle::Warning, BoxButtons::Ok};
        box.details = cause;
        dialogs.show(box);
    }
}

}  // namespace quillon
