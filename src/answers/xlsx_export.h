// SPDX-License-Identifier: MIT
#pragma once

// The files of a job as a workbook for spreadsheets: sheets of files, and one each of extensions and folders. Text is
// text, whatever it begins with: no cell is a formula. Whole numbers above 2^53, which a cell cannot hold, are text.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "answers/figures.h"
#include "evidence/evidence_row.h"
#include "platform/whole_file.h"

struct lxw_workbook;
struct lxw_worksheet;

namespace quillon {

/// So many rows has a sheet, with the one that names its columns.
inline constexpr std::uint32_t kSheetRows = 1'048'576;

class XlsxExport {
public:
    /// The workbook comes to the name `target` when it is whole; until then an old one stays. A sheet that has
    /// `sheetRows` rows (at least 2) is followed by a further one.
    [[nodiscard]] static Result<XlsxExport> begin(const NativePath& target, std::uint32_t sheetRows = kSheetRows);

    /// Adds a file, with the columns of the other exports; names are written as there.
    [[nodiscard]] Result<void> add(const EvidenceRow& file);
    /// Adds a sheet of figures. `what`: the title of its first column.
    [[nodiscard]] Result<void> addFigures(const std::string& sheet, const std::string& what, const FiguresBy& figures);
    /// Writes the workbook, reads it back to see that every row arrived, and gives it its name.
    [[nodiscard]] Result<void> finish();

private:
    struct Free {
        void operator()(lxw_workbook* workbook) const;
    };
    XlsxExport(Replacement replacement, NativePath target, std::uint32_t sheetRows);
    [[nodiscard]] Result<void> openSheet(const std::string& name, const std::vector<std::string>& columns);
    [[nodiscard]] Result<void> nextFileSheet();
    [[nodiscard]] Result<void> nextFigureSheet(const std::string& name, const std::string& what);
    [[nodiscard]] Result<void> checkRows() const;
    [[nodiscard]] Result<void> done(int code) const;
    [[nodiscard]] Result<void> write(std::uint16_t column, const std::string& text);
    [[nodiscard]] Result<void> write(std::uint16_t column, std::int64_t number);

    Replacement replacement_;
    NativePath target_;
    NativePath temporary_;
    std::uint32_t sheetRows_;
    std::unique_ptr<lxw_workbook, Free> workbook_;
    lxw_worksheet* sheet_ = nullptr;  // the workbook's
    std::uint32_t row_ = 0;
    int fileSheets_ = 0;
    std::int64_t rows_ = 0;  // of all sheets
};

}  // namespace quillon
