// SPDX-License-Identifier: MIT
#pragma once

// Bars of grades as the overview paints them: each grade has its colour, and the pattern and letter that it has on the
// page for the customer, so that a bar can be read without its colours.

#include <functional>
#include <optional>

#include <QStyledItemDelegate>
#include <QWidget>

#include "answers/figures_text.h"
#include "widgets/grid_model.h"

namespace quillon {

/// A bar as long as `share` (0 to 1) of its room.
struct BarPicture {
    ByGrade<std::int64_t> grades;
    std::int64_t others = 0;  ///< files without a grade, or whose grades are not told
    double share = 1;
};

[[nodiscard]] BarPicture barOf(const Figures& figures);

void paintBar(QPainter& painter, const QRectF& room, const BarPicture& bar, const QPalette& palette);

/// The column of a view that shows bars; for whoever cannot see it its cells are the counts in words.
class BarDelegate final : public QStyledItemDelegate {
public:
    using PictureOf = std::function<std::optional<BarPicture>(const QModelIndex& index)>;
    BarDelegate(QObject* parent, PictureOf pictureOf) : QStyledItemDelegate(parent), pictureOf_(std::move(pictureOf)) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    PictureOf pictureOf_;
};

/// "Good 12, Corrupt 3"
[[nodiscard]] std::string gradesInWords(const Figures& figures);

/// Extensions or reasons: name, files, quality, bar. The first row is of all files.
class FigureSource final : public GridSource {
public:
    FigureSource(const FigureRows& rows, std::string ofAll, std::string ofNone)
        : rows_(rows), ofAll_(std::move(ofAll)), ofNone_(std::move(ofNone)) {}
    [[nodiscard]] int rowCount() const override { return static_cast<int>(rows_.size()); }
    [[nodiscard]] std::string cell(int row, int column) const override;
    [[nodiscard]] std::optional<BarPicture> picture(int row) const;

    static constexpr int kBarColumn = 3;

private:
    [[nodiscard]] std::string nameOf(int row) const;

    const FigureRows& rows_;
    std::string ofAll_;
    std::string ofNone_;
};

/// The grades of the whole job as one bar.
class JobBar final : public QWidget {
    Q_OBJECT

public:
    JobBar();
    void setFigures(const Figures& figures);
    [[nodiscard]] QSize sizeHint() const override { return {300, 22}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {120, 22}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    BarPicture bar_;
};

/// What the colours and patterns of the bars mean: letter, sign and count of each grade that there is.
class GradeLegend final : public QWidget {
    Q_OBJECT

public:
    void setFigures(const Figures& figures);
    [[nodiscard]] QSize sizeHint() const override { return {300, heightForWidth(900)}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Entry {
        Grade grade;
        QString text;
    };
    /// Gives the height; paints where a painter is given.
    int layOut(int width, QPainter* painter) const;

    std::vector<Entry> entries_;
};

}  // namespace quillon
