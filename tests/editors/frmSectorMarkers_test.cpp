// SPDX-License-Identifier: MIT
// The screen "Bad Sector Markers".

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QTest>
#include <QTimer>

#include "editors/editor_screen.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmSectorMarkersTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(screen_); }
    void everyControlHasItsNameAndCaption();
    void theListTellsEachMarker();
    void enterAddsWhatIsTypedAndSavesIt();
    void whatMarksNothingCannotBeAdded();
    void aClickedRowIsUpdated();
    void clearGoesBackToAdd();
    void aMarkerMovesUpAndDown();
    void theDeleteKeyAsks();
    void thePreviewShowsASectorAndComesBack();
    void escapeAsksForATypedMarkerAndDoneDoesNot();

private:
    [[nodiscard]] Grid& markers() const { return screen_->control<Grid>("markers_"); }
    [[nodiscard]] QString list() const { return toQt(screen_->bytesOf("local/Settings/BadSectors.dat")); }
    [[nodiscard]] bool isEnabled(const char* name) const { return screen_->control<QWidget>(name).isEnabled(); }
    [[nodiscard]] QString remark() const { return screen_->control<QLabel>("remark_").text(); }
    void press(const char* box, Qt::Key key) const { QTest::keyClick(&screen_->control<QWidget>(box), key); }

    std::unique_ptr<test::EditorScreen> screen_;
};

void FrmSectorMarkersTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::SectorMarkers);
    screen_->folder.write("local/Settings/BadSectors.dat",
                          "0,BAD SECTOR ,T,R,tool A\r\n1,0A2320706F73,H,O,tool B\r\nnonsense\r\n");
    screen_->open();
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"entry_",
     "Marker",
     {{"nameLabel_", "Name"},
      {"name_", ""},
      {"markerLabel_", "Marker"},
      {"marker_", ""},
      {"typeLabel_", "Type"},
      {"type_", "Text"},
      {"positionLabel_", "Position in sector"},
      {"position_", "0"},
      {"repeating_", "Repeats to the end of the sector"},
      {"pageRemark_", "", false},
      {"remark_", ""},
      {"add_", "Add", true, false},
      {"clear_", "Clear"},
      {"preview_", "Preview", true, false}}},
    {"list_",
     "Current Markers",
     {{"markers_", ""},
      {"up_", "Move up", true, false},
      {"down_", "Move down", true, false},
      {"delete_", "Delete", true, false}}},
    {"", "", {{"done_", "Done"}}},
};

}  // namespace

void FrmSectorMarkersTest::everyControlHasItsNameAndCaption() {
    QCOMPARE(screen_->window().objectName(), QStringLiteral("frmSectorMarkers"));
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Bad Sector Markers"));
    QCOMPARE(test::misfits(screen_->window(), kControls), QStringList());
    const std::pair<const char*, const char*> labels[] = {
        {"nameLabel_", "name_"}, {"markerLabel_", "marker_"}, {"typeLabel_", "type_"}, {"positionLabel_", "position_"}};
    for (const auto& [label, box] : labels)
        QCOMPARE(screen_->control<QLabel>(label).buddy(), &screen_->control<QWidget>(box));
}

void FrmSectorMarkersTest::theListTellsEachMarker() {
    QStringList rows;
    for (int row = 0; row < markers().rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < markers().columnCount(); ++column) cells << toQt(markers().cell(row, column));
        rows << cells.join(QLatin1Char('|'));
    }
    QCOMPARE(rows, QStringList({QStringLiteral("tool A|\"BAD SECTOR \"|Text|anywhere|to the sector's end"),
                                QStringLiteral("tool B|0A2320706F73|Hex|1|once"),
                                QStringLiteral("|nonsense|||marks nothing")}));
    QVERIFY(!isEnabled("delete_"));
}

void FrmSectorMarkersTest::enterAddsWhatIsTypedAndSavesIt() {
    screen_->type("name_", "tool C");
    screen_->type("marker_", "DEAD");
    screen_->type("position_", "1");
    screen_->control<QComboBox>("type_").setCurrentIndex(1);
    QVERIFY(isEnabled("add_"));
    screen_->control<QCheckBox>("repeating_").setChecked(false);
    QVERIFY(!isEnabled("add_"));
    screen_->control<QCheckBox>("repeating_").setChecked(true);
    press("marker_", Qt::Key_Return);
    QVERIFY(list().endsWith(QStringLiteral("nonsense\r\n1,DEAD,H,R,tool C\r\n")));
    QCOMPARE(markers().rowCount(), 4);
    for (const char* box : {"name_", "marker_"}) QCOMPARE(screen_->text(box), QString());
    QCOMPARE(screen_->text("position_"), QStringLiteral("0"));
}

