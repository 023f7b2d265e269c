// SPDX-License-Identifier: MIT
#pragma once

// The job that a front end owns: its state, the loaded lists, and what passes and screens are given of it.

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"
#include "job/file_grader.h"
#include "job/job_evidence.h"
#include "job/job_lists.h"
#include "job/job_state.h"
#include "job/pass_context.h"
#include "testing/skip_list.h"

namespace quillon {

class Job {
public:
    /// Both must outlive the job.
    Job(Installation& installation, const Surroundings& surroundings)
        : installation_(installation),
          surroundings_(surroundings),
          kept_(installation, surroundings_.clock),
          lists_(installation, kept_, state.options.jobId),
          evidence_(state, surroundings_, installation, messages),
          grader_(installation, messages, commonList, passContext()) {}
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    JobState state;
    ReportMessages messages;
    SkipList skipList;
    CommonList commonList;

    [[nodiscard]] Installation& installation() { return installation_; }
    [[nodiscard]] const Surroundings& surroundings() const { return surroundings_; }
    [[nodiscard]] KeptFiles& kept() { return kept_; }

    [[nodiscard]] const JobLists& lists() const { return lists_; }
    [[nodiscard]] FileGrader& grader() { return grader_; }
    /// What a pass of this job works with.
    [[nodiscard]] PassContext passContext() { return {state, surroundings_, evidence_}; }

private:
    Installation& installation_;
    Surroundings surroundings_;
    KeptFiles kept_;
    JobLists lists_;
    JobEvidence evidence_;
    FileGrader grader_;
};

}  // namespace quillon
