// SPDX-License-Identifier: MIT
// What the screen "View File List" says of the rows that it leaves out.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "support/list_bytes.h"
#include "support/screen_control.h"
#include "text/list_text.h"
#include "ui/main_window.h"
#include "widgets/grid.h"

using namespace quillon;

class FrmViewListCommasTest : public QObject {
    Q_OBJECT

private slots:
    void rowsWithCommasAreSaidToBeMissing();
};

void FrmViewListCommasTest::rowsWithCommasAreSaidToBeMissing() {
    auto main = std::make_unique<test::MainWindow>();
    main->addScreens();
    main->open();
    main->control<QLineEdit>("Textbox1").setText(QStringLiteral("J1"));
    std::u16string list;
    for (const char* const path : {"/s/a.pdf", "/s/b,c.pdf", "/s/d,e.pdf"})
        list += toListText(path) + u",15/11/2026, 603, 32;Ab9x,Header Corrupt\r\n";
    main->temp.write("local/J1.csv", test::utf16Bytes(list));
    main->navigator.open(Screen::ViewList);
    QWidget& screen = *main->navigator.window(Screen::ViewList);
    const auto filter = [&screen](const char* category) {
        test::controlOf<QComboBox>(screen, "Combo1").setCurrentText(QLatin1String(category));
        test::controlOf<QPushButton>(screen, "Command2").click();
    };
    filter("Header Corrupt");
    QCOMPARE(test::controlOf<QLabel>(screen, "notShown").text(), QStringLiteral("2 rows with commas are not shown"));
    QCOMPARE(test::controlOf<Grid>(screen, "iGrid1").rowCount(), 1);
    filter("No Extension");
    QCOMPARE(test::controlOf<QLabel>(screen, "notShown").text(), QString());
    test::closeScreens(main);
}

QTEST_MAIN(FrmViewListCommasTest)
#include "frmViewList_commas_test.moc"
