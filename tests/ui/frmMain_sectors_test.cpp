// SPDX-License-Identifier: MIT
// Bad sectors in the main window.
#include <QAction>
#include <QCheckBox>
#include <QTest>

#include "ui/grade_bar.h"
#include "ui/main_window.h"

using namespace quillon;

class FrmMainSectorsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(main_); }
    void theEntryLooksThroughAJobThatWasDone();
    void theTickedBoxLooksBehindTheJobAndLasts();
    void withoutAJobNothingIsRead();

private:
    [[nodiscard]] QString toolTip() const { return main_->control<GradeBar>("gradeBar").toolTip(); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainSectorsTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->makePictures(2);
    std::string marked;
    while (marked.size() < 512) marked += "BAD SECTOR";
    main_->temp.write("source/hurt.jpg", "\xFF\xD8\xFF" + std::string(509, 'x') + marked.substr(0, 512));
    main_->open();
}

void FrmMainSectorsTest::theEntryLooksThroughAJobThatWasDone() {
    main_->chooseSource("J1");
    main_->control<QPushButton>("CommandButton3").click();
    QCOMPARE(toolTip(), QStringLiteral("A click opens the Job Overview"));
    main_->control<QAction>("lookForSectors").trigger();
    QCOMPARE(toolTip(), QStringLiteral("A click opens the Job Overview\n1 file of 3 holds unread sectors, 512 Bytes in "
                                       "all\nGood and whole as far as known: 66.67%"));
    QVERIFY(!main_->window->isJobRunning());
    QVERIFY(main_->control<QPushButton>("CommandButton3").isEnabled());
    QVERIFY(!main_->control<QPushButton>("CommandButton4").isEnabled());
}

void FrmMainSectorsTest::theTickedBoxLooksBehindTheJobAndLasts() {
    auto& box = main_->control<QCheckBox>("chkScanSectors");
    QCOMPARE(box.text(), QStringLiteral("Look for bad sectors"));
    QVERIFY(box.isEnabled() && !box.isChecked());
    box.click();
    QCOMPARE(main_->temp.read("app/preferences.ini"), std::string("sectors.scan=yes\n"));
    main_->chooseSource("J1");
    main_->control<QPushButton>("CommandButton3").click();
    QVERIFY(toolTip().contains(QStringLiteral("1 file of 3 holds unread sectors, 512 Bytes in all")));
    QCOMPARE(main_->text("StatusBar1_2"), QStringLiteral("Complete"));
    main_->window.reset();
    main_->open();
    QVERIFY(main_->control<QCheckBox>("chkScanSectors").isChecked());
}

void FrmMainSectorsTest::withoutAJobNothingIsRead() {
    main_->control<QAction>("lookForSectors").trigger();
    QCOMPARE(main_->text("Label8"), QStringLiteral("Type the ID of a job first, or open its list"));
}

QTEST_MAIN(FrmMainSectorsTest)
#include "frmMain_sectors_test.moc"
