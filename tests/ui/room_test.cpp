// SPDX-License-Identifier: MIT
// The main window has room for what it shows: with every count at its largest, no text is cut, in small windows and
// large ones, in three sizes of the font and in both looks. Run once for each scale of the screen.
#include <array>
#include <limits>

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "job/job_state.h"
#include "ui/main_window.h"
#include "widgets/elided_label.h"
#include "widgets/theme.h"

using namespace quillon;

class RoomTest : public QObject {
    Q_OBJECT

private slots:
    void everyTextHasRoom_data();
    void everyTextHasRoom();
    void aCopyStretchesNoButtons();
    void onlyWhatIsTooMuchIsScrolled();
    void cleanup() { test::closeScreens(main_); }

private:
    void fill() const;
    [[nodiscard]] QStringList cutTexts() const;

    std::unique_ptr<test::MainWindow> main_;
};

void RoomTest::everyTextHasRoom_data() {
    QTest::addColumn<int>("points");
    QTest::addColumn<bool>("dark");
    for (const int points : {9, 11, 14})
        for (const bool dark : {false, true})
            QTest::addRow("%d points, %s", points, dark ? "dark" : "light") << points << dark;
}

void RoomTest::fill() const {
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    JobState& state = main_->job.state;
    JobCounters& counts = state.counters;
    counts.folders = counts.folderErrors = counts.files = counts.skipped = counts.rowsRead = counts.copyErrors = kMost;
    for (std::int32_t& count : counts.grades.values) count = kMost;
    counts.totalBytes = std::numeric_limits<std::uint64_t>::max();
    state.sizeShown = true;
    state.texts.quality = state.texts.jobPercent = state.texts.filePercent = "100.00%";
    state.texts.throughput = "2,147,483,647 Files per minute";
    state.texts.copied = "2,147,483,647";
    state.texts.copiedCaption = "Copying file:";
    state.texts.statusPanel = "00:00:00";
    main_->window->showState();
}

// Names and texts of labels and buttons that show less than they have to say.
QStringList RoomTest::cutTexts() const {
    QStringList cut;
    const QRect whole = main_->window->rect();
    for (const QWidget* part : main_->window->findChildren<QWidget*>()) {
        if (!part->isVisible() || qobject_cast<const ElidedLabel*>(part) != nullptr)
            continue;
        const auto* label = qobject_cast<const QLabel*>(part);
        const bool isButton = qobject_cast<const QAbstractButton*>(part) != nullptr;
        if (label == nullptr && !isButton)
            continue;
        const QString text = test::captionOf(*part);
        const QRect place(part->mapTo(main_->window.get(), QPoint()), part->size());
        bool fits = place.left() >= 0 && place.right() <= whole.right();
        if (label != nullptr && label->wordWrap())
            fits = fits && label->height() >= label->heightForWidth(label->width());
        else if (label != nullptr)
            fits = fits && label->contentsRect().width() >= label->fontMetrics().horizontalAdvance(text) &&
                   label->contentsRect().height() >= label->fontMetrics().ascent();
        else
            fits = fits && part->width() >= part->minimumSizeHint().width();
        if (!fits)
            cut << part->objectName() +
                       QStringLiteral(" \"%1\" %2 wide at %3").arg(text).arg(part->width()).arg(place.left());
    }
    return cut;
}

void RoomTest::everyTextHasRoom() {
    QFETCH(int, points);
    QFETCH(bool, dark);
    QFont font = QApplication::font();
    font.setPointSize(points);
    QApplication::setFont(font);
    applyLook(*qApp, dark ? Look::Dark : Look::Light);
    main_ = std::make_unique<test::MainWindow>();
    main_->open();
    fill();
    for (const QSize size : {QSize(948, 496), QSize(1024, 700), QSize(1180, 780), QSize(1908, 1000)}) {
        main_->window->resize(size);
        QCoreApplication::processEvents();
        QCOMPARE(main_->window->size(), size);
        QCOMPARE(cutTexts(), QStringList());
        QVERIFY(!test::controlOf<QScrollArea>(*main_->window, "mainAreaScroll").horizontalScrollBar()->isVisible());
    }
}

void RoomTest::aCopyStretchesNoButtons() {
    main_ = std::make_unique<test::MainWindow>();
    main_->open();
    QCoreApplication::processEvents();
    std::array<int, 2> before{};
    const char* const buttons[] = {"Command4", "Command5"};
    for (std::size_t i = 0; i < 2; ++i) before[i] = main_->control<QPushButton>(buttons[i]).width();
    main_->job.state.fileLineShown = false;
    main_->window->showState();
    QCoreApplication::processEvents();
    QVERIFY(!main_->control<QLabel>("sFileTU").isVisible());
    for (std::size_t i = 0; i < 2; ++i) QCOMPARE(main_->control<QPushButton>(buttons[i]).width(), before[i]);
}

// Run and Stop, the status line, the log and the status bar stay in sight in the smallest window.
void RoomTest::onlyWhatIsTooMuchIsScrolled() {
    main_ = std::make_unique<test::MainWindow>();
    main_->open();
    main_->window->resize(948, 496);
    QCoreApplication::processEvents();
    for (const char* name : {"CommandButton3", "CommandButton4", "Label8", "iGrid1", "Command4", "StatusBar1_2"}) {
        const auto& part = main_->control<QWidget>(name);
        const QRect place(part.mapTo(main_->window.get(), QPoint()), part.size());
        QVERIFY2(main_->window->rect().contains(place), name);
    }
    auto& scroll = test::controlOf<QScrollArea>(*main_->window, "mainAreaScroll");
    QVERIFY(scroll.verticalScrollBar()->isVisible());
    main_->window->resize(1908, 1000);
    QCoreApplication::processEvents();
    QVERIFY(!scroll.verticalScrollBar()->isVisible());
}

QTEST_MAIN(RoomTest)
#include "room_test.moc"
