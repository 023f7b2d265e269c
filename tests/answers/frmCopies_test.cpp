// SPDX-License-Identifier: MIT
// The screen "Copy Files": every control by its name, and what each does.
#include <atomic>
#include <filesystem>

#include <QCheckBox>
#include <QProgressBar>
#include <QTest>
#include <QThread>
#include <QTimer>

#include "answers/copies_handover.h"
#include "evidence/evidence_reader.h"
#include "support/failing_files.h"
#include "support/screen_control.h"
#include "ui/main_window.h"
#include "widgets/grid.h"
#include "widgets/tick_button.h"

using namespace quillon;
namespace fs = std::filesystem;

class FrmCopiesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(main_); }
    void everyControlHasItsNameCaptionAndState();
    void theFilesThatWereShownAreCopied();
    void gradesAreChosenHere();
    void eachGradeHasItsEntry();
    void eachGradeMayHaveItsFolder();
    void copiesAreVerified();
    void whatWillNotGoWellIsToldAheadWithGoOnAndCancel();
    void aFileThatFailedIsNamedWithSideAndReason();
    void onlyWhatIsNotCopiedYetIsCopiedAgain();
    void aDamagedFileIsSalvaged();
    void aFileGetsTheExtensionThatItsHeadProves();
    void stopEndsACopyInWork();
    void stopWhileItLooksCopiesNothing();
    void drawnWidthsStay();
    void withoutATargetOneIsAskedFor();
    void theLastTargetIsOfferedAgain();
    void aTargetThatIsNotThereIsToldOf();
    void aJobThatIsNotThereIsToldOf();
    void everyKeyOfTheScreenIsItsOwn();
    void doneAndEscapeLeaveAndNothingElseIsShown();

private:
    template <typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        return test::controlOf<Control>(*screen_, name);
    }
    [[nodiscard]] QString text(const char* label) const { return control<QLabel>(label).text(); }
    void click(const char* button) const { control<QPushButton>(button).click(); }
    void tick(const char* box) const { control<QCheckBox>(box).setChecked(true); }
    void open(CopiesHandover handover = {"J1", {}, {}, false});
    void pickTarget();
    void runJob(const char* id) const;
    [[nodiscard]] NativePath landed(const std::string& name) const {
        return (main_->temp / "target").native() + (main_->temp / "source" / name).native();
    }
    [[nodiscard]] bool isThere(const std::string& name) const { return fs::exists(landed(name)); }

    std::unique_ptr<test::MainWindow> main_;
    QWidget* screen_ = nullptr;
};

// Two good pictures and, below photos, a corrupt one.
void FrmCopiesTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->makePictures(2);
    main_->temp.write("source/photos/bad.jpg", std::string(600, '\0'));
    fs::create_directories(main_->temp / "target");
    main_->open();
    runJob("J1");
}

void FrmCopiesTest::runJob(const char* id) const {
    main_->chooseSource(id);
    main_->control<QPushButton>("CommandButton3").click();
}

void FrmCopiesTest::open(CopiesHandover handover) {
    main_->navigator.unload(Screen::Copies);
    main_->navigator.open(Screen::Copies, std::move(handover));
    screen_ = main_->navigator.window(Screen::Copies);
    QVERIFY(screen_ != nullptr);
}

void FrmCopiesTest::pickTarget() {
    main_->dialogs.expectFolder("Select Target", main_->temp / "target");
    click("pickTarget");
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"choices",
     "Copy",
     {{"pickTarget", "Target ..."},
      {"target", "None"},
      {"copyGrades", "Grades: all"},
      {"byGrade", "A folder for each grade"},
      {"rightNames", "Right names"},
      {"verify", "Verify copies"},
      {"salvage", "Salvage unreadable parts"},
      {"failedOnly", "Only what is not copied yet"}}},
    {"",
     "",
     {{"what", "Job J1: all files"},
      {"notes", ""},
      {"bar", "", false},
      {"status", ""},
      {"copy", "Copy"},
      {"goOn", "Go on", false},
      {"cancel", "Cancel", false},
      {"stop", "Stop", true, false},
      {"done", "Done"}}},
};

}  // namespace

