// SPDX-License-Identifier: MIT
// What the status bar of the main window tells of a job: what it does, how fast, and how it ended.

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "main_window.h"

using namespace quillon;

class FrmMainStatusTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theStatusBarSaysWhatTheJobDoesAndHowItEnded();
    void theStatusBarTellsThePaceOfARunningJob();

private:
    void click(const char* button) { main_->control<QPushButton>(button).click(); }
    /// Presses a button as soon as the window shows this status during a job.
    void pressAt(const char* status, const char* button);
    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainStatusTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->makePictures(20);
    main_->open();
}

void FrmMainStatusTest::cleanup() {
    test::closeScreens(main_);
}

void FrmMainStatusTest::pressAt(const char* status, const char* button) {
    const auto pressed = std::make_shared<bool>(false);
    main_->loop.addRefresh([this, status, button, pressed] {
        const bool inside = main_->job.state.counters.files > 5;
        if (*pressed || !inside || main_->text("Label8") != QLatin1String(status))
            return;
        *pressed = true;
        click(button);
    });
}

void FrmMainStatusTest::theStatusBarSaysWhatTheJobDoesAndHowItEnded() {
    std::filesystem::create_directories(main_->temp / "source/folder");
    main_->chooseSource("1234");
    QCOMPARE(main_->text("StatusBar1_2"), QString());
    QStringList said;
    main_->loop.addRefresh([&] {
        const QString now = main_->text("StatusBar1_2");
        if (said.isEmpty() || said.last() != now)
            said << now;
    });
    click("CommandButton3");
    for (const char* text :
         {"Running 1 of 3: checking folders", "Running 2 of 3: listing files", "Running 3 of 3: testing"})
        QVERIFY2(said.contains(QLatin1String(text)), qPrintable(said.join(QLatin1Char('|'))));
    QCOMPARE(main_->text("StatusBar1_2"), QStringLiteral("Complete"));
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("2"));
    pressAt("Running primary list", "CommandButton4");
    main_->dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::Yes);
    click("CommandButton3");
    QCOMPARE(main_->text("StatusBar1_2"), QStringLiteral("Stopped, no list"));
}

void FrmMainStatusTest::theStatusBarTellsThePaceOfARunningJob() {
    main_->chooseSource("1234");
    QCOMPARE(main_->text("jobPace"), QString());
    const QString pace = QStringLiteral("34 %, 1,200 files/s, 00:02:10 left");
    bool told = false;
    main_->loop.addRefresh([&] {
        told = told || main_->text("jobPace") == pace;
        if (main_->job.state.phase == JobPhase::Testing)
            main_->job.state.texts.pace = pace.toStdString();
    });
    click("CommandButton3");
    QVERIFY(told);
    QCOMPARE(main_->text("jobPace"), QString());
}

QTEST_MAIN(FrmMainStatusTest)
#include "frmMain_status_test.moc"
