// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>

#include "editors/editor_screen.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmUpdatedbTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void typingAnExtensionLoadsItsTerms();
    void theTermIsJudgedBelowItsBoxes();
    void openShowsTheSampleAndItsTerms();
    void theButtonOpensAsTheMenuDoes();
    void hexChangesTheTermAtOnce();
    void addFillsARowAndKeepsTheFields();
    void whatIsMissingGetsTheKeyboard();
    void aRowUpdatesUntilClr();
    void anEqualTermBecomesTheCurrentRowAndTheFieldsStay();
    void theMenuOfARowTellsTheTerm();
    void AddToCommonHeadersDoesNothing();
    void aClickInTheHexViewDoesNotFillThePosition();
    void deleteAsks();
    void deletingAllAsks();
    void everyWayOutSaves();
    void modalWaitsUntilDone();

private:
    void add(const char* position, const char* term) {
        screen_->type("Text2", position);
        screen_->type("Text3", term);
        screen_->click("Command2");
    }

    std::unique_ptr<test::EditorScreen> screen_;
};

constexpr const char* kTerms = "local/Database/jpg.dat";

void FrmUpdatedbTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::Updatedb);
    screen_->folder.write(kTerms, "1,FFD8,H\r\n7,JFIF & more,T\r\n");
    screen_->open();
}

void FrmUpdatedbTest::cleanup() {
    test::closeScreens(screen_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame2",
     "Criteria",
     {
         {"Label5", "Ext"},
         {"Text1", ""},
         {"Command4", "..."},
         {"Label6", "Type extension or open file"},
         {"Label2", "Position"},
         {"Text2", ""},
         {"Label3", "(0 = Anywhere)"},
         {"Label1", "Term"},
         {"Text3", ""},
         {"pageRemark_", "", false},
         {"Label4", "Type"},
         {"Combo1", "Text"},
         {"Command2", "Add"},
         {"Command3", "Clr"},
     }},
    {"Frame3",
     "Existing Terms",
     {
         {"iGrid1", ""},
         {"Command1", "Delete"},
         {"Check1", "Delete all terms"},
         {"Command5", "Done"},
     }},
    {"Frame1",
     "Hex View",
     {
         {"Hex1", ""},
     }},
};

}  // namespace

void FrmUpdatedbTest::everyControlHasItsNameAndCaption() {
    QCOMPARE(screen_->window().objectName(), QStringLiteral("frmUpdatedb"));
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Manually Update Database"));
    QCOMPARE(test::misfits(screen_->window(), kControls), QStringList());
    const QComboBox& type = screen_->control<QComboBox>("Combo1");
    QCOMPARE(type.itemText(0), QStringLiteral("Text"));
    QCOMPARE(type.itemText(1), QStringLiteral("HEX"));
    QCOMPARE(type.currentIndex(), 0);
    const char* const titles[] = {"Term", "Offset", "Type"};
    for (int column = 0; column < 3; ++column)
        QCOMPARE(screen_->grid().columnTitle(column), std::string(titles[column]));
    QCOMPARE(test::captionOf(screen_->control<QMenu>("mnuFle")), QStringLiteral("File"));
    QCOMPARE(screen_->control<QAction>("mnuOpen").text(), QStringLiteral("Open"));
    QCOMPARE(screen_->control<QMenu>("mnuEdit").title(), QStringLiteral("Edit"));
    QVERIFY(!screen_->control<QMenu>("mnuEdit").isVisible());
    QVERIFY(screen_->control<QAction>("mnub1").isSeparator());
    QCOMPARE(screen_->control<QAction>("mnuCommonHeader").text(), QStringLiteral("Add to Common Headers"));
}

void FrmUpdatedbTest::typingAnExtensionLoadsItsTerms() {
    QTest::keyClicks(&screen_->control<QLineEdit>("Text1"), QStringLiteral("JPG"));
    QCOMPARE(screen_->rows(), (QStringList{QStringLiteral("FFD8|1|H"), QStringLiteral("JFIF & more|7|T")}));
    QTest::keyClick(&screen_->control<QLineEdit>("Text1"), Qt::Key_Backspace);
    QVERIFY(screen_->rows().isEmpty());
}

void FrmUpdatedbTest::openShowsTheSampleAndItsTerms() {
    const NativePath sample = screen_->folder.write("photo.jpg", std::string(511, 'a') + "bc");
    screen_->dialogs.expectFiles("open a file to view headers", {sample});
    screen_->control<QAction>("mnuOpen").trigger();
    QCOMPARE(screen_->control<HexView>("Hex1").bytes(), std::string(511, 'a') + "b");
    QCOMPARE(screen_->bytesOf("app/fDump.bin"), std::string(511, 'a') + "b");
    QCOMPARE(screen_->text("Text1"), QStringLiteral("jpg"));
    QCOMPARE(screen_->rows().size(), 2);
}

