// SPDX-License-Identifier: MIT
// The screen "Extension Editor": every control by its name, and what each does.

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include "text/list_text.h"
#include "ui/main_window.h"
#include "viewer/editor_handover.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmExtEditorTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameCaptionAndState();
    void theGridHasItsColumns();
    void theExtensionCannotBeEdited();
    void theFirstFileIsShown();
    void steppingGoesThroughTheFiles();
    void theListShowsReadableNames();
    void aClickInTheHexViewFillsThePosition();
    void aRowFillsTheCriteriaAndUpdateOverwritesIt();
    void addPutsTheFieldsIntoTheGrid();
    void clrEmptiesTheFields();
    void presetsFillTheCriteria();
    void aCommaIsRefused();
    void rowsMove();
    void deleteAllIsSwitchedOnByItsBox();
    void buttonsEmptyTheClipboard();
    void updateMasterDbHasNoEffect();
    void copyFilesIsNeverShown();
    void theGridHasAPopup();
    void theFramesAreOffWhileASearchAsks();
    void theCommonControlsShowForCommonHeaders();
    void doneSavesAndBringsTheViewerBack();
    void closingSavesToo();

private:
    template <typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        return test::controlOf<Control>(*screen_, name);
    }
    void click(const char* button) const { control<QPushButton>(button).click(); }
    [[nodiscard]] QString field(const char* name) const { return control<QLineEdit>(name).text(); }
    void enter(const char* position, const char* term, int type = 0) const;
    [[nodiscard]] std::string terms() const;
    void open(int category = 1);

    std::unique_ptr<test::MainWindow> main_;
    QWidget* screen_ = nullptr;
    EditorHandover handover_;
};

void FrmExtEditorTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->open();
    main_->window->hide();
    handover_ = {};
    for (const char* name : {"source/one.qlx", "source/two<b>.qlx", "source/three\xFF.qlx"}) {
        const auto path = main_->temp.write(name, "QLX!" + std::string(name) + std::string(600, 'x'));
        handover_.files.push_back({toListText(path.native()), u"Appears to be of file type : archive"});
    }
    main_->temp.write("local/Database/qlx.dat", "1,AAA,T\r\n0,FFD8,H\r\n");
    open();
}

void FrmExtEditorTest::open(int category) {
    handover_.category = category;
    handover_.extension = u"qlx";
    main_->navigator.open(Screen::ViewList);
    main_->navigator.open(Screen::ExtEditor, handover_);
    main_->navigator.hide(Screen::ViewList);
    screen_ = main_->navigator.window(Screen::ExtEditor);
}

void FrmExtEditorTest::cleanup() {
    test::closeScreens(main_);
}

void FrmExtEditorTest::enter(const char* position, const char* term, int type) const {
    control<QLineEdit>("Text2").setText(QLatin1String(position));
    control<QLineEdit>("Text3").setText(QLatin1String(term));
    control<QComboBox>("Combo2").setCurrentIndex(type);
}

std::string FrmExtEditorTest::terms() const {
    const auto& grid = control<Grid>("iGrid1");
    std::string all;
    for (int row = 0; row < grid.rowCount(); ++row)
        all += grid.cell(row, 0) + "|" + grid.cell(row, 1) + "|" + grid.cell(row, 2) + "\n";
    return all;
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame1",
     "Criteria",
     {
         {"Label5", "Ext"},
         {"Text1", "qlx", true, false},
         {"Label2", "Position"},
         {"Text2", ""},
         {"Label3", "(0 = Anywhere)"},
         {"Label1", "Term"},
         {"Text3", ""},
         {"pageRemark_", "", false},
         {"Label4", "Type"},
         {"Combo2", "Text"},
         {"Command2", "Add"},
         {"Command3", "Clr"},
         {"Command11", "Test"},
         {"Command6", "EXE/DLL"},
         {"Command7", "OLE"},
         {"Command8", "WP"},
     }},
    {"Frame3",
     "Existing Terms",
     {
         {"iGrid1", ""},
         {"Command1", "Delete"},
         {"Check1", "Enable Delete all"},
         {"Command10", "Delete All", true, false},
         {"Command12_0", "\xE2\x96\xB2"},
         {"Command12_1", "\xE2\x96\xBC"},
         {"Check2", "Update Master DB"},
         {"Command5", "Done"},
     }},
    {"Frame2",
     "Hex View",
     {
         {"Command9", "-"},
         {"Command4", "+"},
         {"Label6", "Viewing file  1 of  3"},
         {"Hex1", ""},
         {"Label7", "Common header info", false},
         {"Combo3", "(Please Select)", false},
         {"Command13", "Test", false},
     }},
};

}  // namespace

