// SPDX-License-Identifier: MIT
#pragma once

// Paths of files as `quillon-list` puts them out. For the sources of this folder only.

#include <ostream>
#include <string>
#include <string_view>

#include "text/list_text.h"

namespace quillon {

/// One path a line, or behind each a zero byte. `forPeople`: lines are made readable; paths with a zero byte never are.
/// They are put out in pieces, since a stream takes its time for each call; all of them when this ends.
class PathLines {
public:
    PathLines(std::ostream& out, bool zeros, bool forPeople) : out_(out), zeros_(zeros), forPeople_(forPeople) {}
    ~PathLines() { putOut(); }
    PathLines(const PathLines&) = delete;
    PathLines& operator=(const PathLines&) = delete;

    void add(std::string_view above, std::string_view folder, std::string_view name) {
        const std::size_t begin = lines_.size();
        lines_ += above;
        lines_ += folder;
        if (!folder.empty())
            lines_ += '/';
        lines_ += name;
        if (forPeople_ && !zeros_) {
            const std::string shown = readable(std::string_view(lines_).substr(begin));
            lines_.replace(begin, lines_.npos, shown);
        }
        lines_ += zeros_ ? '\0' : '\n';
        if (lines_.size() >= kPieceBytes)
            putOut();
    }

private:
    static constexpr std::size_t kPieceBytes = std::size_t{1} << 16U;

    void putOut() {
        out_ << lines_;
        lines_.clear();
    }

    std::ostream& out_;
    bool zeros_;
    bool forPeople_;
    std::string lines_;
};

}  // namespace quillon
