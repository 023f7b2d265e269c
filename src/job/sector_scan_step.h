// SPDX-License-Identifier: MIT
#pragma once

// Bad sectors of a job that is complete: looked for in its files on a thread beside the loop, and told in a line.

#include "app/installation.h"
#include "job/pass_context.h"

namespace quillon {

/// Of which job: the one that is running, or one that was done before.
enum class ScanOf { RunningJob, DoneJob };

/// Reads the files of the job that has this list to their ends, as the phase Scanning, and goes on where an earlier
/// scan was stopped. Stop ends it at the next piece of a file; what it found stays in the evidence. The job log tells
/// what came of it, and the text of JobTexts::sectors is made anew.
void lookForBadSectors(const PassContext& context, const Installation& installation, const NativePath& list,
                       ScanOf job);

/// Makes JobTexts::sectors what the evidence beside the list knows; empty where there is none.
void tellSectors(const PassContext& context, const NativePath& list);

}  // namespace quillon
