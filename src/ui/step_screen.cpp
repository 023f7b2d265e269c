// SPDX-License-Identifier: MIT
#include "ui/step_screen.h"

#include <QCloseEvent>

namespace quillon {

void StepScreen::closeEvent(QCloseEvent* event) {
    if (running_ > 0) {
        closeAsked_ = true;
        event->ignore();
        return;
    }
    event->accept();
    leave();
}

}  // namespace quillon
