// SPDX-License-Identifier: MIT
// The screen "View File List": every control by its name, and what each does.
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "support/screen_control.h"
#include "text/list_text.h"
#include "ui/main_window.h"
#include "widgets/grid.h"

using namespace quillon;

class FrmViewListTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameCaptionAndState();
    void theGridHasItsColumns();
    void textsArePlain();
    void choosingACategoryEnablesRun();
    void filterFillsGridAndExtensions();
    void theFocusAloneMakesNoRowCurrent();
    void arrowKeysChooseTheExtension();
    void namesOfAnyBytesAreReadable();
    void startFromAndUseIgnoreListHaveNoEffect();
    void markAndSkipRetestAreNotShown();
    void theLimitIsTold();
    void aRightClickOffersTheSkipList();
    void runWithoutAnExtensionStaysHere();
    void theScreenIsBusyDuringARetestAndCannotBeClosed();
    void aCopyInUseLeavesTheScreenBusyUntilItIsClosed();
    void theViewStaysWhereItIsWhenRowsLeave();
    void theKeysGoOnInViewWhenTheCurrentRowHasLeft();
    void anEntryChosenAgainIsCountedAgain();
    void theKeyboardStaysOnTheButtonOfAFilterWithoutRows();
    void enterInTheLimitFilters();
    void doneRecountsAndShowsTheMainWindow();
    void closingShowsTheMainWindow();
    void tabGoesThroughTheControlsInOrder();

private:
    template <typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        return test::controlOf<Control>(*screen_, name);
    }
    void click(const char* button) const { control<QPushButton>(button).click(); }
    void activate() const {
        screen_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(screen_));
    }
    void filter(const char* category) const;
    void addRow(std::string_view path, std::u16string_view result);
    void filterLongList();

    std::unique_ptr<test::MainWindow> main_;
    QWidget* screen_ = nullptr;
    std::u16string list_;
};

void FrmViewListTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->makePictures(2);
    main_->open();
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("J1"));
    list_.clear();
    addRow((main_->temp / "source/p0.jpg").native(), u"Header Corrupt");
    addRow((main_->temp / "source/p1.JPG").native(), u"Header Corrupt");
    addRow("/s/a.pdf", u"Header Corrupt");
    addRow("/s/b.pdf", u"Header OK");
    main_->window->hide();
    main_->navigator.open(Screen::ViewList);
    screen_ = main_->navigator.window(Screen::ViewList);
    QVERIFY(screen_ != nullptr);
}

void FrmViewListTest::cleanup() {
    test::closeScreens(main_);
}

void FrmViewListTest::addRow(std::string_view path, std::u16string_view result) {
    list_.append(toListText(path)).append(u",15/11/2026, 603, 32;Ab9x,").append(result).append(u"\r\n");
    main_->temp.write("local/J1.csv", test::utf16Bytes(list_));
}

void FrmViewListTest::filter(const char* category) const {
    auto& box = control<QComboBox>("Combo1");
    box.setCurrentIndex(box.findText(QLatin1String(category)));
    click("Command2");
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame1",
     "Vew Files of type",
     {
         {"Combo1", "Please Select"},
         {"Command2", "Filter"},
         {"Label5", "Max Files"},
         {"Text1", "3000"},
         {"Label9", "Start From"},
         {"Text2", "1"},
         {"Check1", "Use Ignore List"},
     }},
    {"Frame2",
     "Matching Files",
     {
         {"iGrid1", ""},
         {"Label1", ""},
         {"commaRemark_", ""},
         {"Label6", "File marked", false},
         {"Label7", "    ", false},
         {"Label8", "Have no extension and can not be edited", false},
     }},
    {"Frame3",
     "Extension Editor",
     {
         {"Label2", "Extension"},
         {"Combo2", ""},
         {"Label4", "Ready ..>"},
         {"Command3", "Run", true, false},
         {"Command4", "Retest"},
         {"regradeKept_", "Regrade from kept heads", true, false},
         {"Label3", "Mark Files as", false},
         {"Combo3", "Please Select", false},
         {"Command5", "Run", false},
         {"Command6", "Retest Skip List", false, false},
     }},
    {"",
     "",
     {
         {"Command1", "Done"},
     }},
};

}  // namespace

