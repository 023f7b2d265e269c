// SPDX-License-Identifier: MIT
#include "widgets/step_screen.h"

#include <QCloseEvent>

namespace quillon {

void StepScreen::closeEvent(QCloseEvent* event) {
    if (isRunning() && !left_)
        closeLater_ = true;
    else if (!left_)
        leaveOrAsk();
    event->setAccepted(!isVisible());
}

}  // namespace quillon
