// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>

#include "editors/editor_screen.h"

using namespace quillon;

class FrmSkipListTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasItsNameAndCaption();
    void addLowersSortsAndSaves();
    void enterInTheEntryAdds();
    void enterOnTheEmptyEntryAddsNothing();
    void charactersThatThePageLacksAreToldBesideTheTerm();
    void anEqualTermIsTold();
    void aClickOnARowUpdatesIt();
    void theKeyboardSelectsRowsToo();
    void clearGoesBackToAdd();
    void deleteAsks();
    void theDeleteKeyAsksToo();
    void loadTakesAListFromAFile();
    void helpOpensTheHelp();
    void theHelpOfAModalScreenCanBeUsed();
    void doneAndTheCloseBoxShowTheMainWindow();
    void escapeShowsTheMainWindowToo();
    void modalWaitsUntilDone();

private:
    std::unique_ptr<test::EditorScreen> screen_;
};

constexpr const char* kList = "local/Settings/SkipList.dat";

void FrmSkipListTest::init() {
    screen_ = std::make_unique<test::EditorScreen>(Screen::SkipList);
    screen_->folder.write(kList, "alpha\r\nbeta\r\n");
    screen_->open();
}

void FrmSkipListTest::cleanup() {
    test::closeScreens(screen_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame2",
     "Criteria",
     {
         {"Label1", "Term"},
         {"TextBox1", ""},
         {"pageRemark_", "", false},
         {"Command1", "Add"},
         {"Command3", "Clear"},
     }},
    {"Frame1",
     "Current Terms",
     {
         {"iGrid1", ""},
         {"Command2", "Delete"},
     }},
    {"",
     "",
     {
         {"Command4", "Done"},
     }},
};

}  // namespace

void FrmSkipListTest::everyControlHasItsNameAndCaption() {
    QCOMPARE(screen_->window().objectName(), QStringLiteral("frmSkipList"));
    QCOMPARE(screen_->window().windowTitle(), QStringLiteral("Skip List"));
    QCOMPARE(test::misfits(screen_->window(), kControls), QStringList());
    QCOMPARE(test::captionOf(screen_->control<QMenu>("mnu")), QStringLiteral("File"));
    QCOMPARE(screen_->control<QAction>("mnuLoad").text(), QStringLiteral("Load"));
    QCOMPARE(screen_->control<QAction>("mnuHelp").text(), QStringLiteral("Help"));
    QCOMPARE(screen_->grid().columnTitle(0), std::string("Term"));
    QCOMPARE(screen_->rows(), (QStringList{QStringLiteral("alpha"), QStringLiteral("beta")}));
}

void FrmSkipListTest::addLowersSortsAndSaves() {
    screen_->type("TextBox1", "Aztec");
    screen_->click("Command1");
    QCOMPARE(screen_->rows(), (QStringList{QStringLiteral("alpha"), QStringLiteral("aztec"), QStringLiteral("beta")}));
    QCOMPARE(screen_->text("TextBox1"), QString());
    QCOMPARE(screen_->bytesOf(kList), std::string("alpha\r\naztec\r\nbeta\r\n"));
}

void FrmSkipListTest::enterInTheEntryAdds() {
    QTest::keyClicks(&screen_->control<QLineEdit>("TextBox1"), QStringLiteral("gamma"));
    QTest::keyClick(&screen_->control<QLineEdit>("TextBox1"), Qt::Key_Return);
    QCOMPARE(screen_->bytesOf(kList), std::string("alpha\r\nbeta\r\ngamma\r\n"));
}

void FrmSkipListTest::enterOnTheEmptyEntryAddsNothing() {
    QTest::keyClick(&screen_->control<QLineEdit>("TextBox1"), Qt::Key_Return);
    QCOMPARE(screen_->bytesOf(kList), std::string("alpha\r\nbeta\r\n"));
}

void FrmSkipListTest::charactersThatThePageLacksAreToldBesideTheTerm() {
    auto& remark = screen_->control<QLabel>("pageRemark_");
    screen_->type("TextBox1", "caf\xC3\xA9");
    QCOMPARE(remark.text(), QString());
    screen_->type("TextBox1", "\xD0\xB6*");
    QCOMPARE(remark.text(), QString::fromUtf8("Stored as \"?\" : \xD0\xB6"));
    screen_->click("Command1");
    QCOMPARE(remark.text(), QString());
    QCOMPARE(screen_->bytesOf(kList), std::string("?*\r\nalpha\r\nbeta\r\n"));
}

void FrmSkipListTest::anEqualTermIsTold() {
    screen_->type("TextBox1", "BETA");
    screen_->dialogs.expectBox("Quillon", "Term already in skip list. ");
    screen_->click("Command1");
    QCOMPARE(screen_->text("TextBox1"), QStringLiteral("BETA"));
}