void FrmUpdatedbTest::theButtonOpensAsTheMenuDoes() {
    const NativePath sample = screen_->folder.write("small.jpg", std::string(511, 'a'));
    screen_->dialogs.expectFiles("open a file to view headers", {sample});
    screen_->dialogs.expectBox("File too small", "File needs to be at least 512 bytes", BoxAnswer::Ok,
                               BoxStyle::Warning);
    screen_->click("Command4");
    QCOMPARE(screen_->control<HexView>("Hex1").bytes(), std::string());
    QCOMPARE(screen_->text("Text1"), QString());
}

void FrmUpdatedbTest::hexChangesTheTermAtOnce() {
    screen_->type("Text3", "ff d8");
    screen_->control<QComboBox>("Combo1").setCurrentIndex(1);
    QCOMPARE(screen_->text("Text3"), QStringLiteral("FFD8"));
    screen_->control<QComboBox>("Combo1").setCurrentIndex(0);
    QCOMPARE(screen_->text("Text3"), QStringLiteral("FFD8"));
}

void FrmUpdatedbTest::addFillsARowAndKeepsTheFields() {
    screen_->type("Text1", "jpg");
    add("0", "Exif");
    QCOMPARE(screen_->rows().last(), QStringLiteral("Exif|0|T"));
    QCOMPARE(screen_->text("Text3"), QStringLiteral("Exif"));
    QCOMPARE(screen_->text("Text2"), QStringLiteral("0"));
    QCOMPARE(screen_->caption("Command2"), QStringLiteral("Add"));
}

void FrmUpdatedbTest::whatIsMissingGetsTheKeyboard() {
    QVERIFY(QTest::qWaitForWindowActive(&screen_->window()));
    const struct {
        const char* text;
        const char* box;
        const char* fill;
    } cases[] = {{"Please enter a Extension type.", "Text1", "jpg"},
                 {"Please enter a start position for the term.", "Text2", "1"},
                 {"Please enter a search term.", "Text3", "x"}};
    for (const auto& one : cases) {
        screen_->control<QPushButton>("Command5").setFocus();
        screen_->dialogs.expectBox("Error", one.text, BoxAnswer::Ok, BoxStyle::Warning);
        screen_->click("Command2");
        QVERIFY2(screen_->control<QLineEdit>(one.box).hasFocus(), one.box);
        screen_->type(one.box, one.fill);
    }
    screen_->click("Command2");
    QCOMPARE(screen_->rows().last(), QStringLiteral("x|1|T"));
}

void FrmUpdatedbTest::aRowUpdatesUntilClr() {
    screen_->type("Text1", "jpg");
    screen_->clickRow(0);
    QCOMPARE(screen_->caption("Command2"), QStringLiteral("Update"));
    QCOMPARE(screen_->text("Text2"), QStringLiteral("1"));
    QCOMPARE(screen_->text("Text3"), QStringLiteral("FFD8"));
    QCOMPARE(screen_->control<QComboBox>("Combo1").currentText(), QStringLiteral("HEX"));
    add("1", "FFD8FF");
    QCOMPARE(screen_->rows().first(), QStringLiteral("FFD8FF|1|H"));
    QCOMPARE(screen_->caption("Command2"), QStringLiteral("Update"));
    screen_->click("Command3");
    QCOMPARE(screen_->caption("Command2"), QStringLiteral("Add"));
    QCOMPARE(screen_->text("Text2"), QString());
    QCOMPARE(screen_->text("Text3"), QString());
    QCOMPARE(screen_->control<QComboBox>("Combo1").currentIndex(), 0);
}

void FrmUpdatedbTest::anEqualTermBecomesTheCurrentRowAndTheFieldsStay() {
    screen_->type("Text1", "jpg");
    screen_->dialogs.expectBox("Term Exists",
                               "A similar term exists for this extension. Do you still want to add this term?",
                               BoxAnswer::No, BoxStyle::Warning, BoxButtons::YesNo);
    add("3", "jfif & MORE");
    QCOMPARE(screen_->grid().currentRow(), 1);
    QCOMPARE(screen_->text("Text3"), QStringLiteral("jfif & MORE"));
    QCOMPARE(screen_->caption("Command2"), QStringLiteral("Add"));
    QCOMPARE(screen_->rows().size(), 2);
}

