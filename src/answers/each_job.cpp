// SPDX-License-Identifier: MIT
#include "answers/each_job.h"

namespace quillon {

Result<void> eachJob(const std::vector<JobFiles>& jobs, const std::function<Result<void>(JobAnswers&)>& ask) {
    for (const auto& job : jobs) {
        auto answers = openAnswers(job, ReportMessages::fallback());
        if (!answers)
            return failure(answers.error());
        if (auto asked = ask(**answers); !asked)
            return asked;
    }
    return {};
}

Result<FiguresBy> figuresBy(const std::vector<JobFiles>& jobs,
                            const std::function<Result<FiguresBy>(JobAnswers&)>& ask) {
    FiguresBy sums;
    const auto asked = eachJob(jobs, [&](JobAnswers& answers) -> Result<void> {
        const auto figures = ask(answers);
        if (!figures)
            return failure(figures.error());
        for (const auto& [name, ofName] : *figures) sums[name] += ofName;
        return {};
    });
    if (!asked)
        return failure(asked.error());
    return sums;
}

}  // namespace quillon
