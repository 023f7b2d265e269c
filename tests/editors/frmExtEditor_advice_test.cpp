// SPDX-License-Identifier: MIT
// The Extension Editor's own helpers: what a term would let through, suggested terms, and marked bytes.

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QTest>

#include "editors/editor_screen.h"
#include "editors/frmExtEditor_consensus.h"
#include "evidence/evidence_store.h"
#include "text/list_text.h"
#include "viewer/editor_handover.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmExtEditorAdviceTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(screen_); }
    void theTermInTheCriteriaIsJudgedByTheKeptHeads();
    void aSuggestedTermFillsTheCriteriaByOneClick();
    void filesWithNothingInCommonHaveNoSuggestion();
    void markedBytesGoToTheCriteriaByOneKey();
    void whatAllFilesShareStandsAboveTheHexView();
    void oneKeySelectsTheNextBytesThatAllFilesShare();
    void steppingKeepsTheSameBytesInView();
    void theOtherEditorsJudgeTheirTermsToo();

private:
    void keepHead(EvidenceStore& store, const char* name, const char* extension, const std::string& bytes,
                  Grade grade) const;
    void openEditor(const std::vector<std::string>& files);
    [[nodiscard]] QString advice() const { return screen_->control<QLabel>("advice_").text(); }

    std::unique_ptr<test::EditorScreen> screen_;
};

void FrmExtEditorAdviceTest::keepHead(EvidenceStore& store, const char* name, const char* extension,
                                      const std::string& bytes, Grade grade) const {
    FileHead head;
    head.length = kHeaderBytes;
    head.bytes.fill('-');
    std::ranges::copy(bytes, head.bytes.begin());
    EvidenceRow row;
    row.name = name;
    row.extension = extension;
    row.size = 600;
    row.grade = grade;
    QVERIFY(store.add(row, &head));
}

// A job has kept the heads of two good files of another kind.
void FrmExtEditorAdviceTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::ExtEditor);
    screen_->job.messages = ReportMessages::fallback();
    const NativePath evidence = screen_->folder / "local/4711.sqlite";
    QVERIFY(EvidenceStore::create(evidence));
    auto store = EvidenceStore::open(evidence, EvidenceStore::Heads::Kept);
    QVERIFY(store);
    keepHead(*store, "a.docx", "docx", "QLX!WORD", Grade::Good);
    keepHead(*store, "b.docx", "docx", "PK\x03\x04", Grade::Good);
    keepHead(*store, "c.docx", "docx", "QLX!BAD", Grade::Corrupt);
    QVERIFY(store->finish());
}

void FrmExtEditorAdviceTest::openEditor(const std::vector<std::string>& files) {
    EditorHandover handover{1, u"qlx", {}, {}, {}};
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::string bytes = files[i];
        bytes.resize(600, static_cast<char>('0' + i));
        const auto file = screen_->folder.write("source/" + std::to_string(i) + ".qlx", bytes);
        handover.files.push_back({toListText(file.native()), {}});
    }
    screen_->navigator.open(Screen::ExtEditor, handover);
    screen_->window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&screen_->window()));
}

void FrmExtEditorAdviceTest::theTermInTheCriteriaIsJudgedByTheKeptHeads() {
    openEditor({"QLX!one", "QLX!two"});
    QCOMPARE(advice(), QString());
    screen_->type("Text2", "1");
    screen_->type("Text3", "QLX!");
    QTRY_COMPARE(advice(),
                 QStringLiteral("4 bytes; 2 of 2 listed files; 1 of 2 good files of other extensions: 1 docx"));
    screen_->type("Text3", "QL");
    QTRY_COMPARE(advice(),
                 QStringLiteral("Too short: other files have it by chance. 2 bytes; 2 of 2 listed files; 1 of 2 "
                                "good files of other extensions: 1 docx"));
    screen_->type("Text3", "");
    QTRY_COMPARE(advice(), QString());
}

void FrmExtEditorAdviceTest::aSuggestedTermFillsTheCriteriaByOneClick() {
    openEditor({"NEWMARK", "NEWMARK", "NEWMARK"});
    QCOMPARE(screen_->caption("suggest_"), QStringLiteral("Suggest"));
    screen_->click("suggest_");
    auto& menu = screen_->control<QMenu>("suggestions_");
    QTRY_VERIFY(menu.isVisible());
    auto& first = screen_->control<QAction>("suggestion_0");
    QVERIFY2(first.text().contains(QStringLiteral("all 3 files; none of 3 others")), qPrintable(first.text()));
    QVERIFY2(first.text().contains(QStringLiteral("in this job alone")), qPrintable(first.text()));
    first.trigger();
    menu.hide();
    QCOMPARE(screen_->text("Text2"), QStringLiteral("1"));
    QVERIFY2(screen_->text("Text3").startsWith(QStringLiteral("NEWM")), qPrintable(screen_->text("Text3")));
    QCOMPARE(screen_->control<QComboBox>("Combo2").currentText(), QStringLiteral("Text"));
    QVERIFY(screen_->control<QPushButton>("suggest_").isEnabled());
}

void FrmExtEditorAdviceTest::filesWithNothingInCommonHaveNoSuggestion() {
    openEditor({});
    screen_->click("suggest_");
    QTRY_VERIFY(screen_->control<QMenu>("suggestions_").isVisible());
    QVERIFY(!screen_->control<QAction>("noSuggestion_").isEnabled());
    screen_->control<QMenu>("suggestions_").hide();
}

