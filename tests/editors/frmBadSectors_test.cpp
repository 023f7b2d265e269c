// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>

#include "editors/editor_screen.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmBadSectorsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void anEmptyMarkerShowsNothing();
    void positionAndCheckBoxPlayNoPart();
    void addDoesNothing();
    void doneShowsTheMainWindow();
    void theCloseBoxShowsTheMainWindowToo();
    void escapeShowsTheMainWindowToo();

private:
    [[nodiscard]] std::string preview() const {
        return screen_->windowOf(Screen::PreviewBadSector).findChild<HexView*>(QStringLiteral("XHexEditX1"))->bytes();
    }
    void showMarker(const char* marker) {
        screen_->type("tBadsector", marker);
        screen_->click("Command3");
    }

    std::unique_ptr<test::EditorScreen> screen_;
};

void FrmBadSectorsTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::BadSectors);
    screen_->open();
}

void FrmBadSectorsTest::cleanup() {
    test::closeScreens(screen_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame1",
     "Bad sectors",
     {
         {"Label1", "Marker Text"},
         {"tBadsector", ""},
         {"Label2", "Position in sector"},
         {"UniTextBoxEx1", "1"},
         {"Check1", "Text repeats throughout sector"},
         {"iGrid1", ""},
         {"Command1", "Add"},
         {"Command3", "Preview"},
     }},
    {"",
     "",
     {
         {"Command2", "Done"},
     }},
};

}  // namespace

void FrmBadSectorsTest::everyControlHasItsNameAndCaption() {
    QCOMPARE(screen_->window().objectName(), QStringLiteral("frmBadSectors"));
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Bad Sectors"));
    QCOMPARE(test::misfits(screen_->window(), kControls), QStringList());
}

void FrmBadSectorsTest::anEmptyMarkerShowsNothing() {
    screen_->click("Command3");
    QVERIFY(screen_->navigator.window(Screen::PreviewBadSector) == nullptr);
    QVERIFY(!screen_->has("app/bSector.test"));
}

void FrmBadSectorsTest::positionAndCheckBoxPlayNoPart() {
    screen_->type("UniTextBoxEx1", "100");
    screen_->control<QCheckBox>("Check1").setChecked(false);
    showMarker("x");
    QCOMPARE(preview(), std::string(512, 'x') + "\r\n");
}

void FrmBadSectorsTest::addDoesNothing() {
    screen_->type("tBadsector", "x");
    screen_->click("Command1");
    QVERIFY(screen_->rows().isEmpty());
    QCOMPARE(screen_->text("tBadsector"), QStringLiteral("x"));
}

void FrmBadSectorsTest::doneShowsTheMainWindow() {
    showMarker("x");
    screen_->click("Command2");
    QCOMPARE(screen_->mainShown, 1);
    QVERIFY(screen_->navigator.window(Screen::BadSectors) == nullptr);
    QVERIFY(screen_->navigator.window(Screen::PreviewBadSector) == nullptr);
}

void FrmBadSectorsTest::theCloseBoxShowsTheMainWindowToo() {
    screen_->window().close();
    QCOMPARE(screen_->mainShown, 1);
    QVERIFY(screen_->navigator.window(Screen::BadSectors) == nullptr);
}

void FrmBadSectorsTest::escapeShowsTheMainWindowToo() {
    test::EditorScreen::pressIn(screen_->window(), Qt::Key_Escape);
    QCOMPARE(screen_->mainShown, 1);
    QVERIFY(screen_->navigator.window(Screen::BadSectors) == nullptr);
}

QTEST_MAIN(FrmBadSectorsTest)
#include "frmBadSectors_test.moc"
