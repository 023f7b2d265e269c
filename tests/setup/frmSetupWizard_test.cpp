// SPDX-License-Identifier: MIT
#include "setup/frmSetupWizard.h"

#include <QTest>
#include <QTimer>

#include "setup/wizard_window.h"

using namespace quillon;
using test::controlOf;

namespace {

// Every control with a caption, in screen order.
constexpr std::pair<const char*, const char*> kCaptions[] = {
    {"Label1", "Setup the ZOV Software"},
    {"frameMethod", "Setup Method"},
    {"Label3", "I want to setup my system by .."},
    {"Option1_0", "Importing a current setup"},
    {"Option1_1", "Manually Setup this sytem"},
    {"Label4", ""},
    {"Command1", "Next >"},
    {"frameLocal", "Local Paths"},
    {"Label5",
     "First we need to set up a location on this computer where the local copy of the database and related files "
     "will "
     "be stored."},
    {"Label7", "Local Path"},
    {"Command2", "Browse"},
    {"Label8", "Archive Path"},
    {"Command3", "Browse"},
    {"Label6", "Use the browse button to select the path"},
    {"Command6", "Next >"},
    {"frameShared", "Shared DB Path"},
    {"Label9",
     "Set this to the location on your network where the shared database is to be stored. If the databases do not "
     "exist, "
     "then the local databases will be copied to the selected location."},
    {"Check5", "Use Shared DB (Recommended))"},
    {"Label10", "Shared DB Path"},
    {"Command4", "Browse"},
    {"Check1", "Test Network R/W Operations"},
    {"Label11", "Use the browse button to select the path"},
    {"Command7", "Next >"},
    {"frameDefaults", "Set Program Default Testing Settings"},
    {"Label12", "Select the default settings to use when running the software. "},
    {"Check2", "Run File Header Test"},
    {"Check3", "Use Skip List"},
    {"Check4", "Use Common Headers"},
    {"Label19", "File list separator"},
    {"Text4", ""},
    {"Command8", "Next >"},
    {"frameAlerts", "Alerts"},
    {"Label13",
     "Select which computer to send alerts to. Note that the ZOV Messenger software needs to be installed on the "
     "machine "
     "that is to receive the messages."},
    {"Label14", "Set Computer to receive automatic program alerts"},
    {"Command9", "Query"},
    {"Command13", "Revert"},
    {"Label15", "Set Computer to receive 'file zipped' notifications"},
    {"Command10", "Query"},
    {"Command15", "Revert"},
    {"Command11", "Next >"},
    {"frameExport", "Export Settings"},
    {"Label16",
     "Clicking on [Export] allows you to export these settings to a shared location where they may be imported by "
     "other "
     "ZOV Systems on your netwrok. This will save time when intalling the software on multiple machines."},
    {"Command12", "Export"},
    {"frameSave", "Save Settings"},
    {"Label20", "Click on 'Done' to save and activate the settings"},
    {"Command14", "Done"},
    {"Label17", ""},
    {"Label18", ""},
    {"Command5", "Exit"}};

}  // namespace

class FrmSetupWizardTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void aFirstRunBeginsWithTheMethod();
    void theMethodTextFollowsTheChoice();
    void aKeyInAPathAsksForTheBrowseButton();
    void theWholeFirstRunLeadsToTheMainWindow();
    void withoutTheArchiveTheLocalPathsStepEnds();
    void closingWithinAStepAsksBehindIt();
    void exitAsksAndBringsTheMainWindow();
    void theCloseBoxAndEscapeAskAsExitDoes();
    void exportTellsThatThereAreNoSettings();
    void anEditBeginsWithTheLocalPaths();
    void revertAsksForTheStoredRecipient();

private:
    [[nodiscard]] QWidget& screen() const { return main_->screen(); }
    void click(const char* button) const { main_->click(button); }
    [[nodiscard]] QTabWidget& tabs() const { return main_->tabs(); }
    [[nodiscard]] QString label(const char* name) const { return main_->label(name); }
    void openEdit();

    std::unique_ptr<test::WizardWindow> main_;
};

void FrmSetupWizardTest::init() {
    main_ = std::make_unique<test::WizardWindow>();
}

void FrmSetupWizardTest::cleanup() {
    test::closeScreens(main_);
}

