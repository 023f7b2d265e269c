// SPDX-License-Identifier: MIT
// The screen "Extension Editor" without a mouse, and where the keyboard and the view are behind each step.

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>

#include "editors/editor_screen.h"
#include "text/list_text.h"
#include "viewer/editor_handover.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmExtEditorKeysTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(screen_); }
    void tabGoesThroughTheControlsInOrder();
    void enterInPositionAndTermTests();
    void enterOnAnEmptyBoxDoesNothing();
    void selectedBytesPutTheirFirstOneIntoPosition();
    void allOfTheHexViewIsShownAtItsDefaultSize();
    void aRefusedCommaLeavesTheCaretInItsPlace();
    void ofPastedLinesTheFirstCounts();
    void deleteInTheTermsAsksAndDeletes();
    void arrowsInTheTermsFillTheCriteria();
    void aClickNamesTheTermInThePopup();
    void theKeyboardStaysOnTestBehindASearch();
    void aRefusedTermGetsTheKeyboard();
    void aNewTermIsBroughtIntoView();
    void anUpdateLeavesTheViewAlone();
    void theWholeSearchGoesByKeys();

private:
    void openOver(int terms, int category = 1);
    void focus(const char* name) const { screen_->control<QWidget>(name).setFocus(); }
    [[nodiscard]] static QString focused() {
        return QApplication::focusWidget() == nullptr ? QStringLiteral("(none)")
                                                      : QApplication::focusWidget()->objectName();
    }
    void expectNotFound() const {
        screen_->dialogs.expectBox("Term not found", "Search term not found", BoxAnswer::Ok, BoxStyle::Warning,
                                   BoxButtons::Ok);
    }

    std::unique_ptr<test::EditorScreen> screen_;
};

void FrmExtEditorKeysTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::ExtEditor);
    screen_->job.messages = ReportMessages::fallback();
    screen_->folder.write("local/Settings/Errors.dat", "Header Corrupt\r\n");
}

// Over one file and so many terms, the window active.
void FrmExtEditorKeysTest::openOver(int terms, int category) {
    std::string lines;
    for (int i = 1; i <= terms; ++i) lines += std::to_string(i) + ",T" + std::to_string(i) + ",T\r\n";
    screen_->folder.write("local/Database/qlx.dat", lines);
    screen_->folder.write("local/Settings/CommonHeaders.dat", "1,PK,T,archive\r\n");
    const auto file = screen_->folder.write("source/a.qlx", "QLX!" + std::string(600, 'x'));
    EditorHandover handover{
        category, u"qlx", {{toListText(file.native()), u"Appears to be of file type : archive"}}, {}, {}};
    screen_->navigator.open(Screen::ExtEditor, handover);
    screen_->window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&screen_->window()));
}

void FrmExtEditorKeysTest::tabGoesThroughTheControlsInOrder() {
    openOver(3, 9);
    QCOMPARE(focused(), QStringLiteral("Hex1"));
    screen_->control<QCheckBox>("Check1").setChecked(true);
    focus("Text2");
    for (const char* next :
         {"Text3",  "Combo2",      "Command2",    "Command11", "Command3", "Command6",  "Command7", "Command8",
          "iGrid1", "Command12_0", "Command12_1", "Command1",  "Check1",   "Command10", "Check2",   "Command5",
          "Combo1", "Command9",    "Command4",    "Hex1",      "Combo3",   "Command13", "Text2"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(focused(), QLatin1String(next));
    }
}

void FrmExtEditorKeysTest::enterInPositionAndTermTests() {
    openOver(1);
    for (const char* box : {"Text3", "Text2"}) {
        screen_->type("Text2", "7");
        screen_->type("Text3", "NEW");
        expectNotFound();
        QTest::keyClick(&screen_->control<QLineEdit>(box), Qt::Key_Return);
        QCOMPARE(screen_->rows(), QStringList{QStringLiteral("T1|1|T")});
    }
}

void FrmExtEditorKeysTest::enterOnAnEmptyBoxDoesNothing() {
    openOver(1);
    screen_->type("Text2", "5");
    QTest::keyClick(&screen_->control<QLineEdit>("Text3"), Qt::Key_Return);
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("T1|1|T")});
}

