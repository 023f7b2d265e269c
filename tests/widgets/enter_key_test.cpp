// SPDX-License-Identifier: MIT
#include "widgets/enter_key.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class EnterKeyTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { quillon::installEnterKey(*qApp); }
    void enterPressesTheButtonOnce_data();
    void enterPressesTheButtonOnce();
    void aButtonThatIsSwitchedOffIsNotPressed();
    void otherControlsKeepTheirEnter();
    void aDialogKeepsItsDefaultButton();
    void enterInABoxPressesItsButtonUnlessTheBoxIsEmpty();
};

void EnterKeyTest::enterPressesTheButtonOnce_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("presses");
    QTest::newRow("return") << int(Qt::Key_Return) << int(Qt::NoModifier) << 1;
    QTest::newRow("enter of the number pad") << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << 1;
    QTest::newRow("with control") << int(Qt::Key_Return) << int(Qt::ControlModifier) << 0;
    QTest::newRow("another key") << int(Qt::Key_A) << int(Qt::NoModifier) << 0;
}

void EnterKeyTest::enterPressesTheButtonOnce() {
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QPushButton button;
    QSignalSpy pressed(&button, &QPushButton::clicked);
    QTest::keyClick(&button, static_cast<Qt::Key>(key), Qt::KeyboardModifiers(modifiers));
    QTEST(static_cast<int>(pressed.count()), "presses");
}

void EnterKeyTest::aButtonThatIsSwitchedOffIsNotPressed() {
    QPushButton button;
    button.setEnabled(false);
    QSignalSpy pressed(&button, &QPushButton::clicked);
    QTest::keyClick(&button, Qt::Key_Return);
    QCOMPARE(pressed.count(), 0);
}

void EnterKeyTest::otherControlsKeepTheirEnter() {
    QLineEdit line;
    QSignalSpy entered(&line, &QLineEdit::returnPressed);
    QTest::keyClick(&line, Qt::Key_Return);
    QCOMPARE(entered.count(), 1);
}

void EnterKeyTest::aDialogKeepsItsDefaultButton() {
    QDialog dialog;
    auto* button = new QPushButton(&dialog);
    QSignalSpy pressed(button, &QPushButton::clicked);
    dialog.show();
    QTest::keyClick(button, Qt::Key_Return);
    QCOMPARE(pressed.count(), 1);
}

void EnterKeyTest::enterInABoxPressesItsButtonUnlessTheBoxIsEmpty() {
    QLineEdit line;
    QPushButton button;
    quillon::enterPresses(line, button);
    QSignalSpy pressed(&button, &QPushButton::clicked);
    QTest::keyClick(&line, Qt::Key_Return);
    QCOMPARE(pressed.count(), 0);
    line.setText(QStringLiteral("x"));
    QTest::keyClick(&line, Qt::Key_Return);
    QCOMPARE(pressed.count(), 1);
}

QTEST_MAIN(EnterKeyTest)
#include "enter_key_test.moc"