void FrmSetupWizardTest::openEdit() {
    main_->installation.settings.sharedPath.assign(pageFromPath(main_->temp / "share"));
    main_->installation.settings.alertRecipient.assign(toPage(std::string_view("DESK2")));
    main_->installation.refreshPathVariables();
    QVERIFY(main_->installation.saveSettingsRecord());
    main_->navigator.open(Screen::SetupWizard);
}

void FrmSetupWizardTest::everyControlHasItsNameAndCaption() {
    main_->openFirstRun();
    QCOMPARE(screen().windowTitle(), QStringLiteral("Setup Wizard"));
    const char* captions[] = {"Setup DB", "Local Paths", "Shared Path", "Defaults", "Alerts", "Export", "Done"};
    QCOMPARE(tabs().count(), 7);
    for (int i = 0; i < 7; ++i) QCOMPARE(tabs().tabText(i), QLatin1String(captions[i]));
    for (const auto& [name, caption] : kCaptions)
        QCOMPARE(test::captionOf(controlOf<QWidget>(screen(), name)), QString::fromUtf8(caption));
    for (const char* hidden : {"Label6", "Label11", "ProgressBar1"})
        QVERIFY(controlOf<QWidget>(screen(), hidden).isHidden());
}

void FrmSetupWizardTest::aFirstRunBeginsWithTheMethod() {
    main_->openFirstRun();
    QCOMPARE(tabs().currentIndex(), 0);
    for (int i = 1; i < 7; ++i) QVERIFY(!tabs().isTabEnabled(i));
    QVERIFY(!controlOf<QRadioButton>(screen(), "Option1_0").isChecked());
    QVERIFY(!controlOf<QRadioButton>(screen(), "Option1_1").isChecked());
    QVERIFY(!controlOf<QPushButton>(screen(), "Command1").isEnabled());
    for (const char* box : {"Text1", "Text2", "Text3"}) QVERIFY(controlOf<QLineEdit>(screen(), box).text().isEmpty());
}

void FrmSetupWizardTest::theMethodTextFollowsTheChoice() {
    main_->openFirstRun();
    controlOf<QRadioButton>(screen(), "Option1_0").click();
    QCOMPARE(label("Label4"),
             QStringLiteral(
                 "You use this setting if there is already an installation on the network and you have exported the "
                 "settings to a shared location on that computer or a network share."));
    controlOf<QRadioButton>(screen(), "Option1_1").click();
    QCOMPARE(label("Label4"),
             QStringLiteral(
                 "You should use this option if you are setting up the system for the first time. If you have "
                 "installed this software on another machine, it is recommended that you set the first machine to "
                 "use network sharing, export the settings and databases from that machine and import them into "
                 "this one.."));
    QVERIFY(controlOf<QPushButton>(screen(), "Command1").isEnabled());
}

void FrmSetupWizardTest::aKeyInAPathAsksForTheBrowseButton() {
    main_->openFirstRun();
    main_->passMethod();
    QCOMPARE(tabs().currentIndex(), 1);
    auto& hint = controlOf<QLabel>(screen(), "Label6");
    QTest::keyClick(&controlOf<QLineEdit>(screen(), "Text1"), Qt::Key_X);
    QVERIFY(!hint.isHidden());
    QVERIFY(controlOf<QLineEdit>(screen(), "Text1").text().isEmpty());
    auto* timer = screen().findChild<QTimer*>(QStringLiteral("Timer1"));
    QCOMPARE(timer->interval(), 6000);
    QVERIFY(timer->isActive());
    timer->setInterval(0);
    QTRY_VERIFY(hint.isHidden());
}

void FrmSetupWizardTest::theWholeFirstRunLeadsToTheMainWindow() {
    main_->writeDefaultDatabase();
    main_->openFirstRun();
    main_->passMethod();
    main_->browseLocalPaths();
    click("Command6");
    QCOMPARE(tabs().currentIndex(), 2);
    QCOMPARE(main_->temp.read("new/Database/png.dat"), "1,89504E47,H\r\n");
    click("Command7");
    QCOMPARE(tabs().currentIndex(), 3);
    for (const char* box : {"Check2", "Check3", "Check4"})
        QVERIFY2(controlOf<QCheckBox>(screen(), box).isChecked(), "a person who goes on gets jobs that test");
    click("Command8");
    QCOMPARE(tabs().currentIndex(), 4);
    click("Command11");
    QCOMPARE(tabs().currentIndex(), 5);
    // Neither report messages nor common headers are in this archive: the main window starts without them.
    click("Command14");
    QVERIFY(main_->window->isVisible());
    Installation saved(main_->temp / "app");
    QVERIFY(saved.loadSettingsRecord());
    QCOMPARE(saved.paths().localPath, main_->temp / "new");
    QCOMPARE(saved.paths().zipPath, main_->temp / "new/zips");
    QCOMPARE(saved.settings.runHeaderTest, 1);
    QCOMPARE(saved.settings.alertRecipient.trimmed().bytes, "Query");
}

