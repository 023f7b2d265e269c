// SPDX-License-Identifier: MIT
#pragma once

// Which files a job is made of, by the name that somebody gives it.

#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

struct JobFiles {
    std::string id;
    NativePath list;      ///< empty when there is none
    NativePath evidence;  ///< empty when there is none
};

/// `given`: the path of a list or of an evidence file, or an ID in `listFolder`. An ID comes before a file of the
/// current folder that has its name and no ending. NotFound: neither a list nor evidence is there.
[[nodiscard]] Result<JobFiles> findJob(const NativePath& listFolder, std::string_view given);

/// The jobs of one case, sorted by ID: the case's own ID, and those that continue it behind the separator. Case "1234"
/// has "1234" and "1234-Partition 1", and not "12345". One that was made of others stands for these. NotFound: there is
/// none.
[[nodiscard]] Result<std::vector<JobFiles>> findCase(const NativePath& listFolder, std::string_view separator,
                                                     std::string_view caseId);

struct CaseFiles {
    std::string id;
    std::vector<JobFiles> jobs;
};

/// The cases that a job belongs to, as far as they have several jobs: what its ID is and what it holds ahead of each
/// separator may be the ID of one. The longest ID comes first; of two with the same jobs only the longer one is told.
[[nodiscard]] std::vector<CaseFiles> casesOf(const NativePath& listFolder, std::string_view separator,
                                             std::string_view jobId);

}  // namespace quillon
