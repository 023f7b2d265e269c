// SPDX-License-Identifier: MIT
#pragma once

// Several jobs that are asked one after the other, as those of a case are.

#include <functional>
#include <vector>

#include "answers/job_answers.h"

namespace quillon {

/// Opens the answers of each job in turn and hands them to `ask`, until one fails.
[[nodiscard]] Result<void> eachJob(const std::vector<JobFiles>& jobs,
                                   const std::function<Result<void>(JobAnswers&)>& ask);

/// What `ask` gives of each job, added up by name.
[[nodiscard]] Result<FiguresBy> figuresBy(const std::vector<JobFiles>& jobs,
                                          const std::function<Result<FiguresBy>(JobAnswers&)>& ask);

}  // namespace quillon
