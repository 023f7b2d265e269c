// SPDX-License-Identifier: MIT
#include "ui/score_board.h"

#include <utility>

#include <QGridLayout>

#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kCellColumns = 4;  // swatch, caption, count, gap
constexpr int kRoomySpacing = 10;
constexpr int kTightSpacing = 4;
constexpr int kBarHeight = 44;

constexpr int rowsOf(std::size_t cells, int blocks) {
    return (static_cast<int>(cells) + blocks - 1) / blocks;
}

}  // namespace

ScoreBoard::ScoreBoard(BoardWidgets widgets) : widgets_(std::move(widgets)) {
    setBlocks(kMostBlocks);
}

// Cells in columns, each filled from the top.
void ScoreBoard::addCells(QGridLayout& grid, const std::vector<BoardCellWidgets>& cells, int firstRow,
                          int firstBlock) const {
    const int rows = rowsOf(cells.size(), blocks_ - firstBlock);
    for (int i = 0; i < static_cast<int>(cells.size()); ++i) {
        const BoardCellWidgets& cell = cells[static_cast<std::size_t>(i)];
        const int row = firstRow + i % rows;
        const int column = (firstBlock + i / rows) * kCellColumns;
        if (cell.swatch != nullptr)
            grid.addWidget(cell.swatch, row, column, Qt::AlignCenter);
        grid.addWidget(cell.caption, row, column + 1);
        grid.addWidget(cell.count, row, column + 2);
    }
}

// A layout that cells were taken out of would keep its columns, so each number of blocks has a new one.
void ScoreBoard::setBlocks(int blocks) {
    if (blocks == blocks_)
        return;
    blocks_ = blocks;
    delete layout();
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(kSpacing);
    grid->setVerticalSpacing(blocks == kMostBlocks ? kRoomySpacing : kTightSpacing);
    // A count stands close to its caption; what a wide window has to give goes between the blocks.
    for (int block = 0; block + 1 < blocks; ++block) {
        grid->setColumnMinimumWidth(block * kCellColumns + 3, kMargin);
        grid->setColumnStretch(block * kCellColumns + 3, 1);
    }
    if (blocks == 1)
        grid->setColumnStretch(2, 1);
    // The quality stands beside the totals, or above them where there is one block alone. It may reach into the gap:
    // what it needs more than a cell would widen the cells below.
    const int firstBlock = blocks == 1 ? 0 : 1;
    const int totalsRows = rowsOf(widgets_.totals.size(), blocks - firstBlock);
    const int qualityRows = blocks == 1 ? 1 : std::max(totalsRows, 4);
    const int totalsRow = blocks == 1 ? qualityRows : 0;
    grid->addWidget(widgets_.quality, 0, 0, qualityRows, kCellColumns, Qt::AlignTop | Qt::AlignLeft);
    addCells(*grid, widgets_.totals, totalsRow, firstBlock);
    const int barRow = std::max(totalsRow + totalsRows, qualityRows);
    grid->addWidget(widgets_.bar, barRow, 0, 1, blocks * kCellColumns - 1);
    grid->setRowMinimumHeight(barRow, kBarHeight);
    addCells(*grid, widgets_.grades, barRow + 1, 0);
}

}  // namespace quillon
