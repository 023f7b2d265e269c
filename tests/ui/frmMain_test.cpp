// SPDX-License-Identifier: MIT
#include "ui/frmMain.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include "app/version.h"
#include "support/screen_control.h"
#include "ui/main_window.h"
#include "widgets/grid.h"

using namespace quillon;

class FrmMainTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameCaptionAndState_data();
    void everyControlHasItsNameCaptionAndState();
    void everyMenuEntryHasItsNameCaptionAndState_data();
    void everyMenuEntryHasItsNameCaptionAndState();
    void theViewMenuIsHidden();
    void everyToolbarButtonHasItsToolTip();
    void theStatusBarShowsTheVersion();
    void theLogHasItsColumns();
    void helpNeedsItsFile();
    void typingAForbiddenCharacterRemovesItAndLeavesTheCaretAtTheEnd();
    void aBlankOnlyJobIdDisablesTheSourcePicker();
    void pastingTwoCharactersIntoTheSeparatorKeepsTheFirst();
    void copyGatesTargetPickerAndToolbar();
    void showProgressShowsTheBar();
    void tickingTheSkipListAsksTheSettings();
    void tickingDefaultsAppliesTheSettings();
    void theTabKeyGoesThroughTheWindowInScreenOrder();
    void theWindowFitsASmallScreen();

private:
    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->open();
}

void FrmMainTest::cleanup() {
    test::closeScreens(main_);
}

void FrmMainTest::everyControlHasItsNameCaptionAndState_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("enabled");
    struct Row {
        const char* name;
        const char* caption;
        bool visible = true;
        bool enabled = true;
    };
    // clang-format off
    const Row rows[] = {
        {"Label28", "Job ID"}, {"Textbox1", ""}, {"CommandButton1", "Browse for Drive/Folder", true, false},
        {"Frame1", "Source Drive/Folder"}, {"Label2", "Source:"}, {"lblSource", "None"}, {"chkCopy", "Copy to ->"},
        {"Command1", "", true, false}, {"Label3", "Target:"}, {"lblTarget", "None"}, {"Frame3", "Options"},
        {"chkFileQuality", "Check file quality"}, {"chkUseSkip", "Use skip list"}, {"chkCommon", "Use Common Headers"},
        {"chkDefaults", "Use defaults"}, {"Frame4", "Commands"}, {"CommandButton3", "Run", true, false},
        {"CommandButton4", "Stop", true, false}, {"CommandButton5", "View", true, false}, {"CommandButton6", "Zip"},
        {"Check1", "Show Progress"}, {"Frame2", "Alerts"}, {"Label23", "On finish Send to"}, {"Combo1", "Query"},
        {"Command2", "Query Network"}, {"Command3", "Test"}, {"Label12", "File List Separator"}, {"Text1", "-"},
        {"separatorNote", "Used for multiple file lists for same job. E.G. 1234-Partition 1, 1234-Partition 2"},
        {"Frame5", "Stats"}, {"Label7", "Total Files:"}, {"lfiles", "0"}, {"Label25", "Total folders:"},
        {"lFOlders", "0"}, {"Label9", "Total Size:"}, {"lsize", "0"}, {"Label26", "Folder Errors:"},
        {"lFolderErrors", "0"}, {"Label9_1", "Copy Errors"}, {"lCopyErrors", "0"}, {"Label21", ""},
        {"lTotCopied", "0"}, {"Label19", "Throughput"}, {"Label16", ""}, {"Label22", ""}, {"Label11", "Tested:"},
        {"lTested", "0"}, {"Label4", "Good:"}, {"lGoodFIles", "0"}, {"Label5", "Corrupt:"}, {"lCorruptFiles", "0"},
        {"Label6", "Unknown:"}, {"lUnknownFiles", "0"}, {"Label13", "Skipped:"}, {"lSkipped", "0"},
        {"Label1", "No Ext:"}, {"lNoextensioN", "0"}, {"Label20", "Encrypted:"}, {"lEncrypted", "0"},
        {"Label18", "Access errors:"}, {"lAccessErrors", "0"}, {"Label17", "Invalid Filename:"}, {"lBadFileName", "0"},
        {"Label14", "Zero Bytes:"}, {"lZeroBytes", "0"}, {"Label15", "Small Files:"}, {"lSmallFiles", "0"},
        {"Label24", "C/Head:"}, {"lCommon", "0"}, {"Label10", "Recovery Quality:"}, {"lRPC", "0"}, {"Label8", ""},
        {"iGrid1", ""}, {"Command4", "Clear Log"}, {"Command5", "Check Folders"}, {"sFileTU", ""},
        {"ProgressBar1", ""}, {"ProgressBar2", "", false}, {"Toolbar1", ""}, {"StatusBar1", ""},
    };
    // clang-format on
    for (const Row& row : rows)
        QTest::newRow(row.name) << QString::fromLatin1(row.caption) << row.visible << row.enabled;
}

