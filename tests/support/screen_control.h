// SPDX-License-Identifier: MIT
// Looking at a screen's controls by their names, for screen tests.
#pragma once

#include <QGroupBox>
#include <QVariant>
#include <QWidget>

namespace quillon::test {

/// One line of the table of a screen's controls.
struct ControlState {
    const char* name;
    const char* caption;
    bool shown = true;
    bool enabled = true;
};

/// The control of this object name; never null in a test that goes on.
template <typename Control>
Control& controlOf(const QWidget& screen, const char* name) {
    auto* found = screen.findChild<Control*>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no control %s", name);
    return *found;
}

/// What a control shows as its caption: title or text, without the mark of its key.
inline QString captionOf(const QWidget& control) {
    const auto* frame = qobject_cast<const QGroupBox*>(&control);
    QString caption = frame != nullptr ? frame->title() : control.property("text").toString();
    return caption.remove(QLatin1Char('&'));
}

/// What differs between the control and its line of the table; empty when nothing does. Shown means not hidden by
/// itself: a control on a tab behind another one counts as shown.
inline QString differenceFrom(const ControlState& told, const QWidget& screen) {
    const auto& control = controlOf<QWidget>(screen, told.name);
    QString difference;
    if (captionOf(control) != QString::fromUtf8(told.caption))
        difference += QStringLiteral("caption \"%1\" ").arg(captionOf(control));
    if (control.isHidden() == told.shown)
        difference += told.shown ? QStringLiteral("hidden ") : QStringLiteral("shown ");
    if (control.isEnabled() != told.enabled)
        difference += told.enabled ? QStringLiteral("switched off") : QStringLiteral("switched on");
    return difference.isEmpty() ? difference : QLatin1String(told.name) + QStringLiteral(": ") + difference;
}

}  // namespace quillon::test
