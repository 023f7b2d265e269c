// SPDX-License-Identifier: MIT
#pragma once

// What a grid shows: rows of plain text, with a colour here and there. A short grid keeps its rows here (TextRows); a
// screen with a long list lets the grid look into its own rows through GridSource, so that a million rows cost no more
// than they cost already.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <QAbstractTableModel>
#include <QVariant>

namespace quillon {

struct GridColumn {
    std::string title;
    int width = 0;  ///< of a screen with 96 points per inch; 0 leaves the default
    bool hidden = false;
    bool ofNumbers = false;  ///< they end below each other, and below the end of the title
};

/// Rows count from 0, columns from 0. All texts are UTF-8.
class GridSource {
public:
    virtual ~GridSource() = default;
    [[nodiscard]] virtual int rowCount() const = 0;
    /// Called for the visible cells only.
    [[nodiscard]] virtual std::string cell(int row, int column) const = 0;
    /// Background of the row's cells, blue in the high byte; none for the usual one.
    [[nodiscard]] virtual std::optional<std::uint32_t> rowColour(int /*row*/) const { return std::nullopt; }
};

struct GridRow {
    std::vector<std::string> cells;  ///< a row may have fewer cells than the grid has columns; the rest is empty
    std::optional<std::uint32_t> colour;

    friend bool operator==(const GridRow&, const GridRow&) = default;
};

/// Rows held in memory.
class TextRows final : public GridSource {
public:
    [[nodiscard]] int rowCount() const override { return static_cast<int>(rows.size()); }
    [[nodiscard]] std::string cell(int row, int column) const override;
    [[nodiscard]] std::optional<std::uint32_t> rowColour(int row) const override;

    std::vector<GridRow> rows;
};

class GridModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit GridModel(QObject* parent);

    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] const std::vector<GridColumn>& columns() const { return columns_; }

    /// Looks into `source` from now on; it must outlive the model. Null goes back to the model's own rows.
    void setSource(const GridSource* source);
    [[nodiscard]] const GridSource& source() const { return *source_; }
    /// The source changed from the ground up.
    void sourceChanged();
    /// Rows were added at the end of the source.
    void sourceGrew();

    /// Replaces the model's own rows, which it looks into; the same rows again change nothing.
    void setRows(std::vector<GridRow> rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<GridColumn> columns_;
    TextRows own_;
    const GridSource* source_;
    int shownRows_ = 0;
};

}  // namespace quillon
