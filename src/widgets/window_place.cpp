// SPDX-License-Identifier: MIT
#include "widgets/window_place.h"

#include <algorithm>

#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace quillon {

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
