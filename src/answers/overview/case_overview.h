// SPDX-License-Identifier: MIT
#pragma once

// The jobs of a case as one: below the root each job is a folder under its ID. For the sources of this folder only.

#include <utility>
#include <vector>

#include "answers/overview/overview_source.h"

namespace quillon {

class CaseOverview final : public OverviewSource {
public:
    /// Opens all of them. Fails when one cannot be opened: sums without it would be taken for the case's.
    [[nodiscard]] static Result<std::unique_ptr<OverviewSource>> open(const std::vector<JobFiles>& jobs,
                                                                      const ReportMessages& messages);

    [[nodiscard]] bool knowsAll() const override;
    [[nodiscard]] std::string source() const override { return {}; }
    [[nodiscard]] bool hasWholePaths() const override { return false; }
    [[nodiscard]] std::optional<PlaceInCase> placeOf(std::string_view folder) const override;
    [[nodiscard]] Result<Figures> total() override;
    [[nodiscard]] Result<FigureRows> extensions() override;
    [[nodiscard]] Result<FigureRows> reasons() override;
    [[nodiscard]] Result<FolderFacts> root() override;
    [[nodiscard]] Result<FolderList> folders(const FolderFacts& parent) override;
    [[nodiscard]] Result<std::unique_ptr<FileSearch>> search(const FileWish& wish) override;
    [[nodiscard]] Result<EvidenceRow> file(std::int64_t id) override;
    [[nodiscard]] Result<std::optional<std::string>> head(const EvidenceRow& file) override;

private:
    friend class CaseSearch;
    struct Part {
        std::string id;
        std::unique_ptr<OverviewSource> source;
        FolderFacts root;
        std::string front;  // what its own paths begin with and the paths of the case leave out
    };

    explicit CaseOverview(std::vector<Part> parts) : parts_(std::move(parts)) {}
    [[nodiscard]] Result<std::int64_t> idOf(std::size_t part, std::int64_t own) const;
    [[nodiscard]] std::pair<Part&, std::int64_t> ownOf(std::int64_t id);
    [[nodiscard]] static Result<Part> openPart(const JobFiles& job, const ReportMessages& messages);
    [[nodiscard]] static std::string pathInCase(const Part& part, std::string_view own);
    [[nodiscard]] Result<FolderFacts> shown(std::size_t part, FolderFacts facts) const;
    [[nodiscard]] Result<FolderList> jobs() const;
    [[nodiscard]] Result<FigureRows> sums(Result<FigureRows> (OverviewSource::*question)());

    std::vector<Part> parts_;
};

}  // namespace quillon
