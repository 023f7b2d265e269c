// SPDX-License-Identifier: MIT
#include "widgets/grid.h"

#include <algorithm>
#include <cmath>

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "widgets/hex_view.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

using namespace quillon;

namespace {

class ManyRows final : public GridSource {
public:
    int rowCount() const override { return 1'000'000; }
    std::string cell(int row, int column) const override {
        return "r" + std::to_string(row) + "c" + std::to_string(column);
    }
};

std::vector<GridRow> threeRows() {
    return {{{"/b/one.jpg", "jpg", "p1"}, {}}, {{"/A/two.doc", "doc"}, 0xC0C0FFu}, {{"/a/three", ""}, {}}};
}

void fill(Grid& grid) {
    grid.setColumns({{"Path", 420, false}, {"Ext", 50, false}, {"Problem!", 0, true}});
    grid.setRows(threeRows());
}

}  // namespace

class GridTest : public QObject {
    Q_OBJECT

private slots:
    void columnsHaveTheToldTitlesAndWidths();
    void numbersAndTheirTitleEndBelowEachOther();
    void cellsReadBackAlsoInHiddenColumns();
    void aRowColourHasBlueInItsHighByteAndReadableText();
    void aClickTellsItsRow();
    void aRightClickMakesTheRowCurrentAndTellsIt();
    void otherRowsHaveNoCurrentOne();
    void cellsShowMarkUpAsPlainText();
    void aMillionRowsOpenScrollAndSelectAtOnce();
    void aGrowingSourceKeepsSelectionAndPlace();
    void homeAndEndGoToTheFirstAndTheLastRow();
    void aSelectedRowCanBeReadWhileTheGridIsOff();
    void zerosOfAHexViewCanBeRead();
};

void GridTest::columnsHaveTheToldTitlesAndWidths() {
    Grid grid;
    fill(grid);
    QCOMPARE(grid.columnTitle(0), std::string("Path"));
    QCOMPARE(grid.columnWidth(0), 420);
    QVERIFY(grid.isColumnHidden(2));
    QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Ext"));
}

void GridTest::numbersAndTheirTitleEndBelowEachOther() {
    Grid grid;
    grid.setColumns({{"Extension", 90}, {"Files", 50, false, true}});
    grid.setRows({{{"jpg", "1,000"}, {}}});
    const auto sidesOf = [&grid](int column) {
        const QVariant title = grid.model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole);
        const QVariant cell = grid.model()->index(0, column).data(Qt::TextAlignmentRole);
        return std::pair(title.toInt() & Qt::AlignHorizontal_Mask, cell.toInt() & Qt::AlignHorizontal_Mask);
    };
    QCOMPARE(sidesOf(0), std::pair(int{Qt::AlignLeft}, int{Qt::AlignLeft}));
    QCOMPARE(sidesOf(1), std::pair(int{Qt::AlignRight}, int{Qt::AlignRight}));
}

void GridTest::cellsReadBackAlsoInHiddenColumns() {
    Grid grid;
    fill(grid);
    QCOMPARE(grid.rowCount(), 3);
    QCOMPARE(grid.cell(0, 2), std::string("p1"));
    QCOMPARE(grid.cell(1, 2), std::string());
    QCOMPARE(grid.cell(9, 0), std::string());
}

void GridTest::aRowColourHasBlueInItsHighByteAndReadableText() {
    Grid grid;
    fill(grid);
    const QModelIndex cell = grid.model()->index(1, 0);
    QCOMPARE(cell.data(Qt::BackgroundRole).value<QBrush>().color(), QColor(0xFF, 0xC0, 0xC0));
    QCOMPARE(cell.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::black));
    QVERIFY(!grid.model()->index(0, 0).data(Qt::BackgroundRole).isValid());
}

void GridTest::aClickTellsItsRow() {
    Grid grid;
    fill(grid);
    grid.resize(600, 200);
    grid.show();
    QSignalSpy clicked(&grid, &Grid::rowClicked);
    const QRect cell = grid.visualRect(grid.model()->index(1, 0));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().first().toInt(), 1);
    QCOMPARE(grid.currentRow(), 1);
}

void GridTest::aRightClickMakesTheRowCurrentAndTellsIt() {
    Grid grid;
    fill(grid);
    grid.resize(600, 200);
    grid.show();
    QSignalSpy clicked(&grid, &Grid::rowRightClicked);
    const QPoint place = grid.visualRect(grid.model()->index(2, 0)).center();
    QContextMenuEvent menu(QContextMenuEvent::Mouse, place, grid.viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(grid.viewport(), &menu);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().first().toInt(), 2);
    QCOMPARE(grid.currentRow(), 2);
}

