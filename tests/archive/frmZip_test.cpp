// SPDX-License-Identifier: MIT
#include "archive/frmZip.h"

#include <functional>

#include <QTest>
#include <QTimer>

#include "support/screen_control.h"
#include "ui/main_window.h"

using namespace quillon;
using test::controlOf;

class FrmZipTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameCaptionAndState();
    void theListsOfTheJobStandInTheGrid();
    void ignoringTheSeparatorLoadsMoreLists();
    void reloadBringsARemovedRowBack();
    void aDoubleClickAsksBeforeItRemoves();
    void theDeleteKeyDoesTheSame();
    void anAddedFileStandsOnceInTheGrid();
    void aPasswordTicksRetain();
    void maskingShowsStars();
    void zippingNothingWarns();
    void zippingWritesTheArchiveAndEmptiesTheGrid();
    void anEmptyJobIdReadsFileListFromTheRunOn();
    void whatIsChangedWhileTheArchiveIsWrittenCounts();
    void cancellingBringsEverythingBack();
    void theArchiveIsNamedBeforeAndAfter();
    void closingWithinARunWaitsForItsEnd();
    void theScreenStaysAliveWhileATestWaits();
    void theDestinationCanBeChangedForGood();
    void closingBringsTheMainWindowBack();
    void escapeCloses();

private:
    [[nodiscard]] QWidget& screen() const { return *main_->navigator.window(Screen::Zip); }
    void click(const char* button) const { controlOf<QPushButton>(screen(), button).click(); }
    [[nodiscard]] Grid& grid() const { return controlOf<Grid>(screen(), "iGrid1"); }
    void expectComplete() const {
        main_->dialogs.expectBox("Process complete", "Zip Processing complete", BoxAnswer::Ok, BoxStyle::Warning);
    }
    // Once, in the first turn of the event loop in which the archive is being written.
    void whileWriting(std::function<void()> act) {
        main_->loop.addRefresh([this, act = std::move(act), done = false]() mutable {
            if (!done && controlOf<QProgressBar>(screen(), "ProgressBar1").isVisible()) {
                done = true;
                act();
            }
        });
    }
    [[nodiscard]] std::string list(const char* name) const { return (main_->temp / "local" / name).native(); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmZipTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->temp.write("local/1234-A.csv", "a");
    main_->temp.write("local/1234-B.csv", "b");
    main_->temp.write("local/12345.csv", "c");
    main_->open();
    main_->addScreens();
    main_->navigator.open(Screen::Zip, ZipHandover{"1234-A", "-"});
}

void FrmZipTest::cleanup() {
    test::closeScreens(main_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame1",
     "Selected Files",
     {
         {"iGrid1", ""},
         {"Label2", "Doublie-click file to remove file"},
         {"Command1", "Add File"},
         {"Command5", "Reload"},
         {"Check3", "Ignore Separator"},
     }},
    {"frameArchive",
     "Archive",
     {
         {"labelJob", "Job ID"},
         {"Text1", "1234-A"},
         {"labelSeparator", "Separator"},
         {"Text2", "-"},
         {"Label1", "Add Password"},
         {"Text3", ""},
         {"Check1", "Mask Password"},
         {"Check2", "Retain raw file lists"},
         {"Command2", "Change destination"},
     }},
    {"frameNotify",
     "Notification",
     {
         {"Label3", "Net send to"},
         {"Combo1", ""},
         {"Command7", "Query Network"},
         {"Command8", "Test"},
         {"Check4", "Show Company"},
         {"Check5", "Show Computer"},
     }},
    {"",
     "",
     {
         {"ProgressBar1", "", false},
         {"buttonCancel", "Cancel", false},
         {"Command4", "Zip"},
         {"Command6", "Zip and Email", false},
         {"Command3", "Close"},
     }},
};

}  // namespace

void FrmZipTest::everyControlHasItsNameCaptionAndState() {
    QCOMPARE(screen().windowTitle(), QStringLiteral("Zip File Lists"));
    QCOMPARE(test::misfits(screen(), kControls), QStringList());
    QCOMPARE(controlOf<QCheckBox>(screen(), "Check2").toolTip(),
             QStringLiteral(
                 "It is not necessary to retain files lists after zipping as they will be archived to the zip file."));
    QCOMPARE(grid().columnTitle(0), "Files to ZIP");
    QVERIFY(!controlOf<QCheckBox>(screen(), "Check4").isChecked());
    // "Query", and the empty stored recipient, which is chosen.
    QCOMPARE(controlOf<QComboBox>(screen(), "Combo1").itemText(0), QStringLiteral("Query"));
    QCOMPARE(controlOf<QComboBox>(screen(), "Combo1").currentIndex(), 1);
}

void FrmZipTest::theListsOfTheJobStandInTheGrid() {
    QCOMPARE(grid().rowCount(), 2);
    QCOMPARE(grid().cell(0, 0), list("1234-A.csv"));
    QCOMPARE(grid().cell(1, 0), list("1234-B.csv"));
}

