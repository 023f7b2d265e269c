// SPDX-License-Identifier: MIT
#pragma once

// The grid of all screens: whole-row selection, plain text, told columns. Rows and columns count from 0, so the
// design's column 1 is column 0 here. A row that does not exist is -1.

#include <utility>
#include <vector>

#include <QTableView>

#include "widgets/grid_model.h"

namespace quillon {

class Grid final : public QTableView {
    Q_OBJECT

public:
    Grid();

    /// Titles, widths and hidden columns; the last visible one takes the room that is left. The rows stay.
    void setColumns(const std::vector<GridColumn>& columns);
    [[nodiscard]] GridModel& rows() { return *model_; }

    [[nodiscard]] int rowCount() const;
    [[nodiscard]] int columnCount() const;
    [[nodiscard]] std::string columnTitle(int column) const;
    [[nodiscard]] std::string cell(int row, int column) const;

    /// Replaces the rows of a grid that keeps its own; the same rows again leave place and selection alone.
    void setRows(std::vector<GridRow> rows);

    /// The row of the keyboard and the mouse, -1 for none.
    [[nodiscard]] int currentRow() const;
    /// Selects the row and brings it into view; -1 for no row. Tells `currentRowChanged` when it is another one.
    void setCurrentRow(int row);
    void scrollToRow(int row);
    /// The row at the upper edge of the view, 0 without rows.
    [[nodiscard]] int topRow() const;
    /// The source's rows are others: shows them with this row at the upper edge, as far as the rows go, and this
    /// current row (-1 for none), which need not be in view.
    void showOtherRows(int topRow, int currentRow);
    void scrollToEnd() { scrollToBottom(); }

signals:
    void rowClicked(int row);
    void rowDoubleClicked(int row);
    /// The row, or -1 beside the rows, and where a menu should open. The row is already the current one. Also sent by
    /// the menu key.
    void rowRightClicked(int row, const QPoint& globalPosition);
    void currentRowChanged(int row);
    /// A key before the grid's own reaction; `row` is the current one.
    void keyPressed(int row, int key);

protected:
    /// Home and End go to the first and the last row. Without a current row the other keys begin at the row at the
    /// upper edge of the view, not at the first of all.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void changeEvent(QEvent* event) override;

private:
    void fitRowHeight();
    [[nodiscard]] QModelIndex indexOf(int row) const;
    void makeCurrent(int row);

    GridModel* model_;
};

}  // namespace quillon