void FrmExtEditorKeysTest::selectedBytesPutTheirFirstOneIntoPosition() {
    openOver(0);
    auto& bytes = screen_->control<HexView>("Hex1");
    bytes.setCaret(3);
    for (int i = 0; i < 4; ++i) QTest::keyClick(&bytes, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(screen_->text("Text2"), QStringLiteral("4"));
    bytes.setCaret(9);
    for (int i = 0; i < 4; ++i) QTest::keyClick(&bytes, Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(screen_->text("Text2"), QStringLiteral("6"));
}

void FrmExtEditorKeysTest::allOfTheHexViewIsShownAtItsDefaultSize() {
    for (const int category : {1, 9}) {
        openOver(2, category);
        auto& bytes = screen_->control<HexView>("Hex1");
        // The screen of a test is small: with some fonts no window on it is high enough.
        constexpr int kFrame = 100;
        const bool fillsScreen = bytes.window()->height() + kFrame >= bytes.screen()->availableSize().height();
        QVERIFY(bytes.verticalScrollBar()->maximum() == 0 || fillsScreen);
        screen_->navigator.unload(Screen::ExtEditor);
    }
}

void FrmExtEditorKeysTest::aRefusedCommaLeavesTheCaretInItsPlace() {
    openOver(0);
    screen_->dialogs.expectBox(
        "No Commas!",
        "You are not allowed to use commas in searches as these are used internally by the program. If you need a term "
        "using a comma, use a HEX based search for '2C'.",
        BoxAnswer::Ok, BoxStyle::Plain, BoxButtons::Ok);
    screen_->type("Text3", "abcd");
    auto& term = screen_->control<QLineEdit>("Text3");
    term.setCursorPosition(2);
    QTest::keyClicks(&term, QStringLiteral(",X"));
    QCOMPARE(term.text(), QStringLiteral("abXcd"));
}

void FrmExtEditorKeysTest::ofPastedLinesTheFirstCounts() {
    openOver(0);
    for (const char* box : {"Text2", "Text3"}) {
        QApplication::clipboard()->setText(QStringLiteral("12\r\n34"));
        screen_->control<QLineEdit>(box).selectAll();
        screen_->control<QLineEdit>(box).paste();
        QCOMPARE(screen_->text(box), QStringLiteral("12"));
    }
    screen_->click("Command2");
    screen_->click("Command5");
    QCOMPARE(screen_->bytesOf("local/Database/qlx.dat"), std::string("12,12,T\r\n"));
}

void FrmExtEditorKeysTest::deleteInTheTermsAsksAndDeletes() {
    openOver(2);
    QTest::keyClick(&screen_->grid(), Qt::Key_Delete);  // no row is current: nothing is asked
    screen_->grid().setCurrentRow(1);
    screen_->dialogs.expectBox("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes, BoxStyle::Question,
                               BoxButtons::YesNo);
    QTest::keyClick(&screen_->grid(), Qt::Key_Delete);
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("T1|1|T")});
}

void FrmExtEditorKeysTest::arrowsInTheTermsFillTheCriteria() {
    openOver(3);
    focus("iGrid1");
    QCOMPARE(screen_->grid().currentRow(), -1);
    QTest::keyClick(&screen_->grid(), Qt::Key_Down);
    QCOMPARE(screen_->text("Text3"), QStringLiteral("T1"));
    QTest::keyClick(&screen_->grid(), Qt::Key_Down);
    QCOMPARE(screen_->text("Text3"), QStringLiteral("T2"));
    QCOMPARE(screen_->text("Text2"), QStringLiteral("2"));
}

