// SPDX-License-Identifier: MIT
// Jobs in the main window: what it shows, Stop in each phase, and a loop that stays alive.

#include <map>

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "main_window.h"
#include "platform/folders.h"
#include "support/hanging_share.h"
#include "ui/frmMain.h"
#include "widgets/grid.h"

using namespace quillon;

class FrmMainJobTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aJobFillsBoardAndLog();
    void aShortJobLeavesNoStaleLabels();
    void duringAJobOnlyStopLogAndProgressCanBeUsed();
    void theToolbarIsRestrictedFromTheFolderTestsOn();
    void aSecondJobShowsItsProgressToo();
    void stopDuringTheWalkEndsTheJob();
    void stopDuringTheTestAsksAboutTheListAndGoesOn();
    void stopDuringTheCopyEndsTheCopy();
    void noAtTheStopQuestionChangesNothing();
    void noAtTheOverwriteQuestionEndsTheJob();
    void aCopyWithoutTargetGoesToTheTargetPicker();
    void withoutSourceRunAsksForOne();
    void openExistingRecountsAsTheJobCounted();
    void closingDuringAJobStopsIt();
    void aShareThatHangsDoesNotHoldTheWindow();
    void thereIsATurnBehindEveryFile();
    void aRecountDuringAJobLeavesItsCountersAndControls();

private:
    void click(const char* button) { main_->control<QPushButton>(button).click(); }
    /// Presses a button as soon as the window shows this status during a job.
    void pressAt(const char* status, const char* button);
    [[nodiscard]] std::vector<std::string> log() const;
    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainJobTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->makePictures(20);
    main_->temp.write("source/broken.jpg", std::string(600, 'x'));
    main_->temp.write("source/packed.xyz", "PK" + std::string(600, 'x'));
    main_->temp.write("source/empty.txt", "");
    main_->open();
}

void FrmMainJobTest::cleanup() {
    test::closeScreens(main_);
}

void FrmMainJobTest::pressAt(const char* status, const char* button) {
    const auto pressed = std::make_shared<bool>(false);
    main_->loop.addRefresh([this, status, button, pressed] {
        const bool inside = main_->job.state.counters.files > 5;
        if (*pressed || !inside || main_->text("Label8") != QLatin1String(status))
            return;
        *pressed = true;
        click(button);
    });
}

std::vector<std::string> FrmMainJobTest::log() const {
    std::vector<std::string> rows;
    const auto& grid = main_->control<Grid>("iGrid1");
    rows.reserve(static_cast<std::size_t>(grid.rowCount()));
    for (int row = 0; row < grid.rowCount(); ++row) rows.push_back(grid.cell(row, 1));
    return rows;
}

void FrmMainJobTest::aJobFillsBoardAndLog() {
    main_->chooseSource("1234");
    click("CommandButton3");
    QCOMPARE(main_->text("lfiles"), QStringLiteral("23"));
    QCOMPARE(main_->text("lTested"), QStringLiteral("23"));
    QCOMPARE(main_->text("lGoodFIles"), QStringLiteral("20"));
    QCOMPARE(main_->text("lCorruptFiles"), QStringLiteral("1"));
    QCOMPARE(main_->text("lCommon"), QStringLiteral("1"));
    QCOMPARE(main_->text("lZeroBytes"), QStringLiteral("1"));
    QCOMPARE(main_->text("lRPC"), QStringLiteral("95.45%"));
    QVERIFY(pathExists(main_->temp / "local/1234.csv"));
    const std::vector<std::string> expected = {
        "Source : " + (main_->temp / "source").string(),   "Starting Folder tests ",
        "Folder tests completed in (HH:MM:SS) : 00:00:00", "Start file count ",
        "File count completed in (HH:MM:SS) : 00:00:00",   "Start file quality testing ",
        "File testing completed in (HH:MM:SS) : 00:00:00"};
    QCOMPARE(log(), expected);
    QVERIFY(main_->control<QPushButton>("CommandButton5").isEnabled());
    QVERIFY(!main_->control<QPushButton>("CommandButton4").isEnabled());
    QVERIFY(main_->control<QGroupBox>("Frame1").isEnabled());
    QVERIFY(!main_->control<QTimer>("Timer1").isActive());
}

