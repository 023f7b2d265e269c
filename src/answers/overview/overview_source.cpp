// SPDX-License-Identifier: MIT
#include "answers/overview/overview_source.h"

#include "answers/overview/case_overview.h"
#include "answers/overview/evidence_overview.h"
#include "answers/overview/list_overview.h"

namespace quillon {

Result<std::unique_ptr<OverviewSource>> openOverview(const JobFiles& job, const ReportMessages& messages) {
    if (!job.evidence.empty())
        return EvidenceOverview::open(job.evidence);
    auto list = openAnswers(job, messages);
    if (!list)
        return failure(list.error());
    return ListOverview::read(**list);
}

Result<std::unique_ptr<OverviewSource>> openOverview(const std::vector<JobFiles>& jobs,
                                                     const ReportMessages& messages) {
    return jobs.size() == 1 ? openOverview(jobs.front(), messages) : CaseOverview::open(jobs, messages);
}

std::int64_t badFiles(const Figures& figures) {
    return figures.grades[Grade::Corrupt] + figures.grades[Grade::AccessError];
}

}  // namespace quillon
