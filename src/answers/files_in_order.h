// SPDX-License-Identifier: MIT
#pragma once

// The files of a job one by one, and whether they come in the order of a walk. For the sources of this folder only.

#include <compare>

#include "answers/job_answers.h"

namespace quillon {

/// The path of a folder behind one that is cut off; none for a folder beside it.
[[nodiscard]] std::optional<std::string_view> folderBelow(std::string_view folder, std::string_view strip);

class FilesInOrder {
public:
    /// `strip`: a folder that is cut off; files beside it are left out. Of rows with one path that follow each other
    /// the last one counts. The job must outlive this.
    [[nodiscard]] static Result<FilesInOrder> begin(JobAnswers& job, std::string strip);

    [[nodiscard]] bool hasEnded() const { return !current_.isThere; }
    /// False once a file comes that a walk would have met ahead of the one before it; it is looked at one file ahead.
    [[nodiscard]] bool isInOrder() const { return inOrder_; }
    /// Of the current file, behind what is cut off. Good until the next one.
    [[nodiscard]] BriefFile file() const;
    [[nodiscard]] std::strong_ordering order(const FilesInOrder& other) const {
        return orderOf(current_, other.current_);
    }

    [[nodiscard]] Result<void> advance();

private:
    struct Kept {
        bool isThere = false;
        std::int64_t id = 0;
        std::int64_t size = 0;
        std::string folder;
        std::string name;
        std::string extension;
        std::optional<Grade> grade;
    };

    FilesInOrder(std::unique_ptr<BriefFiles> files, std::string strip)
        : files_(std::move(files)), strip_(std::move(strip)) {}
    [[nodiscard]] static std::strong_ordering orderOf(const Kept& first, const Kept& second);
    [[nodiscard]] Result<void> fetch();

    std::unique_ptr<BriefFiles> files_;
    std::string strip_;
    Kept current_;
    Kept ahead_;
    bool inOrder_ = true;
};

}  // namespace quillon