void FrmMainJobTest::aShortJobLeavesNoStaleLabels() {
    std::filesystem::remove_all(main_->temp / "source");
    main_->makePictures(1);
    main_->chooseSource("1");
    click("CommandButton3");
    QCOMPARE(main_->text("lfiles"), QStringLiteral("1"));
    QCOMPARE(main_->text("lGoodFIles"), QStringLiteral("1"));
    QCOMPARE(log().size(), std::size_t(7));
}

void FrmMainJobTest::duringAJobOnlyStopLogAndProgressCanBeUsed() {
    main_->chooseSource("1234");
    bool looked = false;
    main_->loop.addRefresh([&] {
        if (main_->job.state.texts.status != "Testing files" || looked)
            return;
        looked = true;
        for (const char* button : {"CommandButton3", "CommandButton6", "CommandButton1"})
            QVERIFY(!main_->control<QPushButton>(button).isEnabled());
        for (const char* frame : {"Frame1", "Frame3"}) QVERIFY(!main_->control<QGroupBox>(frame).isEnabled());
        for (const char* menu : {"mnu", "mnuFile"}) QVERIFY(!main_->control<QMenu>(menu).menuAction()->isEnabled());
        QVERIFY(main_->control<QMenu>("mnuh3").menuAction()->isEnabled());
        QVERIFY(main_->control<QPushButton>("CommandButton4").isEnabled());
        QVERIFY(main_->control<QCheckBox>("Check1").isEnabled());
        QVERIFY(main_->control<QTimer>("Timer1").isActive());
        for (int i = 1; i <= 11; ++i)
            QCOMPARE(main_->control<QToolButton>(qPrintable(QStringLiteral("Toolbar1_%1").arg(i))).isEnabled(), i == 6);
    });
    click("CommandButton3");
    QVERIFY(looked);
    for (const int i : {1, 3, 4, 5, 7, 8, 9, 10, 11})
        QVERIFY(main_->control<QToolButton>(qPrintable(QStringLiteral("Toolbar1_%1").arg(i))).isEnabled());
}

void FrmMainJobTest::theToolbarIsRestrictedFromTheFolderTestsOn() {
    std::filesystem::create_directories(main_->temp / "source/folder");
    main_->chooseSource("1234");
    bool looked = false;
    main_->loop.addRefresh([&] {
        if (main_->job.state.texts.status != "Checking folders and access rights")
            return;
        looked = true;
        for (int i = 1; i <= 11; ++i)
            QVERIFY(!main_->control<QToolButton>(qPrintable(QStringLiteral("Toolbar1_%1").arg(i))).isEnabled());
    });
    click("CommandButton3");
    QVERIFY(looked);
    QVERIFY(main_->control<QToolButton>("Toolbar1_7").isEnabled());
}

void FrmMainJobTest::aSecondJobShowsItsProgressToo() {
    main_->control<QCheckBox>("Check1").setChecked(true);
    main_->chooseSource("1234");
    int looked = 0;
    main_->loop.addRefresh([&] {
        if (main_->job.state.texts.status != "Testing files" || main_->job.state.counters.rowsRead != 5)
            return;
        ++looked;
        QVERIFY(main_->control<QProgressBar>("ProgressBar1").isVisible());
        QVERIFY(main_->control<QLabel>("sFileTU").isVisible());
    });
    for (const char* id : {"1", "2"}) {
        main_->control<QLineEdit>("Textbox1").setText(QLatin1String(id));
        looked = 0;
        click("CommandButton3");
        QVERIFY(looked > 0);
        QVERIFY(!main_->control<QProgressBar>("ProgressBar1").isVisible());
    }
}

void FrmMainJobTest::stopDuringTheWalkEndsTheJob() {
    main_->chooseSource("1234");
    pressAt("Running primary list", "CommandButton4");
    main_->dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::Yes, BoxStyle::Question,
                             BoxButtons::YesNo);
    click("CommandButton3");
    QCOMPARE(log().back(), std::string("Process stopped by user"));
    QVERIFY(!pathExists(main_->temp / "local/1234.csv"));
    QVERIFY(pathExists(main_->temp / "app/tFile.csv"));
    QVERIFY(main_->control<QPushButton>("CommandButton3").isEnabled());
    QVERIFY(main_->control<QPushButton>("CommandButton5").isEnabled());
    QVERIFY(main_->control<QGroupBox>("Frame1").isEnabled());
}

