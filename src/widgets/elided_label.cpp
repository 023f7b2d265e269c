// SPDX-License-Identifier: MIT
#include "widgets/elided_label.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace quillon {

ElidedLabel::ElidedLabel() {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance(QLatin1Char('x')) * 8, fontMetrics().height()};
}

QString ElidedLabel::shown() const {
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    // Escaped, since a tool tip guesses whether its text is mark-up.
    const QString tip = shown() == text() ? toolTip() : text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       tip.isEmpty() ? QString() : QStringLiteral("<span>%1</span>").arg(tip.toHtmlEscaped()), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(), shown(),
                          foregroundRole());
}

}  // namespace quillon
