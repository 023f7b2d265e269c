// SPDX-License-Identifier: MIT
// The screen "View File List": how Escape and the overview leave it, and what it says of rows and names that cannot be
// shown as they are.

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "support/screen_control.h"
#include "testing/grade_choice.h"
#include "text/list_text.h"
#include "ui/main_window.h"
#include "widgets/grid.h"
#include "widgets/tick_button.h"

using namespace quillon;

class FrmViewListKeysTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(main_); }
    void escapeLeavesAsDoneDoes();
    void escapeDuringARetestDoesNothing();
    void rowsWithCommasAreToldBelowTheGrid();
    void namesThatTurnTextAreShownAsTheyAre();
    void theOverviewIsOfferedAndComesBackHere();
    void whatIsFilteredIsHandedToTheCopy();

private:
    template <typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        return test::controlOf<Control>(*screen_, name);
    }
    void activate() const {
        screen_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(screen_));
    }
    void filterCorrupt() const {
        control<QComboBox>("Combo1").setCurrentIndex(1);
        control<QPushButton>("Command2").click();
    }
    void addCorrupt(std::string_view path) {
        list_.append(toListText(path)).append(u",15/11/2026, 603, 32;Ab9x,Header Corrupt\r\n");
        main_->temp.write("local/J1.csv", test::utf16Bytes(list_));
    }

    std::unique_ptr<test::MainWindow> main_;
    QWidget* screen_ = nullptr;
    std::u16string list_;
};

void FrmViewListKeysTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->makePictures(2);
    main_->open();
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("J1"));
    list_.clear();
    addCorrupt((main_->temp / "source/p0.jpg").native());
    addCorrupt((main_->temp / "source/p1.JPG").native());
    addCorrupt("/s/a.pdf");
    main_->window->hide();
    main_->navigator.open(Screen::ViewList);
    screen_ = main_->navigator.window(Screen::ViewList);
    QVERIFY(screen_ != nullptr);
}

void FrmViewListKeysTest::escapeLeavesAsDoneDoes() {
    activate();
    QTest::keyClick(screen_, Qt::Key_Escape);
    QVERIFY(main_->window->isVisible());
    QVERIFY(main_->navigator.window(Screen::ViewList) == nullptr);
    QCOMPARE(main_->text("lCorruptFiles"), QStringLiteral("3"));
}

void FrmViewListKeysTest::escapeDuringARetestDoesNothing() {
    filterCorrupt();
    control<Grid>("iGrid1").setCurrentRow(0);
    activate();
    int presses = 0;
    const int number = main_->loop.addRefresh([&] {
        ++presses;
        QTest::keyClick(screen_, Qt::Key_Escape);
        QVERIFY(screen_->isVisible());
    });
    control<QPushButton>("Command4").click();
    main_->loop.removeRefresh(number);
    QVERIFY(presses > 0);
    QVERIFY(screen_->isVisible());
}

void FrmViewListKeysTest::rowsWithCommasAreToldBelowTheGrid() {
    addCorrupt("/s/a,b.pdf");
    addCorrupt("/s/c,d.pdf");
    filterCorrupt();
    QCOMPARE(control<QLabel>("commaRemark_").text(), QStringLiteral("2 rows with commas are not shown"));
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 3);
}

void FrmViewListKeysTest::namesThatTurnTextAreShownAsTheyAre() {
    addCorrupt(
        "/s/invoice\xE2\x80\xAE"
        "fdp.exe");
    filterCorrupt();
    QCOMPARE(control<Grid>("iGrid1").cell(3, 0), std::string("/s/invoice<U+202E>fdp.exe"));
}

void FrmViewListKeysTest::theOverviewIsOfferedAndComesBackHere() {
    filterCorrupt();
    control<QPushButton>("openOverview").click();
    QVERIFY(!screen_->isVisible());
    QWidget* const overview = main_->navigator.window(Screen::Overview);
    QVERIFY(overview != nullptr);
    QTRY_COMPARE(test::controlOf<QLabel>(*overview, "jobName").text(), QStringLiteral("Job J1"));
    QTRY_COMPARE(test::controlOf<Grid>(*overview, "files").rowCount(), 3);
    overview->close();
    QVERIFY(screen_->isVisible());
    QCOMPARE(control<Grid>("iGrid1").rowCount(), 3);
}

void FrmViewListKeysTest::whatIsFilteredIsHandedToTheCopy() {
    addCorrupt((main_->temp / "source/w.doc").native());
    filterCorrupt();
    control<Grid>("iGrid1").setCurrentRow(0);
    QString what;
    std::string grades;
    // The screen is modal: what is done with it happens within the click.
    QTimer::singleShot(0, this, [&] {
        QWidget* const copies = main_->navigator.window(Screen::Copies);
        what = test::controlOf<QLabel>(*copies, "what").text();
        grades = namesOfGrades(gradesOfTicks(test::controlOf<TickButton>(*copies, "copyGrades").ticks()));
        copies->close();
    });
    control<QPushButton>("copyThese_").click();
    QCOMPARE(what, QStringLiteral("Job J1: .jpg"));
    QCOMPARE(grades, std::string("corrupt"));
    QVERIFY(screen_->isVisible());
}

QTEST_MAIN(FrmViewListKeysTest)
#include "frmViewList_keys_test.moc"
