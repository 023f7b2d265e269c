// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QContextMenuEvent>
#include <QGroupBox>

#include "editors/editor_screen.h"

using namespace quillon;

class FrmErrorsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void theBoxesShowTheFile();
    void theBoxesAreTheLinesOfTheFile();
    void okAddsTheColonSavesAndLoadsTheMessages();
    void theCloseBoxSavesNothing();
    void escapeSavesNothing();
    void aSaveThatFailsLeavesTheScreenOpen();

private:
    std::unique_ptr<test::EditorScreen> screen_;
};

constexpr const char* kList = "local/Settings/Errors.dat";

void FrmErrorsTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::Errors);
}

void FrmErrorsTest::cleanup() {
    test::closeScreens(screen_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame1",
     "Default Error Messages",
     {
         {"Label1_0", "Header OK"},
         {"Label1_1", "Header corrupt"},
         {"Label1_2", "No file extension"},
         {"Label1_3", "Unknown file type"},
         {"Label1_4", "File encrypted"},
         {"Label1_5", "Access error"},
         {"Label1_6", "File too small to test"},
         {"Label1_7", "File zero bytes"},
         {"Label1_8", "Bad filename"},
         {"Label1_9", "Common Header"},
         {"tError_0", "Header OK"},
         {"tError_1", "Header Corrupt"},
         {"tError_2", "No Extension"},
         {"tError_3", "Unknown or ambiguous file type"},
         {"tError_4", "File encrypted"},
         {"tError_5", "Access error"},
         {"tError_6", "File too small to test (<512 bytes)"},
         {"tError_7", "File is zero length"},
         {"tError_8", "Bad filename"},
         {"tError_9", "Appears to be of file type : "},
     }},
    {"",
     "",
     {
         {"pageRemark_", "", false},
         {"saveRemark_", "", false},
         {"Command1", "OK"},
     }},
};

}  // namespace

void FrmErrorsTest::everyControlHasItsNameAndCaption() {
    screen_->open();
    QCOMPARE(screen_->window().objectName(), QStringLiteral("frmErrors"));
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Default Report Messages"));
    QCOMPARE(screen_->control<QGroupBox>("Frame1").title(), QStringLiteral("Default Error Messages"));
    QCOMPARE(test::misfits(screen_->window(), kControls), QStringList());
}

void FrmErrorsTest::theBoxesShowTheFile() {
    screen_->folder.write(kList, "one\r\ntwo, and a half\r\nthree\r\n");
    screen_->open();
    QCOMPARE(screen_->text("tError_0"), QStringLiteral("one"));
    QCOMPARE(screen_->text("tError_1"), QStringLiteral("two"));
    QCOMPARE(screen_->text("tError_2"), QStringLiteral(" and a half"));
    QCOMPARE(screen_->text("tError_3"), QStringLiteral("three"));
    QCOMPARE(screen_->text("tError_4"), QStringLiteral("File encrypted"));
}

void FrmErrorsTest::theBoxesAreTheLinesOfTheFile() {
    screen_->open();
    std::string lines;
    for (int i = 0; i < 10; ++i) {
        screen_->type(qPrintable(QStringLiteral("tError_%1").arg(i)), qPrintable(QStringLiteral("message %1:").arg(i)));
        lines += "message " + std::to_string(i) + ":\r\n";
    }
    screen_->click("Command1");
    QCOMPARE(screen_->bytesOf(kList), lines);
}

void FrmErrorsTest::okAddsTheColonSavesAndLoadsTheMessages() {
    screen_->open();
    screen_->type("tError_0", "Fine");
    screen_->type("tError_9", "Type");
    screen_->click("Command1");
    QVERIFY(!screen_->isOpen());
    QCOMPARE(screen_->mainShown, 1);
    QCOMPARE(
        screen_->bytesOf(kList),
        std::string("Fine\r\nHeader Corrupt\r\nNo Extension\r\nUnknown or ambiguous file type\r\nFile "
                    "encrypted\r\nAccess error\r\nFile too small to test (<512 bytes)\r\nFile is zero length\r\nBad "
                    "filename\r\nType:\r\n"));
    QCOMPARE(toQt(screen_->job.messages[Grade::Good]), QStringLiteral("Fine"));
    QCOMPARE(toQt(screen_->job.messages[Grade::CommonHeader]), QStringLiteral("Type:"));
}

void FrmErrorsTest::theCloseBoxSavesNothing() {
    screen_->open();
    screen_->type("tError_0", "Fine");
    screen_->window().close();
    QCOMPARE(screen_->mainShown, 1);
    QVERIFY(!screen_->has(kList));
}

void FrmErrorsTest::escapeSavesNothing() {
    screen_->open();
    screen_->type("tError_0", "Fine");
    test::EditorScreen::pressIn(screen_->window(), Qt::Key_Escape);
    QCOMPARE(screen_->mainShown, 1);
    QVERIFY(!screen_->has(kList));
}

void FrmErrorsTest::aSaveThatFailsLeavesTheScreenOpen() {
    std::filesystem::remove_all(screen_->folder / "local/Settings");
    screen_->open();
    screen_->type("tError_0", "Fine");
    screen_->click("Command1");
    QVERIFY(screen_->window().isVisible());
    QCOMPARE(screen_->text("tError_0"), QStringLiteral("Fine"));
    QCOMPARE(screen_->mainShown, 0);
}

QTEST_MAIN(FrmErrorsTest)
#include "frmErrors_test.moc"
