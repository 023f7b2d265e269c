// SPDX-License-Identifier: MIT
#pragma once

// `quillon-job --scan-sectors`: every file of a job is read to its end, and bad sectors are looked for; behind the job
// itself, or, without a source, of a job that was done before.

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "app/installation.h"
#include "job/job_end.h"
#include "programs/job_command.h"
#include "programs/job_options.h"
#include "sectors/sector_scan.h"

namespace quillon {

/// How a scan ended.
struct ScanEnd {
    int status = kExitNoList;     ///< docs/man/quillon-job.1
    const char* word = "failed";  ///< as docs/formats/job-json.md has it
    std::string detail;           ///< why; empty for one that came to its end
    ScanCounts counts;
};

/// Scans the files of the job that has this list, and is done.
[[nodiscard]] ScanEnd scanJob(const NativePath& list, const Installation& installation, const JobCommandOptions& chosen,
                              const CommandStreams& streams);
/// What it found, in lines for people.
[[nodiscard]] std::string scanText(const ScanCounts& counts);
/// The same for scripts: docs/formats/job-json.md.
[[nodiscard]] nlohmann::ordered_json scanAsJson(const ScanEnd& end);

/// Scans a job that was done before and gives the exit status.
[[nodiscard]] int runScanCommand(const JobCommandOptions& chosen, const CommandStreams& streams);

}  // namespace quillon
