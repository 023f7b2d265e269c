// SPDX-License-Identifier: MIT
// Whole roads through the real wizard, with what they leave on the disk byte for byte.
#include <QTest>
#include <QTimer>

#include "setup/frmSetupWizard.h"
#include "setup/wizard_window.h"

using namespace quillon;
using test::controlOf;

namespace {

constexpr const char* kOverwriteShared =
    "There are already files in this folder. Do you want to overwrite any existing header database and settings file ?";

// A settings record typed by hand: 3091 bytes, of which text fields that were assigned are filled up with blanks.
class Record {
public:
    Record& text(std::size_t at, std::string value) {
        value.resize(512, ' ');
        bytes_.replace(at, 512, value);
        return *this;
    }
    Record& number(std::size_t at, int value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) bytes_[at + i] = static_cast<char>(value >> (8 * i));
        return *this;
    }
    Record& flag(std::size_t at) { return number(at, 1, 2); }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_ = std::string(3091, '\0');
};

}  // namespace

class FrmSetupWizardRoadsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { main_ = std::make_unique<test::WizardWindow>(); }
    void cleanup();
    void aFirstRunWithAShareLeavesTheToldFiles();
    void exitAndNextAreOffWhileFilesAreCopied();
    void anEditAsksBacksUpAndOverwrites();
    void anImportTakesTheFileAndExitPutsTheMemoryBack();
    void anExportIsTheRecordInMemory();
    void anotherLengthIsNoImport();
    void aChoiceMadeByAProgramCountsAsAClick();

private:
    [[nodiscard]] Record firstRunRecord() const;
    [[nodiscard]] std::string inTemp(const char* name) const { return (main_->temp / name).string(); }
    void passSharedPath();
    void openEdit();

    std::unique_ptr<test::WizardWindow> main_;
};

void FrmSetupWizardRoadsTest::cleanup() {
    const bool done = main_->dialogs.done();
    const QStringList problems = main_->problems;
    main_.reset();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    QVERIFY(done);
}

Record FrmSetupWizardRoadsTest::firstRunRecord() const {
    Record record;
    record.flag(0).flag(2).flag(2564).flag(2566);
    record.text(4, inTemp("new")).text(516, inTemp("new/zips")).text(2568, inTemp("share"));
    record.text(1028, "Query").text(1540, "Query");
    record.number(3080, 12020, 4).number(3084, 12021, 4);
    return record;
}

void FrmSetupWizardRoadsTest::passSharedPath() {
    main_->tick("Check5");
    QVERIFY(!controlOf<QPushButton>(main_->screen(), "Command7").isEnabled());
    main_->browse("Command4", "Select folder for Shared database..", "share");
    QVERIFY(controlOf<QPushButton>(main_->screen(), "Command7").isEnabled());
    main_->click("Command7");
}

void FrmSetupWizardRoadsTest::openEdit() {
    main_->installation.settings = decodeSettings(firstRunRecord().bytes());
    main_->installation.refreshPathVariables();
    QVERIFY(main_->installation.saveSettingsRecord());
    main_->navigator.open(Screen::SetupWizard);
}

void FrmSetupWizardRoadsTest::aFirstRunWithAShareLeavesTheToldFiles() {
    main_->writeDefaultDatabase();
    main_->openFirstRun();
    main_->passMethod();
    main_->browseLocalPaths();
    main_->click("Command6");
    passSharedPath();
    QCOMPARE(main_->label("Label17"), QStringLiteral("Copying databases to shared folders.."));
    controlOf<QLineEdit>(main_->screen(), "Text4").setText(QStringLiteral("_"));
    main_->click("Command8");
    main_->click("Command11");
    QCOMPARE(main_->tabs().currentIndex(), 5);
    QVERIFY(!main_->tabs().isTabEnabled(6));
    main_->dialogs.expectBox(
        "Error",
        "The report messages list can not be loaded. You will be unable to use this to test files. "
        "Please either copy the file back to the network share or application folders or contact "
        "tech support.",
        BoxAnswer::Ok, BoxStyle::Critical);
    main_->click("Command14");
    QVERIFY(main_->window->isVisible());
    QCOMPARE(main_->temp.read("app/settings.dat"), firstRunRecord().bytes());
    for (const char* root : {"new", "share"}) {
        QCOMPARE(main_->temp.read(std::string(root) + "/Database/png.dat"), "1,89504E47,H\r\n");
        QCOMPARE(main_->temp.read(std::string(root) + "/Settings/SkipList.dat"), "*.tmp*\r\n");
    }
    QVERIFY(std::filesystem::is_directory(main_->temp / "new/zips"));
}

void FrmSetupWizardRoadsTest::exitAndNextAreOffWhileFilesAreCopied() {
    const char* const buttons[] = {"Command1", "Command5",  "Command6", "Command7",
                                   "Command8", "Command11", "Command14"};
    main_->writeDefaultDatabase();
    main_->openFirstRun();
    main_->passMethod();
    main_->browseLocalPaths();
    bool copied = false;
    QStringList on;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (controlOf<QWidget>(main_->screen(), "ProgressBar1").isHidden())
            return;
        copied = true;
        for (const char* button : buttons) {
            if (controlOf<QPushButton>(main_->screen(), button).isEnabled())
                on << QLatin1String(button);
        }
    });
    watch.start(0);
    main_->click("Command6");
    watch.stop();
    QVERIFY(copied);
    QCOMPARE(on, QStringList());
    for (const char* button : {"Command5", "Command6", "Command7"})
        QVERIFY2(controlOf<QPushButton>(main_->screen(), button).isEnabled(), button);
}

