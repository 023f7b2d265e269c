// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>

#include "editors/editor_screen.h"

using namespace quillon;

class FrmCommonHeadersTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void addAppendsARowAndClearsTheFields();
    void theTermIsJudgedBelowItsBoxes();
    void aRefusedEntryLeavesAllAsItIs();
    void clearEmptiesTheFieldsAndTheSwitch();
    void aHexTermIsCheckedAndTakesTheKeyboard();
    void aClickOnARowUpdatesIt();
    void theRightButtonOnTheButtonChangesTheMode();
    void theMenuOfARowDeletesIt();
    void deleteSelectedAsks();
    void deleteAllIsSwitchedOnByItsBox();
    void doneSavesAndTheCloseBoxDoesNot();

private:
    std::unique_ptr<test::EditorScreen> screen_;
};

constexpr const char* kList = "local/Settings/CommonHeaders.dat";
constexpr const char* kTwo = "1,MZ,T,Program & more\r\n0,D0CF11,H,OLE file\r\n";

void FrmCommonHeadersTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::CommonHeaders);
    screen_->folder.write(kList, kTwo);
    screen_->job.messages[Grade::CommonHeader] = u"Looks <b>like</b>: ";
    screen_->open();
}

void FrmCommonHeadersTest::cleanup() {
    test::closeScreens(screen_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"",
     "",
     {
         {"Label1", "ID"},
         {"tID", ""},
         {"Label2", "Term"},
         {"Label5", "Offset"},
         {"Label6", "Type"},
         {"tTerm", ""},
         {"pageRemark_", "", false},
         {"tOffset", ""},
         {"cboType", "Text"},
         {"Command1", "Add"},
         {"Command2", "Clear"},
         {"Command3", "Delete Selected"},
         {"Command4", "Done"},
         {"Command5", "Delete All", true, false},
         {"Check1", "Enable Delete all"},
         {"Label4", "Current Prefix : Looks <b>like</b>: "},
         {"Label3", "Right click on Update button to toggle input mode.", false},
         {"iGrid1", ""},
     }},
};

}  // namespace

void FrmCommonHeadersTest::everyControlHasItsNameAndCaption() {
    QCOMPARE(screen_->window().objectName(), QStringLiteral("frmCommonHeaders"));
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Common Headers"));
    QCOMPARE(test::misfits(screen_->window(), kControls), QStringList());
    QCOMPARE(screen_->control<QLabel>("Label4").textFormat(), Qt::PlainText);
    const QComboBox& type = screen_->control<QComboBox>("cboType");
    QCOMPARE(type.count(), 2);
    QCOMPARE(type.itemText(0), QStringLiteral("Text"));
    QCOMPARE(type.itemText(1), QStringLiteral("Hex"));
    const char* const titles[] = {"ID", "Term", "Pos", "Type"};
    for (int column = 0; column < 4; ++column)
        QCOMPARE(screen_->grid().columnTitle(column), std::string(titles[column]));
    QCOMPARE(screen_->rows(),
             (QStringList{QStringLiteral("Program & more|MZ|1|T"), QStringLiteral("OLE file|D0CF11|0|H")}));
    QCOMPARE(screen_->control<QMenu>("mnuMenu").title(), QStringLiteral("Menu"));
    QCOMPARE(screen_->control<QAction>("mnuDelete").text(), QStringLiteral("Delete Selection"));
}

void FrmCommonHeadersTest::addAppendsARowAndClearsTheFields() {
    screen_->type("tID", "Zip");
    screen_->type("tTerm", "50 4b");
    screen_->type("tOffset", "1");
    screen_->control<QComboBox>("cboType").setCurrentIndex(1);
    screen_->click("Command1");
    QCOMPARE(screen_->rows().last(), QStringLiteral("Zip|504B|1|H"));
    for (const char* box : {"tID", "tTerm", "tOffset"}) QCOMPARE(screen_->text(box), QString());
    QCOMPARE(screen_->control<QComboBox>("cboType").currentIndex(), 0);
    QCOMPARE(screen_->bytesOf(kList), std::string(kTwo));
}

void FrmCommonHeadersTest::aRefusedEntryLeavesAllAsItIs() {
    screen_->type("tID", "Zip");
    screen_->type("tTerm", "PK");
    screen_->type("tOffset", "abc");
    screen_->click("Command1");
    QCOMPARE(screen_->rows().size(), 2);
    QCOMPARE(screen_->text("tOffset"), QStringLiteral("abc"));
    screen_->type("tOffset", "0");
    screen_->click("Command1");
    QCOMPARE(screen_->rows().size(), 3);
}

void FrmCommonHeadersTest::clearEmptiesTheFieldsAndTheSwitch() {
    for (const char* box : {"tID", "tTerm", "tOffset"}) screen_->type(box, "1");
    screen_->control<QComboBox>("cboType").setCurrentIndex(1);
    screen_->control<QCheckBox>("Check1").setChecked(true);
    screen_->click("Command2");
    for (const char* box : {"tID", "tTerm", "tOffset"}) QCOMPARE(screen_->text(box), QString());
    QCOMPARE(screen_->control<QComboBox>("cboType").currentIndex(), 0);
    QVERIFY(!screen_->control<QCheckBox>("Check1").isChecked());
    QVERIFY(!screen_->control<QPushButton>("Command5").isEnabled());
    QCOMPARE(screen_->grid().rowCount(), 2);
}

