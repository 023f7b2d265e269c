// SPDX-License-Identifier: MIT
#pragma once

// The overview's questions to a list alone, which is read once: a file is held in some forty bytes and its name. For
// the sources of this folder only.

#include <unordered_map>

#include "answers/job_answers.h"
#include "answers/overview/overview_source.h"

namespace quillon {

class ListOverview final : public OverviewSource {
public:
    /// Reads all rows of the list.
    [[nodiscard]] static Result<std::unique_ptr<OverviewSource>> read(JobAnswers& list);

    [[nodiscard]] bool knowsAll() const override { return false; }
    [[nodiscard]] std::string source() const override { return {}; }
    [[nodiscard]] bool hasWholePaths() const override { return true; }
    [[nodiscard]] Result<Figures> total() override { return folders_.front().figures; }
    [[nodiscard]] Result<FigureRows> extensions() override;
    [[nodiscard]] Result<FigureRows> reasons() override { return FigureRows(); }
    [[nodiscard]] Result<FolderFacts> root() override;
    [[nodiscard]] Result<FolderList> folders(const FolderFacts& parent) override;
    [[nodiscard]] Result<std::unique_ptr<FileSearch>> search(const FileWish& wish) override;
    [[nodiscard]] Result<EvidenceRow> file(std::int64_t id) override;
    [[nodiscard]] Result<std::optional<std::string>> head(const EvidenceRow& /*file*/) override { return std::nullopt; }

private:
    friend class ListSearch;
    struct Folder {
        std::string path;  // bytes
        std::size_t parent = 0;
        std::vector<std::size_t> children;
        Figures figures;  // of the branch, once all rows are read
    };
    struct File {
        std::uint64_t name = 0;  // where it begins in `names_`; it ends where the next one begins
        std::int64_t size = 0;
        std::uint32_t folder = 0;
        std::uint32_t extension = 0;
        std::uint32_t row = 0;
        std::optional<Grade> grade;
    };
    struct Extension {
        std::string name;
        Figures figures;
    };

    ListOverview() { folders_.emplace_back(); }
    [[nodiscard]] std::size_t folderOf(const std::string& path);
    [[nodiscard]] std::size_t extensionOf(const std::string& name);
    void add(const EvidenceRow& file);
    void sumUp();
    [[nodiscard]] FolderFacts factsOf(std::size_t folder) const;
    [[nodiscard]] std::string_view nameOf(std::size_t file) const;

    std::vector<Folder> folders_;  // a parent stands ahead of its children; the first one holds everything
    std::unordered_map<std::string, std::size_t> folderNumbers_;
    std::vector<Extension> extensions_;
    std::unordered_map<std::string, std::size_t> extensionNumbers_;
    std::vector<File> files_;
    std::string names_;
};

}  // namespace quillon
