// SPDX-License-Identifier: MIT
// What screen tests share: a control by its name, the table of all controls, and the end of a test.
#pragma once

#include <memory>
#include <vector>

#include <QComboBox>
#include <QProgressBar>
#include <QStringList>
#include <QTest>
#include <QVariant>
#include <QWidget>

namespace quillon::test {

/// The control or menu entry of this object name; never null in a test that goes on.
template <typename Control>
Control& controlOf(const QWidget& screen, const char* name) {
    auto* found = screen.findChild<Control*>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no control %s", name);
    return *found;
}

/// One line of the table of a screen's controls.
struct ControlCase {
    const char* name;
    const char* caption;  ///< text, chosen entry or title; UTF-8
    bool shown = true;
    bool enabled = true;
};

/// The lines of one frame.
struct FrameCase {
    const char* name;  ///< empty: the controls stand in no frame
    const char* caption;
    std::vector<ControlCase> controls;
};

/// Text, chosen entry or title of a control, without the mark of its key. A progress bar has none: its text is the
/// percentage.
inline QString captionOf(const QWidget& control) {
    if (qobject_cast<const QProgressBar*>(&control) != nullptr)
        return {};
    for (const char* property : {"text", "currentText", "title"}) {
        if (const QVariant text = control.property(property); text.isValid())
            return text.toString().remove(QLatin1Char('&'));
    }
    return {};
}

/// All entries of a choice.
inline QStringList itemsOf(const QComboBox& box) {
    QStringList items;
    for (int i = 0; i < box.count(); ++i) items << box.itemText(i);
    return items;
}

/// What differs between a control and its line of the table; empty when nothing does.
inline QString differenceFrom(const ControlCase& told, const QWidget& screen, const char* frame) {
    const auto& control = controlOf<QWidget>(screen, told.name);
    QString difference;
    if (captionOf(control) != QString::fromUtf8(told.caption))
        difference += QStringLiteral("caption \"%1\" ").arg(captionOf(control));
    if (control.isVisibleTo(&screen) != told.shown)
        difference += told.shown ? QStringLiteral("hidden ") : QStringLiteral("shown ");
    if (control.isEnabled() != told.enabled)
        difference += told.enabled ? QStringLiteral("switched off ") : QStringLiteral("switched on ");
    if (*frame != '\0' && !controlOf<QWidget>(screen, frame).isAncestorOf(&control))
        difference += QStringLiteral("outside ") + QLatin1String(frame);
    return difference.isEmpty() ? difference : QLatin1String(told.name) + QStringLiteral(": ") + difference;
}

/// What does not fit the table, one line for each control; empty when all fits.
inline QStringList misfits(const QWidget& screen, const std::vector<FrameCase>& table) {
    QStringList found;
    for (const FrameCase& frame : table) {
        if (*frame.name != '\0')
            found << differenceFrom({frame.name, frame.caption}, screen, "");
        for (const ControlCase& told : frame.controls) found << differenceFrom(told, screen, frame.name);
    }
    found.removeAll(QString());
    return found;
}

/// Ends a screen test: closes the screens and destroys them with their fixture. All questions were asked as told, and
/// no other one.
template <typename Fixture>
void closeScreens(std::unique_ptr<Fixture>& fixture) {
    const bool allAsked = fixture->dialogs.done();
    const QStringList problems = fixture->problems;
    fixture->navigator.unloadAll();
    fixture.reset();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    QVERIFY(allAsked);
}

}  // namespace quillon::test
