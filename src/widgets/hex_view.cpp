// SPDX-License-Identifier: MIT
// Painting and input of the hex view; the arithmetic is HexLayout's.
#include "widgets/hex_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QScrollBar>

#include "widgets/hex_view_accessible.h"
#include "widgets/qt_text.h"

namespace quillon {
namespace {

constexpr int kMargin = 8;
constexpr int kPreferredLines = 32;  // 512 bytes

std::optional<HexKey> hexKeyOf(const QKeyEvent& event) {
    const bool control = (event.modifiers() & Qt::ControlModifier) != 0;
    switch (event.key()) {
        case Qt::Key_Left:
            return HexKey::Left;
        case Qt::Key_Right:
            return HexKey::Right;
        case Qt::Key_Up:
            return HexKey::Up;
        case Qt::Key_Down:
            return HexKey::Down;
        case Qt::Key_PageUp:
            return HexKey::PageUp;
        case Qt::Key_PageDown:
            return HexKey::PageDown;
        case Qt::Key_Home:
            return control ? HexKey::Start : HexKey::LineStart;
        case Qt::Key_End:
            return control ? HexKey::End : HexKey::LineEnd;
        default:
            return std::nullopt;
    }
}

}  // namespace

HexView::HexView() {
    installHexViewAccessibility();
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    setAccessibleName(QStringLiteral("Hex view"));
    measure();
}

void HexView::measure() {
    const QFontMetrics metrics(font());
    // Rounded up: a fraction of a point lost in each character cuts off the last one of an offset.
    charWidth_ = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(QLatin1Char('0'))));
    lineHeight_ = metrics.height() + 2;
    updateGeometry();
    fitScrollBars();
}

void HexView::setBytes(std::string bytes) {
    bytes_ = std::move(bytes);
    layout_ = HexLayout(static_cast<int>(bytes_.size()));
    caret_ = anchor_ = 0;
    fitScrollBars();
    verticalScrollBar()->setValue(0);
    viewport()->update();
    tellHexViewChanged(*this);
    emit placeChanged();
}

void HexView::setBytesInPlace(std::string bytes) {
    const int caret = caret_;
    const int anchor = anchor_;
    const int top = verticalScrollBar()->value();
    setBytes(std::move(bytes));
    const int last = std::max(layout_.bytes() - 1, 0);
    caret_ = std::min(caret, last);
    anchor_ = std::min(anchor, last);
    verticalScrollBar()->setValue(top);
    emit placeChanged();
}

void HexView::select(int first, int count) {
    const int last = std::max(layout_.bytes() - 1, 0);
    anchor_ = std::clamp(first, 0, last);
    moveTo(std::min(first + count - 1, last), true);
}

void HexView::setCaret(int index) {
    caret_ = anchor_ = std::clamp(index, 0, std::max(layout_.bytes() - 1, 0));
    showCaret();
}

HexView::Selection HexView::selection() const {
    if (anchor_ == caret_)
        return {caret_, 0};
    const int first = std::min(anchor_, caret_);
    return {first, std::max(anchor_, caret_) - first + 1};
}

std::string HexView::selectedBytes() const {
    const Selection chosen = selection();
    return bytes_.substr(static_cast<std::size_t>(chosen.first), static_cast<std::size_t>(chosen.count));
}

QString HexView::selectionText() const {
    return toQt(pane_ == HexPane::Hex ? hexPairs(selectedBytes()) : hexText(selectedBytes()));
}

QRect HexView::byteRect(int index, HexPane pane) const {
    const int width = pane == HexPane::Hex ? 2 * charWidth_ : charWidth_;
    const int top = kMargin / 2 + (layout_.lineOf(index) - verticalScrollBar()->value()) * lineHeight_;
    return {leftOf(layout_.columnOf(index, pane)), top, width, lineHeight_};
}

// Between text and paper, nearer to the text.
QColor HexView::quietInk() const {
    const QColor ink = palette().color(QPalette::Active, QPalette::Text);
    const QColor paper = palette().color(QPalette::Active, QPalette::Base);
    const auto mixed = [](int a, int b) { return (2 * a + b) / 3; };
    return {mixed(ink.red(), paper.red()), mixed(ink.green(), paper.green()), mixed(ink.blue(), paper.blue())};
}

int HexView::leftOf(int column) const {
    return kMargin + column * charWidth_ - horizontalScrollBar()->value();
}

int HexView::linesOnPage() const {
    return std::max((viewport()->height() - kMargin) / lineHeight_, 1);
}

void HexView::fitScrollBars() {
    verticalScrollBar()->setRange(0, std::max(layout_.lines() - linesOnPage(), 0));
    verticalScrollBar()->setPageStep(linesOnPage());
    const int width = HexLayout::kColumns * charWidth_ + 2 * kMargin;
    horizontalScrollBar()->setRange(0, std::max(width - viewport()->width(), 0));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(charWidth_);
}

