// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <vector>

#include <QPointer>
#include <QWidget>

namespace quillon {

/// The parts of a screen that are off while it works. A control that is switched off loses the keyboard, so a person
/// without a mouse would begin again at the first control; here the keyboard goes back to where it was.
class BusyParts {
public:
    BusyParts() = default;
    BusyParts(std::initializer_list<QWidget*> parts) : parts_(parts) {}

    void setEnabled(bool enabled) {
        if (parts_.empty() || enabled == parts_.front()->isEnabled())
            return;
        const QWidget* window = parts_.front()->window();
        if (!enabled)
            focus_ = window->focusWidget();
        for (QWidget* part : parts_) part->setEnabled(enabled);
        if (enabled && focus_ && window->focusWidget() == nullptr)
            focus_->setFocus();
    }

private:
    std::vector<QWidget*> parts_;
    QPointer<QWidget> focus_;
};

}  // namespace quillon
