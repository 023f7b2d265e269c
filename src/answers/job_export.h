// SPDX-License-Identifier: MIT
#pragma once

// The files of jobs as one file that other programs read.

#include <string>
#include <vector>

#include "answers/file_export.h"
#include "answers/file_wish.h"
#include "answers/job_files.h"

namespace quillon {

struct ExportForm {
    std::string format = "csv";  ///< csv, jsonl or xlsx
    CsvStyle style;
    std::size_t depth = 1;  ///< xlsx: folders how deep below the source
};

/// Writes the files of the jobs that fit, with all that is known of them, whole or not at all; an old file of the name
/// stays until then. A workbook's sheets of extensions and folders are of the whole jobs.
[[nodiscard]] Result<void> writeExport(const std::vector<JobFiles>& jobs, const FileWish& wish, const ExportForm& form,
                                       const NativePath& target);

}  // namespace quillon
