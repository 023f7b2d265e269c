// SPDX-License-Identifier: MIT
#include "widgets/step_screen.h"

#include <QApplication>
#include <QCloseEvent>
#include <QShortcut>

#include "widgets/window_event_loop.h"

namespace quillon {

ScreenSteps::ScreenSteps(QWidget& window, const ScreenContext& context, Screen screen)
    : context_(context), window_(window), screen_(screen) {
}

ScreenSteps::~ScreenSteps() {
    context_.loop.removeRefresh(refreshNumber_);
}

void ScreenSteps::begin() {
    refreshNumber_ = context_.loop.addRefresh([this] { showState(); });
    showState();
}

void ScreenSteps::showState() {
    if (showing_.running())
        return;
    const StepGuard guard(showing_);
    showControls();
}

void ScreenSteps::beep() {
    QApplication::beep();
}

void ScreenSteps::focus(const char* control) {
    showState();
    window_.findChild<QWidget*>(QLatin1String(control))->setFocus();
}

void ScreenSteps::endStep() {
    if (unloaded_)
        return;
    showState();
    if (steps_.running() || !closeLater_)
        return;
    closeLater_ = false;
    window_.close();
}

void ScreenSteps::leaveOrAsk() {
    context_.navigator.showMain();
    leave();
}

void ScreenSteps::leave() {
    unloaded_ = true;
    window_.hide();
    context_.navigator.unload(screen_);
}

void ScreenSteps::closeOnEscape() {
    QObject::connect(new QShortcut(Qt::Key_Escape, &window_), &QShortcut::activated, &window_, &QWidget::close);
}

void ScreenSteps::closeOrPutOff(QCloseEvent& event) {
    if (isRunning() && !unloaded_)
        closeLater_ = true;
    else if (!unloaded_)
        leaveOrAsk();
    event.setAccepted(!window_.isVisible());
}

}  // namespace quillon