void FrmExtEditorTest::everyControlHasItsNameCaptionAndState() {
    QCOMPARE(screen_->objectName(), QStringLiteral("frmExtEditor"));
    QCOMPARE(screen_->windowTitle(), QStringLiteral("Extension Editor"));
    QCOMPARE(test::misfits(*screen_, kControls), QStringList());
}

void FrmExtEditorTest::theGridHasItsColumns() {
    auto& grid = control<Grid>("iGrid1");
    QCOMPARE(grid.columnCount(), 3);
    QCOMPARE(grid.columnTitle(0) + "|" + grid.columnTitle(1) + "|" + grid.columnTitle(2),
             std::string("Term|Offset|Type"));
    QVERIFY(grid.columnWidth(1) == 60 && grid.columnWidth(2) == 50);
    QCOMPARE(terms(), std::string("AAA|1|T\nFFD8|0|H\n"));
}

void FrmExtEditorTest::theExtensionCannotBeEdited() {
    QTest::keyClicks(&control<QLineEdit>("Text1"), QStringLiteral("x"));
    QCOMPARE(field("Text1"), QStringLiteral("qlx"));
}

void FrmExtEditorTest::theFirstFileIsShown() {
    QCOMPARE(control<HexView>("Hex1").bytes().size(), std::size_t(512));
    QCOMPARE(control<HexView>("Hex1").bytes().substr(0, 18), std::string("QLX!source/one.qlx"));
    QCOMPARE(main_->temp.read("app/tFile.bin"), control<HexView>("Hex1").bytes());
}

void FrmExtEditorTest::steppingGoesThroughTheFiles() {
    control<QLineEdit>("Text2").setText(QStringLiteral("5"));
    click("Command4");
    QCOMPARE(control<QLabel>("Label6").text(), QStringLiteral("Viewing file  2 of  3"));
    QCOMPARE(field("Text2"), QString());
    QCOMPARE(control<QComboBox>("Combo1").currentIndex(), 1);
    click("Command9");
    click("Command9");
    QCOMPARE(control<QLabel>("Label6").text(), QStringLiteral("Viewing file  3 of  3"));
    click("Command4");
    QCOMPARE(control<QLabel>("Label6").text(), QStringLiteral("Viewing file  1 of  3"));
    control<QComboBox>("Combo1").setCurrentIndex(2);
    QCOMPARE(control<QLabel>("Label6").text(), QStringLiteral("Viewing file  3 of  3"));
}

void FrmExtEditorTest::theListShowsReadableNames() {
    auto& list = control<QComboBox>("Combo1");
    QVERIFY(list.itemText(1).endsWith(QStringLiteral("two<b>.qlx")));
    QVERIFY(list.itemText(2).endsWith(QString::fromUtf8("three\xEF\xBF\xBD.qlx")));
    list.setCurrentIndex(2);
    QCOMPARE(control<HexView>("Hex1").bytes().substr(0, 4), std::string("QLX!"));
    for (const QLabel* label : screen_->findChildren<QLabel*>()) QCOMPARE(label->textFormat(), Qt::PlainText);
}

void FrmExtEditorTest::aClickInTheHexViewFillsThePosition() {
    auto& hex = control<HexView>("Hex1");
    QTest::mouseClick(hex.viewport(), Qt::LeftButton, {}, hex.byteRect(4, HexPane::Hex).center());
    QCOMPARE(field("Text2"), QStringLiteral("5"));
    QTest::keyClick(&hex, Qt::Key_Right);
    QCOMPARE(field("Text2"), QStringLiteral("6"));
}

void FrmExtEditorTest::aRowFillsTheCriteriaAndUpdateOverwritesIt() {
    auto& grid = control<Grid>("iGrid1");
    grid.setCurrentRow(1);
    QCOMPARE(field("Text3"), QStringLiteral("FFD8"));
    QCOMPARE(field("Text2"), QStringLiteral("0"));
    QCOMPARE(control<QComboBox>("Combo2").currentText(), QStringLiteral("HEX"));
    QCOMPARE(control<QPushButton>("Command2").text().remove(QLatin1Char('&')), QStringLiteral("Update"));
    QVERIFY(control<QPushButton>("Command12_0").isEnabled());
    QVERIFY(!control<QPushButton>("Command12_1").isEnabled());
    control<QLineEdit>("Text3").setText(QStringLiteral("ff d8 ff"));
    click("Command2");
    QCOMPARE(terms(), std::string("AAA|1|T\nFFD8FF|0|H\n"));
    QCOMPARE(field("Text3"), QStringLiteral("FFD8FF"));
    QCOMPARE(grid.currentRow(), 1);
}

