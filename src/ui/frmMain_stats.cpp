// SPDX-License-Identifier: MIT
// The score board: what was found, what came of it, and the grades with their bar.
#include <optional>
#include <vector>

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/frmMain_controls.h"
#include "ui/grade_bar.h"
#include "widgets/control_maker.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

struct Cell {
    QLabel** caption;
    const char* captionName;
    const char* text;
    QLabel** count;
    const char* countName;
    std::optional<QRgb> colour;  // of a grade
};

void addCell(QGridLayout& grid, const Cell& cell, int row, int column) {
    *cell.caption = makeLabel(cell.captionName, cell.text);
    *cell.count = makeCount(cell.countName);
    (*cell.caption)->setBuddy(*cell.count);
    if (cell.colour)
        grid.addWidget(new GradeSwatch(QColor(*cell.colour)), row, column, Qt::AlignCenter);
    grid.addWidget(*cell.caption, row, column + 1);
    grid.addWidget(*cell.count, row, column + 2);
}

constexpr int kCellColumns = 4;  // swatch, caption, count, gap
constexpr int kBlocks = 3;       // cells beside each other
constexpr int kTotalsRow = 0;
constexpr int kTotalsRows = 4;
constexpr int kBarRow = kTotalsRow + kTotalsRows;
constexpr int kGradesRow = kBarRow + 1;
constexpr int kGradesRows = (static_cast<int>(kGradeCount) + 2 + kBlocks - 1) / kBlocks;  // with "Tested" and "Skipped"

// Cells in columns, each filled from the top.
void addCells(QGridLayout& grid, const std::vector<Cell>& cells, int firstRow, int rows, int firstBlock) {
    for (int i = 0; i < static_cast<int>(cells.size()); ++i)
        addCell(grid, cells[static_cast<std::size_t>(i)], firstRow + i % rows, (firstBlock + i / rows) * kCellColumns);
}

}  // namespace

void frmMainControls::createStats() {
    Frame5 = makeFrame("Frame5", "Stats");
    auto* layout = new QVBoxLayout(Frame5);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kSpacing);
    grid->setVerticalSpacing(10);
    // A count stands close to its caption; what a wide window has to give goes between the blocks.
    for (int block = 0; block + 1 < kBlocks; ++block) {
        grid->setColumnMinimumWidth(block * kCellColumns + 3, kMargin);
        grid->setColumnStretch(block * kCellColumns + 3, 1);
    }
    createQuality(*grid);
    createTotals(*grid);
    gradeBar = make<GradeBar>("gradeBar");
    grid->addWidget(gradeBar, kBarRow, 0, 1, kBlocks * kCellColumns - 1);
    grid->setRowMinimumHeight(kBarRow, 56);
    createGrades(*grid);
    layout->addLayout(grid);
    layout->addStretch();
}

void frmMainControls::createQuality(QGridLayout& grid) {
    Label10 = makeLabel("Label10", "Recovery Quality:");
    lRPC = makeLabel("lRPC", "0");
    QFont large = countFont(lRPC->font());
    large.setPointSizeF(large.pointSizeF() * 2.6);
    lRPC->setFont(large);
    lRPC->setMinimumWidth(lRPC->fontMetrics().horizontalAdvance(QStringLiteral("100.00%")));
    Label10->setBuddy(lRPC);
    Label19 = makeLabel("Label19", "Throughput");
    Label16 = makeLabel("Label16", "");
    Label22 = makeLabel("Label22", "");
    Label16->setMinimumWidth(Label16->fontMetrics().horizontalAdvance(QStringLiteral("000,000 Files per minute")));
    Label19->setBuddy(Label16);
    keepRoomWhenHidden(*Label16);  // a copy hides it

    auto* block = new QVBoxLayout;
    block->setSpacing(2);
    block->addWidget(Label10);
    block->addWidget(lRPC);
    auto* speed = new QHBoxLayout;
    speed->setSpacing(kSpacing);
    speed->addWidget(Label19);
    speed->addWidget(Label22);
    speed->addStretch();
    block->addLayout(speed);
    block->addWidget(Label16);
    // Into the gap: what it needs more than a cell would widen the cells below.
    grid.addLayout(block, kTotalsRow, 0, kTotalsRows, kCellColumns, Qt::AlignTop | Qt::AlignLeft);
}

void frmMainControls::createTotals(QGridLayout& grid) {
    copiedNote = makeLabel("copiedNote", "Copied:");
    addCells(grid,
             {{&Label7, "Label7", "Total Files:", &lfiles, "lfiles", {}},
              {&Label25, "Label25", "Total folders:", &lFOlders, "lFOlders", {}},
              {&Label9, "Label9", "Total Size:", &lsize, "lsize", {}},
              {&Label26, "Label26", "Folder Errors:", &lFolderErrors, "lFolderErrors", {}},
              {&Label9_1, "Label9_1", "Copy Errors", &lCopyErrors, "lCopyErrors", {}},
              {&Label21, "Label21", "", &lTotCopied, "lTotCopied", {}}},
             kTotalsRow, 3, 1);
    // Label21 is empty but during a copy; its count is never without a caption.
    grid.addWidget(copiedNote, kTotalsRow + 2, 2 * kCellColumns + 1);
}

void frmMainControls::createGrades(QGridLayout& grid) {
    std::vector<Cell> cells;
    for (const Grade grade : kBoardOrder) {
        const BoardCell& board = kGrades[grade].board;
        cells.push_back({&gradeCaptions[grade], board.captionControl, board.caption, &gradeCounts[grade],
                         board.countControl, kGrades[grade].bar.colour});
    }
    cells.push_back({&Label11, "Label11", "Tested:", &lTested, "lTested", {}});
    cells.push_back({&Label13, "Label13", "Skipped:", &lSkipped, "lSkipped", {}});
    addCells(grid, cells, kGradesRow, kGradesRows, 0);
}

}  // namespace quillon
