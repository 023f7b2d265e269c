// SPDX-License-Identifier: MIT
#pragma once

#include "app/progress_host.h"
#include "job/job_state.h"

namespace quillon {

/// Shows the progress of a pass in the job's own bar and line.
class BoardProgress final : public ProgressHost {
public:
    explicit BoardProgress(JobState& state) : state_(state) {}

    void progressRange(std::int64_t maximum) override { state_.progress = {true, maximum, 0}; }
    void progressValue(std::int64_t value) override { state_.progress.value = value; }
    void currentFile(const std::string& text) override { state_.texts.currentFile = text; }

private:
    JobState& state_;
};

}  // namespace quillon
