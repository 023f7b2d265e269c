// SPDX-License-Identifier: MIT
#pragma once

// The result of a job for a script.

#include <optional>
#include <string>

#include "job/job_driver.h"
#include "job/regrade.h"
#include "programs/scan_command.h"

namespace quillon {

/// How a job ended, as its front end tells it.
struct JobResult {
    EndCause cause = EndCause::NotSetUp;
    int status = kExitNoList;
    std::string detail = {};  ///< what the system said of a failure; may be empty
    PhaseTimes times = {};
    bool listStands = false;           ///< a final list of this job is there, complete or not
    std::optional<ScanEnd> scan = {};  ///< of its files for bad sectors; none where none was asked for
};

/// One object: docs/formats/job-json.md.
[[nodiscard]] std::string jobResultAsJson(const Job& job, const JobResult& result, const DateTexts& dates);

/// One object for a regrade that ended with this status: the same page.
[[nodiscard]] std::string regradeResultAsJson(const Job& job, const RegradeResult& result, int status,
                                              const DateTexts& dates);
/// How a regrade ended, as "end" has it there.
[[nodiscard]] const char* wordOf(RegradeEnd end);

/// A row of the log as one line without its end, as in the same page.
[[nodiscard]] std::string logRowAsJson(const LogRow& row, const DateTexts& dates);

/// Lines as a terminal has them: CR LF becomes LF.
[[nodiscard]] std::string withPlainLineEnds(const std::string& text);

}  // namespace quillon
