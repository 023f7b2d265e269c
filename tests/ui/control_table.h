// SPDX-License-Identifier: MIT
#pragma once

// The table of a screen's controls as its test tells it, and the comparison with the real screen.

#include <span>

#include <QTest>
#include <QWidget>

namespace quillon::test {

struct ControlCase {
    const char* name;
    const char* frame;    ///< the frame that holds it; empty for none
    const char* caption;  ///< text, chosen entry or title; UTF-8
    bool shown = true;
    bool enabled = true;
};

/// One data row of a test for each control; the test fetches `index`.
inline void addControlRows(std::span<const ControlCase> cases) {
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < cases.size(); ++i) QTest::newRow(cases[i].name) << static_cast<int>(i);
}

/// Text, chosen entry or title of a control, without the marks of its key.
inline QString captionOf(const QWidget& control) {
    QVariant text = control.property("text");
    if (!text.isValid())
        text = control.property(control.inherits("QComboBox") ? "currentText" : "title");
    return text.toString().remove(QLatin1Char('&'));
}

inline void checkControl(const QWidget& screen, const ControlCase& expected) {
    const auto* control = screen.findChild<QWidget*>(QLatin1String(expected.name));
    QVERIFY(control != nullptr);
    QCOMPARE(captionOf(*control), QString::fromUtf8(expected.caption));
    QCOMPARE(control->isVisible(), expected.shown);
    QCOMPARE(control->isEnabled(), expected.enabled);
    if (*expected.frame != '\0')
        QVERIFY(screen.findChild<QWidget*>(QLatin1String(expected.frame))->isAncestorOf(control));
}

}  // namespace quillon::test