void FrmExtEditorAdviceTest::markedBytesGoToTheCriteriaByOneKey() {
    openEditor({"ab\x01\x02"});
    auto& hex = screen_->control<HexView>("Hex1");
    hex.setFocus();
    hex.setCaret(0);
    QTest::keyClick(&hex, Qt::Key_Right, Qt::ShiftModifier);
    screen_->control<QAction>("takeBytes_").trigger();
    QCOMPARE(screen_->text("Text2"), QStringLiteral("1"));
    QCOMPARE(screen_->text("Text3"), toQt(hex.selectedBytes()));
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("Command11"));
    hex.setFocus();
    hex.setCaret(2);
    QTest::keyClick(&hex, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&hex, Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(screen_->text("Text2"), QStringLiteral("3"));
    QCOMPARE(screen_->text("Text3"), QStringLiteral("0102").left(2 * static_cast<int>(hex.selectedBytes().size())));
    QCOMPARE(screen_->control<QComboBox>("Combo2").currentText(), QStringLiteral("HEX"));
}

void FrmExtEditorAdviceTest::whatAllFilesShareStandsAboveTheHexView() {
    openEditor({"QLX!1MARK", "QLX!2MARK"});
    auto& line = screen_->control<ConsensusLine>("consensus_");
    QTRY_COMPARE(screen_->control<QLabel>("shared_").text(),
                 QStringLiteral("All 2 files share 8 of 512 bytes: 1-4, 6-9"));
    QCOMPARE(line.accessibleDescription(), screen_->control<QLabel>("shared_").text());
    auto& hex = screen_->control<HexView>("Hex1");
    for (const int place : {0, 9, 15}) {
        const QPoint above(hex.viewport()->mapTo(line.window(), hex.byteRect(place, HexPane::Hex).center()));
        const QPoint inLine(line.mapFrom(line.window(), above).x(), line.height() - 6);
        QCOMPARE(line.placeAt(inLine), place);
    }
    QTest::mouseClick(&line, Qt::LeftButton, Qt::NoModifier, QPoint(line.width() / 2, 4));
    QVERIFY(hex.caret() > 100);
    QVERIFY(screen_->control<QLabel>("shared_").geometry().left() > screen_->control<QLabel>("Label6").x());
}

void FrmExtEditorAdviceTest::oneKeySelectsTheNextBytesThatAllFilesShare() {
    openEditor({"aQLX!1MARK", "bQLX!2MARK"});
    QTRY_VERIFY(screen_->control<QAction>("nextMark_").isEnabled());
    auto& hex = screen_->control<HexView>("Hex1");
    hex.setFocus();
    QTest::keyClick(&hex, Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(hex.selectedBytes(), std::string("QLX!"));
    QCOMPARE(screen_->text("Text2"), QStringLiteral("2"));
    QTest::keyClick(&hex, Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(hex.selectedBytes(), std::string("MARK"));
    QTest::keyClick(&hex, Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(screen_->text("Text2"), QStringLiteral("7"));
    QCOMPARE(screen_->text("Text3"), QStringLiteral("MARK"));
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("Command11"));
}

void FrmExtEditorAdviceTest::steppingKeepsTheSameBytesInView() {
    openEditor({"QLX!first", "QLX!other", "QLX!third"});
    auto& hex = screen_->control<HexView>("Hex1");
    hex.select(4, 5);
    QCOMPARE(hex.selectedBytes(), std::string("first"));
    QTest::keyClick(&screen_->window(), Qt::Key_Right, Qt::AltModifier);
    QTRY_COMPARE(hex.selectedBytes(), std::string("other"));  // a button that a key presses stays down for a moment
    QCOMPARE(screen_->text("Text2"), QString());
    QTest::keyClick(&screen_->window(), Qt::Key_Left, Qt::AltModifier);
    QTRY_COMPARE(hex.selectedBytes(), std::string("first"));
}

void FrmExtEditorAdviceTest::theOtherEditorsJudgeTheirTermsToo() {
    screen_->navigator.open(Screen::Updatedb);
    auto& update = screen_->windowOf(Screen::Updatedb);
    test::controlOf<QLineEdit>(update, "Text1").setText(QStringLiteral("qlx"));
    test::controlOf<QLineEdit>(update, "Text2").setText(QStringLiteral("1"));
    test::controlOf<QLineEdit>(update, "Text3").setText(QStringLiteral("QLX!"));
    const QString expected = QStringLiteral("4 bytes; 1 of 2 good files of other extensions: 1 docx");
    QTRY_COMPARE(test::controlOf<QLabel>(update, "advice_").text(), expected);
    screen_->navigator.open(Screen::CommonHeaders);
    auto& common = screen_->windowOf(Screen::CommonHeaders);
    test::controlOf<QLineEdit>(common, "tOffset").setText(QStringLiteral("1"));
    test::controlOf<QLineEdit>(common, "tTerm").setText(QStringLiteral("QLX!"));
    QTRY_COMPARE(test::controlOf<QLabel>(common, "advice_").text(), expected);
}

QTEST_MAIN(FrmExtEditorAdviceTest)
#include "frmExtEditor_advice_test.moc"
