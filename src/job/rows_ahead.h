// SPDX-License-Identifier: MIT
#pragma once

// The rows of the raw list for the testing pass. It looks some rows ahead and asks for the heads of the files that will
// be tested, so that a slow source is kept busy; and it lets the event loop turn until the head of the next row is at
// hand, between two rows and never within one, so that a source that hangs does not hold a window.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "job/file_list.h"
#include "job/job.h"

namespace quillon {

class RowsAhead {
public:
    /// Both must outlive this. When it goes, nothing of the source stays open.
    RowsAhead(ListReader& rows, Job& job) : reader_(rows), job_(job) {}
    ~RowsAhead() { job_.releaseSource(); }
    RowsAhead(const RowsAhead&) = delete;
    RowsAhead& operator=(const RowsAhead&) = delete;

    /// The next row, good until the next call; no value at the end of the list.
    [[nodiscard]] std::optional<std::u16string_view> next();

private:
    struct Row {
        std::u16string line;
        bool asked = false;  // for its head
    };

    void leaveRow();
    void lookAhead();
    void askForHead(Row& row);

    ListReader& reader_;
    Job& job_;
    std::vector<Row> ring_ = std::vector<Row>(HeadsAhead::kMost);  // count_ rows from first_ on
    std::size_t first_ = 0;
    std::size_t count_ = 0;
    bool inWork_ = false;  // the first row was given out
    std::vector<std::u16string_view> fields_;
    std::u16string extension_;
    std::string nativePath_;
};

}  // namespace quillon
