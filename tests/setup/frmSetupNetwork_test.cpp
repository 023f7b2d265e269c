// SPDX-License-Identifier: MIT
#include "setup/frmSetupNetwork.h"

#include <QTest>

#include "support/screen_control.h"
#include "ui/main_window.h"

using namespace quillon;
using test::controlOf;

class FrmSetupNetworkTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameCaptionAndState();
    void selectAllLeavesSystemMessagesAlone();
    void copyFillsAFreshShareAndCloses();
    void cancelClosesWithoutACopy();
    void escapeIsCancel();

private:
    [[nodiscard]] QWidget& screen() const { return *main_->navigator.window(Screen::SetupNetwork); }
    void click(const char* button) const { controlOf<QPushButton>(screen(), button).click(); }
    [[nodiscard]] bool ticked(const char* box) const { return controlOf<QCheckBox>(screen(), box).isChecked(); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmSetupNetworkTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    std::filesystem::create_directories(main_->temp / "share/Database");
    std::filesystem::create_directories(main_->temp / "share/Settings");
    main_->temp.write("app/settings.dat", "");
    main_->installation.settings.sharedPath.assign(pageFromPath(main_->temp / "share"));
    main_->installation.settings.useSharedDb = 1;
    main_->installation.refreshPathVariables();
    main_->addScreens();
    main_->navigator.open(Screen::SetupNetwork);
}

void FrmSetupNetworkTest::cleanup() {
    test::closeScreens(main_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"frameFiles",
     "Files to copy to Network",
     {
         {"Check1_0", "Main Database"},
         {"Check1_1", "Skiplist"},
         {"Check1_2", "Common Header database"},
         {"Check1_3", "Use settings on this machine as default"},
         {"Check1_4", "System messages"},
         {"Command3_1", "Select All"},
         {"Command3_0", "Clear All"},
     }},
    {"",
     "",
     {
         {"Label1", ""},
         {"Command1", "Copy"},
         {"Command2", "Cancel"},
     }},
};

}  // namespace

void FrmSetupNetworkTest::everyControlHasItsNameCaptionAndState() {
    QCOMPARE(screen().windowTitle(), QStringLiteral("Set up Network"));
    QCOMPARE(test::misfits(screen(), kControls), QStringList());
    for (const char* box : {"Check1_0", "Check1_1", "Check1_2", "Check1_3", "Check1_4"}) QVERIFY(!ticked(box));
}

void FrmSetupNetworkTest::selectAllLeavesSystemMessagesAlone() {
    click("Command3_1");
    for (const char* box : {"Check1_0", "Check1_1", "Check1_2", "Check1_3"}) QVERIFY(ticked(box));
    QVERIFY(!ticked("Check1_4"));
    controlOf<QCheckBox>(screen(), "Check1_4").setChecked(true);
    click("Command3_0");
    QVERIFY(!ticked("Check1_0"));
    QVERIFY(ticked("Check1_4"));
}

void FrmSetupNetworkTest::copyFillsAFreshShareAndCloses() {
    click("Command3_1");
    click("Command1");
    QVERIFY(main_->navigator.window(Screen::SetupNetwork) == nullptr || screen().isHidden());
    QCOMPARE(main_->temp.read("share/Database/jpg.dat"), main_->temp.read("local/Database/jpg.dat"));
    QCOMPARE(main_->temp.read("share/Settings/SkipList.dat"), main_->temp.read("local/Settings/SkipList.dat"));
    QCOMPARE(main_->temp.read("share/Settings/CommonHeaders.dat"),
             main_->temp.read("local/Settings/CommonHeaders.dat"));
    QVERIFY(!std::filesystem::exists(main_->temp / "share/Settings/Errors.dat"));
}

void FrmSetupNetworkTest::cancelClosesWithoutACopy() {
    click("Command3_1");
    click("Command2");
    QVERIFY(main_->navigator.window(Screen::SetupNetwork) == nullptr || screen().isHidden());
    QVERIFY(!std::filesystem::exists(main_->temp / "share/Database/jpg.dat"));
}

void FrmSetupNetworkTest::escapeIsCancel() {
    click("Command3_1");
    screen().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&screen()));
    QTest::keyClick(&screen(), Qt::Key_Escape);
    QVERIFY(main_->navigator.window(Screen::SetupNetwork) == nullptr || screen().isHidden());
    QVERIFY(!std::filesystem::exists(main_->temp / "share/Database/jpg.dat"));
}

QTEST_MAIN(FrmSetupNetworkTest)
#include "frmSetupNetwork_test.moc"