void GridTest::otherRowsHaveNoCurrentOne() {
    Grid grid;
    fill(grid);
    grid.setCurrentRow(1);
    grid.setRows(threeRows());
    QCOMPARE(grid.currentRow(), 1);
    grid.setRows({{{"/c"}, {}}});
    QCOMPARE(grid.currentRow(), -1);
    QCOMPARE(grid.cell(0, 0), std::string("/c"));
    grid.setRows({});
    QCOMPARE(grid.rowCount(), 0);
    QCOMPARE(grid.currentRow(), -1);
}

void GridTest::cellsShowMarkUpAsPlainText() {
    Grid grid;
    grid.setColumns({{"Term", 100, false}});
    grid.setRows({{{"<b>bold</b> (<512 bytes)"}, {}}});
    QCOMPARE(grid.model()->index(0, 0).data().toString(), QStringLiteral("<b>bold</b> (<512 bytes)"));
}

void GridTest::aMillionRowsOpenScrollAndSelectAtOnce() {
    const ManyRows source;
    Grid grid;
    grid.setColumns({{"Path", 420, false}, {"Ext", 50, false}});
    grid.setSelectionMode(QAbstractItemView::ExtendedSelection);
    grid.resize(800, 500);
    QElapsedTimer timer;
    timer.start();
    grid.rows().setSource(&source);
    grid.show();
    QCoreApplication::processEvents();
    grid.setCurrentRow(999'999);
    grid.scrollToRow(500'000);
    grid.selectAll();
    QCoreApplication::processEvents();
    const QItemSelection selected = grid.selectionModel()->selection();
    QCOMPARE(selected.size(), 1);
    QCOMPARE(selected.first().top(), 0);
    QCOMPARE(selected.first().bottom(), 999'999);
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
}

void GridTest::aGrowingSourceKeepsSelectionAndPlace() {
    TextRows source;
    source.rows.resize(100);
    Grid grid;
    grid.setColumns({{"Event", 330, false}});
    grid.rows().setSource(&source);
    grid.setCurrentRow(7);
    source.rows.resize(200);
    QCOMPARE(grid.rowCount(), 100);
    grid.rows().sourceGrew();
    QCOMPARE(grid.rowCount(), 200);
    QCOMPARE(grid.currentRow(), 7);
}

void GridTest::homeAndEndGoToTheFirstAndTheLastRow() {
    Grid grid;
    fill(grid);
    grid.show();
    for (const auto modifier : {Qt::NoModifier, Qt::ControlModifier}) {
        grid.setCurrentRow(1);
        QTest::keyClick(&grid, Qt::Key_End, modifier);
        QCOMPARE(grid.currentRow(), 2);
        QTest::keyClick(&grid, Qt::Key_Home, modifier);
        QCOMPARE(grid.currentRow(), 0);
    }
    grid.setCurrentRow(-1);
    QTest::keyClick(&grid, Qt::Key_End);
    QCOMPARE(grid.currentRow(), 2);
    grid.setRows({});
    QTest::keyClick(&grid, Qt::Key_Home);
    QCOMPARE(grid.currentRow(), -1);
}

// Contrast as the guidelines for accessible pages count it, from 1 to 21.
double contrast(const QColor& a, const QColor& b) {
    const auto light = [](const QColor& colour) {
        const auto part = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF()) + 0.05;
    };
    return std::max(light(a), light(b)) / std::min(light(a), light(b));
}

void GridTest::aSelectedRowCanBeReadWhileTheGridIsOff() {
    for (const Look look : {Look::Light, Look::Dark}) {
        applyLook(*qApp, look);
        const Grid grid;
        const auto off = [&grid](QPalette::ColorRole role) { return grid.palette().color(QPalette::Disabled, role); };
        QVERIFY(contrast(off(QPalette::Highlight), off(QPalette::HighlightedText)) >= 4.5);
    }
}

void GridTest::zerosOfAHexViewCanBeRead() {
    for (const Look look : {Look::Light, Look::Dark}) {
        applyLook(*qApp, look);
        const HexView bytes;
        QVERIFY(contrast(bytes.quietInk(), bytes.palette().color(QPalette::Base)) >= 4.5);
    }
}

QTEST_MAIN(GridTest)
#include "grid_test.moc"