void FrmCopiesTest::everyControlHasItsNameCaptionAndState() {
    open();
    QCOMPARE(screen_->objectName(), QStringLiteral("frmCopies"));
    QCOMPARE(screen_->windowTitle(), QStringLiteral("Copy Files"));
    QCOMPARE(test::misfits(*screen_, kControls), QStringList());
}

void FrmCopiesTest::theFilesThatWereShownAreCopied() {
    FileWish wish;
    wish.below = "photos";
    open({"J1", wish, "below photos", false});
    QCOMPARE(text("what"), QStringLiteral("Job J1: below photos"));
    pickTarget();
    click("copy");
    QCOMPARE(text("status"), QStringLiteral("1 files copied, 600 bytes"));
    QVERIFY(isThere("photos/bad.jpg") && !isThere("p0.jpg"));
    QVERIFY(fs::exists(main_->temp / "target/J1.sha256"));
    QVERIFY(fs::exists(main_->temp / "local/J1.sha256"));
    QCOMPARE(control<Grid>("notes").rowCount(), 0);
    QVERIFY(!control<QProgressBar>("bar").isVisible());
}

void FrmCopiesTest::gradesAreChosenHere() {
    open();
    pickTarget();
    control<QAction>("copyGradesGood").trigger();
    QCOMPARE(test::captionOf(control<TickButton>("copyGrades")), QStringLiteral("Grades: 2 of 10"));
    click("copy");
    QVERIFY(isThere("p0.jpg") && isThere("p1.jpg") && !isThere("photos/bad.jpg"));
    control<QAction>("copyGradesAll").trigger();
    control<QAction>("copyGrades_1").trigger();
    QCOMPARE(test::captionOf(control<TickButton>("copyGrades")), QStringLiteral("Grades: 9 of 10"));
    click("copy");
    QCOMPARE(text("status"), QStringLiteral("1 files copied, 600 bytes"));
}

void FrmCopiesTest::eachGradeHasItsEntry() {
    open();
    const std::pair<const char*, const char*> entries[] = {
        {"copyGrades_1", "Good"},         {"copyGrades_2", "Common header"},     {"copyGrades_3", "Corrupt"},
        {"copyGrades_4", "Unknown"},      {"copyGrades_5", "No extension"},      {"copyGrades_6", "Encrypted"},
        {"copyGrades_7", "Access error"}, {"copyGrades_8", "Invalid file name"}, {"copyGrades_9", "Zero bytes"},
        {"copyGrades_10", "Small file"}};
    for (const auto& [name, caption] : entries) QCOMPARE(control<QAction>(name).text(), QLatin1String(caption));
}

void FrmCopiesTest::eachGradeMayHaveItsFolder() {
    open();
    pickTarget();
    tick("byGrade");
    click("copy");
    const auto below = [this](const char* grade, const char* name) {
        return (main_->temp / "target" / grade).native() + (main_->temp / "source" / name).native();
    };
    QVERIFY(fs::exists(below("good", "p0.jpg")) && fs::exists(below("corrupt", "photos/bad.jpg")));
}

void FrmCopiesTest::copiesAreVerified() {
    open();
    pickTarget();
    tick("verify");
    click("copy");
    QCOMPARE(text("status"), QStringLiteral("3 files copied, 1,806 bytes"));
    EvidenceRow row;
    auto evidence = EvidenceReader::open(main_->temp / "local/J1.sqlite");
    QVERIFY(evidence && evidence->findPath("photos/bad.jpg", row).value_or(false));
    QCOMPARE(row.verified.value_or(0), 1);
}

