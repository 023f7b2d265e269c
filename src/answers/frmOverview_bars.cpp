// SPDX-License-Identifier: MIT
#include "answers/frmOverview_bars.h"

#include <algorithm>
#include <sstream>

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

#include "answers/html_report_style.h"
#include "answers/overview/bar_parts.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr qreal kCorner = 3;
constexpr qreal kPatternSide = 8;
constexpr int kBarSpace = 4;
constexpr int kSignWidth = 22;

// The lines of a pattern, written as in SVG: M moves, L, h and v draw.
QPainterPath patternPath(const char* svg) {
    QPainterPath path;
    std::istringstream text{std::string(svg)};
    char command = 0;
    while (text >> command) {
        qreal x = 0;
        qreal y = 0;
        text >> x;
        if (command == 'M' || command == 'L')
            text >> y;
        const QPointF at = path.currentPosition();
        if (command == 'M')
            path.moveTo(x, y);
        else if (command == 'L')
            path.lineTo(x, y);
        else
            path.lineTo(command == 'h' ? at + QPointF(x, 0) : at + QPointF(0, x));
    }
    return path;
}

void paintPart(QPainter& painter, const QRectF& part, Grade grade) {
    const QColor colour(kGrades[grade].bar.colour);
    painter.fillRect(part, colour);
    const QPainterPath pattern = patternPath(signOf(grade).pattern);
    if (pattern.isEmpty() || part.width() < kPatternSide / 2)
        return;
    painter.save();
    painter.setClipRect(part, Qt::IntersectClip);
    painter.setPen(QPen(colour.lightness() > 110 ? QColor(0, 0, 0, 150) : QColor(255, 255, 255, 190), 1.3));
    for (qreal top = part.top(); top < part.bottom(); top += kPatternSide)
        for (qreal left = part.left(); left < part.right(); left += kPatternSide)
            painter.drawPath(pattern.translated(left, top));
    painter.restore();
}

}  // namespace

BarPicture barOf(const Figures& figures) {
    return {figures.grades, figures.notTested, 1};
}

void paintBar(QPainter& painter, const QRectF& room, const BarPicture& bar, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF whole = room.adjusted(0.5, 0.5, -0.5, -0.5);
    whole.setWidth(std::max(kLeastPart, whole.width() * bar.share));
    QPainterPath shape;
    shape.addRoundedRect(whole, kCorner, kCorner);
    painter.fillPath(shape, palette.color(QPalette::PlaceholderText));
    painter.setClipPath(shape);
    std::int64_t counted = 0;
    for (const auto files : bar.grades.values) counted += files;
    const double all = static_cast<double>(counted + std::max<std::int64_t>(0, bar.others));
    const double ofGrades = all > 0 ? whole.width() * static_cast<double>(counted) / all : 0;
    const auto widths = barParts(bar.grades, ofGrades);
    qreal left = whole.left();
    for (const Grade grade : kBoardOrder) {
        if (widths[grade] > 0)
            paintPart(painter, QRectF(left, whole.top(), widths[grade], whole.height()), grade);
        left += widths[grade];
    }
    painter.setClipping(false);
    painter.setPen(palette.color(QPalette::Dark));
    painter.drawPath(shape);
    painter.restore();
}

void BarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem own = option;
    initStyleOption(&own, index);
    own.text.clear();
    const QWidget* view = option.widget;
    QStyle* const style = view != nullptr ? view->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &own, painter, view);
    if (const auto bar = pictureOf_(index))
        paintBar(*painter, QRectF(option.rect).adjusted(kBarSpace, kBarSpace, -kBarSpace, -kBarSpace), *bar,
                 option.palette);
}

// A bar needs some room above and below; a grid has a row height of its own.
QSize BarDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * kBarSpace);
}

std::string gradesInWords(const Figures& figures) {
    std::string text;
    for (const Grade grade : kBoardOrder)
        if (figures.grades[grade] > 0)
            text += (text.empty() ? "" : ", ") + std::string(kGrades[grade].bar.name.value) + " " +
                    grouped(figures.grades[grade]);
    return text;
}

std::string FigureSource::nameOf(int row) const {
    const std::string& name = rows_[static_cast<std::size_t>(row)].first;
    if (row == 0)
        return ofAll_;
    return name.empty() ? ofNone_ : readable(std::string_view(name));
}

std::string FigureSource::cell(int row, int column) const {
    const Figures& figures = rows_[static_cast<std::size_t>(row)].second;
    switch (column) {
        case 0:
            return nameOf(row);
        case 1:
            return grouped(figures.files);
        case 2: {
            const auto value = quality(figures);
            return value ? percent(*value) : "-";
        }
        default:
            return gradesInWords(figures);
    }
}

std::optional<BarPicture> FigureSource::picture(int row) const {
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    const Figures& figures = rows_[static_cast<std::size_t>(row)].second;
    BarPicture bar = barOf(figures);
    if (gradesInWords(figures).empty()) {  // reasons are not told by grade: their bars are shares of all
        const auto all = static_cast<double>(std::max<std::int64_t>(1, rows_.front().second.files));
        bar.others = figures.files;
        bar.share = static_cast<double>(figures.files) / all;
    }
    return bar;
}

JobBar::JobBar() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Grades of the job"));
}

void JobBar::setFigures(const Figures& figures) {
    bar_ = barOf(figures);
    setAccessibleDescription(toQt(gradesInWords(figures)));
    setToolTip(accessibleDescription());
    update();
}

void JobBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintBar(painter, rect(), bar_, palette());
}

void GradeLegend::setFigures(const Figures& figures) {
    entries_.clear();
    QString words;
    for (const Grade grade : kBoardOrder) {
        if (figures.grades[grade] == 0)
            continue;
        const QString text = QStringLiteral("%1  %2 %3")
                                 .arg(QLatin1Char(signOf(grade).letter))
                                 .arg(QLatin1String(kGrades[grade].bar.name), toQt(grouped(figures.grades[grade])));
        entries_.push_back({grade, text});
    }
    setAccessibleName(QStringLiteral("Legend"));
    setAccessibleDescription(toQt(gradesInWords(figures)));
    updateGeometry();
    update();
}

int GradeLegend::layOut(int width, QPainter* painter) const {
    const int line = fontMetrics().height() + 4;
    int left = 0;
    int top = 0;
    for (const Entry& entry : entries_) {
        const int wide = kSignWidth + kSpacing / 2 + fontMetrics().horizontalAdvance(entry.text) + 2 * kSpacing;
        if (left > 0 && left + wide > width) {
            left = 0;
            top += line;
        }
        if (painter != nullptr) {
            BarPicture sign;
            sign.grades[entry.grade] = 1;
            paintBar(*painter, QRectF(left, top + 2, kSignWidth, line - 4), sign, palette());
            painter->setPen(palette().color(QPalette::WindowText));
            painter->drawText(QRect(left + kSignWidth + kSpacing / 2, top, wide, line), Qt::AlignVCenter, entry.text);
        }
        left += wide;
    }
    return top + line;
}

int GradeLegend::heightForWidth(int width) const {
    return layOut(width, nullptr);
}

void GradeLegend::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    layOut(width(), &painter);
}

}  // namespace quillon
