// SPDX-License-Identifier: MIT
// The About screen and the help window.
#include "ui/frmABout.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include "app/version.h"
#include "support/temp_folder.h"
#include "ui/help_window.h"
#include "widgets/navigator.h"

using namespace quillon;

class FrmABoutTest : public QObject {
    Q_OBJECT

private slots:
    void showsProductVersionMakerAndAddress();
    void theButtonClosesTheScreen();
    void theHelpShowsItsPagesInOrder();
    void theSearchLeavesThePagesThatHoldIt();
    void aDamagedHelpFileSaysSo();
    void everyScreenHasItsPlaceInTheHelp();
    void f1OpensTheHelpOnlyWhenItIsThere();
    void f1OpensTheHelpAtTheScreenThatAsks();

private:
    static constexpr const char* kHelp = QUILLON_HELP_FILE;
};

void FrmABoutTest::showsProductVersionMakerAndAddress() {
    const frmABout about;
    const Version version = programVersion();
    QCOMPARE(about.windowTitle(), QStringLiteral("About"));
    QCOMPARE(about.objectName(), QStringLiteral("frmABout"));
    QCOMPARE(about.findChild<QLabel*>(QStringLiteral("Label1"))->text(), QStringLiteral("Quillon"));
    QCOMPARE(about.findChild<QLabel*>(QStringLiteral("Label2"))->text(),
             QStringLiteral("Version : %1.%2.%3").arg(version.major).arg(version.minor).arg(version.revision));
    for (const char* name : {"Label3", "Label4"})
        QVERIFY(!about.findChild<QLabel*>(QLatin1String(name))->text().isEmpty());
    QCOMPARE(about.findChild<QLabel*>(QStringLiteral("Picture1"))->accessibleName(), QStringLiteral("Quillon"));
}

void FrmABoutTest::theButtonClosesTheScreen() {
    frmABout about;
    about.show();
    about.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    QVERIFY(!about.isVisible());
}

void FrmABoutTest::theHelpShowsItsPagesInOrder() {
    const HelpWindow help{NativePath(kHelp)};
    QCOMPARE(help.titles(), (QStringList{QStringLiteral("Running a job"), QStringLiteral("What the grades mean"),
                                         QStringLiteral("Bad files and new terms"), QStringLiteral("Zipping the lists"),
                                         QStringLiteral("The header database"), QStringLiteral("The other editors"),
                                         QStringLiteral("Alerts"), QStringLiteral("Setting up")}));
    const auto* page = help.findChild<QTextBrowser*>(QStringLiteral("page"));
    QVERIFY(page->toPlainText().contains(QStringLiteral("Step by step")));
    help.findChild<QListWidget*>(QStringLiteral("contents"))->setCurrentRow(6);
    QVERIFY(page->toPlainText().contains(QStringLiteral("12020")));
}

void FrmABoutTest::theSearchLeavesThePagesThatHoldIt() {
    const HelpWindow help{NativePath(kHelp)};
    auto* search = help.findChild<QLineEdit*>(QStringLiteral("search"));
    search->setText(QStringLiteral("ACKNOWLEDGE"));
    QCOMPARE(help.titles(), QStringList{QStringLiteral("Alerts")});
    search->setText(QStringLiteral("no page says this"));
    QVERIFY(help.titles().isEmpty());
    search->clear();
    QCOMPARE(help.titles().size(), 8);
}

void FrmABoutTest::aDamagedHelpFileSaysSo() {
    const test::TempFolder temp;
    const HelpWindow help(temp.write("Quillon.chm", "no archive"));
    QVERIFY(help.titles().isEmpty());
    QCOMPARE(help.findChild<QTextBrowser*>(QStringLiteral("page"))->toPlainText(),
             QStringLiteral("The help file cannot be read."));
}

void FrmABoutTest::everyScreenHasItsPlaceInTheHelp() {
    HelpWindow help{NativePath(kHelp)};
    const auto* contents = help.findChild<QListWidget*>(QStringLiteral("contents"));
    const std::pair<const char*, const char*> places[] = {{"frmErrors", "The other editors"},
                                                          {"frmMain", "Running a job"},
                                                          {"frmViewList", "Bad files and new terms"},
                                                          {"frmExtEditor", "Bad files and new terms"},
                                                          {"frmZip", "Zipping the lists"},
                                                          {"frmUpdatedb", "The other editors"},
                                                          {"frmSetupWizard", "Setting up"},
                                                          {"frmSkipList", "The other editors"},
                                                          {"frmSetupNetwork", "The other editors"},
                                                          {"frmMain", "Running a job"},
                                                          {"frmBadSectors", "The other editors"},
                                                          {"frmZip", "Zipping the lists"},
                                                          {"frmCommonHeaders", "The other editors"},
                                                          {"frmViewList", "Bad files and new terms"},
                                                          {"frmOverview", "Bad files and new terms"},
                                                          {"frmCopies", "Bad files and new terms"},
                                                          {"frmPreviewBadSector", "The other editors"}};
    for (const auto& [screen, title] : places) {
        help.showScreen(QLatin1String(screen));
        QCOMPARE(contents->currentItem()->text(), QLatin1String(title));
    }
    help.showScreen(QStringLiteral("a box"));
    QCOMPARE(contents->currentItem()->text(), QStringLiteral("The other editors"));
}

void FrmABoutTest::f1OpensTheHelpAtTheScreenThatAsks() {
    Navigator navigator;
    navigator.add(Screen::Help, [](const std::any&) { return std::make_unique<HelpWindow>(NativePath(kHelp)); });
    installHelpKey(*qApp, navigator, NativePath(kHelp));
    QWidget window;
    window.setObjectName(QStringLiteral("frmSkipList"));
    window.show();
    QTest::keyClick(&window, Qt::Key_F1);
    const auto* contents = navigator.window(Screen::Help)->findChild<QListWidget*>(QStringLiteral("contents"));
    QCOMPARE(contents->currentItem()->text(), QStringLiteral("The other editors"));
    window.setObjectName(QStringLiteral("frmZip"));
    QTest::keyClick(&window, Qt::Key_F1);
    QCOMPARE(contents->currentItem()->text(), QStringLiteral("Zipping the lists"));
    QTest::keyClick(navigator.window(Screen::Help), Qt::Key_F1);
    QCOMPARE(contents->currentItem()->text(), QStringLiteral("Zipping the lists"));
}

void FrmABoutTest::f1OpensTheHelpOnlyWhenItIsThere() {
    const test::TempFolder temp;
    Navigator navigator;
    navigator.add(Screen::Help, [](const std::any&) { return std::make_unique<QWidget>(); });
    installHelpKey(*qApp, navigator, temp / "Quillon.chm");
    QWidget window;
    window.show();
    QTest::keyClick(&window, Qt::Key_F1);
    QVERIFY(navigator.window(Screen::Help) == nullptr);
    temp.write("Quillon.chm", "");
    QTest::keyClick(&window, Qt::Key_F1);
    QVERIFY(navigator.window(Screen::Help) != nullptr);
}

QTEST_MAIN(FrmABoutTest)
#include "frmABout_test.moc"
