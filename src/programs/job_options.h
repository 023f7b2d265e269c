// SPDX-License-Identifier: MIT
#pragma once

// The options of `quillon-job`.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "job/job_part.h"
#include "platform/copy_terms.h"
#include "platform/file.h"
#include "testing/grade.h"

namespace quillon {

struct JobCommandOptions {
    std::string jobId;
    std::optional<JobPart> part;       ///< only this part of the job is done
    bool regrade = false;              ///< the job is graded anew from its evidence, and has no source here
    bool scanSectors = false;          ///< its files are read to their ends; without a source, those of a finished job
    NativePath source;                 ///< absolute, an existing folder
    std::optional<NativePath> target;  ///< absolute; the folder to copy to
    bool resume = false;               ///< what the last run of the job has read is not read again
    std::vector<Grade> copyGrades;     ///< only files of these grades are copied; empty for all
    CopyCare copyCare;
    bool test = true;
    bool skipList = true;
    bool commonHeaders = true;
    bool evidence = true;
    bool heads = true;
    bool ends = false;
    bool gentle = false;  ///< the source is asked for one thing at a time
    int threads = 0;      ///< that read heads; 0 leaves the number to the job
    int hangLimit = 0;    ///< seconds after which a head counts as unreadable; 0 for none
    std::string alertComputer;
    bool alertOptional = false;
    std::optional<NativePath> appFolder;
    bool json = false;
    bool logJson = false;
    bool yes = false;
    bool discardPartial = false;
    bool quiet = false;
};

/// Options, or the exit status of a command that has nothing more to do.
struct ParsedJobCommand {
    std::optional<JobCommandOptions> options;
    int exitStatus = 0;
};

/// An option as help and manual tell it.
struct CommandOption {
    const char* name;
    const char* value;  ///< what stands behind it; empty for a switch
    const char* meaning;
};
/// All but --help and --version.
[[nodiscard]] std::vector<CommandOption> jobCommandOptions();

/// Parses and checks. Help goes to `out`; wrong usage is one line on `err` that says how, and status 2.
[[nodiscard]] ParsedJobCommand parseJobCommand(const std::vector<std::string>& arguments, std::ostream& out,
                                               std::ostream& err);

}  // namespace quillon
