// SPDX-License-Identifier: MIT
// The screen "View File List" over a list with evidence: columns of our own, and "Regrade from kept heads".
#include <algorithm>
#include <filesystem>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "support/screen_control.h"
#include "text/list_text.h"
#include "ui/main_window.h"
#include "widgets/grid.h"

using namespace quillon;

class FrmViewListEvidenceTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void withoutEvidenceThereIsNothingOfOurs();
    void eachRowTellsItsReason();
    void keptHeadsAreGradedWithTheSourceAway();
    void theScreenIsBusyDuringARegradeAndCannotBeClosed();

private:
    template <typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        return test::controlOf<Control>(*screen_, name);
    }
    void makeEvidence() const;
    void filter() const;
    void expectScope(BoxAnswer answer) const;

    std::unique_ptr<test::MainWindow> main_;
    QWidget* screen_ = nullptr;
};

// Two pictures that the list calls corrupt, and a row that the evidence does not know.
void FrmViewListEvidenceTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->makePictures(2);
    main_->open();
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("J1"));
    std::u16string list;
    for (const auto& path :
         {(main_->temp / "source/p0.jpg").native(), (main_->temp / "source/p1.JPG").native(), std::string("/s/a.pdf")})
        list.append(toListText(path)).append(u",15/11/2026, 603, 32;Ab9x,Header Corrupt\r\n");
    main_->temp.write("local/J1.csv", test::utf16Bytes(list));
    main_->window->hide();
    main_->navigator.open(Screen::ViewList);
    screen_ = main_->navigator.window(Screen::ViewList);
    QVERIFY(screen_ != nullptr);
}

void FrmViewListEvidenceTest::cleanup() {
    test::closeScreens(main_);
}

// The heads are those of pictures; the source goes away.
void FrmViewListEvidenceTest::makeEvidence() const {
    const auto path = main_->temp / "local/J1.sqlite";
    QVERIFY(EvidenceStore::create(path));
    auto store = EvidenceStore::open(path);
    QVERIFY(store && store->setJob(job_keys::kSource, (main_->temp / "source").native()));
    std::int64_t line = 0;
    for (const char* name : {"p0.jpg", "p1.JPG"}) {
        EvidenceRow row;
        row.row = ++line;
        row.name = name;
        row.extension = "jpg";
        row.size = 603;
        row.grade = Grade::Corrupt;
        row.reason = Reason::ZeroFilled;
        row.badBytes = line == 1 ? 1536 : 0;
        FileHead head;
        head.length = kHeaderBytes;
        std::ranges::copy(std::string("\xFF\xD8\xFF"), head.bytes.begin());
        QVERIFY(store->add(row, &head));
    }
    QVERIFY(store->finish());
    std::filesystem::rename(main_->temp / "source", main_->temp / "away");
}

void FrmViewListEvidenceTest::filter() const {
    auto& box = control<QComboBox>("Combo1");
    box.setCurrentIndex(box.findText(QStringLiteral("Header Corrupt")));
    control<QPushButton>("Command2").click();
}

void FrmViewListEvidenceTest::expectScope(BoxAnswer answer) const {
    main_->dialogs.expectBox("Regrade from kept heads",
                             "Do you want to grade all rows of the list anew? No grades those with the extension jpg "
                             "alone. The source is not read.",
                             answer, BoxStyle::Question, BoxButtons::YesNoCancel);
}

void FrmViewListEvidenceTest::withoutEvidenceThereIsNothingOfOurs() {
    filter();
    QCOMPARE(control<Grid>("iGrid1").columnCount(), 3);
    QVERIFY(!control<QPushButton>("regradeKept_").isEnabled());
}

void FrmViewListEvidenceTest::eachRowTellsItsReason() {
    makeEvidence();
    filter();
    auto& grid = control<Grid>("iGrid1");
    QCOMPARE(grid.columnCount(), 6);
    QCOMPARE(grid.columnTitle(3), std::string("Reason"));
    QCOMPARE(grid.columnTitle(4), std::string("Doubt"));
    QVERIFY(grid.isColumnHidden(2) && !grid.isColumnHidden(3));
    QCOMPARE(grid.cell(0, 3), std::string("nothing but zero bytes"));
    QCOMPARE(grid.cell(2, 3), std::string());
    QCOMPARE(grid.columnTitle(5), std::string("Unread Bytes"));
    QCOMPARE(grid.cell(0, 5), std::string("1,536"));
    QCOMPARE(grid.cell(1, 5), std::string("none"));
    QCOMPARE(grid.cell(2, 5), std::string());
}

void FrmViewListEvidenceTest::keptHeadsAreGradedWithTheSourceAway() {
    makeEvidence();
    filter();
    auto& grid = control<Grid>("iGrid1");
    grid.setCurrentRow(0);
    expectScope(BoxAnswer::No);
    control<QPushButton>("regradeKept_").click();
    QCOMPARE(grid.rowCount(), 1);
    QCOMPARE(control<QLabel>("Label4").text(),
             QStringLiteral("Graded again : 2, with another result : 2, without a head : 0"));
}

void FrmViewListEvidenceTest::theScreenIsBusyDuringARegradeAndCannotBeClosed() {
    makeEvidence();
    filter();
    control<Grid>("iGrid1").setCurrentRow(0);
    expectScope(BoxAnswer::No);
    int looks = 0;
    const int number = main_->loop.addRefresh([&] {
        ++looks;
        for (const char* name : {"Frame1", "Frame2", "Frame3", "Command1"})
            QVERIFY(!control<QWidget>(name).isEnabled());
        screen_->close();
        QVERIFY(screen_->isVisible());
    });
    control<QPushButton>("regradeKept_").click();
    main_->loop.removeRefresh(number);
    QVERIFY(looks > 0);
    for (const char* name : {"Frame1", "Frame2", "Frame3", "Command1"}) QVERIFY(control<QWidget>(name).isEnabled());
}

QTEST_MAIN(FrmViewListEvidenceTest)
#include "frmViewList_evidence_test.moc"
