// SPDX-License-Identifier: MIT
// Painting of the grades. A part that was counted at all is at least two pixels wide: one corrupt file among a million
// is what a person looks for.
#include "ui/grade_bar.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QPainterPath>
#include <QStringList>

namespace quillon {
namespace {

constexpr qreal kCorner = 4;
constexpr qreal kLeastWidth = 2;

// Parts that would be narrower than the least width get that; the others share the rest, so that all fit.
ByGrade<qreal> partWidths(const ByGrade<std::int32_t>& counts, qreal room) {
    qreal total = 0;
    for (const std::int32_t count : counts.values) total += std::max(count, 0);
    const auto isNarrow = [&](std::int32_t count) { return room * count < kLeastWidth * total; };
    qreal others = total;
    qreal shared = room;
    for (const std::int32_t count : counts.values) {
        if (count <= 0 || !isNarrow(count))
            continue;
        others -= count;
        shared -= kLeastWidth;
    }
    ByGrade<qreal> widths;
    for (std::size_t i = 0; i < kGradeCount; ++i) {
        const std::int32_t count = counts.values[i];
        if (count > 0)
            widths.values[i] = isNarrow(count) ? kLeastWidth : std::max(shared * count / others, kLeastWidth);
    }
    return widths;
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
    const ByGrade<qreal> widths = partWidths(counts_, whole.width());
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
