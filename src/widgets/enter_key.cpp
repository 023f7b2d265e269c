// SPDX-License-Identifier: MIT
#include "widgets/enter_key.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

namespace quillon {
namespace {

class EnterKey final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !isEnter(*static_cast<QKeyEvent*>(event)))
            return false;
        auto* button = qobject_cast<QPushButton*>(watched);
        if (button == nullptr || qobject_cast<QDialog*>(button->window()) != nullptr)
            return false;
        button->click();
        return true;
    }

private:
    // A key that is held down presses once.
    static bool isEnter(const QKeyEvent& key) {
        return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) && !key.isAutoRepeat() &&
               (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    }
};

}  // namespace

void installEnterKey(QApplication& application) {
    application.installEventFilter(new EnterKey(&application));
}

void enterPresses(QLineEdit& box, QPushButton& button) {
    QObject::connect(&box, &QLineEdit::returnPressed, &button, [&box, &button] {
        if (!box.text().isEmpty())
            button.click();
    });
}

}  // namespace quillon
