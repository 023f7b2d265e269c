// SPDX-License-Identifier: MIT
// The road from a bad grade to a better database through the real screens: a job over files of one extension whose term
// is missing, the viewer, the editor, a search, the new term, the retest, and the board that shows the files good.

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "main_window.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"

using namespace quillon;

class RoadTest : public QObject {
    Q_OBJECT

private slots:
    void twoHundredCorruptFilesBecomeGood();

private:
    void runJob();
    void filterCorruptFiles();
    void teachTheTerm();

    test::MainWindow main_;
};

namespace {

constexpr int kFiles = 200;

/// The control of a screen that is open.
template <typename Control>
Control& control(const test::MainWindow& main, Screen screen, const char* name) {
    auto* window = main.navigator.window(screen);
    if (window == nullptr)
        qFatal("no screen with %s", name);
    return test::controlOf<Control>(*window, name);
}

void click(const test::MainWindow& main, Screen screen, const char* button) {
    control<QPushButton>(main, screen, button).click();
    QApplication::processEvents();
}

QString text(const test::MainWindow& main, Screen screen, const char* label) {
    return control<QLabel>(main, screen, label).text();
}

}  // namespace

// A job over files whose term is missing.
void RoadTest::runJob() {
    main_.temp.write("local/Database/qlx.dat", "1,OLDHEAD,T\r\n");
    for (int i = 0; i < kFiles; ++i)
        main_.temp.write("source/f" + std::to_string(i) + ".qlx", "\x01\x02QLX!" + std::string(600, 'x'));
    main_.open();
    main_.chooseSource("77");
    main_.control<QPushButton>("CommandButton3").click();
    QCOMPARE(main_.text("lCorruptFiles"), QStringLiteral("200"));
    QCOMPARE(main_.text("lGoodFIles"), QStringLiteral("0"));
}

void RoadTest::filterCorruptFiles() {
    main_.control<QPushButton>("CommandButton5").click();
    QVERIFY(!main_.window->isVisible());
    auto& category = control<QComboBox>(main_, Screen::ViewList, "Combo1");
    category.setCurrentIndex(category.findText(QStringLiteral("Header Corrupt")));
    click(main_, Screen::ViewList, "Command2");
    auto& grid = control<Grid>(main_, Screen::ViewList, "iGrid1");
    QCOMPARE(grid.rowCount(), kFiles);
    QCOMPARE(text(main_, Screen::ViewList, "Label1"), QStringLiteral("Matching :  200"));
    grid.setCurrentRow(0);
    QCOMPARE(control<QComboBox>(main_, Screen::ViewList, "Combo2").currentText(), QStringLiteral("qlx"));
    QCOMPARE(text(main_, Screen::ViewList, "Label4"), QStringLiteral("qlx = 200"));
}

void RoadTest::teachTheTerm() {
    click(main_, Screen::ViewList, "Command3");
    QVERIFY(!main_.navigator.window(Screen::ViewList)->isVisible());
    QCOMPARE(text(main_, Screen::ExtEditor, "Label6"), QStringLiteral("Viewing file  1 of  200"));
    auto& hex = control<HexView>(main_, Screen::ExtEditor, "Hex1");
    QTest::mouseClick(hex.viewport(), Qt::LeftButton, {}, hex.byteRect(2, HexPane::Hex).center());
    QCOMPARE(control<QLineEdit>(main_, Screen::ExtEditor, "Text2").text(), QStringLiteral("3"));
    control<QLineEdit>(main_, Screen::ExtEditor, "Text3").setText(QStringLiteral("QLX!"));
    main_.dialogs.expectBox(
        "Add term", "Search results :\r\n\r\nGood files :  200\r\nBad files :  0\r\n\r\n Do you want to add the term ?",
        BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    click(main_, Screen::ExtEditor, "Command11");
    QCOMPARE(control<Grid>(main_, Screen::ExtEditor, "iGrid1").rowCount(), 2);
    click(main_, Screen::ExtEditor, "Command5");
    QCOMPARE(main_.temp.read("local/Database/qlx.dat"), std::string("1,OLDHEAD,T\r\n3,QLX!,T\r\n"));
    QVERIFY(main_.navigator.window(Screen::ExtEditor) == nullptr);
    QVERIFY(main_.navigator.window(Screen::ViewList)->isVisible());
}

void RoadTest::twoHundredCorruptFilesBecomeGood() {
    main_.addScreens();
    runJob();
    filterCorruptFiles();
    teachTheTerm();
    click(main_, Screen::ViewList, "Command4");
    QCOMPARE(text(main_, Screen::ViewList, "Label1"), QStringLiteral("Matching :  0"));
    QCOMPARE(control<Grid>(main_, Screen::ViewList, "iGrid1").rowCount(), 0);
    click(main_, Screen::ViewList, "Command1");
    QVERIFY(main_.window->isVisible());
    QCOMPARE(main_.text("lGoodFIles"), QStringLiteral("200"));
    QCOMPARE(main_.text("lCorruptFiles"), QStringLiteral("0"));
    QCOMPARE(main_.text("lTested"), QStringLiteral("200"));
    QVERIFY2(main_.problems.isEmpty(), qPrintable(main_.problems.join(QLatin1Char('\n'))));
}

QTEST_MAIN(RoadTest)
#include "road_test.moc"
