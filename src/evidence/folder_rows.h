// SPDX-License-Identifier: MIT
#pragma once

// The folders of the evidence. For the sources of this folder only.

#include "evidence/database.h"

namespace quillon {

class FolderRows {
public:
    [[nodiscard]] static Result<FolderRows> prepare(Database& database);

    /// The number of a folder, which is made with those that lead to it when it is new. `path`: bytes, below the
    /// source.
    [[nodiscard]] Result<std::int64_t> idOf(std::string_view path);

    /// Notes what was wrong with a folder.
    [[nodiscard]] Result<void> setError(std::string_view path, std::string_view words);

    /// Counts the files of each whole branch anew. Within a transaction.
    [[nodiscard]] Result<void> countBranches();

private:
    struct Counts;
    FolderRows() = default;
    [[nodiscard]] Result<std::int64_t> insert(std::string_view path, const std::string& text);
    [[nodiscard]] Result<void> countOwnFiles();
    [[nodiscard]] Result<void> addToParents();

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