void FrmSetupWizardRoadsTest::anEditAsksBacksUpAndOverwrites() {
    main_->writeDefaultDatabase();
    main_->temp.write("new/Database/png.dat", "local");
    main_->temp.write("share/Database/png.dat", "shared");
    openEdit();
    QCOMPARE(main_->tabs().currentIndex(), 1);
    main_->dialogs.expectBox("Overwrite DB?",
                             "There are files in the local database folders, do you want to replace them?",
                             BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    main_->click("Command6");
    QCOMPARE(main_->temp.read("new/Database/png.dat"), "local");
    main_->dialogs.expectBox("Overwrite Existing Files?", kOverwriteShared, BoxAnswer::Yes, BoxStyle::Question,
                             BoxButtons::YesNo);
    main_->dialogs.expectBox("Backup Old DB?", "Would you like to make a backup of the current shared DB?",
                             BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    main_->click("Command7");
    QCOMPARE(main_->tabs().currentIndex(), 3);
    QCOMPARE(main_->temp.read("share/Database/png.dat"), "1,89504E47,H\r\n");
    QVERIFY(std::filesystem::exists(main_->temp / "share/DBBackup_15112026.zip"));
    QCOMPARE(main_->temp.read("new/Kept/2026-11-15 10.20.30/png.dat"), "shared");
    QVERIFY(controlOf<QWidget>(main_->screen(), "ProgressBar1").isHidden());
}

void FrmSetupWizardRoadsTest::anImportTakesTheFileAndExitPutsTheMemoryBack() {
    const std::string imported = firstRunRecord().bytes();
    main_->temp.write("share/ZOV-Settings.dat", imported);
    main_->openFirstRun();
    controlOf<QRadioButton>(main_->screen(), "Option1_0").click();
    main_->dialogs.expectFiles("Open", {main_->temp / "share/ZOV-Settings.dat"});
    main_->click("Command1");
    QCOMPARE(main_->dialogs.lastPick().filter,
             std::string("Settings File(Settings.Dat)|*Settings.dat|All Files(*.*)|*.*"));
    QCOMPARE(main_->tabs().currentIndex(), 1);
    QCOMPARE(main_->box("Text1"), main_->path("new"));
    QCOMPARE(main_->box("Text2"), main_->path("new/zips"));
    QCOMPARE(main_->box("Text3"), main_->path("share"));
    for (const char* box : {"Check2", "Check3", "Check4", "Check5"})
        QVERIFY(controlOf<QCheckBox>(main_->screen(), box).isChecked());
    QVERIFY(controlOf<QPushButton>(main_->screen(), "Command6").isEnabled());
    QCOMPARE(main_->temp.read("app/settings.dat"), imported);
    main_->dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::Yes);
    main_->click("Command5");
    QCOMPARE(main_->temp.read("app/settings.dat"), imported);
    QVERIFY(main_->installation.settings.localPath.trimmed().bytes.empty());
    QVERIFY(main_->window->isVisible());
}

void FrmSetupWizardRoadsTest::anExportIsTheRecordInMemory() {
    openEdit();
    main_->tabs().setTabEnabled(kExportTab, true);  // as the steps before it do
    main_->installation.settings.alertRecipient.assign(toPage(std::string_view("DESK2")));
    std::filesystem::create_directories(main_->temp / "share");
    main_->dialogs.expectFolder("Export settings to ...", main_->temp / "share");
    main_->dialogs.expectBox("Export OK", "Settings successfully exported.", BoxAnswer::Ok, BoxStyle::Information);
    main_->click("Command12");
    QCOMPARE(main_->temp.read("share/ZOV-Settings.dat"), firstRunRecord().text(1028, "DESK2").bytes());
    QCOMPARE(main_->temp.read("app/settings.dat"), firstRunRecord().bytes());
}

void FrmSetupWizardRoadsTest::anotherLengthIsNoImport() {
    main_->temp.write("share/short.dat", std::string(3090, ' '));
    main_->openFirstRun();
    controlOf<QRadioButton>(main_->screen(), "Option1_0").click();
    main_->dialogs.expectFiles("Open", {main_->temp / "share/short.dat"});
    main_->dialogs.expectBox("Error", "Not a settings database.", BoxAnswer::Ok, BoxStyle::Warning);
    main_->click("Command1");
    QCOMPARE(main_->tabs().currentIndex(), 0);
    QVERIFY(!std::filesystem::exists(main_->temp / "app/settings.dat"));
}

void FrmSetupWizardRoadsTest::aChoiceMadeByAProgramCountsAsAClick() {
    openEdit();
    QVERIFY(main_->label("Label4").startsWith(QStringLiteral("You should use this option")));
    controlOf<QRadioButton>(main_->screen(), "Option1_0").setChecked(true);
    QVERIFY(main_->label("Label4").startsWith(QStringLiteral("You use this setting")));
    controlOf<QRadioButton>(main_->screen(), "Option1_1").setChecked(true);
    QCOMPARE(main_->label("Label4"), QStringLiteral("You are about to edit existing settings on this computer."));
}

QTEST_MAIN(FrmSetupWizardRoadsTest)
#include "frmSetupWizard_roads_test.moc"
