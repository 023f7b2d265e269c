// SPDX-License-Identifier: MIT
#pragma once

// Sums of whole branches of folders. For the sources of this folder only.

#include <string_view>

#include "answers/figures.h"

namespace quillon {

class FolderBranches {
public:
    explicit FolderBranches(std::size_t depth) : depth_(depth) {}

    /// Adds the files of one folder (bytes of its path below the source) to it and to all above it, as far as they are
    /// not deeper than `depth`.
    void add(std::string_view path, const Figures& own) {
        branches_[std::string()] += own;
        std::size_t level = 0;
        for (std::size_t end = path.find('/', 1); level < depth_ && !path.empty(); end = path.find('/', end + 1)) {
            ++level;
            branches_[std::string(path.substr(0, end))] += own;
            if (end == path.npos)
                break;
        }
    }

    [[nodiscard]] FiguresBy take() { return std::move(branches_); }

private:
    std::size_t depth_;
    FiguresBy branches_;
};

}  // namespace quillon
