// SPDX-License-Identifier: MIT
// The screen "Database History".

#include <QPlainTextEdit>
#include <QTest>

#include "app/database_history.h"
#include "editors/editor_screen.h"
#include "evidence/evidence_store.h"

using namespace quillon;

class FrmHistoryTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(screen_); }
    void changesStandNewestFirstWithWhatTheyDid();
    void theChosenChangeIsShownInFull();
    void undoAsksAndIsANewChange();
    void whatCannotBeUndoneIsTold();
    void aNoteStandsBesideItsChange();
    void withoutChangesNothingCanBeDone();
    void theShareHasAHistoryOfItsOwn();
    void theChosenChangeTellsWhatItDidToKeptHeads();

private:
    /// As the Extension Editor does it.
    void teach(const std::string& terms, const char* root = "local") const {
        DatabaseChange change = changeBy("Extension Editor");
        change.job = "4711";
        const NativePath file = screen_->folder / root / "Database/qlx.dat";
        QVERIFY(changeNoted(screen_->folder / root / "Settings", file, change,
                            [&]() -> Result<void> { return saveWholeFile(file, terms); }));
    }
    [[nodiscard]] Grid& changes() const { return screen_->control<Grid>("changes_"); }
    [[nodiscard]] QString what(int row) const { return toQt(changes().cell(row, 1)); }
    [[nodiscard]] QString details() const { return screen_->control<QPlainTextEdit>("details_").toPlainText(); }
    [[nodiscard]] bool isEnabled(const char* name) const { return screen_->control<QWidget>(name).isEnabled(); }

    std::unique_ptr<test::EditorScreen> screen_;
};

void FrmHistoryTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::History);
}

void FrmHistoryTest::changesStandNewestFirstWithWhatTheyDid() {
    teach("1,AAA,T\r\n");
    teach("1,AAA,T\r\n2,BBB,T\r\n");
    screen_->open();
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Database History"));
    QCOMPARE(screen_->control<QLabel>("heading_").text(),
             QStringLiteral("The database of this computer: 2 changes, the newest first"));
    QCOMPARE(changes().rowCount(), 2);
    QCOMPARE(what(0), QStringLiteral("qlx.dat +1 -0"));
    QCOMPARE(what(1), QStringLiteral("qlx.dat new +1"));
    QCOMPARE(toQt(changes().cell(0, 2)), QStringLiteral("Extension Editor"));
    QCOMPARE(toQt(changes().cell(0, 5)), QStringLiteral("4711"));
    QCOMPARE(changes().currentRow(), -1);
    QVERIFY(!isEnabled("undo_"));
}

void FrmHistoryTest::theChosenChangeIsShownInFull() {
    teach("1,AAA,T\r\n");
    teach("1,BBB,T\r\n");
    screen_->open();
    changes().setCurrentRow(0);
    QCOMPARE(details(), QStringLiteral("Database/qlx.dat\n  - 1,AAA,T\n  + 1,BBB,T\n"));
    changes().setCurrentRow(1);
    QCOMPARE(details(), QStringLiteral("Database/qlx.dat  (new)\n  + 1,AAA,T\n"));
}

