// SPDX-License-Identifier: MIT
// The window's event loop on a clock that is set by hand.
#include "widgets/window_event_loop.h"

#include <QCoreApplication>
#include <QTest>

using namespace quillon;

namespace {

class SetClock final : public Clock {
public:
    LocalTime now() const override { return {}; }
    std::int64_t milliseconds() const override { return time; }

    std::int64_t time = 100000;
};

}  // namespace

class WindowEventLoopTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void aTurnRunsTheLoopWhenSixteenMillisecondsHavePassed();
    void screensAreRefreshedLessOftenThanTheLoopRuns();
    void aSlowRefreshPutsTheNextOneOff();
    void flushRefreshesAndRunsAtOnce();
    void aRemovedRefreshIsNotCalled();

private:
    /// Turns the loop once; true when an event that waited was delivered.
    bool turn();

    SetClock clock_;
    int refreshes_ = 0;
    std::int64_t refreshTakes_ = 0;
    std::unique_ptr<WindowEventLoop> loop_;
    int number_ = 0;
};

void WindowEventLoopTest::init() {
    refreshes_ = 0;
    refreshTakes_ = 0;
    loop_ = std::make_unique<WindowEventLoop>(clock_);
    number_ = loop_->addRefresh([this] {
        ++refreshes_;
        clock_.time += refreshTakes_;
    });
    loop_->flush();
    refreshes_ = 0;
}

bool WindowEventLoopTest::turn() {
    bool delivered = false;
    QObject receiver;  // goes with an event that was not delivered
    QMetaObject::invokeMethod(
        &receiver, [&delivered] { delivered = true; }, Qt::QueuedConnection);
    loop_->turn();
    return delivered;
}

void WindowEventLoopTest::aTurnRunsTheLoopWhenSixteenMillisecondsHavePassed() {
    clock_.time += 15;
    QVERIFY(!turn());
    clock_.time += 1;
    QVERIFY(turn());
    QVERIFY(!turn());
}

void WindowEventLoopTest::screensAreRefreshedLessOftenThanTheLoopRuns() {
    for (const int expected : {0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 2}) {
        clock_.time += 16;
        QVERIFY(turn());
        QCOMPARE(refreshes_, expected);
    }
}

void WindowEventLoopTest::aSlowRefreshPutsTheNextOneOff() {
    refreshTakes_ = 20;
    loop_->flush();
    clock_.time += 159;
    QVERIFY(turn());
    QCOMPARE(refreshes_, 1);
    clock_.time += 16;
    turn();
    QCOMPARE(refreshes_, 2);
    refreshTakes_ = 1000;
    loop_->flush();
    clock_.time += WindowEventLoop::kLongestRefresh;
    turn();
    QCOMPARE(refreshes_, 4);
}

void WindowEventLoopTest::flushRefreshesAndRunsAtOnce() {
    bool ran = false;
    QMetaObject::invokeMethod(
        this, [&ran] { ran = true; }, Qt::QueuedConnection);
    loop_->flush();
    loop_->flush();
    QVERIFY(ran);
    QCOMPARE(refreshes_, 2);
}

void WindowEventLoopTest::aRemovedRefreshIsNotCalled() {
    loop_->removeRefresh(number_);
    loop_->flush();
    QCOMPARE(refreshes_, 0);
}

QTEST_MAIN(WindowEventLoopTest)
#include "window_event_loop_test.moc"
