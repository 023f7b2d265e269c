// SPDX-License-Identifier: MIT
#pragma once

// One row of a file list: the only place that knows how its columns stand in a line. A row is split once, and what is
// asked of it more than once on its way through a pass (extension, native path, size, attributes) is worked out once.
// docs/formats/file-list.md.
//
// It is text and nothing else: whoever judges, copies or shows files takes rows, so it stands below all of them.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// Columns of a row, in the order in which they stand in the line.
enum class ListColumn : std::size_t {
    Path,        ///< list text
    Modified,    ///< the date of the last change
    Size,        ///< bytes
    Attributes,  ///< attribute bits, ";" and the list token
    Result,      ///< the text of the grade; raw rows have none
    Count        ///< no column: how many a graded row has
};

/// What the walk found out about a file besides its path.
struct FileColumns {
    std::u16string_view modified;
    std::uint64_t size = 0;
    std::uint32_t attributes = 0;
    std::u16string_view token;
};

/// An object that is used for many rows keeps its room. For one thread at a time.
class ListRow {
public:
    ListRow() = default;
    explicit ListRow(std::u16string_view line) { assign(line); }

    /// Takes a line without its end. n commas give n + 1 columns, more than there are names for as well; an empty line
    /// gives none.
    void assign(std::u16string_view line);
    /// Begins the row of a found file with its path: a folder in list form, "/" behind it, and a native name.
    void beginFile(std::u16string_view folder, std::string_view name);
    /// Adds the other columns of a found file.
    void addFile(const FileColumns& file);
    /// Adds a column behind the last; behind an empty line it is the second one.
    void add(std::u16string_view column);
    /// Replaces the result, which the row must have.
    void replaceResult(std::u16string_view result);
    /// Replaces the list token; a row without one stays as it is.
    void replaceToken(std::u16string_view token);

    /// Without the line's end.
    [[nodiscard]] std::u16string_view line() const { return line_; }
    [[nodiscard]] std::size_t columns() const { return columns_; }
    /// True when the row has the columns of a graded one and no further one. A reader that needs the result passes over
    /// any other row.
    [[nodiscard]] bool isGraded() const { return columns_ == static_cast<std::size_t>(ListColumn::Count); }
    [[nodiscard]] bool has(ListColumn column) const { return columns_ > static_cast<std::size_t>(column); }
    /// Empty when the row has no such column.
    [[nodiscard]] std::u16string_view operator[](ListColumn column) const;

    /// As it stands in the name, ">" read as a comma; empty when there is none.
    [[nodiscard]] const std::u16string& extension() const;
    /// The list token; empty when there is none.
    [[nodiscard]] std::u16string_view token() const;
    /// The bytes of the path.
    [[nodiscard]] const std::string& nativePath() const;
    /// Read leniently and held to four decimals, as a fixed-point number; no value without the column.
    [[nodiscard]] std::optional<double> size() const;
    /// The attribute bits, read leniently; no value without the column.
    [[nodiscard]] std::optional<double> attributes() const;

private:
    static constexpr auto kNamed = static_cast<std::size_t>(ListColumn::Count);

    void clear();
    [[nodiscard]] std::size_t openColumn();
    void splitFrom(std::size_t start);

    std::u16string line_;
    std::size_t columns_ = 0;
    std::array<std::size_t, kNamed + 1>
        starts_{};  // of each column and of the one behind, as if each had a comma behind

    // What was worked out already; an empty text alone tells nothing.
    mutable std::u16string extension_;
    mutable std::string nativePath_;
    mutable bool hasExtension_ = false;
    mutable bool hasNativePath_ = false;
    mutable std::optional<double> size_;
    mutable std::optional<double> attributes_;
};

}  // namespace quillon
