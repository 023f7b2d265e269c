// SPDX-License-Identifier: MIT
// A model of plain text cells. The number of rows that the view knows is kept here, since a source may grow between two
// notices.
#include "widgets/grid_model.h"

#include <utility>

#include <QBrush>
#include <QColor>

#include "widgets/qt_text.h"

namespace quillon {
namespace {

QColor fromHighBlue(std::uint32_t colour) {
    return {static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
            static_cast<int>((colour >> 16) & 0xFF)};
}

int alignmentOf(const GridColumn& column) {
    return static_cast<int>((column.ofNumbers ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

}  // namespace

std::string TextRows::cell(int row, int column) const {
    const auto& cells = rows[static_cast<std::size_t>(row)].cells;
    const auto at = static_cast<std::size_t>(column);
    return at < cells.size() ? cells[at] : std::string{};
}

std::optional<std::uint32_t> TextRows::rowColour(int row) const {
    return rows[static_cast<std::size_t>(row)].colour;
}

GridModel::GridModel(QObject* parent) : QAbstractTableModel(parent), source_(&own_) {
}

void GridModel::setColumns(std::vector<GridColumn> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    endResetModel();
}

void GridModel::setSource(const GridSource* source) {
    source_ = source != nullptr ? source : &own_;
    sourceChanged();
}

void GridModel::sourceChanged() {
    beginResetModel();
    shownRows_ = source_->rowCount();
    endResetModel();
}

void GridModel::sourceGrew() {
    const int rows = source_->rowCount();
    if (rows <= shownRows_)
        return;
    beginInsertRows({}, shownRows_, rows - 1);
    shownRows_ = rows;
    endInsertRows();
}

void GridModel::setRows(std::vector<GridRow> rows) {
    if (rows == own_.rows)
        return;
    if (shownRows_ > 0) {
        beginRemoveRows({}, 0, shownRows_ - 1);
        shownRows_ = 0;
        own_.rows.clear();
        endRemoveRows();
    }
    own_.rows = std::move(rows);
    sourceGrew();
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : shownRows_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= source_->rowCount())
        return {};
    if (role == Qt::DisplayRole)
        return toQt(source_->cell(index.row(), index.column()));
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(columns_[static_cast<std::size_t>(index.column())]);
    if (role != Qt::BackgroundRole && role != Qt::ForegroundRole)
        return {};
    const auto colour = source_->rowColour(index.row());
    if (!colour)
        return {};
    const QColor background = fromHighBlue(*colour);
    if (role == Qt::BackgroundRole)
        return QBrush(background);
    // A told colour keeps its meaning in a dark palette too, so the text on it follows the colour, not the palette.
    return QBrush(background.lightness() > 127 ? Qt::black : Qt::white);
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section >= columnCount())
        return {};
    if (role == Qt::DisplayRole)
        return toQt(columns_[static_cast<std::size_t>(section)].title);
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(columns_[static_cast<std::size_t>(section)]);
    return {};
}

}  // namespace quillon
