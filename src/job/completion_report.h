// SPDX-License-Identifier: MIT
#pragma once

// The text that ends a job, and its way to another computer.

#include <string>

#include "app/surroundings.h"
#include "job/job_state.h"
#include "messaging/alert_sender.h"

namespace quillon {

/// The report from the board as it stands, CR LF behind each line.
[[nodiscard]] std::string completionReport(const JobState& state, const std::string& hostName);

/// Sends the report to the chosen recipient, if one behind the first entry of the box is chosen, and tells what went
/// wrong.
void sendCompletionReport(JobState& state, const Surroundings& surroundings, AlertSender& alerts);

}  // namespace quillon
