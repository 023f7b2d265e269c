// SPDX-License-Identifier: MIT
#include <QApplication>

#include "editors/editor_screen.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmPreviewBadSectorTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void theSectorIsTheMarkerOverAndOver();
    void linesHoldSixteenBytesBehindAHexadecimalOffset();
    void keysChangeNothing();
    void aSecondPreviewShowsTheNewMarker();
    void doneGoesBackToTheMarker();
    void escapeGoesBackToo();

private:
    void showMarker(const char* marker) {
        screen_->type("tBadsector", marker);
        screen_->click("Command3");
    }
    [[nodiscard]] QWidget& preview() const { return screen_->windowOf(Screen::PreviewBadSector); }
    [[nodiscard]] HexView& hex() const { return test::controlOf<HexView>(preview(), "XHexEditX1"); }
    void verifyBackAtTheMarker() const;

    std::unique_ptr<test::EditorScreen> screen_;
};

void FrmPreviewBadSectorTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::BadSectors);
    screen_->open();
    showMarker("BAD");
}

void FrmPreviewBadSectorTest::cleanup() {
    test::closeScreens(screen_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame1", "Sector Preview", {{"XHexEditX1", ""}}},
    {"", "", {{"Command1", "Done"}}},
};

}  // namespace

void FrmPreviewBadSectorTest::everyControlHasItsNameAndCaption() {
    QCOMPARE(preview().objectName(), QStringLiteral("frmPreviewBadSector"));
    QCOMPARE(preview().windowTitle(), QStringLiteral("Preview Bad Sector Marker"));
    QCOMPARE(test::misfits(preview(), kControls), QStringList());
}

void FrmPreviewBadSectorTest::theSectorIsTheMarkerOverAndOver() {
    QCOMPARE(hex().bytes().size(), std::size_t{514});
    QCOMPARE(hex().bytes().substr(0, 6), std::string("BADBAD"));
    QCOMPARE(hex().bytes().substr(510), std::string("BA\r\n"));
    QCOMPARE(screen_->bytesOf("app/bSector.test"), hex().bytes());
}

// The second line begins at byte 10 in hexadecimal, which is the seventeenth.
void FrmPreviewBadSectorTest::linesHoldSixteenBytesBehindAHexadecimalOffset() {
    const QRect first = hex().byteRect(0, HexPane::Hex);
    QCOMPARE(hex().byteRect(15, HexPane::Hex).top(), first.top());
    QCOMPARE(hex().byteRect(16, HexPane::Hex).left(), first.left());
    QVERIFY(hex().byteRect(16, HexPane::Hex).top() > first.top());
}

void FrmPreviewBadSectorTest::keysChangeNothing() {
    const std::string before = hex().bytes();
    QTest::keyClicks(hex().viewport(), QStringLiteral("00ff"));
    QTest::keyClick(&hex(), Qt::Key_Delete);
    QCOMPARE(hex().bytes(), before);
}

void FrmPreviewBadSectorTest::aSecondPreviewShowsTheNewMarker() {
    showMarker("y");
    QCOMPARE(hex().bytes(), std::string(512, 'y') + "\r\n");
}

void FrmPreviewBadSectorTest::verifyBackAtTheMarker() const {
    QVERIFY(screen_->navigator.window(Screen::PreviewBadSector) == nullptr);
    QVERIFY(screen_->window().isVisible());
    QCOMPARE(screen_->text("tBadsector"), QStringLiteral("BAD"));
    QCOMPARE(screen_->mainShown, 0);
}

void FrmPreviewBadSectorTest::doneGoesBackToTheMarker() {
    test::controlOf<QPushButton>(preview(), "Command1").click();
    verifyBackAtTheMarker();
}

void FrmPreviewBadSectorTest::escapeGoesBackToo() {
    test::EditorScreen::pressIn(preview(), Qt::Key_Escape);
    verifyBackAtTheMarker();
}

QTEST_MAIN(FrmPreviewBadSectorTest)
#include "frmPreviewBadSector_test.moc"