void FrmSectorMarkersTest::whatMarksNothingCannotBeAdded() {
    for (const char* button : {"add_", "preview_"}) QVERIFY(!isEnabled(button));
    QCOMPARE(remark(), QString());
    screen_->type("marker_", "X");
    QCOMPARE(remark(), QStringLiteral("Give it a name, which is told of the files"));
    QVERIFY(isEnabled("preview_"));
    screen_->control<QCheckBox>("repeating_").setChecked(false);
    QCOMPARE(remark(), QStringLiteral("What stands once needs at least 4 bytes"));
    const QString before = list();
    press("marker_", Qt::Key_Return);
    QCOMPARE(list(), before);
}

void FrmSectorMarkersTest::aClickedRowIsUpdated() {
    markers().setCurrentRow(1);
    QCOMPARE(screen_->text("marker_"), QStringLiteral("0A2320706F73"));
    QCOMPARE(screen_->control<QComboBox>("type_").currentIndex(), 1);
    QVERIFY(!screen_->control<QCheckBox>("repeating_").isChecked());
    QCOMPARE(screen_->caption("add_"), QStringLiteral("Update"));
    screen_->type("name_", "tool D");
    screen_->click("add_");
    QVERIFY(list().contains(QStringLiteral("1,0A2320706F73,H,O,tool D\r\n")));
    QVERIFY(!list().contains(QStringLiteral("tool B")));
    QCOMPARE(screen_->caption("add_"), QStringLiteral("Add"));
}

void FrmSectorMarkersTest::clearGoesBackToAdd() {
    markers().setCurrentRow(0);
    screen_->click("clear_");
    QCOMPARE(screen_->text("marker_"), QString());
    QCOMPARE(screen_->caption("add_"), QStringLiteral("Add"));
}

void FrmSectorMarkersTest::aMarkerMovesUpAndDown() {
    markers().setCurrentRow(0);
    QVERIFY(!isEnabled("up_"));
    screen_->click("down_");
    QVERIFY(list().startsWith(QStringLiteral("1,0A2320706F73,H,O,tool B\r\n0,BAD SECTOR ,T,R,tool A\r\n")));
    QCOMPARE(markers().currentRow(), 1);
    QCOMPARE(screen_->caption("add_"), QStringLiteral("Update"));
    screen_->click("down_");
    QVERIFY(list().endsWith(QStringLiteral("nonsense\r\n0,BAD SECTOR ,T,R,tool A\r\n")));
    QVERIFY(!isEnabled("down_"));
    screen_->click("up_");
    screen_->click("up_");
    QCOMPARE(markers().currentRow(), 0);
    QVERIFY(list().startsWith(QStringLiteral("0,BAD SECTOR ,T,R,tool A\r\n")));
}

void FrmSectorMarkersTest::theDeleteKeyAsks() {
    markers().setCurrentRow(0);
    screen_->dialogs.expectBox("Delete marker?", "Are you sure you want to delete the marker \r\ntool A?",
                               BoxAnswer::Yes);
    press("markers_", Qt::Key_Delete);
    QCOMPARE(markers().rowCount(), 2);
    QVERIFY(!list().contains(QStringLiteral("tool A")));
    markers().setCurrentRow(0);
    screen_->dialogs.expectBox("Delete marker?", "Are you sure you want to delete the marker \r\ntool B?",
                               BoxAnswer::No);
    screen_->click("delete_");
    QCOMPARE(markers().rowCount(), 2);
}

void FrmSectorMarkersTest::thePreviewShowsASectorAndComesBack() {
    screen_->type("marker_", "UNREAD");
    screen_->type("position_", "2");
    std::string shown;
    bool wasModal = false;
    QTimer::singleShot(0, this, [&] {
        QWidget& preview = screen_->windowOf(Screen::PreviewBadSector);
        wasModal = preview.isModal();
        shown = preview.findChild<HexView*>(QStringLiteral("XHexEditX1"))->bytes();
        preview.close();
    });
    screen_->click("preview_");
    QVERIFY(wasModal);
    QCOMPARE(shown.size(), std::size_t{512});
    QCOMPARE(shown.substr(0, 14), std::string(1, '\0') + "UNREADUNREADU");
    QVERIFY(screen_->navigator.window(Screen::BadSectors) == nullptr);
    QVERIFY(screen_->isOpen());
    QVERIFY(!screen_->has("app/bSector.test"));
}

void FrmSectorMarkersTest::escapeAsksForATypedMarkerAndDoneDoesNot() {
    QTest::keyClicks(&screen_->control<QLineEdit>("marker_"), QStringLiteral("x"));
    screen_->dialogs.expectBox("Leave this screen ?",
                               "What you have typed is not stored. Do you want to leave and drop it?", BoxAnswer::No);
    test::EditorScreen::pressIn(screen_->window(), Qt::Key_Escape);
    QVERIFY(screen_->isOpen());
    screen_->click("done_");
    QVERIFY(!screen_->isOpen());
}

QTEST_MAIN(FrmSectorMarkersTest)
#include "frmSectorMarkers_test.moc"