void FrmMainTest::everyControlHasItsNameCaptionAndState() {
    QFETCH(QString, caption);
    QFETCH(bool, visible);
    QFETCH(bool, enabled);
    const auto& control = main_->control<QWidget>(QTest::currentDataTag());
    QCOMPARE(test::captionOf(control), caption);
    QCOMPARE(control.isVisible(), visible);
    QCOMPARE(control.isEnabled(), enabled);
}

void FrmMainTest::everyMenuEntryHasItsNameCaptionAndState_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<bool>("enabled");
    struct Row {
        const char* name;
        const char* caption;
        bool enabled = true;
    };
    const Row rows[] = {{"mnuOpen", "Open Existing"},
                        {"mnuExit", "Exit"},
                        {"mnuSettings", "Settings"},
                        {"mnuEdit", "Edit Skip List"},
                        {"mnuDB", "Edit Database"},
                        {"mnuEditCommon", "Edit Common Header List"},
                        {"mnuBS", "Edit Bad Sector Markers", false},
                        {"mnuErrors", "Report Messages"},
                        {"mnuMsgLogs", "Messaging Logs", false},
                        {"mnuFLS", "File List Separator"},
                        {"mnuAutoUpdate", "Auto Update"},
                        {"mnuView", "View Folder"},
                        {"mnuHelp", "Contents", false},
                        {"mnuAbout", "About"}};
    for (const Row& row : rows) QTest::newRow(row.name) << QString::fromLatin1(row.caption) << row.enabled;
}

void FrmMainTest::everyMenuEntryHasItsNameCaptionAndState() {
    QFETCH(QString, caption);
    QFETCH(bool, enabled);
    const auto& entry = main_->control<QAction>(QTest::currentDataTag());
    QCOMPARE(entry.text().remove(QLatin1Char('&')), caption);
    QCOMPARE(entry.isEnabled(), enabled);
    const std::pair<const char*, const char*> menus[] = {
        {"mnuFile", "File"}, {"mnu", "Menu"}, {"mnuViewf", "View"}, {"mnuh3", "Help"}};
    for (const auto& [name, title] : menus)
        QCOMPARE(main_->control<QMenu>(name).title().remove(QLatin1Char('&')), QLatin1String(title));
}

void FrmMainTest::theViewMenuIsHidden() {
    const QAction* entry = main_->control<QMenu>("mnuViewf").menuAction();
    QVERIFY(!entry->isVisible());
    QCOMPARE(entry->objectName(), QStringLiteral("mnuViewf"));
}

void FrmMainTest::everyToolbarButtonHasItsToolTip() {
    const char* toolTips[] = {"Browse for drive or folder to test files.",
                              "Select target to copy files to",
                              "Start the file testing process",
                              "View existing file list and edit database",
                              "Zip files for archiving or emailing",
                              "Stop the process!",
                              "Settings",
                              "Edit Skip List",
                              "Edit Header Database",
                              "Edit Common Headers",
                              "Edit Report Messages",
                              "Edit Bad Sector Markers"};
    for (int i = 1; i <= 12; ++i) {
        const auto& button = main_->control<QToolButton>(qPrintable(QStringLiteral("Toolbar1_%1").arg(i)));
        QCOMPARE(button.toolTip(), QLatin1String(toolTips[i - 1]));
        QCOMPARE(button.isVisible(), i != 12);
        QCOMPARE(button.text(), QString());
        QVERIFY(!button.icon().isNull());
    }
}

void FrmMainTest::theStatusBarShowsTheVersion() {
    const Version version = programVersion();
    QCOMPARE(main_->text("StatusBar1_1"),
             QStringLiteral("Ver: %1.%2.%3").arg(version.major).arg(version.minor).arg(version.revision));
    main_->window->showStatus("00:00:05");
    QCOMPARE(main_->text("StatusBar1_3"), QStringLiteral("00:00:05"));
}

void FrmMainTest::theLogHasItsColumns() {
    const auto& log = main_->control<Grid>("iGrid1");
    QCOMPARE(log.columnCount(), 2);
    QCOMPARE(log.columnTitle(0), std::string("Time"));
    QCOMPARE(log.columnTitle(1), std::string("Event"));
    QVERIFY(log.columnWidth(0) >= 60);
    QVERIFY(log.columnWidth(1) >= 330);
}

void FrmMainTest::helpNeedsItsFile() {
    main_->temp.write("app/Quillon.chm", "");
    main_->window->reloadForm();
    QVERIFY(main_->control<QAction>("mnuHelp").isEnabled());
    QCOMPARE(main_->control<QAction>("mnuHelp").shortcut(), QKeySequence(Qt::Key_F1));
}

void FrmMainTest::typingAForbiddenCharacterRemovesItAndLeavesTheCaretAtTheEnd() {
    auto& box = main_->control<QLineEdit>("Textbox1");
    QTest::keyClicks(&box, QStringLiteral("12:\\/@*?<>|\"34"));
    QCOMPARE(box.text(), QStringLiteral("1234"));
    box.setCursorPosition(1);
    QTest::keyClicks(&box, QStringLiteral(":"));
    QCOMPARE(box.text(), QStringLiteral("1234"));
    QCOMPARE(box.cursorPosition(), 4);
    QVERIFY(main_->control<QPushButton>("CommandButton1").isEnabled());
    QVERIFY(main_->control<QPushButton>("CommandButton5").isEnabled());
    QVERIFY(main_->control<QToolButton>("Toolbar1_1").isEnabled());
    QVERIFY(main_->control<QToolButton>("Toolbar1_4").isEnabled());
}

