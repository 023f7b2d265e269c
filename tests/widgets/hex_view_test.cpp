// SPDX-License-Identifier: MIT
#include "widgets/hex_view.h"

#include <QAccessible>
#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace quillon;

namespace {

std::string sampleBytes() {
    std::string bytes = "MZ";
    for (int i = 2; i < 512; ++i) bytes.push_back(static_cast<char>(i));
    return bytes;
}

}  // namespace

class HexViewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void newBytesPutTheCaretOnTheFirstAndTellNothing();
    void aClickOnAByteTellsItsPositionInBothPanes();
    void aClickOnTheCaretsByteTellsItAgain();
    void keysMoveTheCaretAndScroll();
    void shiftSelectsAndCopyTakesThePanesForm();
    void noCharacterIsCutOffAtAnySize();
    void readersSeeTheDumpAndTheCaret();
    void withoutBytesNothingHappens();
    void allOfASectorIsInViewAtTheSizeItAsksFor();
    void aSelectionBeginsAtItsFirstByteWhicheverWayItWasMade();

private:
    HexView* view_ = nullptr;
};

void HexViewTest::init() {
    view_ = new HexView;
    view_->resize(view_->sizeHint().width(), view_->sizeHint().height() / 2);
    view_->setBytes(sampleBytes());
    view_->show();
}

void HexViewTest::cleanup() {
    delete view_;
}

void HexViewTest::newBytesPutTheCaretOnTheFirstAndTellNothing() {
    QSignalSpy moved(view_, &HexView::caretMoved);
    view_->setCaret(100);
    view_->setBytes("abc");
    QCOMPARE(view_->caret(), 0);
    QCOMPARE(moved.count(), 0);
}

void HexViewTest::aClickOnAByteTellsItsPositionInBothPanes() {
    QSignalSpy moved(view_, &HexView::caretMoved);
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, view_->byteRect(37, HexPane::Hex).center());
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, view_->byteRect(90, HexPane::Text).center());
    QCOMPARE(moved.count(), 2);
    QCOMPARE(moved.at(0).first().toInt(), 37);
    QCOMPARE(moved.at(1).first().toInt(), 90);
    QCOMPARE(view_->caret(), 90);
}

void HexViewTest::aClickOnTheCaretsByteTellsItAgain() {
    QSignalSpy moved(view_, &HexView::caretMoved);
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, view_->byteRect(0, HexPane::Hex).center());
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved.first().first().toInt(), 0);
}

void HexViewTest::keysMoveTheCaretAndScroll() {
    QTest::keyClick(view_, Qt::Key_Down);
    QTest::keyClick(view_, Qt::Key_Right);
    QCOMPARE(view_->caret(), 17);
    QTest::keyClick(view_, Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(view_->caret(), 511);
    QVERIFY(view_->verticalScrollBar()->value() > 0);
    QVERIFY(view_->viewport()->rect().contains(view_->byteRect(511, HexPane::Hex)));
}

void HexViewTest::shiftSelectsAndCopyTakesThePanesForm() {
    QTest::keyClick(view_, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(view_->selection().first, 0);
    QCOMPARE(view_->selection().count, 2);
    QCOMPARE(view_->selectedBytes(), std::string("MZ"));
    QTest::keyClick(view_, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("4D 5A"));
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, view_->byteRect(0, HexPane::Text).center());
    QCOMPARE(view_->selection().count, 0);
    QTest::keyClick(view_, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(view_->selectionText(), QStringLiteral("MZ"));
}

void HexViewTest::noCharacterIsCutOffAtAnySize() {
    for (double size = 6; size < 25; size += 0.5) {
        QFont font = view_->font();
        font.setPointSizeF(size);
        view_->setFont(font);
        const QRect pair = view_->byteRect(0, HexPane::Hex);
        const QFontMetricsF metrics(font);
        QVERIFY2(metrics.horizontalAdvance(QStringLiteral("4D")) <= pair.width(), qPrintable(font.toString()));
        // Two columns lie between an offset and the first pair, and an eighth of the offset is one of its digits.
        const int offsetWidth = HexLayout::kOffsetColumns * pair.width() / 2;
        QVERIFY2(metrics.horizontalAdvance(QStringLiteral("000001F0")) <= offsetWidth, qPrintable(font.toString()));
    }
}

void HexViewTest::readersSeeTheDumpAndTheCaret() {
    QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(view_);
    QVERIFY(reader != nullptr);
    QVERIFY(reader->text(QAccessible::Value).startsWith(QStringLiteral("00000000  4D 5A 02 03")));
    view_->setCaret(16);
    QCOMPARE(reader->text(QAccessible::Description), QStringLiteral("Offset 00000010, byte 10"));
}

void HexViewTest::withoutBytesNothingHappens() {
    view_->setBytes({});
    QSignalSpy moved(view_, &HexView::caretMoved);
    QTest::keyClick(view_, Qt::Key_Down);
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, QPoint(120, 10));
    QCOMPARE(moved.count(), 0);
    QCOMPARE(view_->selection().count, 0);
}

void HexViewTest::allOfASectorIsInViewAtTheSizeItAsksFor() {
    view_->resize(view_->sizeHint());
    QCOMPARE(view_->verticalScrollBar()->maximum(), 0);
    QVERIFY(view_->viewport()->rect().contains(view_->byteRect(511, HexPane::Text)));
}

void HexViewTest::aSelectionBeginsAtItsFirstByteWhicheverWayItWasMade() {
    const auto drag = [this](int from, int to) {
        QTest::mousePress(view_->viewport(), Qt::LeftButton, {}, view_->byteRect(from, HexPane::Hex).center());
        QTest::mouseMove(view_->viewport(), view_->byteRect(to, HexPane::Hex).center());
        QTest::mouseRelease(view_->viewport(), Qt::LeftButton, {}, view_->byteRect(to, HexPane::Hex).center());
    };
    drag(4, 9);
    QCOMPARE(view_->selection().first, 4);
    drag(9, 4);
    QCOMPARE(view_->selection().first, 4);
    QCOMPARE(view_->selection().count, 6);
}

QTEST_MAIN(HexViewTest)
#include "hex_view_test.moc"
