// SPDX-License-Identifier: MIT
#include "programs/list_merge.h"

#include <ostream>

#include "answers/job_merge.h"
#include "platform/folders.h"
#include "programs/list_options.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

Result<int> mergeListed(const std::vector<JobFiles>& jobs, const NativePath& folder, const std::string& id,
                        const ListStreams& streams) {
    if (!isFolder(folder))
        return failure(ErrorKind::NotFound, "there is no folder for the list: give --to or --app");
    const auto figures = mergeJobs(folder, id, jobs);
    if (!figures)
        return failure(figures.error());
    streams.out << readable(std::string_view(id)) << ": " << grouped(figures->rows) << " rows of " << jobs.size()
                << (jobs.size() == 1 ? " job\n" : " jobs\n");
    if (figures->damaged > 0)
        streams.err << "quillon-list: " << grouped(figures->damaged)
                    << " files have lost their first bytes: the evidence of their jobs is damaged\n";
    return kListSame;
}

}  // namespace quillon
