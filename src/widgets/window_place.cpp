// SPDX-License-Identifier: MIT
#include "widgets/window_place.h"

#include <algorithm>

#include <QMainWindow>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

namespace quillon {

namespace {

// What the frame of a window may take, before there is one to be measured.
constexpr QSize kFrameRoom(12, 44);

// The layout takes its controls along; they stay parts of the same window, in the order of the keyboard.
void makeScrollable(QWidget& window) {
    auto* area = new QScrollArea(&window);
    area->setObjectName(QStringLiteral("screenArea"));
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    auto* content = new QWidget(&window);
    content->setLayout(window.layout());
    area->setWidget(content);
    auto* whole = new QVBoxLayout(&window);
    whole->setContentsMargins({});
    whole->addWidget(area);
    whole->activate();  // until then the window keeps the least size of its old layout
}

// What the bar that scrolls in one direction takes in the other one.
QSize roomOfScrollBars(const QWidget& window, QSize least, QSize room) {
    const int thickness = window.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &window);
    return {least.height() > room.height() ? thickness : 0, least.width() > room.width() ? thickness : 0};
}

// A style sheet makes controls larger than they are before it is applied, which happens to most of them when they are
// shown. Layouts remember the smaller sizes, the inner ones first.
void polish(QWidget& window) {
    window.ensurePolished();
    QList<QWidget*> parts = window.findChildren<QWidget*>();
    parts.prepend(&window);
    for (const QWidget* part : parts) part->ensurePolished();
    std::for_each(parts.crbegin(), parts.crend(), [](QWidget* part) {
        if (part->layout() != nullptr) {
            part->layout()->invalidate();
            part->layout()->activate();
        }
        part->updateGeometry();
    });
}

}  // namespace

void fitOnScreen(QWidget& window, const QWidget* opener) {
    const QScreen* screen = opener != nullptr ? opener->screen() : window.screen();
    const QSize room = screen->availableSize() - kFrameRoom;
    polish(window);
    if (!window.testAttribute(Qt::WA_Resized))
        window.adjustSize();
    QSize wanted = window.size();
    const QSize least = window.minimumSizeHint();
    const bool fits = least.width() <= room.width() && least.height() <= room.height();
    if (!fits && window.layout() != nullptr && qobject_cast<QMainWindow*>(&window) == nullptr) {
        makeScrollable(window);
        wanted += roomOfScrollBars(window, least, room);
    }
    window.resize(wanted.boundedTo(room));
}

void placeOver(QWidget& window, const QWidget* opener) {
    if (opener == nullptr || opener == &window)
        return;
    const QRect opened = opener->frameGeometry();
    const QSize border = opened.size() - opener->size();
    QRect place({}, window.size() + border);
    place.moveCenter(opened.center());
    const QRect room = opener->screen()->availableGeometry();
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    window.move(std::max(place.left(), room.left()), std::max(place.top(), room.top()));
}

// The place is set although it is the same: only a window that was placed by its program asks for its place when it is
// shown.
void hideInPlace(QWidget& window) {
    QWindow* handle = window.windowHandle();
    const QPoint place = handle != nullptr ? handle->framePosition() : QPoint();
    window.hide();
    if (handle != nullptr)
        handle->setFramePosition(place);
}

}  // namespace quillon