void FrmCopiesTest::whatWillNotGoWellIsToldAheadWithGoOnAndCancel() {
    main_->temp.write("source/what?.jpg", "\xFF\xD8\xFF" + std::string(600, 'x'));
    runJob("J2");
    open({"J2", {}, {}, false});
    pickTarget();
    click("copy");
    auto& notes = control<Grid>("notes");
    QCOMPARE(notes.rowCount(), 1);
    QVERIFY(notes.cell(0, 0).starts_with("1 names are none that Windows can open: "));
    QVERIFY2(text("status").startsWith(QStringLiteral("4 files, 2,409 bytes; ")), qPrintable(text("status")));
    QVERIFY(!control<QPushButton>("copy").isVisible() && control<QPushButton>("goOn").isVisible());
    QVERIFY(!control<QCheckBox>("verify").isEnabled());
    click("cancel");
    QCOMPARE(text("status"), QStringLiteral("Nothing was copied"));
    QVERIFY(!isThere("p0.jpg"));
    click("copy");
    click("goOn");
    QCOMPARE(text("status"), QStringLiteral("4 files copied, 2,409 bytes"));
    QVERIFY(isThere("what?.jpg"));
}

void FrmCopiesTest::aFileThatFailedIsNamedWithSideAndReason() {
    fs::create_directories(landed("p0.jpg"));
    open();
    pickTarget();
    click("copy");
    QCOMPARE(text("status"), QStringLiteral("2 files copied, 1,203 bytes; 1 failed"));
    auto& notes = control<Grid>("notes");
    QCOMPARE(notes.rowCount(), 1);
    QCOMPARE(notes.cell(0, 0), (main_->temp / "source/p0.jpg").native());
    QCOMPARE(notes.cell(0, 1), "target: " + landed("p0.jpg").native() + ": Is a directory");
}

void FrmCopiesTest::onlyWhatIsNotCopiedYetIsCopiedAgain() {
    fs::create_directories(landed("p0.jpg"));
    open();
    pickTarget();
    click("copy");
    fs::remove(landed("p0.jpg"));
    open({"J1", {}, {}, true});
    QVERIFY(control<QCheckBox>("failedOnly").isChecked());
    click("copy");
    QCOMPARE(text("status"), QStringLiteral("1 files copied, 603 bytes"));
    QVERIFY(isThere("p0.jpg"));
}

void FrmCopiesTest::aDamagedFileIsSalvaged() {
    open();
    pickTarget();
    tick("salvage");
    test::FailingFiles disk;
    int reads = 0;
    disk.ahead("read", [&] {
        if (fs::exists(landed("photos/bad.jpg").parent_path()) && ++reads <= 2)
            disk.failAt(1, {EIO}, "read");
    });
    click("copy");
    QVERIFY2(text("status").contains(QStringLiteral("of them with gaps")), qPrintable(text("status")));
    QVERIFY(fs::exists(main_->temp / "target/J1-damaged.sha256"));
}