void FrmZipTest::ignoringTheSeparatorLoadsMoreLists() {
    controlOf<QCheckBox>(screen(), "Check3").setChecked(true);
    QCOMPARE(grid().rowCount(), 3);
}

void FrmZipTest::reloadBringsARemovedRowBack() {
    main_->dialogs.expectBox("Remove file", "Remove file " + list("1234-A.csv") + "? ", BoxAnswer::Yes,
                             BoxStyle::Question, BoxButtons::YesNo);
    emit grid().rowDoubleClicked(0);
    QCOMPARE(grid().rowCount(), 1);
    controlOf<QCheckBox>(screen(), "Check4").setChecked(true);
    controlOf<QCheckBox>(screen(), "Check5").setChecked(true);
    click("Command5");
    QCOMPARE(grid().rowCount(), 2);
    QVERIFY2(!controlOf<QCheckBox>(screen(), "Check4").isChecked(), "the steps of the load run again");
    QVERIFY(controlOf<QCheckBox>(screen(), "Check5").isChecked());
}

void FrmZipTest::aDoubleClickAsksBeforeItRemoves() {
    main_->dialogs.expectBox("Remove file", "Remove file " + list("1234-B.csv") + "? ", BoxAnswer::No);
    emit grid().rowDoubleClicked(1);
    QCOMPARE(grid().rowCount(), 2);
}

void FrmZipTest::theDeleteKeyDoesTheSame() {
    main_->dialogs.expectBox("Remove file", "Remove file " + list("1234-B.csv") + "? ", BoxAnswer::Yes);
    grid().setCurrentRow(1);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    QCOMPARE(grid().rowCount(), 1);
    QCOMPARE(grid().cell(0, 0), list("1234-A.csv"));
}

void FrmZipTest::anAddedFileStandsOnceInTheGrid() {
    const NativePath other = main_->temp.write("elsewhere/notes.txt", "n");
    main_->dialogs.expectFiles("Add files to zip", {other});
    click("Command1");
    QCOMPARE(grid().rowCount(), 3);
    main_->dialogs.expectFiles("Add files to zip", {main_->temp / "elsewhere/NOTES.txt"});
    click("Command1");
    QCOMPARE(grid().rowCount(), 3);
    QCOMPARE(grid().currentRow(), 2);
}

void FrmZipTest::aPasswordTicksRetain() {
    controlOf<QLineEdit>(screen(), "Text3").setText(QStringLiteral("s"));
    QVERIFY(controlOf<QCheckBox>(screen(), "Check2").isChecked());
}

void FrmZipTest::maskingShowsStars() {
    auto& password = controlOf<QLineEdit>(screen(), "Text3");
    QCOMPARE(password.echoMode(), QLineEdit::Normal);
    controlOf<QCheckBox>(screen(), "Check1").setChecked(true);
    QCOMPARE(password.echoMode(), QLineEdit::Password);
    controlOf<QCheckBox>(screen(), "Check1").setChecked(false);
    QCOMPARE(password.echoMode(), QLineEdit::Normal);
}

void FrmZipTest::zippingNothingWarns() {
    for (int i = 0; i < 2; ++i) {
        main_->dialogs.expectBox("Remove file", "Remove file " + grid().cell(0, 0) + "? ", BoxAnswer::Yes);
        emit grid().rowDoubleClicked(0);
    }
    main_->dialogs.expectBox("Error", "Nothing to zip, please select some files.", BoxAnswer::Ok, BoxStyle::Warning);
    click("Command4");
}

void FrmZipTest::zippingWritesTheArchiveAndEmptiesTheGrid() {
    controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
    expectComplete();
    click("Command4");
    QVERIFY(std::filesystem::exists(main_->temp / "archives/1234.zip"));
    QVERIFY(!std::filesystem::exists(main_->temp / "local/1234-A.csv"));
    QCOMPARE(grid().rowCount(), 0);
    QVERIFY(controlOf<QProgressBar>(screen(), "ProgressBar1").isHidden());
}

void FrmZipTest::anEmptyJobIdReadsFileListFromTheRunOn() {
    controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
    controlOf<QLineEdit>(screen(), "Text1").clear();
    expectComplete();
    click("Command4");
    QCOMPARE(controlOf<QLineEdit>(screen(), "Text1").text(), QStringLiteral("FileList"));
    QVERIFY(std::filesystem::exists(main_->temp / "archives/FileList.zip"));
}

// Lists are removed and a notification is sent behind the writing: by what the screen shows then.
void FrmZipTest::whatIsChangedWhileTheArchiveIsWrittenCounts() {
    whileWriting([this] {
        controlOf<QCheckBox>(screen(), "Check2").setChecked(true);
        controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
        grid().setCurrentRow(1);
    });
    expectComplete();
    click("Command4");
    QVERIFY(controlOf<QCheckBox>(screen(), "Check2").isChecked());
    QVERIFY(std::filesystem::exists(main_->temp / "local/1234-A.csv"));
    QVERIFY(std::filesystem::exists(main_->temp / "archives/1234.zip"));
    QCOMPARE(controlOf<QComboBox>(screen(), "Combo1").currentIndex(), 0);
}

