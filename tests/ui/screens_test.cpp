// SPDX-License-Identifier: MIT
// The screens that ask the share open also when it hangs: with a word on the screen, and without the share.

#include <QAction>
#include <QApplication>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include "support/hanging_share.h"
#include "ui/main_window.h"
#include "viewer/editor_handover.h"
#include "widgets/grid.h"
#include "widgets/share_wait_box.h"

using namespace quillon;
using namespace quillon::test;

class ScreensTest : public QObject {
    Q_OBJECT

private slots:
    void aShareThatHangsIsToldAndTheEditorsOpenWithoutIt_data();
    void aShareThatHangsIsToldAndTheEditorsOpenWithoutIt();
    void aShareThatHangsIsToldAndTheExtensionEditorOpensWithoutIt();
    void theWaitIsOverByItsButtonAlone();

private:
    void expectToldAndOpened(const QString& screen, const std::function<void(MainWindow&)>& press);
};

namespace {

// The visible window of this object name, or null.
QWidget* shown(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->objectName() == QLatin1String(name))
            return window;
    }
    return nullptr;
}

}  // namespace

void ScreensTest::aShareThatHangsIsToldAndTheEditorsOpenWithoutIt_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("screen");
    QTest::newRow("Edit Skip List") << "mnuEdit"
                                    << "frmSkipList";
    QTest::newRow("Edit Database") << "mnuDB"
                                   << "frmUpdatedb";
    QTest::newRow("Edit Common Header List") << "mnuEditCommon"
                                             << "frmCommonHeaders";
}

void ScreensTest::aShareThatHangsIsToldAndTheEditorsOpenWithoutIt() {
    QFETCH(QString, entry);
    QFETCH(QString, screen);
    expectToldAndOpened(screen, [&entry](MainWindow& main) { main.control<QAction>(qPrintable(entry)).trigger(); });
}

// It has no entry of its own: the viewer opens it, and it reads the shared term file as it opens.
void ScreensTest::aShareThatHangsIsToldAndTheExtensionEditorOpensWithoutIt() {
    expectToldAndOpened(QStringLiteral("frmExtEditor"), [](MainWindow& main) {
        EditorHandover handover;
        handover.extension = u"jpg";
        main.navigator.open(Screen::ExtEditor, handover);
    });
}

void ScreensTest::expectToldAndOpened(const QString& screen, const std::function<void(MainWindow&)>& press) {
    MainWindow main;
    std::filesystem::create_directory(main.temp / "share");
    main.addScreens();
    main.open();
    main.installation.settings.sharedPath.assign(pageFromPath(main.temp / "share"));
    main.installation.settings.useSharedDb = 1;
    main.installation.refreshPathVariables();
    const auto share = HangingShare::mount(main.temp / "share");
    if (share == nullptr)
        QSKIP("no file system can be mounted here");
    QStringList seen;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (QWidget* wait = shown("shareWait")) {
            seen << wait->objectName();
            controlOf<QPushButton>(*wait, "goOnLocally").click();
        } else if (QWidget* opened = shown(qPrintable(screen))) {
            seen << opened->objectName();
            opened->close();
        }
    });
    watch.start(5);
    press(main);
    QTRY_VERIFY(seen.contains(screen));
    watch.stop();
    seen.removeDuplicates();
    QCOMPARE(seen, (QStringList{QStringLiteral("shareWait"), screen}));
    QVERIFY(main.job.state.log.rows().back().text.ends_with(
        " does not answer: the local database is used until the next start"));
    QVERIFY(main.problems.isEmpty());
}

void ScreensTest::theWaitIsOverByItsButtonAlone() {
    ShareWaitBox box;
    box.show("The shared folder /mnt/<b>x</b> does not answer.");
    QCOMPARE(controlOf<QLabel>(box, "shareWaitText").text(),
             QStringLiteral("The shared folder /mnt/<b>x</b> does not answer."));
    QCOMPARE(controlOf<QLabel>(box, "shareWaitText").textFormat(), Qt::PlainText);
    QCOMPARE(controlOf<QProgressBar>(box, "shareWaitBar").maximum(), 0);
    QTest::keyClick(&box, Qt::Key_Escape);
    box.close();
    QVERIFY(box.isVisible());
    QVERIFY(!box.goesOn());
    controlOf<QPushButton>(box, "goOnLocally").click();
    QVERIFY(box.goesOn());
    box.hide();
    QVERIFY(!box.isVisible());
}

QTEST_MAIN(ScreensTest)
#include "screens_test.moc"
