// SPDX-License-Identifier: MIT
// Measured with a million rows: a header that fits each row to its contents, row lists of a selection, hidden rows and
// proxy models take seconds. So all rows have one height, and sorting and filtering are done in the core.
#include "widgets/grid.h"

#include <algorithm>

#include <QContextMenuEvent>
#include <QEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include "widgets/qt_text.h"

namespace quillon {
namespace {

// Rows are what a person chooses, so no single cell gets a focus frame.
class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state &= ~QStyle::State_HasFocus;
    }
};

}  // namespace

Grid::Grid() : model_(new GridModel(this)) {
    setModel(model_);
    setItemDelegate(new RowDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerItem);
    setCornerButtonEnabled(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setMinimumSectionSize(24);
    fitRowHeight();
    connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) { emit rowClicked(index.row()); });
    connect(this, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { emit rowDoubleClicked(index.row()); });
}

void Grid::fitRowHeight() {
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(QFontMetrics(font()).height() + 6);
}

void Grid::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitRowHeight();
}

void Grid::setColumns(const std::vector<GridColumn>& columns) {
    model_->setColumns(columns);
    for (int column = 0; column < columnCount(); ++column) {
        const GridColumn& told = columns[static_cast<std::size_t>(column)];
        setColumnHidden(column, told.hidden);
        if (told.width > 0)
            setColumnWidth(column, told.width);
    }
}

int Grid::rowCount() const {
    return model_->rowCount();
}

int Grid::columnCount() const {
    return model_->columnCount();
}

std::string Grid::columnTitle(int column) const {
    return model_->columns()[static_cast<std::size_t>(column)].title;
}

std::string Grid::cell(int row, int column) const {
    return row >= 0 && row < rowCount() ? model_->source().cell(row, column) : std::string{};
}

void Grid::setRows(std::vector<GridRow> rows) {
    model_->setRows(std::move(rows));
}

int Grid::currentRow() const {
    const QModelIndex current = currentIndex();
    return current.isValid() ? current.row() : -1;
}

void Grid::setCurrentRow(int row) {
    if (row < 0 || row >= rowCount()) {
        selectionModel()->clear();
        return;
    }
    makeCurrent(row);
    scrollToRow(row);
}

void Grid::makeCurrent(int row) {
    selectionModel()->setCurrentIndex(indexOf(row), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

// The first cell of the row that is shown.
QModelIndex Grid::indexOf(int row) const {
    int column = 0;
    while (column + 1 < columnCount() && isColumnHidden(column)) ++column;
    return model_->index(row, column);
}

void Grid::scrollToRow(int row) {
    scrollTo(model_->index(row, horizontalHeader()->logicalIndexAt(1)));
}

int Grid::topRow() const {
    return verticalScrollBar()->value();
}

void Grid::showOtherRows(int topRow, int currentRow) {
    model_->sourceChanged();
    // A row that becomes current scrolls itself into view otherwise.
    setAutoScroll(false);
    if (currentRow >= 0 && currentRow < rowCount())
        makeCurrent(currentRow);
    setAutoScroll(true);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(topRow);
}

QModelIndex Grid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (rowCount() == 0)
        return {};
    // Rows are what is chosen here, so the ends are those of the rows and not of the cells of one.
    if (action == MoveHome)
        return indexOf(0);
    if (action == MoveEnd)
        return indexOf(rowCount() - 1);
    if (!currentIndex().isValid())
        return indexOf(topRow());
    return QTableView::moveCursor(action, modifiers);
}

void Grid::keyPressEvent(QKeyEvent* event) {
    emit keyPressed(currentRow(), event->key());
    QTableView::keyPressEvent(event);
}

void Grid::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QRect cell = visualRect(currentIndex());
        emit rowRightClicked(currentRow(), viewport()->mapToGlobal(cell.bottomLeft()));
        return;
    }
    const int row = rowAt(viewport()->mapFromGlobal(event->globalPos()).y());
    if (row >= 0 && row != currentRow())
        setCurrentRow(row);
    emit rowRightClicked(row, event->globalPos());
}

// A row becomes current when a person or the screen chooses one, not by the focus alone.
void Grid::focusInEvent(QFocusEvent* event) {
    if (currentIndex().isValid()) {
        QTableView::focusInEvent(event);
        return;
    }
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the parent would make the first row current
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void Grid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    const int row = current.isValid() ? current.row() : -1;
    const int before = previous.isValid() ? previous.row() : -1;
    if (row != before)
        emit currentRowChanged(row);
}

}  // namespace quillon
