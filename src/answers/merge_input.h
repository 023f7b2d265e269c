// SPDX-License-Identifier: MIT
#pragma once

// One of the jobs that are made one: its list and its evidence, read side by side. For the sources of this folder only.

#include <optional>
#include <string>

#include "answers/job_files.h"
#include "app/file_list.h"
#include "evidence/evidence_reader.h"
#include "job/list_digest.h"
#include "job/part_facts.h"
#include "testing/grade.h"

namespace quillon {

class MergeInput {
public:
    /// Fails when a list or the evidence is missing, and for a job that has not come to its end.
    [[nodiscard]] static Result<MergeInput> open(const JobFiles& job);

    [[nodiscard]] const std::string& id() const { return id_; }
    /// None for a whole job.
    [[nodiscard]] const std::optional<PartFacts>& part() const { return part_; }
    /// Bytes, without "/" behind it.
    [[nodiscard]] const std::string& source() const { return source_; }
    /// False when the job left the bytes of heads out of its evidence.
    [[nodiscard]] bool keepsHeads() const { return keepsHeads_; }
    [[nodiscard]] EvidenceReader& evidence() { return evidence_; }

    /// Turns to the next file, in the order of the walk. False behind the last one. Fails where list and evidence
    /// disagree, and where files stand in another order.
    [[nodiscard]] Result<bool> next();

    /// Of the file in work: absolute path, bytes; what the evidence says; its row of the list, where `file().row` says
    /// that it has one.
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] const EvidenceRow& file() const { return file_; }
    [[nodiscard]] ListRow& line() { return line_; }

    /// The text of a grade as this job's list has it, UTF-8.
    [[nodiscard]] const std::string& message(Grade grade) const {
        return messages_.values[static_cast<std::size_t>(grade)];
    }

private:
    MergeInput(std::string id, EvidenceReader evidence, ListReader list)
        : id_(std::move(id)), evidence_(std::move(evidence)), list_(std::move(list)) {}
    [[nodiscard]] Result<void> readFacts();
    [[nodiscard]] Result<void> readMessages();
    [[nodiscard]] Result<void> readLine();
    [[nodiscard]] Result<void> checkEnd();
    [[nodiscard]] tl::unexpected<FileError> outOfStep() const;

    std::string id_;
    EvidenceReader evidence_;
    ListReader list_;
    std::optional<PartFacts> part_;
    std::string source_;
    bool keepsHeads_ = true;
    ByGrade<std::string> messages_;
    EvidenceRow file_;
    ListRow line_;
    std::int64_t lines_ = 0;
    ListDigest digest_;
    std::string path_;
    std::string last_;
};

}  // namespace quillon