void FrmExtEditorTest::addPutsTheFieldsIntoTheGrid() {
    enter("3", "NEW");
    click("Command2");
    QCOMPARE(terms(), std::string("AAA|1|T\nFFD8|0|H\nNEW|3|T\n"));
    main_->dialogs.expectBox("Error", "Invalid hex must be in pairs (e.d. 01 02 03 or 010203)", BoxAnswer::Ok,
                             BoxStyle::Warning, BoxButtons::Ok);
    enter("3", "ABC", 1);
    click("Command2");
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 3);
}

void FrmExtEditorTest::clrEmptiesTheFields() {
    control<Grid>("iGrid1").setCurrentRow(1);
    click("Command4");
    click("Command3");
    QCOMPARE(field("Text2") + field("Text3"), QString());
    QCOMPARE(control<QPushButton>("Command2").text().remove(QLatin1Char('&')), QStringLiteral("Add"));
    QCOMPARE(control<QLabel>("Label6").text(), QStringLiteral("Viewing file  1 of  3"));
    QCOMPARE(control<QComboBox>("Combo2").currentText(), QStringLiteral("HEX"));
}

void FrmExtEditorTest::presetsFillTheCriteria() {
    const auto criteria = [this] {
        return field("Text2") + QLatin1Char(' ') + field("Text3") + QLatin1Char(' ') +
               control<QComboBox>("Combo2").currentText();
    };
    click("Command6");
    QCOMPARE(criteria(), QStringLiteral("1 MZ Text"));
    click("Command7");
    QCOMPARE(criteria(), QStringLiteral("1 D0CF11 HEX"));
    click("Command8");
    QCOMPARE(criteria(), QStringLiteral("1 WP Text"));
}

void FrmExtEditorTest::aCommaIsRefused() {
    main_->dialogs.expectBox(
        "No Commas!",
        "You are not allowed to use commas in searches as these are used internally by the program. If you need a term "
        "using a comma, use a HEX based search for '2C'.");
    QTest::keyClicks(&control<QLineEdit>("Text3"), QStringLiteral("a,b"));
    QCOMPARE(field("Text3"), QStringLiteral("ab"));
}

void FrmExtEditorTest::rowsMove() {
    control<Grid>("iGrid1").setCurrentRow(0);
    click("Command12_1");
    QCOMPARE(terms(), std::string("FFD8|0|H\nAAA|1|T\n"));
    QCOMPARE(control<Grid>("iGrid1").currentRow(), 1);
    click("Command12_0");
    QCOMPARE(terms(), std::string("AAA|1|T\nFFD8|0|H\n"));
}

void FrmExtEditorTest::deleteAllIsSwitchedOnByItsBox() {
    control<QCheckBox>("Check1").setChecked(true);
    QVERIFY(control<QPushButton>("Command10").isEnabled());
    const char* question = "This will delete all terms for the extension qlx, are you sure you want to do this ?";
    main_->dialogs.expectBox("delete all?", question, BoxAnswer::No);
    click("Command10");
    QVERIFY(!control<QCheckBox>("Check1").isChecked());
    QVERIFY(!control<QPushButton>("Command10").isEnabled());
    control<QCheckBox>("Check1").setChecked(true);
    main_->dialogs.expectBox("delete all?", question, BoxAnswer::Yes);
    click("Command10");
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 0);
}

void FrmExtEditorTest::buttonsEmptyTheClipboard() {
    // The test of a common header without a choice takes the last record, whose term no file holds.
    main_->dialogs.expectBox("Term not found", "Search term not found");
    main_->dialogs.expectBox("Term not found", "Search term not found");
    for (const char* button : {"Command13", "Command11", "Command1", "Command2", "Command3", "Command6", "Command7",
                               "Command8", "Command10", "Command5"}) {
        if (std::string_view(button) == "Command10") {
            main_->dialogs.expectBox(
                "delete all?", "This will delete all terms for the extension qlx, are you sure you want to do this ?",
                BoxAnswer::No);
            control<QCheckBox>("Check1").setChecked(true);
        }
        QApplication::clipboard()->setText(QStringLiteral("kept"));
        click(button);
        QCOMPARE(QApplication::clipboard()->text(), QString());
    }
}

