// SPDX-License-Identifier: MIT
#pragma once

// Where windows stand, and that they are no larger than their screen. A window manager left to itself may put a new
// window into a far corner, and puts one that was hidden somewhere else each time.

class QWidget;

namespace quillon {

/// Makes a window that is not shown yet small enough for its screen, frame included: what its controls need more than
/// that is scrolled to.
void fitOnScreen(QWidget& window, const QWidget* opener);

/// Moves a window that is not shown yet over the middle of the one that opens it, whole on its screen. Null: it stays.
void placeOver(QWidget& window, const QWidget* opener);

/// Hides a window so that it comes back where it stands.
void hideInPlace(QWidget& window);

}  // namespace quillon