void FrmViewListTest::everyControlHasItsNameCaptionAndState() {
    QCOMPARE(screen_->objectName(), QStringLiteral("frmViewList"));
    QCOMPARE(screen_->windowTitle(), QStringLiteral("View File List"));
    QCOMPARE(test::misfits(*screen_, kControls), QStringList());
}

void FrmViewListTest::theGridHasItsColumns() {
    auto& grid = control<Grid>("iGrid1");
    QCOMPARE(grid.columnCount(), 3);
    const std::string titles = grid.columnTitle(0) + "|" + grid.columnTitle(1) + "|" + grid.columnTitle(2);
    QCOMPARE(titles, std::string("Path|Ext|Problem!"));
    QVERIFY(grid.isColumnHidden(2) && grid.columnWidth(1) == 50);
}

void FrmViewListTest::textsArePlain() {
    const auto labels = screen_->findChildren<QLabel*>();
    QVERIFY(!labels.isEmpty());
    for (const QLabel* label : labels) QCOMPARE(label->textFormat(), Qt::PlainText);
}

void FrmViewListTest::choosingACategoryEnablesRun() {
    auto& box = control<QComboBox>("Combo1");
    const QList<bool> expected = {false, true, true, true, false, false, false, false, true, true};
    QCOMPARE(box.count(), 10);
    for (int entry = 9; entry >= 0; --entry) {
        box.setCurrentIndex(entry);
        QCOMPARE(control<QPushButton>("Command3").isEnabled(), expected[entry]);
    }
}

void FrmViewListTest::filterFillsGridAndExtensions() {
    filter("Header Corrupt");
    auto& grid = control<Grid>("iGrid1");
    QCOMPARE(grid.rowCount(), 3);
    QCOMPARE(grid.cell(1, 0), (main_->temp / "source/p1.JPG").string());
    QCOMPARE(grid.cell(1, 1), std::string("JPG"));
    QCOMPARE(control<QLabel>("Label1").text(), QStringLiteral("Matching :  3"));
    QCOMPARE(control<QLabel>("Label4").text(), QString());
    auto& extensions = control<QComboBox>("Combo2");
    QCOMPARE(extensions.count(), 2);
    QCOMPARE(extensions.itemText(0), QStringLiteral("jpg"));
    QCOMPARE(extensions.currentText(), QString());
    grid.setCurrentRow(2);
    QCOMPARE(extensions.currentText(), QStringLiteral("pdf"));
    QCOMPARE(control<QLabel>("Label4").text(), QStringLiteral("pdf = 1"));
    extensions.setCurrentIndex(0);
    QCOMPARE(control<QLabel>("Label4").text(), QStringLiteral("jpg = 0"));
}

void FrmViewListTest::theFocusAloneMakesNoRowCurrent() {
    filter("Header Corrupt");
    activate();
    control<QComboBox>("Combo1").setFocus();
    control<Grid>("iGrid1").setFocus(Qt::TabFocusReason);
    QCOMPARE(control<Grid>("iGrid1").currentRow(), -1);
    QCOMPARE(control<QLabel>("Label4").text(), QString());
}

void FrmViewListTest::arrowKeysChooseTheExtension() {
    filter("Header Corrupt");
    auto& grid = control<Grid>("iGrid1");
    grid.setCurrentRow(1);
    QTest::keyClick(&grid, Qt::Key_Down);
    QCOMPARE(grid.currentRow(), 2);
    QCOMPARE(control<QComboBox>("Combo2").currentText(), QStringLiteral("pdf"));
    QTest::keyClick(&grid, Qt::Key_Up);
    QCOMPARE(control<QLabel>("Label4").text(), QStringLiteral("jpg = 2"));
}

void FrmViewListTest::namesOfAnyBytesAreReadable() {
    addRow("/s/<b>bold</b>\xFF.pdf", u"Header Corrupt");
    filter("Header Corrupt");
    QCOMPARE(control<Grid>("iGrid1").cell(3, 0), std::string("/s/<b>bold</b>\xEF\xBF\xBD.pdf"));
}