void FrmMainJobTest::stopDuringTheTestAsksAboutTheListAndGoesOn() {
    main_->chooseSource("1234");
    pressAt("Testing files", "CommandButton4");
    main_->dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::Yes);
    main_->dialogs.expectBox("Delete partial file list?",
                             "Process stopped, do you want to delete the current file list ?", BoxAnswer::No);
    click("CommandButton3");
    QCOMPARE(main_->text("lTested"), QStringLiteral("23"));
    QVERIFY(pathExists(main_->temp / "local/1234.csv"));
    QCOMPARE(log().back(), std::string("File testing completed in (HH:MM:SS) : 00:00:00"));
    QVERIFY(!main_->job.state.stopRequested);
}

void FrmMainJobTest::stopDuringTheCopyEndsTheCopy() {
    std::filesystem::create_directories(main_->temp / "target");
    main_->control<QCheckBox>("chkCopy").setChecked(true);
    main_->dialogs.expectFolder("Select Target", main_->temp / "target");
    click("Command1");
    main_->chooseSource("1234");
    pressAt("Copying data ...", "CommandButton4");
    main_->dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::Yes);
    click("CommandButton3");
    QVERIFY(main_->job.state.counters.rowsRead < 23);
    QVERIFY(pathExists(main_->temp / "local/1234.csv"));
    QVERIFY(main_->control<QPushButton>("CommandButton3").isEnabled());
}

void FrmMainJobTest::noAtTheStopQuestionChangesNothing() {
    main_->chooseSource("1234");
    pressAt("Testing files", "CommandButton4");
    main_->dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::No);
    click("CommandButton3");
    QCOMPARE(main_->text("lTested"), QStringLiteral("23"));
}

void FrmMainJobTest::noAtTheOverwriteQuestionEndsTheJob() {
    main_->chooseSource("1234");
    const std::string list = main_->temp.write("local/1234.csv", "old").string();
    main_->dialogs.expectBox(
        "Overwrite file",
        "You are about to overwrite the existing file (" + list + "), are you sure you want to do this", BoxAnswer::No,
        BoxStyle::Question, BoxButtons::YesNo);
    click("CommandButton3");
    QCOMPARE(main_->temp.read("local/1234.csv"), std::string("old"));
    QCOMPARE(log().size(), std::size_t(1));
}

void FrmMainJobTest::aCopyWithoutTargetGoesToTheTargetPicker() {
    main_->chooseSource("1234");
    main_->control<QCheckBox>("chkCopy").setChecked(true);
    main_->dialogs.expectBox("Error",
                             "You have selected to copy the files to another location, but not selected a location.");
    click("CommandButton3");
    QCOMPARE(main_->window->focusWidget(), &main_->control<QPushButton>("Command1"));
}

void FrmMainJobTest::withoutSourceRunAsksForOne() {
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    main_->job.state.mayRun = true;
    main_->window->showState();
    main_->dialogs.expectFolder("Select source", std::nullopt);
    click("CommandButton3");
    QCOMPARE(main_->text("lfiles"), QStringLiteral("0"));
    QCOMPARE(main_->text("lblSource"), QStringLiteral("None"));
}

void FrmMainJobTest::openExistingRecountsAsTheJobCounted() {
    main_->chooseSource("1234");
    click("CommandButton3");
    const JobCounters counted = main_->job.state.counters;
    main_->window->reloadForm();
    QCOMPARE(main_->text("lGoodFIles"), QStringLiteral("0"));
    main_->dialogs.expectFiles("Open existing file list", {main_->temp / "local/1234.csv"});
    main_->control<QAction>("mnuOpen").trigger();
    const JobCounters& again = main_->job.state.counters;
    QCOMPARE(again.rowsRead, counted.rowsRead);
    for (const Grade grade : {Grade::Good, Grade::Corrupt, Grade::CommonHeader, Grade::ZeroBytes})
        QCOMPARE(again[grade], counted[grade]);
    QCOMPARE(main_->text("lGoodFIles"), QStringLiteral("20"));
    QCOMPARE(main_->text("Label8"), QStringLiteral("Ready"));
}