void FrmHistoryTest::undoAsksAndIsANewChange() {
    teach("1,AAA,T\r\n");
    teach("1,AAA,T\r\n2,BAD,T\r\n");
    screen_->open();
    changes().setCurrentRow(0);
    const std::string question =
        "Do you want to take this change back ?\r\n\r\n" + changes().cell(0, 0) + "\r\nqlx.dat +1 -0";
    screen_->dialogs.expectBox("Database History", question, BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    screen_->click("undo_");
    QCOMPARE(changes().rowCount(), 2);
    screen_->dialogs.expectBox("Database History", question, BoxAnswer::Yes);
    screen_->click("undo_");
    QCOMPARE(toQt(screen_->bytesOf("local/Database/qlx.dat")), QStringLiteral("1,AAA,T\r\n"));
    QCOMPARE(changes().rowCount(), 3);
    QCOMPARE(changes().currentRow(), 1);
    QCOMPARE(what(1), QStringLiteral("qlx.dat +1 -0, taken back"));
    QVERIFY2(details().startsWith(QStringLiteral("Taken back ")), qPrintable(details()));
    QCOMPARE(toQt(changes().cell(0, 2)), QStringLiteral("Database History"));
    QVERIFY2(screen_->problems.isEmpty(), qPrintable(screen_->problems.join(QLatin1Char('\n'))));
}

void FrmHistoryTest::whatCannotBeUndoneIsTold() {
    teach("1,AAA,T\r\n");
    teach("1,BBB,T\r\n");
    teach("1,CCC,T\r\n");
    screen_->open();
    changes().setCurrentRow(1);
    screen_->dialogs.expectBox(
        "Database History",
        "Do you want to take this change back ?\r\n\r\n" + changes().cell(1, 0) + "\r\nqlx.dat +1 -1", BoxAnswer::Yes);
    screen_->dialogs.expectBox(
        "Database History", "Database/qlx.dat: the same records were changed again since. Undo the later change first",
        BoxAnswer::Ok, BoxStyle::Warning);
    screen_->click("undo_");
    QCOMPARE(toQt(screen_->bytesOf("local/Database/qlx.dat")), QStringLiteral("1,CCC,T\r\n"));
    QVERIFY2(screen_->problems.isEmpty(), qPrintable(screen_->problems.join(QLatin1Char('\n'))));
}

void FrmHistoryTest::theChosenChangeTellsWhatItDidToKeptHeads() {
    const NativePath evidence = screen_->folder / "local/4711.sqlite";
    QVERIFY(EvidenceStore::create(evidence));
    auto store = EvidenceStore::open(evidence);
    QVERIFY(store);
    for (const char* bytes : {"AAAx", "AAAy", "BBBz"}) {
        FileHead head;
        head.length = kHeaderBytes;
        head.bytes.fill('-');
        std::ranges::copy(std::string_view(bytes), head.bytes.begin());
        EvidenceRow row;
        row.name = bytes;
        row.extension = "qlx";
        row.size = 600;
        row.grade = Grade::Corrupt;
        QVERIFY(store->add(row, &head));
    }
    QVERIFY(store->finish());
    teach("1,AAA,T\r\n");
    teach("1,AAA,T\r\n1,BBB,T\r\n");
    screen_->open();
    changes().setCurrentRow(0);
    auto& effect = screen_->control<QLabel>("effect_");
    QTRY_COMPARE(effect.text(), QStringLiteral("Of 3 kept heads of qlx 2 were good before and 3 after"));
    changes().setCurrentRow(1);
    QTRY_COMPARE(effect.text(), QStringLiteral("Of 3 kept heads of qlx 0 were good before and 2 after"));
}

void FrmHistoryTest::aNoteStandsBesideItsChange() {
    teach("1,AAA,T\r\n");
    screen_->open();
    screen_->type("note_", "the maker changed it");
    QVERIFY(!isEnabled("addNote_"));
    changes().setCurrentRow(0);
    QVERIFY(isEnabled("addNote_"));
    QCOMPARE(screen_->control<QLabel>("noteLabel_").buddy(), &screen_->control<QLineEdit>("note_"));
    screen_->click("addNote_");
    QCOMPARE(screen_->text("note_"), QString());
    QCOMPARE(changes().rowCount(), 1);
    QVERIFY2(details().startsWith(QStringLiteral("\"the maker changed it\"\n")), qPrintable(details()));
}

void FrmHistoryTest::withoutChangesNothingCanBeDone() {
    screen_->open();
    QCOMPARE(screen_->control<QLabel>("heading_").text(),
             QStringLiteral("The database of this computer: nothing was changed yet"));
    QVERIFY(!isEnabled("undo_"));
    screen_->click("done_");
    QVERIFY(!screen_->isOpen());
}

void FrmHistoryTest::theShareHasAHistoryOfItsOwn() {
    teach("1,AAA,T\r\n");
    teach("1,SHARED,T\r\n", "share");
    screen_->share(true);
    screen_->open();
    QCOMPARE(screen_->control<QLabel>("heading_").text(),
             QStringLiteral("The shared database: 1 changes, the newest first"));
    changes().setCurrentRow(0);
    QVERIFY(details().contains(QStringLiteral("1,SHARED,T")));
}

QTEST_MAIN(FrmHistoryTest)
#include "frmHistory_test.moc"