void FrmSkipListTest::aClickOnARowUpdatesIt() {
    screen_->clickRow(1);
    QCOMPARE(screen_->text("TextBox1"), QStringLiteral("beta"));
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Update"));
    screen_->type("TextBox1", "AAA");
    screen_->click("Command1");
    QCOMPARE(screen_->rows(), (QStringList{QStringLiteral("aaa"), QStringLiteral("alpha")}));
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Add"));
}

void FrmSkipListTest::theKeyboardSelectsRowsToo() {
    screen_->clickRow(0);
    QTest::keyClick(&screen_->grid(), Qt::Key_Down);
    QCOMPARE(screen_->text("TextBox1"), QStringLiteral("beta"));
}

void FrmSkipListTest::clearGoesBackToAdd() {
    screen_->clickRow(1);
    screen_->click("Command3");
    QCOMPARE(screen_->text("TextBox1"), QString());
    QCOMPARE(screen_->caption("Command1"), QStringLiteral("Add"));
}

void FrmSkipListTest::deleteAsks() {
    screen_->click("Command2");
    screen_->clickRow(0);
    screen_->dialogs.expectBox("Delete term?", "Are you sure you want to delete the term \r\nalpha?", BoxAnswer::Yes);
    screen_->click("Command2");
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("beta")});
    QCOMPARE(screen_->grid().currentRow(), -1);
    QCOMPARE(screen_->bytesOf(kList), std::string("beta\r\n"));
}

void FrmSkipListTest::theDeleteKeyAsksToo() {
    screen_->clickRow(0);
    screen_->dialogs.expectBox("Delete term?", "Are you sure you want to delete the term \r\nalpha?", BoxAnswer::No);
    QTest::keyClick(&screen_->grid(), Qt::Key_Delete);
    QCOMPARE(screen_->rows().size(), 2);
}

void FrmSkipListTest::loadTakesAListFromAFile() {
    const NativePath chosen = screen_->folder.write("other.txt", "new\r\n");
    screen_->dialogs.expectBox("Overwrite existing skip list",
                               "Importing a skip list will overwrite the existing skip list. Do you want to continue?",
                               BoxAnswer::Yes);
    screen_->dialogs.expectFiles("Open Skip List", {chosen});
    screen_->control<QAction>("mnuLoad").trigger();
    QCOMPARE(screen_->rows(), QStringList{QStringLiteral("new")});
}

void FrmSkipListTest::helpOpensTheHelp() {
    screen_->control<QAction>("mnuHelp").trigger();
    QVERIFY(screen_->navigator.window(Screen::Help) != nullptr);
}

void FrmSkipListTest::theHelpOfAModalScreenCanBeUsed() {
    screen_->navigator.unload(Screen::SkipList);
    screen_->navigator.open(Screen::Help);
    bool reached = false;
    QTimer::singleShot(0, qApp, [this, &reached] {
        QVERIFY(QTest::qWaitForWindowActive(&screen_->window()));
        screen_->control<QAction>("mnuHelp").trigger();
        QWidget& help = screen_->windowOf(Screen::Help);
        QVERIFY(QTest::qWaitForWindowActive(&help));
        auto& search = test::controlOf<QLineEdit>(help, "search");
        test::controlOf<QWidget>(help, "contents").setFocus();
        QTest::mouseClick(help.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          search.mapTo(&help, search.rect().center()));
        reached = QTest::qWaitFor([&search] { return search.hasFocus(); });
        screen_->click("Command4");
    });
    screen_->navigator.openModal(Screen::SkipList);
    QVERIFY(reached);
    QVERIFY(screen_->windowOf(Screen::Help).isVisible());
}

void FrmSkipListTest::doneAndTheCloseBoxShowTheMainWindow() {
    screen_->click("Command4");
    QVERIFY(!screen_->isOpen());
    QCOMPARE(screen_->mainShown, 1);
    screen_->open();
    screen_->window().close();
    QCOMPARE(screen_->mainShown, 2);
}

void FrmSkipListTest::escapeShowsTheMainWindowToo() {
    test::EditorScreen::pressIn(screen_->window(), Qt::Key_Escape);
    QCOMPARE(screen_->mainShown, 1);
}

void FrmSkipListTest::modalWaitsUntilDone() {
    screen_->navigator.unload(Screen::SkipList);
    bool wasModal = false;
    QTimer::singleShot(0, qApp, [this, &wasModal] {
        wasModal = screen_->window().isModal();
        screen_->click("Command4");
    });
    screen_->navigator.openModal(Screen::SkipList);
    QVERIFY(wasModal);
    QVERIFY(screen_->navigator.window(Screen::SkipList) == nullptr);
}

QTEST_MAIN(FrmSkipListTest)
#include "frmSkipList_test.moc"