void FrmCopiesTest::aFileGetsTheExtensionThatItsHeadProves() {
    main_->temp.write("local/Database/qrs.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    main_->temp.write("source/wrong.jpg", "QUILLON-QRS-HEADER" + std::string(600, 'q'));
    runJob("J2");
    open({"J2", {}, {}, false});
    pickTarget();
    tick("rightNames");
    click("copy");
    QVERIFY(isThere("wrong.jpg.qrs") && !isThere("wrong.jpg"));
}

void FrmCopiesTest::stopEndsACopyInWork() {
    open();
    pickTarget();
    QTimer waiting;
    bool stopped = false;
    connect(&waiting, &QTimer::timeout, this, [&] {
        if (control<QProgressBar>("bar").isVisible()) {
            click("stop");
            stopped = true;
        }
    });
    waiting.start(0);
    // The disk waits until Stop was pressed.
    test::FailingFiles disk;
    disk.ahead("write", [&] {
        for (int i = 0; i < 1000 && !stopped; ++i) QThread::msleep(1);
    });
    click("copy");
    QVERIFY(stopped);
    QVERIFY2(text("status").endsWith(QStringLiteral("; stopped")), qPrintable(text("status")));
    QVERIFY(control<QPushButton>("copy").isEnabled());
}

void FrmCopiesTest::stopWhileItLooksCopiesNothing() {
    main_->temp.write("source/none", std::string(600, 'x'));
    runJob("J2");
    open({"J2", {}, {}, false});
    pickTarget();
    tick("rightNames");
    QTimer waiting;
    std::atomic<bool> stopped = false;
    connect(&waiting, &QTimer::timeout, this, [&] {
        QVERIFY(control<QPushButton>("stop").isEnabled());
        click("stop");
        waiting.stop();
        stopped = true;
    });
    waiting.start(0);
    main_->temp.write("local/Settings/BadSectors.dat", "0,BAD SECTOR ,T,R,BAD SECTOR\r\n");
    int onWindow = 0;
    // The look reads the term files for the head of the file without an extension, and waits until Stop was pressed.
    test::FailingFiles disk;
    disk.ahead("read", [&] {
        const bool isBeside = QThread::currentThread() != thread();
        onWindow += isBeside ? 0 : 1;
        for (int i = 0; isBeside && i < 1000 && !stopped; ++i) QThread::msleep(1);
    });
    click("copy");
    QVERIFY(stopped);
    QCOMPARE(onWindow, 0);
    QCOMPARE(text("status"), QStringLiteral("Nothing was copied"));
    QVERIFY(!isThere("p0.jpg"));
    click("copy");
    QVERIFY(isThere("p0.jpg"));
}

void FrmCopiesTest::drawnWidthsStay() {
    fs::create_directories(landed("p0.jpg"));
    open();
    pickTarget();
    click("copy");
    auto& notes = control<Grid>("notes");
    notes.setColumnWidth(0, 123);
    click("copy");
    QVERIFY(notes.rowCount() > 0);
    QCOMPARE(notes.columnWidth(0), 123);
}

void FrmCopiesTest::withoutATargetOneIsAskedFor() {
    open();
    main_->dialogs.expectFolder("Select Target", std::nullopt);
    click("copy");
    QCOMPARE(text("status"), QString());
    main_->dialogs.expectFolder("Select Target", main_->temp / "target");
    click("copy");
    QVERIFY(isThere("p0.jpg"));
}

void FrmCopiesTest::theLastTargetIsOfferedAgain() {
    open();
    pickTarget();
    open();
    QCOMPARE(text("target"), QString::fromStdString((main_->temp / "target").native()));
}

void FrmCopiesTest::aTargetThatIsNotThereIsToldOf() {
    open();
    pickTarget();
    fs::remove(main_->temp / "target");
    open();
    click("copy");
    QCOMPARE(text("status"),
             QString::fromStdString("The target " + (main_->temp / "target").native() + " is not there"));
    QVERIFY(!fs::exists(main_->temp / "target"));
}

void FrmCopiesTest::aJobThatIsNotThereIsToldOf() {
    open({"J3", {}, {}, false});
    pickTarget();
    click("copy");
    QVERIFY2(text("status").contains(QStringLiteral("J3")), qPrintable(text("status")));
    QCOMPARE(control<QLabel>("status").property("tone").toString(), QStringLiteral("trouble"));
}

void FrmCopiesTest::everyKeyOfTheScreenIsItsOwn() {
    open();
    QStringList keys;
    for (const QAbstractButton* button : screen_->findChildren<QAbstractButton*>())
        if (const QString key = QKeySequence::mnemonic(button->text()).toString(); !key.isEmpty())
            keys << key;
    QVERIFY(keys.size() >= 11);
    QCOMPARE(keys.removeDuplicates(), 0);
}

void FrmCopiesTest::doneAndEscapeLeaveAndNothingElseIsShown() {
    main_->window->hide();
    open();
    click("done");
    QVERIFY(main_->navigator.window(Screen::Copies) == nullptr);
    open();
    screen_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(screen_));
    QTest::keyClick(screen_, Qt::Key_Escape);
    QVERIFY(main_->navigator.window(Screen::Copies) == nullptr);
    QVERIFY(!main_->window->isVisible());
}

QTEST_MAIN(FrmCopiesTest)
#include "frmCopies_test.moc"
