// SPDX-License-Identifier: MIT
#include "editors/frmExtEditor_consensus.h"

#include <algorithm>
#include <utility>

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include "widgets/hex_view.h"
#include "widgets/qt_text.h"

namespace quillon {
namespace {

constexpr int kMapHeight = 9;
constexpr int kGap = 3;
constexpr int kTintAlpha = 48;

}  // namespace

ConsensusLine::ConsensusLine(HexView& view) : view_(view) {
    setObjectName(QStringLiteral("consensus_"));
    setAccessibleName(QStringLiteral("Bytes that the listed files share"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&view, &HexView::placeChanged, this, qOverload<>(&QWidget::update));
    connect(view.horizontalScrollBar(), &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
}

void ConsensusLine::setConsensus(HeadConsensus consensus) {
    consensus_ = std::move(consensus);
    setAccessibleDescription(toQt(consensusText(consensus_)));
    update();
}

QSize ConsensusLine::sizeHint() const {
    return {view_.sizeHint().width(), kMapHeight + kGap + QFontMetrics(view_.font()).height() + kGap};
}

QSize ConsensusLine::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

int ConsensusLine::caretLine() const {
    return view_.caret() / kHexBytesPerLine;
}

QRect ConsensusLine::cell(int place, bool asText) const {
    const QRect below = view_.byteRect(place, asText ? HexPane::Text : HexPane::Hex);
    const int left = view_.viewport()->mapTo(parentWidget(), QPoint(below.left(), 0)).x() - x();
    return {left, kMapHeight + kGap, below.width(), QFontMetrics(view_.font()).height()};
}

QRect ConsensusLine::mapRoom() const {
    // Whole in view, though the columns below may be scrolled.
    const int left = std::max(cell(0, false).left(), 0);
    const int right = std::min(cell(kHexBytesPerLine - 1, true).right(), width() - 1);
    return {left, 0, std::max(right - left + 1, 1), kMapHeight};
}

int ConsensusLine::placeAt(const QPoint& point) const {
    const auto places = static_cast<int>(consensus_.places.size());
    const QRect map = mapRoom();
    if (places > 0 && map.contains(point))
        return (point.x() - map.left()) * places / map.width();
    const int first = caretLine() * kHexBytesPerLine;
    for (int place = first; place < std::min(first + kHexBytesPerLine, places); ++place) {
        if (cell(place, false).contains(point) || cell(place, true).contains(point))
            return place;
    }
    return -1;
}

void ConsensusLine::selectNextMark() {
    const auto chosen = view_.selection();
    // A caret that stands on the first byte of a mark, with nothing selected, asks for this one.
    const int behind = chosen.count > 0 ? chosen.first : view_.caret() - 1;
    if (const auto mark = nextMark(consensus_, behind))
        view_.select(mark->first, mark->count);
}

bool ConsensusLine::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), toQt(placeText(consensus_, placeAt(help->pos()))), this);
        return true;
    }
    return QWidget::event(event);
}

void ConsensusLine::mousePressEvent(QMouseEvent* event) {
    const int place = placeAt(event->position().toPoint());
    if (place >= 0 && event->button() == Qt::LeftButton)
        view_.setCaret(place);
}

void ConsensusLine::paintEvent(QPaintEvent* /*event*/) {
    if (consensus_.files < 2)
        return;
    QPainter painter(this);
    paintMap(painter);
    paintLine(painter);
}

void ConsensusLine::paintMap(QPainter& painter) const {
    const QRectF room = mapRoom();
    const auto places = static_cast<double>(consensus_.places.size());
    const QRectF bar(room.left(), room.top() + 2, room.width(), room.height() - 4);
    painter.fillRect(bar, palette().color(QPalette::Midlight));
    const auto part = [&](int first, int count) {
        return QRectF(bar.left() + bar.width() * first / places, bar.top(), bar.width() * count / places, bar.height());
    };
    for (const auto& run : sharedRuns(consensus_))
        painter.fillRect(part(run.first, run.count), palette().color(QPalette::Text));
    const QRectF line = part(caretLine() * kHexBytesPerLine, kHexBytesPerLine).adjusted(-1, -2, 1, 2);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(line);
}

void ConsensusLine::paintLine(QPainter& painter) const {
    const int first = caretLine() * kHexBytesPerLine;
    const auto places = static_cast<int>(consensus_.places.size());
    painter.setFont(view_.font());
    painter.setPen(view_.quietInk());
    const QRect byte = cell(first, false);
    const int left = byte.left() - HexLayout::kHexStart * byte.width() / 2;
    painter.drawText(QRect(left, byte.top(), byte.left() - left, byte.height()), Qt::AlignLeft | Qt::AlignVCenter,
                     toQt(hexOffset(first)));
    for (int place = first; place < std::min(first + kHexBytesPerLine, places); ++place) paintPlace(painter, place);
}

void ConsensusLine::paintPlace(QPainter& painter, int place) const {
    const bool shared = consensus_.isShared(static_cast<std::size_t>(place));
    const unsigned char byte = consensus_.places[static_cast<std::size_t>(place)].byte;
    QFont font = view_.font();
    font.setBold(shared);
    painter.setFont(font);
    QColor tint = palette().color(QPalette::Highlight);
    tint.setAlpha(kTintAlpha);
    for (const bool asText : {false, true}) {
        const QRect room = cell(place, asText);
        if (shared)
            painter.fillRect(room, tint);
        painter.setPen(shared ? palette().color(QPalette::Text) : view_.quietInk());
        painter.drawText(room, Qt::AlignCenter, asText ? QString(QChar(hexCharacter(byte))) : toQt(hexByte(byte)));
    }
}

}  // namespace quillon
