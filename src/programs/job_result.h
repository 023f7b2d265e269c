// SPDX-License-Identifier: MIT
#pragma once

// The result of a job for a script.

#include <string>

#include "job/job_driver.h"

namespace quillon {

/// One object: every counter, the quality, the list's path, phase times in seconds, and the job log. Names that are not
/// valid UTF-8 show U+FFFD.
[[nodiscard]] std::string jobResultAsJson(const Job& job, const PhaseTimes& times, JobEnd end, const DateTexts& dates);

/// Lines as a terminal has them: CR LF becomes LF.
[[nodiscard]] std::string withPlainLineEnds(const std::string& text);

}  // namespace quillon