void FrmMainJobTest::closingDuringAJobStopsIt() {
    main_->chooseSource("1234");
    QSignalSpy ended(main_->window.get(), &frmMain::shutDown);
    bool closed = false;
    main_->loop.addRefresh([&] {
        if (closed || main_->job.state.counters.files < 5)
            return;
        closed = true;
        main_->dialogs.expectBox("Exit?", "Exit the program, are you sure?", BoxAnswer::Yes);
        main_->window->close();
        QCOMPARE(ended.count(), 0);
    });
    click("CommandButton3");
    QVERIFY(closed);
    QVERIFY(!pathExists(main_->temp / "local/1234.csv"));
    QCOMPARE(ended.count(), 1);
}

// What keeps the window alive: the loop gets a turn behind every single file. How long that is on a real disk,
// bench/window.sh measures.
void FrmMainJobTest::thereIsATurnBehindEveryFile() {
    std::filesystem::create_directories(main_->temp / "target");
    main_->temp.write("source/skipped.tmp", "x");
    main_->control<QCheckBox>("chkCopy").setChecked(true);
    main_->dialogs.expectFolder("Select Target", main_->temp / "target");
    click("Command1");
    main_->chooseSource("1234");
    std::map<std::string, int> turns;
    int before = 0;
    main_->loop.addRefresh([&] {
        const JobCounters& counts = main_->job.state.counters;
        const int done = counts.files + counts.skipped + counts.rowsRead;
        if (done < before)  // the copy counts its rows anew
            before = counts.files + counts.skipped;
        QVERIFY2(done <= before + 1, main_->job.state.texts.status.c_str());
        if (done == before + 1)
            ++turns[main_->job.state.texts.status];
        before = done;
    });
    click("CommandButton3");
    const std::map<std::string, int> expected = {
        {"Running primary list", 24}, {"Testing files", 23}, {"Copying data ...", 23}};
    QCOMPARE(turns, expected);
}

// Nothing but the window's own timer lets the share go: a window that is held would never come back.
void FrmMainJobTest::aShareThatHangsDoesNotHoldTheWindow() {
    std::filesystem::create_directories(main_->temp / "share");
    const auto share = test::HangingShare::mount(main_->temp / "share");
    if (share == nullptr)
        QSKIP("no file system can be mounted here");
    main_->chooseSource("1234");
    main_->installation.settings.sharedPath.assign(pageFromPath(main_->temp / "share"));
    main_->installation.settings.useSharedDb = 1;
    main_->installation.refreshPathVariables();
    int beats = 0;
    QTimer heart;
    connect(&heart, &QTimer::timeout, this, [&] {
        click("CommandButton3");  // a second press of Run has no effect
        if (++beats == 5) {
            heart.stop();
            share->goAway();
        }
    });
    heart.start(1);
    main_->dialogs.expectBox("No Database",
                             "Unable to find shared database. Do you want to continue the check with the local copy?",
                             BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    click("CommandButton3");
    QCOMPARE(beats, 5);
    QCOMPARE(log().at(log().size() - 2), std::string("Copying ext database from network drive"));
    QCOMPARE(log().back(), std::string("Shared database: 1 compared, 0 fetched, 1 removed, 0 failed"));
    QCOMPARE(main_->temp.read("local/Kept/2026-11-15 10.20.30/Database/jpg.dat"), "1,FFD8FF,H\r\n");
}

// What "Done" of the viewer does, while "View" can be used.
void FrmMainJobTest::aRecountDuringAJobLeavesItsCountersAndControls() {
    main_->chooseSource("1234");
    click("CommandButton3");
    bool looked = false;
    main_->loop.addRefresh([&] {
        if (looked || main_->job.state.phase != JobPhase::Testing || main_->job.state.counters.rowsRead < 5)
            return;
        looked = true;
        const JobCounters before = main_->job.state.counters;
        main_->window->upDateAllLabels();
        QCOMPARE(main_->job.state.counters, before);
        QVERIFY(!main_->control<QPushButton>("CommandButton3").isEnabled());
        QVERIFY(main_->control<QPushButton>("CommandButton4").isEnabled());
        QVERIFY(!main_->control<QGroupBox>("Frame1").isEnabled());
    });
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("5678"));
    click("CommandButton3");
    QVERIFY(looked);
    QCOMPARE(main_->text("lfiles"), QStringLiteral("23"));
    QCOMPARE(main_->text("lGoodFIles"), QStringLiteral("20"));
}

QTEST_MAIN(FrmMainJobTest)
#include "frmMain_job_test.moc"
