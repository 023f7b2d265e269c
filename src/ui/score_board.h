// SPDX-License-Identifier: MIT
#pragma once

// The score board: its cells in one, two or three blocks beside each other, as there is room.

#include <array>
#include <vector>

#include <QWidget>

class QGridLayout;

namespace quillon {

/// A count with its caption; a grade has a swatch of its colour ahead of it.
struct BoardCellWidgets {
    QWidget* swatch = nullptr;
    QWidget* caption = nullptr;
    QWidget* count = nullptr;
};

/// What the board shows, from its top to its bottom.
struct BoardWidgets {
    QWidget* quality = nullptr;
    std::vector<BoardCellWidgets> totals;
    QWidget* bar = nullptr;
    std::vector<BoardCellWidgets> grades;
};

class ScoreBoard final : public QWidget {
public:
    static constexpr int kMostBlocks = 3;

    /// The board owns what it shows. It begins with the most blocks.
    explicit ScoreBoard(BoardWidgets widgets);

    /// 1 to kMostBlocks.
    void setBlocks(int blocks);
    [[nodiscard]] int blocks() const { return blocks_; }

private:
    void addCells(QGridLayout& grid, const std::vector<BoardCellWidgets>& cells, int firstRow, int firstBlock) const;

    BoardWidgets widgets_;
    int blocks_ = 0;
};

}  // namespace quillon
