// SPDX-License-Identifier: MIT
#pragma once

// The overview's questions to the evidence of a job. For the sources of this folder only.

#include <unordered_map>

#include "answers/evidence_answers.h"
#include "answers/overview/overview_source.h"
#include "evidence/evidence_reader.h"

namespace quillon {

class EvidenceOverview final : public OverviewSource {
public:
    [[nodiscard]] static Result<std::unique_ptr<OverviewSource>> open(const NativePath& evidence);

    [[nodiscard]] bool knowsAll() const override { return true; }
    [[nodiscard]] std::string source() const override { return source_; }
    [[nodiscard]] bool hasWholePaths() const override { return false; }
    [[nodiscard]] Result<Figures> total() override;
    [[nodiscard]] Result<FigureRows> extensions() override;
    [[nodiscard]] Result<FigureRows> reasons() override;
    [[nodiscard]] Result<FolderFacts> root() override;
    [[nodiscard]] Result<FolderList> folders(const FolderFacts& parent) override;
    [[nodiscard]] Result<std::unique_ptr<FileSearch>> search(const FileWish& wish) override;
    [[nodiscard]] Result<EvidenceRow> file(std::int64_t id) override;
    [[nodiscard]] Result<std::optional<std::string>> head(const EvidenceRow& file) override;

private:
    EvidenceOverview(EvidenceReader reader, EvidenceReader forAnswers)
        : reader_(std::move(reader)), answers_(std::move(forAnswers)) {}
    [[nodiscard]] Result<void> countUncounted();
    [[nodiscard]] FolderFacts factsOf(const Statement& row) const;

    EvidenceReader reader_;
    EvidenceAnswers answers_;
    std::string source_;
    // Of a job that did not come to its end: its folders have no counts of their own.
    std::unordered_map<std::int64_t, Figures> counted_;
};

}  // namespace quillon
