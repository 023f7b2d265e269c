// SPDX-License-Identifier: MIT
// The score board: what was found, what came of it, and the grades with their bar.
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

// Told apart by lightness as well as by hue, so that the bar can be read by everybody.
struct GradeLook {
    const char* name;
    QRgb colour;
};
constexpr GradeLook kGrades[] = {
    {"Good", 0x2f9e62},         {"Common header", 0x7cc5a0},     {"Corrupt", 0xd14343},
    {"Unknown", 0x8792a2},      {"No extension", 0xb4a1d6},      {"Encrypted", 0xe0a100},
    {"Access error", 0xe8763a}, {"Invalid file name", 0x8a5a3c}, {"Zero bytes", 0xc9ced6},
    {"Small file", 0x5b7fb5},
};

struct Cell {
    QLabel** caption;
    const char* captionName;
    const char* text;
    QLabel** count;
    const char* countName;
    int grade;  // index of kGrades, -1 for a count that is none
};

void addCell(QGridLayout& grid, const Cell& cell, int row, int column) {
    *cell.caption = makeLabel(cell.captionName, cell.text);
    *cell.count = makeCount(cell.countName);
    (*cell.caption)->setBuddy(*cell.count);
    if (cell.grade >= 0) {
        auto* swatch = new GradeSwatch(QColor(kGrades[cell.grade].colour));
        grid.addWidget(swatch, row, column, Qt::AlignCenter);
    }
    grid.addWidget(*cell.caption, row, column + 1);
    grid.addWidget(*cell.count, row, column + 2);
}

constexpr int kCellColumns = 4;  // swatch, caption, count, gap
constexpr int kBlocks = 3;       // cells beside each other
constexpr int kTotalsRow = 0;
constexpr int kTotalsRows = 4;
constexpr int kBarRow = kTotalsRow + kTotalsRows;
constexpr int kGradesRow = kBarRow + 1;
constexpr int kGradesRows = 4;

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
    std::vector<GradePart> parts;
    for (const GradeLook& look : kGrades) parts.push_back({QLatin1String(look.name), QColor(look.colour), 0});
    gradeBar->setParts(std::move(parts));
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
             {{&Label7, "Label7", "Total Files:", &lfiles, "lfiles", -1},
              {&Label25, "Label25", "Total folders:", &lFOlders, "lFOlders", -1},
              {&Label9, "Label9", "Total Size:", &lsize, "lsize", -1},
              {&Label26, "Label26", "Folder Errors:", &lFolderErrors, "lFolderErrors", -1},
              {&Label9_1, "Label9_1", "Copy Errors", &lCopyErrors, "lCopyErrors", -1},
              {&Label21, "Label21", "", &lTotCopied, "lTotCopied", -1}},
             kTotalsRow, 3, 1);
    // Label21 is empty but during a copy; its count is never without a caption.
    grid.addWidget(copiedNote, kTotalsRow + 2, 2 * kCellColumns + 1);
}

void frmMainControls::createGrades(QGridLayout& grid) {
    addCells(grid,
             {{&Label4, "Label4", "Good:", &lGoodFIles, "lGoodFIles", 0},
              {&Label24, "Label24", "C/Head:", &lCommon, "lCommon", 1},
              {&Label5, "Label5", "Corrupt:", &lCorruptFiles, "lCorruptFiles", 2},
              {&Label6, "Label6", "Unknown:", &lUnknownFiles, "lUnknownFiles", 3},
              {&Label1, "Label1", "No Ext:", &lNoextensioN, "lNoextensioN", 4},
              {&Label20, "Label20", "Encrypted:", &lEncrypted, "lEncrypted", 5},
              {&Label18, "Label18", "Access errors:", &lAccessErrors, "lAccessErrors", 6},
              {&Label17, "Label17", "Invalid Filename:", &lBadFileName, "lBadFileName", 7},
              {&Label14, "Label14", "Zero Bytes:", &lZeroBytes, "lZeroBytes", 8},
              {&Label15, "Label15", "Small Files:", &lSmallFiles, "lSmallFiles", 9},
              {&Label11, "Label11", "Tested:", &lTested, "lTested", -1},
              {&Label13, "Label13", "Skipped:", &lSkipped, "lSkipped", -1}},
             kGradesRow, kGradesRows, 0);
}

}  // namespace quillon