void FrmUpdatedbTest::theMenuOfARowTellsTheTerm() {
    screen_->type("Text1", "jpg");
    screen_->clickRow(1, Qt::RightButton);
    QMenu& menu = screen_->control<QMenu>("mnuEdit");
    QVERIFY(menu.isVisible());
    QCOMPARE(screen_->grid().currentRow(), 1);
    QCOMPARE(screen_->control<QAction>("mnuDelete").text(), QStringLiteral("Delete the term 'JFIF && more'"));
    QCOMPARE(screen_->control<QAction>("mnuCommonHeader").text(),
             QStringLiteral("Add 'JFIF && more' to common headers"));
    menu.close();
    screen_->dialogs.expectBox("Delete entry", "Are you sure you want to delete the term JFIF & more ?",
                               BoxAnswer::Yes);
    screen_->control<QAction>("mnuDelete").trigger();
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("FFD8|1|H")});
}

void FrmUpdatedbTest::AddToCommonHeadersDoesNothing() {
    screen_->type("Text1", "jpg");
    screen_->clickRow(1);
    screen_->control<QAction>("mnuCommonHeader").trigger();
    QVERIFY(!screen_->has("local/Settings/CommonHeaders.dat"));
    QVERIFY(!screen_->has("share/Settings/CommonHeaders.dat"));
}

void FrmUpdatedbTest::aClickInTheHexViewDoesNotFillThePosition() {
    const NativePath sample = screen_->folder.write("photo.jpg", std::string(600, 'a'));
    screen_->dialogs.expectFiles("open a file to view headers", {sample});
    screen_->click("Command4");
    HexView& hex = screen_->control<HexView>("Hex1");
    QTest::mouseClick(hex.viewport(), Qt::LeftButton, Qt::NoModifier, hex.byteRect(5, HexPane::Hex).center());
    QCOMPARE(screen_->text("Text2"), QString());
}

void FrmUpdatedbTest::deleteAsks() {
    screen_->type("Text1", "jpg");
    screen_->clickRow(0);
    screen_->dialogs.expectBox("Delete entry", "Are you sure you want to delete the term FFD8 ?", BoxAnswer::Yes);
    QTest::keyClick(&screen_->grid(), Qt::Key_Delete);
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("JFIF & more|7|T")});
    QCOMPARE(screen_->grid().currentRow(), -1);
    QCOMPARE(screen_->bytesOf(kTerms), std::string("1,FFD8,H\r\n7,JFIF & more,T\r\n"));
}

void FrmUpdatedbTest::deletingAllAsks() {
    screen_->type("Text1", "jpg");
    screen_->control<QCheckBox>("Check1").click();
    screen_->dialogs.expectBox("Delete entry", "Are you sure you want to delete all terms for jpg ?", BoxAnswer::No);
    screen_->click("Command1");
    QCOMPARE(screen_->rows().size(), 2);
    QVERIFY(!screen_->has("local/Kept"));
}

void FrmUpdatedbTest::everyWayOutSaves() {
    screen_->type("Text1", "doc");
    add("1", "x");
    screen_->click("Command5");
    QVERIFY(!screen_->isOpen());
    QCOMPARE(screen_->mainShown, 1);
    QCOMPARE(screen_->bytesOf("local/Database/doc.dat"), std::string("1,x,T\r\n"));
    screen_->open();
    screen_->type("Text1", "xls");
    add("2", "y");
    screen_->window().close();
    QCOMPARE(screen_->bytesOf("local/Database/xls.dat"), std::string("2,y,T\r\n"));
}

void FrmUpdatedbTest::modalWaitsUntilDone() {
    screen_->navigator.unload(Screen::Updatedb);
    bool wasModal = false;
    QTimer::singleShot(0, qApp, [this, &wasModal] {
        wasModal = screen_->window().isModal();
        screen_->click("Command5");
    });
    screen_->navigator.openModal(Screen::Updatedb);
    QVERIFY(wasModal);
    QVERIFY(screen_->navigator.window(Screen::Updatedb) == nullptr);
    QCOMPARE(screen_->bytesOf("local/Database/.dat"), std::string());
}

void FrmUpdatedbTest::theTermIsJudgedBelowItsBoxes() {
    screen_->type("Text2", "1");
    screen_->type("Text3", "ab");
    QTRY_COMPARE(screen_->control<QLabel>("advice_").text(),
                 QStringLiteral("Too short: other files have it by chance. 2 bytes; no good files of other extensions "
                                "are known"));
}

QTEST_MAIN(FrmUpdatedbTest)
#include "frmUpdatedb_test.moc"
