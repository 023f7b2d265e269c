// SPDX-License-Identifier: MIT
#pragma once

// Answers from the evidence of a job. For the sources of this folder only.

#include "answers/job_answers.h"
#include "evidence/evidence_reader.h"

namespace quillon {

class EvidenceAnswers final : public JobAnswers {
public:
    explicit EvidenceAnswers(EvidenceReader reader) : reader_(std::move(reader)) {}

    [[nodiscard]] bool knowsAll() const override { return true; }
    [[nodiscard]] Result<std::string> source() override;
    [[nodiscard]] Result<JobFacts> facts() override;
    [[nodiscard]] Result<Figures> total() override;
    [[nodiscard]] Result<FiguresBy> byExtension() override;
    [[nodiscard]] Result<FiguresBy> byReason() override;
    [[nodiscard]] Result<FiguresBy> byFolder(std::size_t depth) override;
    [[nodiscard]] Result<bool> next(EvidenceRow& file) override { return reader_.next(file); }
    void restart() override { reader_.continueBehind(0); }
    [[nodiscard]] Result<std::unique_ptr<BriefFiles>> files(const FileWish& wish) override;
    void rest() override { reader_.rest(); }
    [[nodiscard]] Result<std::optional<std::uint64_t>> headSign(std::int64_t id) override;

private:
    [[nodiscard]] Result<void> addDoubts(FiguresBy& figures);
    [[nodiscard]] Result<void> addSectors(FiguresBy& figures);
    [[nodiscard]] Result<void> addCountedSectors(FiguresBy& figures);

    EvidenceReader reader_;
};

}  // namespace quillon
