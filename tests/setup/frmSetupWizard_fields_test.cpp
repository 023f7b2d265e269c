// SPDX-License-Identifier: MIT
// What the wizard's fields store when settings are edited, and those that store nothing.
#include "setup/frmSetupWizard.h"

#include <QTest>

#include "support/scripted_network.h"
#include "ui/main_window.h"

using namespace quillon;
using test::controlOf;

class FrmSetupWizardFieldsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void eachQueryFillsItsOwnBox();
    void theChosenComputersAreStored();
    void theSharedPathIsStoredWithItsSwitch();
    void separatorAndNetworkTestHaveNoEffect();

private:
    [[nodiscard]] QWidget& screen() const { return *main_->navigator.window(Screen::SetupWizard); }
    void click(const char* button) const { controlOf<QPushButton>(screen(), button).click(); }
    // As a person chooses.
    void choose(const char* name, const char* item) const {
        auto& box = controlOf<QComboBox>(screen(), name);
        box.setCurrentIndex(box.findText(QLatin1String(item)));
        emit box.activated(box.currentIndex());
    }
    void query(const char* name, const char* button) const {
        choose(name, "Query");
        openTab(kAlertsTab);
        click(button);
        openTab(kAlertsTab);
    }
    void openTab(WizardTab tab) const { controlOf<QTabWidget>(screen(), "SftTabs1").setTabEnabled(tab, true); }
    [[nodiscard]] QStringList items(const char* name) const {
        return test::itemsOf(controlOf<QComboBox>(screen(), name));
    }
    [[nodiscard]] AppSettings saved() const { return decodeSettings(main_->temp.read("app/settings.dat")); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmSetupWizardFieldsTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->window = std::make_unique<frmMain>(main_->context, main_->job, MainWindowAlerts{});
    main_->navigator.add(Screen::SetupWizard, [this](const std::any&) {
        const std::vector<std::string> names = {"DESK2", "DESK3"};
        return std::make_unique<frmSetupWizard>(main_->context, std::make_shared<test::ScriptedNetwork>(names));
    });
    QVERIFY(main_->installation.saveSettingsRecord());
    main_->navigator.open(Screen::SetupWizard);
}

void FrmSetupWizardFieldsTest::cleanup() {
    test::closeScreens(main_);
}

const QStringList kComputers = {QStringLiteral("Please Select"), QStringLiteral("DESK2"), QStringLiteral("DESK3")};

void FrmSetupWizardFieldsTest::eachQueryFillsItsOwnBox() {
    query("Combo1", "Command9");
    QCOMPARE(items("Combo1"), kComputers);
    QVERIFY(items("Combo2") != kComputers);
    QCOMPARE(controlOf<QPushButton>(screen(), "Command9").text(), QStringLiteral("Test"));
    query("Combo2", "Command10");
    QCOMPARE(items("Combo2"), kComputers);
}

void FrmSetupWizardFieldsTest::theChosenComputersAreStored() {
    query("Combo1", "Command9");
    query("Combo2", "Command10");
    choose("Combo1", "DESK2");
    choose("Combo2", "DESK3");
    openTab(kAlertsTab);
    click("Command11");
    QCOMPARE(toUtf8(saved().alertRecipient.trimmed()), std::string("DESK2"));
    QCOMPARE(toUtf8(saved().zipRecipient.trimmed()), std::string("DESK3"));
}

void FrmSetupWizardFieldsTest::theSharedPathIsStoredWithItsSwitch() {
    main_->temp.write("app/db.zip", "");
    openTab(kSharedPathTab);
    controlOf<QCheckBox>(screen(), "Check5").setChecked(true);
    openTab(kSharedPathTab);
    main_->dialogs.expectFolder("Select folder for Shared database..", main_->temp / "share");
    click("Command4");
    QCOMPARE(controlOf<QLineEdit>(screen(), "Text3").text(), toQt((main_->temp / "share").native()));
    QVERIFY(controlOf<QCheckBox>(screen(), "Check5").isChecked());
}

void FrmSetupWizardFieldsTest::separatorAndNetworkTestHaveNoEffect() {
    const AppSettings before = saved();
    openTab(kDefaultsTab);
    controlOf<QLineEdit>(screen(), "Text4").setText(QStringLiteral("+"));
    controlOf<QCheckBox>(screen(), "Check1").setChecked(true);
    click("Command8");
    QVERIFY(encodeSettings(saved()) == encodeSettings(before));
}

QTEST_MAIN(FrmSetupWizardFieldsTest)
#include "frmSetupWizard_fields_test.moc"