void FrmSetupWizardTest::withoutTheArchiveTheLocalPathsStepEnds() {
    main_->openFirstRun();
    main_->passMethod();
    main_->browseLocalPaths();
    main_->dialogs.expectBox("Setup Error", "Unable to find default Databases, please re-install the application.");
    click("Command6");
    QCOMPARE(tabs().currentIndex(), 1);
}

void FrmSetupWizardTest::closingWithinAStepAsksBehindIt() {
    main_->writeDefaultDatabase();
    main_->openFirstRun();
    main_->passMethod();
    main_->browseLocalPaths();
    bool closed = false;
    const int refresh = main_->loop.addRefresh([&] {
        if (!closed) {
            closed = true;
            QVERIFY(!screen().close());
        }
    });
    main_->dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::No);
    click("Command6");
    main_->loop.removeRefresh(refresh);
    QVERIFY(closed && screen().isVisible());
}

void FrmSetupWizardTest::exitAsksAndBringsTheMainWindow() {
    main_->openFirstRun();
    main_->dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::No,
                             BoxStyle::Question, BoxButtons::YesNo);
    click("Command5");
    QVERIFY(screen().isVisible());
    main_->dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::Yes);
    click("Command5");
    QVERIFY(main_->window->isVisible());
}

void FrmSetupWizardTest::theCloseBoxAndEscapeAskAsExitDoes() {
    main_->openFirstRun();
    main_->dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::No);
    screen().close();
    QVERIFY(screen().isVisible());
    screen().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&screen()));
    main_->dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::No);
    QTest::keyClick(&screen(), Qt::Key_Escape);
    QVERIFY(screen().isVisible());
}

void FrmSetupWizardTest::exportTellsThatThereAreNoSettings() {
    main_->openFirstRun();
    tabs().setTabEnabled(kExportTab, true);  // as the steps before it do
    main_->dialogs.expectBox("No Settings", "There are no settigns to export.", BoxAnswer::Ok, BoxStyle::Warning);
    click("Command12");
}

void FrmSetupWizardTest::anEditBeginsWithTheLocalPaths() {
    openEdit();
    QCOMPARE(tabs().currentIndex(), 1);
    QCOMPARE(controlOf<QLineEdit>(screen(), "Text1").text(), toQt((main_->temp / "local").native()));
    QCOMPARE(controlOf<QLineEdit>(screen(), "Text2").text(), toQt((main_->temp / "archives").native()));
    QCOMPARE(controlOf<QLineEdit>(screen(), "Text3").text(), toQt((main_->temp / "share").native()));
    QVERIFY(controlOf<QRadioButton>(screen(), "Option1_1").isChecked());
    QVERIFY(controlOf<QCheckBox>(screen(), "Check2").isChecked());
    QCOMPARE(controlOf<QComboBox>(screen(), "Combo1").itemText(0), QStringLiteral("DESK2"));
    QCOMPARE(controlOf<QComboBox>(screen(), "Combo1").itemText(1), QStringLiteral("Query"));
}

void FrmSetupWizardTest::revertAsksForTheStoredRecipient() {
    openEdit();
    tabs().setTabEnabled(kAlertsTab, true);  // as the steps before it do
    main_->dialogs.expectBox("Revert Alert", "Revert Alerts to DESK2 ?", BoxAnswer::Yes, BoxStyle::Question,
                             BoxButtons::YesNo);
    click("Command13");
    const auto& box = controlOf<QComboBox>(screen(), "Combo1");
    QCOMPARE(box.itemText(0), QStringLiteral("Query"));
    QCOMPARE(box.currentText(), QStringLiteral("DESK2"));
    tabs().setTabEnabled(kAlertsTab, true);
    main_->dialogs.expectBox("Revert Alert", "Revert Zip Alerts to Nobody ?", BoxAnswer::No);
    click("Command15");
}

QTEST_MAIN(FrmSetupWizardTest)
#include "frmSetupWizard_test.moc"