QSize HexView::sizeHint() const {
    const int bar = verticalScrollBar()->sizeHint().width();
    return {HexLayout::kColumns * charWidth_ + 2 * kMargin + bar + 2 * frameWidth(),
            kPreferredLines * lineHeight_ + kMargin + 2 * frameWidth()};
}

QSize HexView::minimumSizeHint() const {
    return {HexLayout::kTextStart * charWidth_, 4 * lineHeight_ + kMargin};
}

std::optional<HexHit> HexView::hitAt(const QPoint& point) const {
    const int line = verticalScrollBar()->value() + (point.y() - kMargin / 2) / lineHeight_;
    const int left = point.x() - kMargin + horizontalScrollBar()->value();
    return left < 0 ? std::nullopt : layout_.hit(line, left / charWidth_);
}

void HexView::moveTo(int index, bool extend) {
    caret_ = index;
    if (!extend)
        anchor_ = index;
    showCaret();
    emit caretMoved(caret_);
}

void HexView::showCaret() {
    const int line = layout_.lineOf(caret_);
    const int top = verticalScrollBar()->value();
    if (line < top)
        verticalScrollBar()->setValue(line);
    else if (line >= top + linesOnPage())
        verticalScrollBar()->setValue(line - linesOnPage() + 1);
    viewport()->update();
    tellHexViewChanged(*this);
    emit placeChanged();
}

void HexView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    fitScrollBars();
}

void HexView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        measure();
}

void HexView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        if (selection().count > 0)
            QApplication::clipboard()->setText(selectionText());
        return;
    }
    if (event->matches(QKeySequence::SelectAll) && layout_.bytes() > 0) {
        anchor_ = 0;
        moveTo(layout_.bytes() - 1, true);
        return;
    }
    const auto key = hexKeyOf(*event);
    if (!key || layout_.bytes() == 0) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    moveTo(layout_.moved(caret_, *key, linesOnPage()), (event->modifiers() & Qt::ShiftModifier) != 0);
}

void HexView::mousePressEvent(QMouseEvent* event) {
    const auto hit = hitAt(event->position().toPoint());
    if (!hit || event->button() != Qt::LeftButton)
        return;
    pane_ = hit->pane;
    moveTo(hit->index, (event->modifiers() & Qt::ShiftModifier) != 0);
}

void HexView::mouseMoveEvent(QMouseEvent* event) {
    const auto hit = hitAt(event->position().toPoint());
    if (hit && (event->buttons() & Qt::LeftButton) != 0 && hit->index != caret_)
        moveTo(hit->index, true);
}

void HexView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void HexView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void HexView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    painter.setFont(font());
    const int textLine = leftOf(HexLayout::kTextStart) - charWidth_;
    painter.setPen(palette().color(QPalette::Midlight));
    painter.drawLine(textLine, 0, textLine, viewport()->height());
    const int first = verticalScrollBar()->value();
    const int last = std::min(first + linesOnPage() + 1, layout_.lines());
    for (int line = first; line < last; ++line) paintLine(painter, line, kMargin / 2 + (line - first) * lineHeight_);
}

void HexView::paintLine(QPainter& painter, int line, int top) const {
    painter.setPen(quietInk());
    const QRect offset(leftOf(0), top, HexLayout::kOffsetColumns * charWidth_, lineHeight_);
    painter.drawText(offset, Qt::AlignLeft | Qt::AlignVCenter, toQt(hexOffset(line * kHexBytesPerLine)));
    for (int place = 0; place < layout_.bytesInLine(line); ++place) {
        paintByte(painter, line * kHexBytesPerLine + place, top, HexPane::Hex);
        paintByte(painter, line * kHexBytesPerLine + place, top, HexPane::Text);
    }
}

void HexView::paintByte(QPainter& painter, int index, int top, HexPane pane) const {
    const Selection chosen = selection();
    const bool selected = index >= chosen.first && index < chosen.first + chosen.count;
    const auto byte = static_cast<unsigned char>(bytes_[static_cast<std::size_t>(index)]);
    QRect cell = byteRect(index, pane);
    cell.moveTop(top);
    if (selected)
        painter.fillRect(cell, palette().brush(QPalette::Active, QPalette::Highlight));
    const bool quiet = pane == HexPane::Text ? hexCharacter(byte) == u'.' && byte != '.' : byte == 0;
    const QColor ink = palette().color(QPalette::Active, selected ? QPalette::HighlightedText : QPalette::Text);
    painter.setPen(quiet && !selected ? quietInk() : ink);
    const QString text = pane == HexPane::Hex ? toQt(hexByte(byte)) : QString(QChar(hexCharacter(byte)));
    painter.drawText(cell, Qt::AlignCenter, text);
    if (index != caret_)
        return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), pane == pane_ && hasFocus() ? 2 : 1));
    painter.drawRect(cell.adjusted(-1, 0, 0, -1));
}

}  // namespace quillon
