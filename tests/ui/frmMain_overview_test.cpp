// SPDX-License-Identifier: MIT
// The ways from the main window to the Job Overview.
#include <QAction>
#include <QTest>

#include "ui/grade_bar.h"
#include "ui/main_window.h"

using namespace quillon;

class FrmMainOverviewTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        main_ = std::make_unique<test::MainWindow>();
        main_->addScreens();
        main_->makePictures(2);
        main_->open();
    }
    void cleanup() { test::closeScreens(main_); }
    void theEntryOpensTheOverviewAndDoneComesBack();
    void aClickOnTheGradeBarDoesTheSame();
    void withoutAJobNothingOpens();
    void aRunningJobKeepsTheWindow();

private:
    void runJob() {
        main_->chooseSource("J1");
        main_->control<QPushButton>("CommandButton3").click();
    }
    [[nodiscard]] QWidget* overview() const { return main_->navigator.window(Screen::Overview); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainOverviewTest::theEntryOpensTheOverviewAndDoneComesBack() {
    runJob();
    main_->control<QAction>("openOverview").trigger();
    QVERIFY(overview() != nullptr);
    QVERIFY(!main_->window->isVisible());
    QTRY_COMPARE(test::controlOf<QLabel>(*overview(), "quality").text(), QStringLiteral("100.00%"));
    test::controlOf<QPushButton>(*overview(), "done").click();
    QVERIFY(overview() == nullptr);
    QVERIFY(main_->window->isVisible());
}

void FrmMainOverviewTest::aClickOnTheGradeBarDoesTheSame() {
    runJob();
    QTest::mouseClick(&main_->control<GradeBar>("gradeBar"), Qt::LeftButton);
    QVERIFY(overview() != nullptr);
}

void FrmMainOverviewTest::withoutAJobNothingOpens() {
    main_->control<QAction>("openOverview").trigger();
    QVERIFY(overview() == nullptr);
    QCOMPARE(main_->text("Label8"), QStringLiteral("Type the ID of a job first, or open its list"));
}

void FrmMainOverviewTest::aRunningJobKeepsTheWindow() {
    bool seen = false;
    const int number = main_->loop.addRefresh([&] {
        if (!main_->window->isJobRunning())
            return;
        seen = true;
        main_->control<QAction>("openOverview").trigger();
        QVERIFY(overview() == nullptr);
    });
    runJob();
    main_->loop.removeRefresh(number);
    QVERIFY(seen);
}

QTEST_MAIN(FrmMainOverviewTest)
#include "frmMain_overview_test.moc"
