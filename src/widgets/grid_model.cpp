// SPDX-License-Identifier: MIT
// A model of plain text cells. The number of rows that the view knows is kept here, since a source may grow between two
// notices.
#include "widgets/grid_model.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <QBrush>
#include <QColor>

#include "text/unicode.h"
#include "widgets/qt_text.h"

namespace quillon {
namespace {

QColor fromHighBlue(std::uint32_t colour) {
    return {static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
            static_cast<int>((colour >> 16) & 0xFF)};
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

void TextRows::setCell(int row, int column, std::string text) {
    auto& cells = rows[static_cast<std::size_t>(row)].cells;
    const auto at = static_cast<std::size_t>(column);
    if (at >= cells.size())
        cells.resize(at + 1);
    cells[at] = std::move(text);
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

void GridModel::append(std::vector<GridRow> rows) {
    own_.rows.insert(own_.rows.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    sourceGrew();
}

void GridModel::insert(int row, GridRow content) {
    beginInsertRows({}, row, row);
    own_.rows.insert(own_.rows.begin() + row, std::move(content));
    ++shownRows_;
    endInsertRows();
}

void GridModel::remove(int row, int count) {
    if (count < 1)
        return;
    beginRemoveRows({}, row, row + count - 1);
    own_.rows.erase(own_.rows.begin() + row, own_.rows.begin() + row + count);
    shownRows_ -= count;
    endRemoveRows();
}

void GridModel::setCell(int row, int column, std::string text) {
    own_.setCell(row, column, std::move(text));
    rowChanged(row);
}

void GridModel::setRowColour(int row, std::optional<std::uint32_t> colour) {
    own_.rows[static_cast<std::size_t>(row)].colour = colour;
    rowChanged(row);
}

void GridModel::swapRows(int first, int second) {
    std::swap(own_.rows[static_cast<std::size_t>(first)], own_.rows[static_cast<std::size_t>(second)]);
    rowChanged(first);
    rowChanged(second);
}

void GridModel::sortByText(int column) {
    std::vector<std::pair<std::u16string, GridRow>> keyed;
    keyed.reserve(own_.rows.size());
    for (int row = 0; row < own_.rowCount(); ++row)
        keyed.emplace_back(lowered(utf8ToUtf16(own_.cell(row, column))),
                           std::move(own_.rows[static_cast<std::size_t>(row)]));
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(keyed.begin(), keyed.end(), own_.rows.begin(), [](auto& pair) { return std::move(pair.second); });
    if (shownRows_ > 0)
        emit dataChanged(index(0, 0), index(shownRows_ - 1, columnCount() - 1));
}

void GridModel::rowChanged(int row) {
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
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
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

}  // namespace quillon
