// SPDX-License-Identifier: MIT
// Painting of the grades.
#include "ui/grade_bar.h"

#include <algorithm>

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>

#include "answers/overview/bar_parts.h"

namespace quillon {
namespace {

constexpr qreal kCorner = 4;
// In the wider numbers of the arithmetic.
ByGrade<double> partWidths(const ByGrade<std::int32_t>& counts, double room) {
    ByGrade<std::int64_t> wide;
    std::ranges::copy(counts.values, wide.values.begin());
    return barParts(wide, room);
}

}  // namespace

GradeBar::GradeBar() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    describe();
}

void GradeBar::setCounts(const ByGrade<std::int32_t>& counts) {
    if (counts == counts_)
        return;
    counts_ = counts;
    describe();
    update();
}

void GradeBar::describe() {
    QStringList texts;
    for (const Grade grade : kBoardOrder)
        if (counts_[grade] > 0)
            texts << QStringLiteral("%1 %2").arg(QLatin1String(kGrades[grade].bar.name)).arg(counts_[grade]);
    setAccessibleName(texts.isEmpty() ? QStringLiteral("No grades yet") : texts.join(QStringLiteral(", ")));
}

void GradeBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    shape.addRoundedRect(whole, kCorner, kCorner);
    painter.fillPath(shape, palette().base());
    const ByGrade<double> widths = partWidths(counts_, whole.width());
    painter.setClipPath(shape);
    qreal left = whole.left();
    for (const Grade grade : kBoardOrder) {
        const qreal width = widths[grade];
        painter.fillRect(QRectF(left, whole.top(), width, whole.height()), QColor(kGrades[grade].bar.colour));
        left += width;
    }
    painter.setClipping(false);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawPath(shape);
}

void GradeBar::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit clicked();
}

GradeSwatch::GradeSwatch(const QColor& colour) : colour_(colour) {
    setFixedSize(10, 10);
}

void GradeSwatch::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour_);
    painter.drawRoundedRect(rect(), 2, 2);
}

}  // namespace quillon