void FrmExtEditorKeysTest::aClickNamesTheTermInThePopup() {
    openOver(2);
    QCOMPARE(screen_->control<QAction>("mnuAdd").text(), QStringLiteral("Add Term to Common Headers List"));
    screen_->clickRow(1);
    QCOMPARE(screen_->control<QAction>("mnuAdd").text(), QStringLiteral("Add 'T2' to common headers list"));
}

void FrmExtEditorKeysTest::theKeyboardStaysOnTestBehindASearch() {
    openOver(0);
    screen_->type("Text2", "1");
    screen_->type("Text3", "none");
    focus("Command11");
    expectNotFound();
    QTest::keyClick(&screen_->control<QPushButton>("Command11"), Qt::Key_Space);
    QCOMPARE(focused(), QStringLiteral("Command11"));
}

void FrmExtEditorKeysTest::aRefusedTermGetsTheKeyboard() {
    openOver(0);
    screen_->type("Text2", "1");
    screen_->type("Text3", "ABC");
    screen_->control<QComboBox>("Combo2").setCurrentIndex(1);
    focus("Command11");
    screen_->dialogs.expectBox("Error", "Hex terms must be in pairs (e.g. 01 02 03 or 010203). ", BoxAnswer::Ok,
                               BoxStyle::Warning, BoxButtons::Ok);
    screen_->click("Command11");
    QCOMPARE(focused(), QStringLiteral("Text3"));
    screen_->type("Text2", "");
    screen_->dialogs.expectBox(
        "Error", "Please enter a starting position for the search term (0= Anywhere in the first 512 bytes)",
        BoxAnswer::Ok, BoxStyle::Warning, BoxButtons::Ok);
    screen_->click("Command11");
    QCOMPARE(focused(), QStringLiteral("Text2"));
}

void FrmExtEditorKeysTest::aNewTermIsBroughtIntoView() {
    openOver(60);
    screen_->type("Text3", "NEW");
    screen_->click("Command2");
    QCOMPARE(screen_->grid().verticalScrollBar()->value(), screen_->grid().verticalScrollBar()->maximum());
    QVERIFY(screen_->grid().verticalScrollBar()->maximum() > 0);
}

void FrmExtEditorKeysTest::anUpdateLeavesTheViewAlone() {
    openOver(60);
    screen_->grid().setCurrentRow(30);
    screen_->grid().verticalScrollBar()->setValue(28);
    screen_->type("Text3", "CHANGED");
    screen_->click("Command2");
    QCOMPARE(screen_->grid().cell(30, 0), std::string("CHANGED"));
    QCOMPARE(screen_->grid().currentRow(), 30);
    QCOMPARE(screen_->grid().topRow(), 28);
}

// Caret to the third byte, the term, "Test" by its key, "Yes", "Done" by its key. A key presses a button for as long as
// an eye needs to see it.
void FrmExtEditorKeysTest::theWholeSearchGoesByKeys() {
    openOver(0);
    auto& hex = screen_->control<HexView>("Hex1");
    QTest::keyClick(&hex, Qt::Key_Right);
    QTest::keyClick(&hex, Qt::Key_Right);
    QCOMPARE(screen_->text("Text2"), QStringLiteral("3"));
    QTest::keyClick(&screen_->window(), Qt::Key_T, Qt::AltModifier);
    QCOMPARE(focused(), QStringLiteral("Text3"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("X!"));
    screen_->dialogs.expectBox(
        "Add term", "Search results :\r\n\r\nGood files :  1\r\nBad files :  0\r\n\r\n Do you want to add the term ?",
        BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    QTest::keyClick(&screen_->window(), Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(screen_->rows(), QStringList{QStringLiteral("X!|3|T")});
    QTest::keyClick(&screen_->window(), Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(screen_->bytesOf("local/Database/qlx.dat"), std::string("3,X!,T\r\n"));
}

QTEST_MAIN(FrmExtEditorKeysTest)
#include "frmExtEditor_keys_test.moc"
