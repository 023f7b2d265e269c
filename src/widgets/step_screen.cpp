// SPDX-License-Identifier: MIT
#include "widgets/step_screen.h"

#include <algorithm>

#include <QApplication>
#include <QCloseEvent>
#include <QLineEdit>
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

bool ScreenSteps::mayDropTypedText() const {
    const auto boxes = window_.findChildren<QLineEdit*>();
    const bool typed = std::any_of(boxes.begin(), boxes.end(), [](const QLineEdit* box) {
        return box->isModified() && !box->text().isEmpty() && box->isVisible();
    });
    return !typed || context_.surroundings.dialogs.ask(
                         "Leave this screen ?", "What you have typed is not stored. Do you want to leave and drop it?",
                         BoxStyle::Warning);
}

void ScreenSteps::closeOnEscape(TypedText typed) {
    QObject::connect(new QShortcut(Qt::Key_Escape, &window_), &QShortcut::activated, &window_, [this, typed] {
        if (typed == TypedText::ScreensOwn || mayDropTypedText())
            window_.close();
    });
}

void ScreenSteps::closeOrPutOff(QCloseEvent& event) {
    if (isRunning() && !unloaded_)
        closeLater_ = true;
    else if (!unloaded_)
        leaveOrAsk();
    event.setAccepted(!window_.isVisible());
}

}  // namespace quillon