void FrmViewListTest::startFromAndUseIgnoreListHaveNoEffect() {
    control<QLineEdit>("Text2").setText(QStringLiteral("3"));
    control<QCheckBox>("Check1").setChecked(true);
    filter("Header Corrupt");
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 3);
}

void FrmViewListTest::markAndSkipRetestAreNotShown() {
    filter("Header Corrupt");
    for (const char* name : {"Label3", "Combo3", "Command5", "Command6", "Label6", "Label7", "Label8"})
        QVERIFY(!control<QWidget>(name).isVisible());
    QCOMPARE(control<QComboBox>("Combo3").count(), 10);
    control<QPushButton>("Command5").click();
    QVERIFY(!control<QPushButton>("Command6").isEnabled());
    QCOMPARE(main_->temp.read("local/J1.csv"), test::utf16Bytes(list_));
}

void FrmViewListTest::theLimitIsTold() {
    control<QLineEdit>("Text1").setText(QStringLiteral("1"));
    main_->dialogs.expectBox("Quillon", "Maximum file limit reached", BoxAnswer::Ok, BoxStyle::Plain, BoxButtons::Ok);
    filter("Header Corrupt");
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 2);
}

void FrmViewListTest::aRightClickOffersTheSkipList() {
    filter("Header Corrupt");
    auto& grid = control<Grid>("iGrid1");
    emit grid.rowRightClicked(-1, QPoint(5, 5));
    auto* menu = screen_->findChild<QMenu*>(QStringLiteral("mnuMnu"));
    QVERIFY(menu != nullptr && !menu->isVisible());
    grid.setCurrentRow(2);
    emit grid.rowRightClicked(2, QPoint(5, 5));
    QVERIFY(menu->isVisible());
    auto* entry = screen_->findChild<QAction*>(QStringLiteral("mnuAddSkip"));
    QCOMPARE(entry->text(), QStringLiteral("Add to Skip List"));
    main_->dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.", "*.pdf",
                               "/s/a.pdf");
    entry->trigger();
    menu->close();
    QCOMPARE(main_->temp.read("local/Settings/SkipList.dat"), std::string("*.tmp*\r\n*.pdf\r\n"));
}

void FrmViewListTest::runWithoutAnExtensionStaysHere() {
    filter("Header Corrupt");
    click("Command3");
    QVERIFY(screen_->isVisible());
    QVERIFY(main_->navigator.window(Screen::ExtEditor) == nullptr);
}

void FrmViewListTest::theScreenIsBusyDuringARetestAndCannotBeClosed() {
    filter("Header Corrupt");
    control<Grid>("iGrid1").setCurrentRow(0);
    int looks = 0;
    const int number = main_->loop.addRefresh([&] {
        ++looks;
        for (const char* name : {"Frame1", "Frame2", "Frame3", "Command1"})
            QVERIFY(!control<QWidget>(name).isEnabled());
        screen_->close();
        QVERIFY(screen_->isVisible());
    });
    click("Command4");
    main_->loop.removeRefresh(number);
    QVERIFY(looks > 0);
    for (const char* name : {"Frame1", "Frame2", "Frame3", "Command1"}) QVERIFY(control<QWidget>(name).isEnabled());
    // p0.jpg is healthy; p1.JPG is not on the disk under that name.
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 2);
    QCOMPARE(control<QLabel>("Label1").text(), QStringLiteral("Matching :  2"));
}

void FrmViewListTest::aCopyInUseLeavesTheScreenBusyUntilItIsClosed() {
    std::filesystem::create_directories(main_->temp / "app/tFile.csv/in the way");
    main_->dialogs.expectBox("Error",
                             "Warning, the file appears to be open in another application! Please close any "
                             "programs that may be accessing the file list.");
    click("Command4");
    for (const char* name : {"Frame1", "Frame2", "Frame3", "Command1"}) QVERIFY(!control<QWidget>(name).isEnabled());
    screen_->close();
    QVERIFY(main_->window->isVisible());
}