void FrmExtEditorTest::updateMasterDbHasNoEffect() {
    QVERIFY(control<QCheckBox>("Check2").isChecked());
    control<QCheckBox>("Check2").setChecked(false);
    enter("2", "BBB");
    click("Command2");
    click("Command5");
    QCOMPARE(main_->temp.read("local/Database/qlx.dat"), std::string("1,AAA,T\r\n0,FFD8,H\r\n2,BBB,T\r\n"));
}

void FrmExtEditorTest::copyFilesIsNeverShown() {
    auto* menu = screen_->findChild<QMenu*>(QStringLiteral("mnuC"));
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->title(), QStringLiteral("Copy Files"));
    QVERIFY(!menu->menuAction()->isVisible());
    QCOMPARE(screen_->findChild<QAction*>(QStringLiteral("mnuCopy"))->text(),
             QStringLiteral("Copy current file only  ..."));
    QCOMPARE(screen_->findChild<QAction*>(QStringLiteral("mnuCopyAll"))->text(),
             QStringLiteral("Copy all matching files ..."));
}

void FrmExtEditorTest::theGridHasAPopup() {
    auto& grid = control<Grid>("iGrid1");
    grid.setCurrentRow(1);
    emit grid.rowRightClicked(1, QPoint(5, 5));
    auto* menu = screen_->findChild<QMenu*>(QStringLiteral("mnuA"));
    QVERIFY(menu != nullptr && menu->isVisible());
    QCOMPARE(screen_->findChild<QAction*>(QStringLiteral("mnuAdd"))->text(),
             QStringLiteral("Add 'FFD8' to common headers list"));
    QVERIFY(screen_->findChild<QAction*>(QStringLiteral("mnuB1"))->isSeparator());
    main_->dialogs.expectBox("Delete entry?", "Delete the entry FFD8 ?", BoxAnswer::Yes);
    screen_->findChild<QAction*>(QStringLiteral("mnuDelete"))->trigger();
    menu->close();
    QCOMPARE(terms(), std::string("AAA|1|T\n"));
}

void FrmExtEditorTest::theFramesAreOffWhileASearchAsks() {
    enter("1", "QLX!");
    bool off = false;
    main_->dialogs.onProblem = [&](const std::string&) { off = !control<QGroupBox>("Frame1").isEnabled(); };
    click("Command11");
    QVERIFY(off);
    for (const char* frame : {"Frame1", "Frame2", "Frame3"}) QVERIFY(control<QGroupBox>(frame).isEnabled());
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 2);
}

void FrmExtEditorTest::theCommonControlsShowForCommonHeaders() {
    main_->temp.write("local/Settings/CommonHeaders.dat", "1,QLX,T,archive\r\n2,ZZ,H,other\r\n");
    click("Command5");
    open(9);
    for (const char* name : {"Label7", "Combo3", "Command13"}) QVERIFY(control<QWidget>(name).isVisible());
    auto& identifiers = control<QComboBox>("Combo3");
    QCOMPARE(identifiers.count(), 2);
    QCOMPARE(identifiers.itemText(1), QStringLiteral("archive"));
    identifiers.setCurrentIndex(1);
    main_->dialogs.expectBox(
        "Add term", "Search results :\r\n\r\nGood files :  3\r\nBad files :  0\r\n\r\n Do you want to add the term ?",
        BoxAnswer::No);
    click("Command13");
    QCOMPARE(field("Text3"), QStringLiteral("QLX"));
}

void FrmExtEditorTest::doneSavesAndBringsTheViewerBack() {
    bool told = false;
    main_->navigator.unload(Screen::ExtEditor);
    handover_.whenDone = [&told] { told = true; };
    open();
    enter("2", "BBB");
    click("Command2");
    click("Command5");
    QVERIFY(told);
    QVERIFY(main_->navigator.window(Screen::ExtEditor) == nullptr);
    QVERIFY(main_->navigator.window(Screen::ViewList)->isVisible());
    QCOMPARE(main_->temp.read("local/Database/qlx.dat"), std::string("1,AAA,T\r\n0,FFD8,H\r\n2,BBB,T\r\n"));
}

void FrmExtEditorTest::closingSavesToo() {
    enter("2", "BBB");
    click("Command2");
    screen_->close();
    QVERIFY(main_->navigator.window(Screen::ViewList)->isVisible());
    QCOMPARE(main_->temp.read("local/Database/qlx.dat"), std::string("1,AAA,T\r\n0,FFD8,H\r\n2,BBB,T\r\n"));
}

QTEST_MAIN(FrmExtEditorTest)
#include "frmExtEditor_test.moc"
