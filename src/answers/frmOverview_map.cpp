// SPDX-License-Identifier: MIT
#include "answers/frmOverview_map.h"

#include <optional>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "text/numbers.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kTextMargin = 4;

QColor inkOn(const QualityStep& step) {
    return step.dark ? QColor(Qt::white) : QColor(0x1d, 0x21, 0x26);
}

std::optional<MapKey> mapKeyOf(int key) {
    switch (key) {
        case Qt::Key_Left:
            return MapKey::Left;
        case Qt::Key_Right:
            return MapKey::Right;
        case Qt::Key_Up:
            return MapKey::Up;
        case Qt::Key_Down:
            return MapKey::Down;
        default:
            return std::nullopt;
    }
}

}  // namespace

FolderMap::FolderMap() {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(QStringLiteral("Map of the folders"));
    describe();
}

void FolderMap::setTiles(const std::vector<MapTile>& tiles) {
    tiles_ = tiles;
    current_ = tiles_.empty() ? -1 : 0;
    arrange();
    describe();
    update();
}

void FolderMap::arrange() {
    std::vector<double> weights;
    for (const MapTile& tile : tiles_) weights.push_back(tile.weight);
    rects_ = squarified(weights, {0, 0, static_cast<double>(width()), static_cast<double>(height())});
}

QRect FolderMap::tileRect(int tile) const {
    if (tile < 0 || tile >= tileCount())
        return {};
    const MapRect& rect = rects_[static_cast<std::size_t>(tile)];
    const QPoint first(qRound(rect.left), qRound(rect.top));
    const QPoint behind(qRound(rect.left + rect.width), qRound(rect.top + rect.height));
    return {first, behind - QPoint(1, 1)};
}

int FolderMap::tileAt(const QPoint& point) const {
    for (int tile = 0; tile < tileCount(); ++tile)
        if (tileRect(tile).contains(point))
            return tile;
    return -1;
}

void FolderMap::describe() {
    const bool none = current_ < 0;
    setAccessibleDescription(none ? QStringLiteral("No files")
                                  : toQt(tileText(tiles_[static_cast<std::size_t>(current_)])));
}

void FolderMap::makeCurrent(int tile) {
    current_ = tile;
    describe();
    update();
}

void FolderMap::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void FolderMap::mousePressEvent(QMouseEvent* event) {
    const int tile = tileAt(event->position().toPoint());
    if (tile < 0 || event->button() != Qt::LeftButton)
        return;
    makeCurrent(tile);
    emit tileChosen(tile);
}

void FolderMap::mouseDoubleClickEvent(QMouseEvent* event) {
    const int tile = tileAt(event->position().toPoint());
    if (tile >= 0 && event->button() == Qt::LeftButton)
        emit tileEntered(tile);
}

void FolderMap::keyPressEvent(QKeyEvent* event) {
    if (const auto key = mapKeyOf(event->key()); key && current_ >= 0) {
        makeCurrent(static_cast<int>(nextTile(rects_, static_cast<std::size_t>(current_), *key)));
        emit tileChosen(current_);
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        emit tileEntered(current_);
    } else if (event->key() == Qt::Key_Space) {
        emit tileChosen(current_);
    } else if (event->key() == Qt::Key_Backspace) {
        emit left();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void FolderMap::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void FolderMap::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

bool FolderMap::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int tile = tileAt(help->pos());
    // A name may look like mark-up: escaped, it stays text.
    if (tile >= 0)
        QToolTip::showText(help->globalPos(), toQt(tileText(tiles_[static_cast<std::size_t>(tile)])).toHtmlEscaped(),
                           this, tileRect(tile));
    else
        QToolTip::hideText();
    return true;
}

void FolderMap::paintTile(QPainter& painter, int tile) const {
    const QRect rect = tileRect(tile);
    if (rect.isEmpty())
        return;
    const MapTile& shown = tiles_[static_cast<std::size_t>(tile)];
    const QualityStep& step = qualityStep(shown.figures);
    painter.fillRect(rect, QColor(step.colour));
    if (shown.folder == nullptr)  // nothing to go into
        painter.fillRect(rect, QBrush(QColor(0, 0, 0, 40), Qt::BDiagPattern));
    painter.setPen(palette().color(QPalette::Window));
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    const QRect text = rect.adjusted(kTextMargin, kTextMargin / 2, -kTextMargin, -kTextMargin / 2);
    const int line = fontMetrics().height();
    if (text.width() < fontMetrics().averageCharWidth() || text.height() < line)
        return;
    painter.setPen(inkOn(step));
    const auto value = quality(shown.figures);
    const QString letter = QString(QLatin1Char(step.letter));
    const bool roomy = text.width() > 8 * fontMetrics().averageCharWidth();
    const QString first = roomy ? letter + QStringLiteral("  ") + toQt(shown.name) : letter;
    painter.drawText(text, Qt::AlignTop | Qt::AlignLeft, fontMetrics().elidedText(first, Qt::ElideRight, text.width()));
    if (!roomy || text.height() < 2 * line)
        return;
    const QString second = toQt((value ? percent(*value) : "-") + ", " + grouped(shown.figures.files) + " files");
    painter.drawText(text.adjusted(0, line, 0, 0), Qt::AlignTop | Qt::AlignLeft,
                     fontMetrics().elidedText(second, Qt::ElideRight, text.width()));
}

void FolderMap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    for (int tile = 0; tile < tileCount(); ++tile) paintTile(painter, tile);
    if (current_ < 0) {
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("No files"));
        return;
    }
    if (!hasFocus())
        return;
    painter.setPen(QPen(palette().color(QPalette::Text), 3));
    painter.drawRect(tileRect(current_).adjusted(1, 1, -2, -2));
}

MapLegend::MapLegend() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Legend of the map"));
    QString text;
    for (const QualityStep& step : kQualitySteps)
        text += QStringLiteral("%1: %2. ").arg(QLatin1Char(step.letter)).arg(QLatin1String(step.meaning));
    setAccessibleDescription(text);
    setToolTip(text.trimmed());
}

QSize MapLegend::sizeHint() const {
    return {300, fontMetrics().height() + 6};
}

void MapLegend::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    constexpr int kSteps = static_cast<int>(std::size(kQualitySteps)) + 1;
    for (int i = 0; i < kSteps; ++i) {
        const QualityStep& step = i + 1 < kSteps ? kQualitySteps[i] : kNotJudgedStep;
        const QRect part(width() * i / kSteps, 0, width() * (i + 1) / kSteps - width() * i / kSteps - 2, height());
        painter.fillRect(part, QColor(step.colour));
        painter.setPen(inkOn(step));
        const QString range =
            i + 1 < kSteps ? (step.from > 0 ? QStringLiteral("≥ %1 %").arg(step.from * 100) : QStringLiteral("< 50 %"))
                           : QStringLiteral("not judged");
        const QString text = QStringLiteral("%1  %2").arg(QLatin1Char(step.letter)).arg(range);
        painter.drawText(part.adjusted(kTextMargin, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         fontMetrics().elidedText(text, Qt::ElideRight, part.width() - kTextMargin));
    }
}

}  // namespace quillon