// 150 rows, every fifth of which a retest finds good: the others are not on the disk.
void FrmViewListTest::filterLongList() {
    main_->makePictures(30);
    list_.clear();
    for (int i = 0; i < 150; ++i) {
        const std::string name = i % 5 == 0 ? "source/p" + std::to_string(i / 5) : "source/gone" + std::to_string(i);
        addRow((main_->temp / (name + ".jpg")).native(), u"Header Corrupt");
    }
    filter("Header Corrupt");
}

void FrmViewListTest::theViewStaysWhereItIsWhenRowsLeave() {
    filterLongList();
    auto& grid = control<Grid>("iGrid1");
    grid.setCurrentRow(1);
    grid.verticalScrollBar()->setValue(51);
    const std::string top = grid.cell(51, 0);
    const std::string current = grid.cell(1, 0);
    click("Command4");
    QCOMPARE(grid.rowCount(), 120);
    QCOMPARE(grid.topRow(), 40);
    QCOMPARE(grid.cell(40, 0), top);
    QCOMPARE(grid.currentRow(), 0);
    QCOMPARE(grid.cell(0, 0), current);
    filter("Header Corrupt");
    QCOMPARE(grid.topRow(), 0);
}

void FrmViewListTest::theKeysGoOnInViewWhenTheCurrentRowHasLeft() {
    filterLongList();
    auto& grid = control<Grid>("iGrid1");
    grid.setCurrentRow(50);
    grid.verticalScrollBar()->setValue(48);
    click("Command4");
    QCOMPARE(grid.currentRow(), -1);
    QCOMPARE(control<QComboBox>("Combo2").currentText(), QStringLiteral("jpg"));
    QTest::keyClick(&grid, Qt::Key_Down);
    QCOMPARE(grid.currentRow(), grid.topRow());
    QCOMPARE(grid.topRow(), 38);
    QCOMPARE(control<QLabel>("Label4").text(), QStringLiteral("jpg = 120"));
}

void FrmViewListTest::anEntryChosenAgainIsCountedAgain() {
    filter("Header Corrupt");
    control<Grid>("iGrid1").setCurrentRow(1);
    click("Command4");
    QCOMPARE(control<QLabel>("Label4").text(), QString());
    auto& extensions = control<QComboBox>("Combo2");
    QCOMPARE(extensions.currentText(), QStringLiteral("jpg"));
    extensions.setFocus();
    extensions.showPopup();
    QTest::keyClick(extensions.view(), Qt::Key_Return);
    QCOMPARE(control<QLabel>("Label4").text(), QStringLiteral("jpg = 1"));
}

void FrmViewListTest::theKeyboardStaysOnTheButtonOfAFilterWithoutRows() {
    activate();
    control<QPushButton>("Command2").setFocus();
    QTest::keyClick(&control<QPushButton>("Command2"), Qt::Key_Space);
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 0);
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("Command2"));
}

void FrmViewListTest::enterInTheLimitFilters() {
    control<QComboBox>("Combo1").setCurrentIndex(1);
    QTest::keyClick(&control<QLineEdit>("Text1"), Qt::Key_Return);
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 3);
}

void FrmViewListTest::doneRecountsAndShowsTheMainWindow() {
    click("Command1");
    QVERIFY(main_->window->isVisible());
    QVERIFY(main_->navigator.window(Screen::ViewList) == nullptr);
    QCOMPARE(main_->text("lCorruptFiles"), QStringLiteral("3"));
    QCOMPARE(main_->text("lGoodFIles"), QStringLiteral("1"));
}

void FrmViewListTest::closingShowsTheMainWindow() {
    screen_->close();
    QVERIFY(main_->window->isVisible());
    QVERIFY(main_->navigator.window(Screen::ViewList) == nullptr);
    QCOMPARE(main_->text("lCorruptFiles"), QStringLiteral("0"));
}

void FrmViewListTest::tabGoesThroughTheControlsInOrder() {
    control<QComboBox>("Combo1").setCurrentIndex(1);
    activate();
    control<QComboBox>("Combo1").setFocus();
    for (const char* next :
         {"Command2", "Text1", "Text2", "Check1", "iGrid1", "Combo2", "Command3", "Command4", "Command1", "Combo1"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(next));
    }
}

QTEST_MAIN(FrmViewListTest)
#include "frmViewList_test.moc"
