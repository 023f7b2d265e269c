// SPDX-License-Identifier: MIT
#include "ui/main_area.h"

#include <algorithm>
#include <utility>

#include <QBoxLayout>
#include <QEvent>
#include <QScrollBar>

#include "ui/score_board.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

// On a wide screen the score board takes the room: nothing on the left gets better by being longer.
constexpr int kWidestSetup = 760;
constexpr QSize kLeastSize(240, 96);

}  // namespace

MainArea::MainArea(QWidget* setupSide, QWidget* boardSide, ScoreBoard* board)
    : setupSide_(setupSide), board_(board), sides_(new QHBoxLayout) {
    setObjectName(QStringLiteral("mainAreaScroll"));
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    sides_->setSpacing(kMargin);
    sides_->addWidget(setupSide, 1);
    sides_->addWidget(boardSide, 1);
    layout->addLayout(sides_);
    layout->addStretch();
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);  // each control in it takes the keyboard and is scrolled to
    setWidgetResizable(true);
    setWidget(content);
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    content->installEventFilter(this);
}

QSize MainArea::sizeHint() const {
    return {widget()->sizeHint().width(), contentHeight()};
}

QSize MainArea::minimumSizeHint() const {
    return kLeastSize;
}

// Whether there is a scroll bar must not decide on an arrangement that decides on the scroll bar.
int MainArea::roomForContent() const {
    return width() - verticalScrollBar()->sizeHint().width();
}

int MainArea::contentHeight() const {
    const QLayout* layout = widget()->layout();
    return layout->hasHeightForWidth() ? layout->totalHeightForWidth(std::max(viewport()->width(), 1))
                                       : layout->totalSizeHint().height();
}

void MainArea::arrange(const Arrangement& arrangement) {
    sides_->setDirection(arrangement.beside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    setupSide_->setMaximumWidth(arrangement.beside ? kWidestSetup : QWIDGETSIZE_MAX);
    board_->setBlocks(arrangement.blocks);
    // What lies between the board and the area remembers how much room the last arrangement needed.
    for (QWidget* part = board_; part != widget(); part = part->parentWidget()) part->updateGeometry();
    sides_->invalidate();
    widget()->layout()->invalidate();
}

// The first of the arrangements that fits, from that which asks for most room.
void MainArea::fit() {
    static constexpr Arrangement kArrangements[] = {{true, 3}, {true, 2}, {false, 3}, {false, 2}, {false, 1}};
    for (const Arrangement& arrangement : kArrangements) {
        arrange(arrangement);
        if (widget()->layout()->totalMinimumSize().width() <= roomForContent())
            break;
    }
    fittedWidth_ = width();
    fittedLeast_ = widget()->layout()->totalMinimumSize();
    setMaximumHeight(contentHeight());
    updateGeometry();
}

void MainArea::resizeEvent(QResizeEvent* event) {
    if (width() != fittedWidth_)
        fit();
    QScrollArea::resizeEvent(event);
}

// Another font, or a text that has grown.
bool MainArea::eventFilter(QObject* watched, QEvent* event) {
    const bool answer = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest && fittedWidth_ >= 0 &&
        widget()->layout()->totalMinimumSize() != fittedLeast_)
        fit();
    return answer;
}

}  // namespace quillon
