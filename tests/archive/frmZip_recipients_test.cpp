// SPDX-License-Identifier: MIT
// The zip screen's recipient over a scripted network, and the controls on which nothing depends.
#include "archive/frmZip.h"

#include <QTest>

#include "support/scripted_network.h"
#include "ui/main_window.h"

using namespace quillon;
using test::controlOf;

class FrmZipRecipientsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void queryFillsTheBoxWithTheComputers();
    void testTellsOfThisComputersOwnName();
    void theJobIdNamesTheArchiveUpToItsSeparator();
    void companyAndComputerChangeNothing();
    void zipAndEmailIsNeverShown();

private:
    [[nodiscard]] QWidget& screen() const { return *main_->navigator.window(Screen::Zip); }
    void click(const char* button) const { controlOf<QPushButton>(screen(), button).click(); }
    [[nodiscard]] bool has(const char* name) const { return std::filesystem::exists(main_->temp / name); }
    // With the first entry nobody is told.
    void zip() const {
        controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
        main_->dialogs.expectBox("Process complete", "Zip Processing complete", BoxAnswer::Ok, BoxStyle::Warning);
        click("Command4");
    }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmZipRecipientsTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->temp.write("local/1234-A.csv", "a");
    main_->open();
    main_->navigator.add(Screen::Zip, [this](const std::any&) {
        const std::vector<std::string> names = {"LAB7", "DESK2"};
        return std::make_unique<frmZip>(main_->context, ZipHandover{"1234-A", "-"},
                                        std::make_shared<test::ScriptedNetwork>(names));
    });
    main_->navigator.open(Screen::Zip);
}

void FrmZipRecipientsTest::cleanup() {
    test::closeScreens(main_);
}

void FrmZipRecipientsTest::queryFillsTheBoxWithTheComputers() {
    click("Command7");
    const auto& box = controlOf<QComboBox>(screen(), "Combo1");
    QCOMPARE(test::itemsOf(box),
             (QStringList{QStringLiteral("Please Select"), QStringLiteral("LAB7"), QStringLiteral("DESK2")}));
    QCOMPARE(box.currentIndex(), 0);
}

void FrmZipRecipientsTest::testTellsOfThisComputersOwnName() {
    click("Command7");
    controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(1);
    main_->dialogs.expectBox("UDP Conflict", "Unable to send messages to computer with same name.");
    controlOf<QPushButton>(screen(), "Command8").setEnabled(true);
    click("Command8");
}

void FrmZipRecipientsTest::theJobIdNamesTheArchiveUpToItsSeparator() {
    controlOf<QLineEdit>(screen(), "Text1").setText(QStringLiteral("77+B"));
    controlOf<QLineEdit>(screen(), "Text2").setText(QStringLiteral("+"));
    zip();
    QVERIFY(has("archives/77.zip"));
}

void FrmZipRecipientsTest::companyAndComputerChangeNothing() {
    for (const char* box : {"Check4", "Check5"}) controlOf<QCheckBox>(screen(), box).setChecked(true);
    zip();
    QVERIFY(has("archives/1234.zip"));
    QVERIFY(!has("local/1234-A.csv"));
}

void FrmZipRecipientsTest::zipAndEmailIsNeverShown() {
    zip();
    QVERIFY(controlOf<QPushButton>(screen(), "Command6").isHidden());
}

QTEST_MAIN(FrmZipRecipientsTest)
#include "frmZip_recipients_test.moc"