void FrmZipTest::cancellingBringsEverythingBack() {
    controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
    main_->temp.write("archives/1234.zip", "the old archive");
    main_->temp.write("local/1234-A.csv", std::string(3'000'000, 'a'));
    whileWriting([this] { click("buttonCancel"); });
    const std::string archive = (main_->temp / "archives/1234.zip").native();
    main_->dialogs.expectBox("Overwrite file",
                             "The file " + archive +
                                 " already exists! Overwriting this zip-file may result with no history of the job. "
                                 "Are you sure you want to overwrite the file " +
                                 archive + " ?",
                             BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    click("Command4");
    QCOMPARE(main_->temp.read("archives/1234.zip"), std::string("the old archive"));
    QVERIFY(std::filesystem::exists(list("1234-A.csv")));
    QVERIFY(std::filesystem::exists(list("1234-B.csv")));
    QCOMPARE(grid().rowCount(), 2);
    QVERIFY(!controlOf<QPushButton>(screen(), "buttonCancel").isVisible());
    QCOMPARE(controlOf<QLabel>(screen(), "labelNotice").text(),
             QStringLiteral("Cancelled: archive and lists are as they were"));
}

void FrmZipTest::theArchiveIsNamedBeforeAndAfter() {
    controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
    auto& notice = controlOf<QLabel>(screen(), "labelNotice");
    const auto folder = (main_->temp / "archives/").native();
    QCOMPARE(notice.text().toStdString(), "Archive: " + folder + "1234.zip");
    controlOf<QLineEdit>(screen(), "Text1").setText(QStringLiteral("77-A"));
    QCOMPARE(notice.text().toStdString(), "Archive: " + folder + "77.zip");
    expectComplete();
    click("Command4");
    QCOMPARE(notice.text().toStdString(), "Archive written: " + folder + "77.zip");
}

void FrmZipTest::closingWithinARunWaitsForItsEnd() {
    controlOf<QComboBox>(screen(), "Combo1").setCurrentIndex(0);
    whileWriting([this] {
        click("Command3");
        QVERIFY(screen().isVisible());
    });
    expectComplete();
    click("Command4");
    QVERIFY(std::filesystem::exists(main_->temp / "archives/1234.zip"));
    QVERIFY(main_->navigator.window(Screen::Zip) == nullptr);
}

void FrmZipTest::theScreenStaysAliveWhileATestWaits() {
    UdpSocket source;
    UdpSocket listen;
    QVERIFY(source.bind(0) && listen.bind(0));
    main_->installation.settings.alertSourcePort = source.boundPort();
    main_->installation.settings.alertListenPort = listen.boundPort();
    source.close();
    listen.close();
    int beats = 0;
    QTimer heart;
    connect(&heart, &QTimer::timeout, this, [&] {
        ++beats;
        controlOf<QCheckBox>(screen(), "Check5").setChecked(true);
    });
    heart.start(0);
    main_->dialogs.expectBox("Communication error",
                             "Unable to connect to computer \r\nThe problem is one of the following\r\n\r\n1 The "
                             "computer is turned off.\r\n2 The ZOV Messaging software is not installed on the remote "
                             "computer.\r\n3 The Remote computer is listening on the wrong port.\r\n4 The Remote "
                             "computer's firewall is blocking communication.\r\n5 This computer's firewall is not "
                             "allowing messages to be sent.\r\n",
                             BoxAnswer::Ok, BoxStyle::Warning);
    click("Command8");
    QVERIFY2(beats >= 5, qPrintable(QString::number(beats)));
    QVERIFY(controlOf<QCheckBox>(screen(), "Check5").isChecked());
}

void FrmZipTest::theDestinationCanBeChangedForGood() {
    std::filesystem::create_directories(main_->temp / "elsewhere");
    main_->dialogs.expectFolder("Change zip path", main_->temp / "elsewhere");
    main_->dialogs.expectBox("Change archive location", "Do you want to make these changes permanent ?", BoxAnswer::Yes,
                             BoxStyle::Question, BoxButtons::YesNo);
    click("Command2");
    QCOMPARE(pathFromPage(main_->installation.settings.zipPath.trimmed()), main_->temp / "elsewhere");
}

void FrmZipTest::closingBringsTheMainWindowBack() {
    main_->window->hide();
    click("Command3");
    QVERIFY(main_->window->isVisible());
    QVERIFY(main_->navigator.window(Screen::Zip) == nullptr);
}

void FrmZipTest::escapeCloses() {
    QVERIFY(QTest::qWaitForWindowActive(&screen()));
    QTest::keyClick(&screen(), Qt::Key_Escape);
    QVERIFY(main_->navigator.window(Screen::Zip) == nullptr);
}

QTEST_MAIN(FrmZipTest)
#include "frmZip_test.moc"