void FrmMainTest::aBlankOnlyJobIdDisablesTheSourcePicker() {
    auto& box = main_->control<QLineEdit>("Textbox1");
    box.setText(QStringLiteral("1234"));
    box.setText(QStringLiteral("   "));
    QCOMPARE(box.text(), QString());
    QVERIFY(!main_->control<QPushButton>("CommandButton1").isEnabled());
    QVERIFY(!main_->control<QToolButton>("Toolbar1_1").isEnabled());
}

void FrmMainTest::pastingTwoCharactersIntoTheSeparatorKeepsTheFirst() {
    auto& box = main_->control<QLineEdit>("Text1");
    QGuiApplication::clipboard()->setText(QStringLiteral("ab"));
    box.selectAll();
    box.paste();
    QCOMPARE(box.text(), QStringLiteral("a"));
    QCOMPARE(box.cursorPosition(), 1);
}

void FrmMainTest::copyGatesTargetPickerAndToolbar() {
    auto& box = main_->control<QCheckBox>("chkCopy");
    for (const bool ticked : {true, false}) {
        box.setChecked(ticked);
        QCOMPARE(main_->control<QPushButton>("Command1").isEnabled(), ticked);
        QCOMPARE(main_->control<QToolButton>("Toolbar1_2").isEnabled(), ticked);
    }
}

void FrmMainTest::showProgressShowsTheBar() {
    auto& box = main_->control<QCheckBox>("Check1");
    for (const bool ticked : {true, false}) {
        box.setChecked(ticked);
        QCOMPARE(main_->control<QProgressBar>("ProgressBar1").isVisible(), ticked);
        QCOMPARE(main_->job.state.options.showProgress, ticked);
    }
}

void FrmMainTest::tickingTheSkipListAsksTheSettings() {
    auto& box = main_->control<QCheckBox>("chkUseSkip");
    QVERIFY(box.isChecked());
    box.setChecked(false);
    std::filesystem::remove(main_->temp / "local/Settings/SkipList.dat");
    box.setChecked(true);
    QVERIFY(!box.isChecked());
    QVERIFY(!box.isEnabled());
    QCOMPARE(main_->text("Label8"), QStringLiteral("Skip list disabled - can not load list"));
}

void FrmMainTest::tickingDefaultsAppliesTheSettings() {
    auto& quality = main_->control<QCheckBox>("chkFileQuality");
    auto& defaults = main_->control<QCheckBox>("chkDefaults");
    QVERIFY(quality.isChecked());
    QVERIFY(defaults.isChecked());
    quality.setChecked(false);
    defaults.setChecked(false);
    QVERIFY(!quality.isChecked());
    defaults.setChecked(true);
    QVERIFY(quality.isChecked());
}

void FrmMainTest::theTabKeyGoesThroughTheWindowInScreenOrder() {
    QStringList order;
    const QWidget* first = &main_->control<QLineEdit>("Textbox1");
    for (const QWidget* next = first;; next = next->nextInFocusChain()) {
        if (next->focusPolicy() & Qt::TabFocus && !next->objectName().startsWith(QLatin1String("qt_")))
            order << next->objectName();
        if (next->nextInFocusChain() == first)
            break;
    }
    const QStringList expected = {
        QStringLiteral("Textbox1"),       QStringLiteral("CommandButton1"), QStringLiteral("chkCopy"),
        QStringLiteral("Command1"),       QStringLiteral("chkFileQuality"), QStringLiteral("chkUseSkip"),
        QStringLiteral("chkCommon"),      QStringLiteral("chkDefaults"),    QStringLiteral("Text1"),
        QStringLiteral("Combo1"),         QStringLiteral("Command2"),       QStringLiteral("Command3"),
        QStringLiteral("CommandButton3"), QStringLiteral("CommandButton4"), QStringLiteral("CommandButton5"),
        QStringLiteral("CommandButton6"), QStringLiteral("Check1"),         QStringLiteral("iGrid1"),
        QStringLiteral("Command4"),       QStringLiteral("Command5")};
    QCOMPARE(order.mid(0, expected.size()), expected);
    const QStringList ours = {QStringLiteral("chkVerifyCopies"), QStringLiteral("chkSalvage"),
                              QStringLiteral("copyGrades"), QStringLiteral("chkScanSectors"),
                              QStringLiteral("chkEnds")};
    QCOMPARE(order.mid(expected.size()), ours);
}

void FrmMainTest::theWindowFitsASmallScreen() {
    QVERIFY(main_->window->minimumSizeHint().width() <= 1024);
    QVERIFY(main_->window->minimumSizeHint().height() <= 700);
}

QTEST_MAIN(FrmMainTest)
#include "frmMain_test.moc"
