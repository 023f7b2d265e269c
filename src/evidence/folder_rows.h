// SPDX-License-Identifier: MIT
#pragma once

// The folders of the evidence. For the sources of this folder only.

#include <array>
#include <optional>
#include <vector>

#include "evidence/database.h"
#include "testing/grade.h"

namespace quillon {

class FolderRows {
public:
    [[nodiscard]] static Result<FolderRows> prepare(Database& database);

    /// The number of a folder, which is made with those that lead to it when it is new. `path`: bytes, below the
    /// source.
    [[nodiscard]] Result<std::int64_t> idOf(std::string_view path);

    /// Notes what was wrong with a folder.
    [[nodiscard]] Result<void> setError(std::string_view path, std::string_view words);

    /// A file came into a folder.
    void added(std::int64_t folder, std::int64_t size, std::optional<Grade> grade);
    /// There are other files than those that were `added`: they are looked at when they are to be counted.
    void doNotKnowFiles() { own_.reset(); }

    /// Counts the files of each whole branch. Within a transaction.
    [[nodiscard]] Result<void> countBranches();

private:
    struct Counts {
        std::int64_t files = 0;
        std::int64_t bytes = 0;
        std::array<std::int64_t, kGradeCount> grades{};

        void add(std::int64_t size, std::optional<std::int64_t> grade);
    };
    FolderRows() = default;
    [[nodiscard]] Result<std::int64_t> insert(std::string_view path, const std::string& text);
    [[nodiscard]] Result<void> write(std::int64_t folder, const Counts& counts);
    [[nodiscard]] Result<void> writeOwnCounts();
    [[nodiscard]] Result<void> countOwnFiles();
    [[nodiscard]] Result<void> addToParents();

    // Of the folder of this number, without the folders in it; none when they are not known.
    std::optional<std::vector<Counts>> own_ = std::vector<Counts>();

    Statement find_;
    Statement insert_;
    Statement error_;
    Statement clear_;
    Statement file_;
    Statement add_;
    Statement above_;
    Statement rollUp_;
    std::int64_t lastId_ = 0;
    std::string lastPath_;
    std::string text_;
};

}  // namespace quillon