void FrmCommonHeadersTest::aHexTermIsCheckedAndTakesTheKeyboard() {
    QVERIFY(QTest::qWaitForWindowActive(&screen_->window()));
    screen_->type("tID", "Zip");
    screen_->type("tTerm", "50 4");
    screen_->type("tOffset", "1");
    screen_->control<QComboBox>("cboType").setCurrentIndex(1);
    screen_->dialogs.expectBox("Error", "Invalid hex must be in pairs (e.d. 01 02 03 or 010203)");
    screen_->click("Command1");
    QVERIFY(screen_->control<QLineEdit>("tTerm").hasFocus());
    QCOMPARE(screen_->rows().size(), 2);
}

void FrmCommonHeadersTest::aClickOnARowUpdatesIt() {
    screen_->clickRow(1);
    QCOMPARE(screen_->text("tID"), QStringLiteral("OLE file"));
    QCOMPARE(screen_->text("tTerm"), QStringLiteral("D0CF11"));
    QCOMPARE(screen_->text("tOffset"), QStringLiteral("0"));
    QCOMPARE(screen_->control<QComboBox>("cboType").currentText(), QStringLiteral("Hex"));
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Update"));
    QVERIFY(screen_->control<QLabel>("Label3").isVisible());
    screen_->type("tID", "Office");
    screen_->click("Command1");
    QCOMPARE(screen_->rows().last(), QStringLiteral("Office|D0CF11|0|H"));
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Add"));
    QVERIFY(!screen_->control<QLabel>("Label3").isVisible());
}

void FrmCommonHeadersTest::theRightButtonOnTheButtonChangesTheMode() {
    screen_->clickRow(0);
    QTest::mouseClick(&screen_->control<QPushButton>("Command1"), Qt::RightButton);
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Add"));
    QVERIFY(!screen_->control<QLabel>("Label3").isVisible());
    screen_->type("tTerm", "ZM");
    screen_->click("Command1");
    QCOMPARE(screen_->rows().last(), QStringLiteral("Program & more|ZM|1|T"));
    QTest::keyClick(&screen_->control<QPushButton>("Command1"), Qt::Key_Menu);
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Update"));
    QVERIFY(screen_->control<QLabel>("Label3").isVisible());
}

void FrmCommonHeadersTest::theMenuOfARowDeletesIt() {
    screen_->clickRow(0, Qt::RightButton);
    QVERIFY(screen_->control<QMenu>("mnuMenu").isVisible());
    QCOMPARE(screen_->grid().currentRow(), 0);
    // An "&" of the data is written twice, so that a menu shows it.
    QCOMPARE(screen_->control<QAction>("mnuDelete").text(), QStringLiteral("Delete 'Program && more'"));
    screen_->dialogs.expectBox("Delete Common Header ?",
                               "Are you sure you want to delete the entry for Program & more ?", BoxAnswer::Yes);
    screen_->control<QAction>("mnuDelete").trigger();
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("OLE file|D0CF11|0|H")});
    screen_->control<QMenu>("mnuMenu").close();
}

void FrmCommonHeadersTest::deleteSelectedAsks() {
    screen_->click("Command3");
    screen_->clickRow(1);
    screen_->dialogs.expectBox("Delete Common Header ?", "Are you sure you want to delete the entry for OLE file ?",
                               BoxAnswer::No);
    screen_->click("Command3");
    QCOMPARE(screen_->rows().size(), 2);
}

void FrmCommonHeadersTest::deleteAllIsSwitchedOnByItsBox() {
    screen_->control<QCheckBox>("Check1").click();
    QVERIFY(screen_->control<QPushButton>("Command5").isEnabled());
    screen_->dialogs.expectBox("Delete All?", "Are you sure you want to remove all refererences to common file types?",
                               BoxAnswer::Yes);
    screen_->click("Command5");
    QVERIFY(screen_->rows().isEmpty());
    QVERIFY(!screen_->control<QCheckBox>("Check1").isChecked());
    QVERIFY(!screen_->control<QPushButton>("Command5").isEnabled());
    QVERIFY(!screen_->has(kList));
}

void FrmCommonHeadersTest::doneSavesAndTheCloseBoxDoesNot() {
    const auto addZip = [this] {
        screen_->type("tID", "Zip");
        screen_->type("tTerm", "PK");
        screen_->type("tOffset", "1");
        screen_->click("Command1");
    };
    addZip();
    screen_->window().close();
    QCOMPARE(screen_->bytesOf(kList), std::string(kTwo));
    QCOMPARE(screen_->mainShown, 1);
    screen_->open();
    addZip();
    screen_->click("Command4");
    QVERIFY(!screen_->isOpen());
    QCOMPARE(screen_->bytesOf(kList), std::string(kTwo) + "1,PK,T,Zip\r\n");
}

void FrmCommonHeadersTest::theTermIsJudgedBelowItsBoxes() {
    screen_->type("tOffset", "9");
    screen_->type("tTerm", "abcd");
    QTRY_COMPARE(screen_->control<QLabel>("advice_").text(),
                 QStringLiteral("4 bytes; no good files of other extensions are known"));
}

QTEST_MAIN(FrmCommonHeadersTest)
#include "frmCommonHeaders_test.moc"
