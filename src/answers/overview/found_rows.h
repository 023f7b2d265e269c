// SPDX-License-Identifier: MIT
#pragma once

// The rows below the overview: files by their ids, which are looked up as they come into view, or the changes between
// two jobs. Rows count from 0.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "answers/job_comparison.h"
#include "answers/overview/overview_source.h"

namespace quillon {

class FoundRows {
public:
    /// Files of this source from now on, none at first. Null: there is no job.
    void showFiles(OverviewSource* source);
    /// Changes, until files are shown again.
    void showChanges(std::vector<ChangedFile> changes);
    [[nodiscard]] bool areChanges() const { return areChanges_; }

    /// Of the files that are shown; more may be added behind them.
    [[nodiscard]] std::vector<std::int64_t>& ids() { return ids_; }
    [[nodiscard]] int count() const;
    /// Another number whenever the rows are others; rows that were added leave it alone.
    [[nodiscard]] int contents() const { return contents_; }

    /// Titles: of files "Path", "Size", "Grade", "Why"; of changes "Path", "Change", "Before", "Now".
    static constexpr int kColumns = 4;
    [[nodiscard]] std::array<const char*, kColumns> titles() const;
    /// Readable text; "?" for a file that cannot be looked up.
    [[nodiscard]] std::string cell(int row, int column) const;
    /// None for a row that there is not, for changes, and where the lookup fails.
    [[nodiscard]] std::optional<EvidenceRow> file(int row) const;

private:
    struct Kept {
        std::int64_t id = 0;
        EvidenceRow file;
    };
    [[nodiscard]] const EvidenceRow* look(int row) const;

    OverviewSource* source_ = nullptr;
    std::vector<std::int64_t> ids_;
    std::vector<ChangedFile> changes_;
    bool areChanges_ = false;
    int contents_ = 0;
    mutable std::array<Kept, 256> kept_;  // a view asks for each cell of a row by itself
};

/// Why a file is not good, or what speaks against a good one; empty where nothing is known.
[[nodiscard]] std::string whyText(const EvidenceRow& file);

}  // namespace quillon
