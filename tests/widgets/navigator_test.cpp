// SPDX-License-Identifier: MIT
#include "widgets/navigator.h"

#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include "support/temp_folder.h"

using namespace quillon;

class NavigatorTest : public QObject {
    Q_OBJECT

private slots:
    void aScreenThatNobodyMadeOpensNothing();
    void anOpenScreenIsShownAgainAsItIs();
    void aModalScreenIsWaitedForAndUnloaded();
    void hidingEndsTheWaitLikeClosing();
    void whatIsHandedOverReachesTheScreen();
    void allScreensUnload();
    void anUnloadedScreenGoesWithTheNavigatorAtTheLatest();
    void aScreenOpensOverItsOpener();
    void aHiddenScreenComesBackWhereItStood();
};

void NavigatorTest::aScreenThatNobodyMadeOpensNothing() {
    Navigator navigator;
    QVERIFY(!navigator.has(Screen::Zip));
    navigator.open(Screen::Zip);
    navigator.openModal(Screen::Zip);
    QVERIFY(navigator.window(Screen::Zip) == nullptr);
}

void NavigatorTest::anOpenScreenIsShownAgainAsItIs() {
    Navigator navigator;
    int made = 0;
    navigator.add(Screen::ViewList, [&](const std::any&) {
        ++made;
        return std::make_unique<QWidget>();
    });
    navigator.open(Screen::ViewList);
    navigator.hide(Screen::ViewList);
    QVERIFY(!navigator.window(Screen::ViewList)->isVisible());
    navigator.open(Screen::ViewList);
    QVERIFY(navigator.window(Screen::ViewList)->isVisible());
    QCOMPARE(made, 1);
    navigator.unload(Screen::ViewList);
    QVERIFY(navigator.window(Screen::ViewList) == nullptr);
    navigator.open(Screen::ViewList);
    QCOMPARE(made, 2);
}

void NavigatorTest::aModalScreenIsWaitedForAndUnloaded() {
    Navigator navigator;
    bool wasModal = false;
    navigator.add(Screen::Errors, [&](const std::any&) {
        QTimer::singleShot(0, this, [&] {
            wasModal = navigator.window(Screen::Errors)->isModal();
            navigator.window(Screen::Errors)->close();
        });
        return std::make_unique<QWidget>();
    });
    navigator.openModal(Screen::Errors);
    QVERIFY(wasModal);
    QVERIFY(navigator.window(Screen::Errors) == nullptr);
}

void NavigatorTest::hidingEndsTheWaitLikeClosing() {
    Navigator navigator;
    navigator.add(Screen::Errors, [&](const std::any&) {
        QTimer::singleShot(0, this, [&] { navigator.hide(Screen::Errors); });
        return std::make_unique<QWidget>();
    });
    navigator.openModal(Screen::Errors);
    QVERIFY(navigator.window(Screen::Errors) == nullptr);
}

void NavigatorTest::whatIsHandedOverReachesTheScreen() {
    Navigator navigator;
    int number = 0;
    navigator.add(Screen::Zip, [&](const std::any& handOver) {
        number = std::any_cast<int>(handOver);
        return std::make_unique<QWidget>();
    });
    navigator.open(Screen::Zip, 42);
    QCOMPARE(number, 42);
}

void NavigatorTest::allScreensUnload() {
    Navigator navigator;
    for (const Screen screen : {Screen::ViewList, Screen::ExtEditor}) {
        navigator.add(screen, [](const std::any&) { return std::make_unique<QWidget>(); });
        navigator.open(screen);
    }
    navigator.unloadAll();
    QVERIFY(navigator.window(Screen::ViewList) == nullptr);
    QVERIFY(navigator.window(Screen::ExtEditor) == nullptr);
}

// An opener in the middle of the screen, and one at its edge: the new window stays whole on the screen.
void NavigatorTest::anUnloadedScreenGoesWithTheNavigatorAtTheLatest() {
    QPointer<QWidget> window;
    {
        Navigator navigator;
        navigator.add(Screen::ViewList, [](const std::any&) { return std::make_unique<QWidget>(); });
        navigator.open(Screen::ViewList);
        window = navigator.window(Screen::ViewList);
        navigator.unload(Screen::ViewList);
        QVERIFY2(!window.isNull(), "it may be on the stack");
    }
    QVERIFY(window.isNull());
}

void NavigatorTest::aScreenOpensOverItsOpener() {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget opener;
    opener.resize(200, 100);
    opener.show();
    for (const QPoint centre : {room.center(), room.bottomRight(), room.topLeft()}) {
        opener.move(centre - QPoint(100, 50));
        opener.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&opener));
        Navigator navigator;
        navigator.add(Screen::Zip, [](const std::any&) {
            auto made = std::make_unique<QWidget>();
            made->resize(300, 200);
            return made;
        });
        navigator.open(Screen::Zip);
        const QRect place = navigator.window(Screen::Zip)->frameGeometry();
        QVERIFY(room.contains(place));
        if (centre == room.center())
            QVERIFY((place.center() - opener.frameGeometry().center()).manhattanLength() <= 2);
    }
}

void NavigatorTest::aHiddenScreenComesBackWhereItStood() {
    Navigator navigator;
    navigator.add(Screen::ViewList, [](const std::any&) { return std::make_unique<QWidget>(); });
    navigator.open(Screen::ViewList);
    navigator.window(Screen::ViewList)->move(70, 90);
    navigator.hide(Screen::ViewList);
    navigator.open(Screen::ViewList);
    QCOMPARE(navigator.window(Screen::ViewList)->pos(), QPoint(70, 90));
}

QTEST_MAIN(NavigatorTest)
#include "navigator_test.moc"
