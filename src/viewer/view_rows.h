// SPDX-License-Identifier: MIT
#pragma once

// The rows of the viewer's grid: the list rows of one grade. A million of them are held in little more room than their
// text. Rows count from 0.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon {

class ViewRows {
public:
    /// A row by itself, whatever place it has among the others. Good until `clear`.
    using Id = std::uint32_t;

    void clear();
    /// `path`: column 1 of the list in list form; `problem`: column 3 of the grid, mostly empty; `line`: of the list,
    /// from 1, 0 for an unknown one.
    void add(std::u16string_view path, std::u16string_view problem = {}, std::uint32_t line = 0);

    /// Rows that have not been removed.
    [[nodiscard]] int count() const { return live_; }
    /// Places that the grid shows: until `settle`, removed rows keep theirs.
    [[nodiscard]] int shown() const { return static_cast<int>(order_.size()); }
    [[nodiscard]] Id idAt(int row) const { return order_[static_cast<std::size_t>(row)]; }

    [[nodiscard]] std::u16string_view path(Id id) const { return rows_[id].path; }
    [[nodiscard]] std::u16string_view problem(Id id) const { return rows_[id].problem; }
    /// The line as it was when the row was added.
    [[nodiscard]] std::uint32_t line(Id id) const { return rows_[id].line; }
    /// In the case in which it stands in the list, blanks around it cut.
    [[nodiscard]] std::u16string_view extension(Id id) const;
    /// The same in lower case.
    [[nodiscard]] const std::u16string& foldedExtension(Id id) const { return extensions_[rows_[id].extension].folded; }

    /// The extensions of the rows in lower case, each once, in no order that means anything.
    [[nodiscard]] std::vector<std::u16string> foldedExtensions() const;
    /// How many rows have the extension, ignoring case.
    [[nodiscard]] int countOf(std::u16string_view extension) const;

    [[nodiscard]] bool isRemoved(Id id) const { return removed_[id]; }
    /// Takes a row out. The others keep their places until `settle`, since a pass may take out most of a million.
    void remove(Id id);
    /// The place that `row` will have once the rows have settled; for a removed row that of the next one that stays.
    [[nodiscard]] int settledPlace(int row) const;
    /// Closes the gaps.
    void settle();
    [[nodiscard]] bool isSettled() const { return shown() == live_; }

private:
    struct Row {
        std::u16string_view path;
        std::u16string_view problem;
        std::uint32_t extension = 0;
        std::uint32_t line = 0;
    };
    struct Extension {
        std::u16string folded;
        int rows = 0;
    };

    [[nodiscard]] std::u16string_view keep(std::u16string_view text);
    [[nodiscard]] std::uint32_t extensionNumber(std::u16string_view path);

    std::deque<std::u16string> blocks_;  // all texts, in blocks that never move
    std::deque<Row> rows_;
    std::vector<bool> removed_;  // by Id; apart from the rows, since a pass asks all of them many times
    std::vector<Id> order_;
    std::vector<Extension> extensions_;
    std::unordered_map<std::u16string, std::uint32_t> numbers_;
    int live_ = 0;
};

/// Finds rows by their path: the first of equal ones wins, as in a search from the first row.
class RowLookup {
public:
    /// Looks at the rows whose path ends in `suffix`, ignoring case. The rows must outlive this and not be added to.
    RowLookup(const ViewRows& rows, std::u16string_view suffix);

    /// The first row with this path, case-sensitively, that has not been removed; null when there is none.
    [[nodiscard]] const ViewRows::Id* find(std::u16string_view path);

private:
    const ViewRows& rows_;
    // Rows of one path in the order of the grid.
    struct Equal {
        std::vector<ViewRows::Id> ids;
        std::size_t first = 0;
    };
    std::unordered_map<std::u16string_view, Equal> byPath_;
};

/// True when `text` ends in `suffix`, ignoring case.
[[nodiscard]] bool endsWithIgnoringCase(std::u16string_view text, std::u16string_view suffix);

}  // namespace quillon
