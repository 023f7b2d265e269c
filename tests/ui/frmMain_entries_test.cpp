// SPDX-License-Identifier: MIT
// The entries of the main window that open another screen or nothing, and the parts of it that have names of ours.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include "ui/main_window.h"
#include "widgets/look_switch.h"

using namespace quillon;

class FrmMainEntriesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyPartOfOursHasItsNameAndCaption();
    void theBoardShowsEachGradeInItsOwnCount();
    void aboutOpensBesideTheWindow();
    void entriesWithoutAFunctionOpenNothing();
    void theBadSectorEntryWouldHideTheWindow();
    void setUpNetworkOpensModal();
    void databaseHistoryOpensModal();
    void badSectorMarkersOpenModal();
    void withoutNetworkNothingIsFoundAndNothingSent();
    void theCommonHeadersBoxIsTheOptionOfTheNextTest();
    void withoutALookSwitchTheLookCannotBeChosen();
    void theLookIsChosenInTheMenu();
    void aRightClickNeverHidesTheToolbar();

private:
    [[nodiscard]] bool isOpen(Screen screen) const {
        const QWidget* window = main_->navigator.window(screen);
        return window != nullptr && window->isVisible();
    }
    void choose(const char* entry) const { main_->control<QAction>(entry).trigger(); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainEntriesTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->open();
}

void FrmMainEntriesTest::cleanup() {
    test::closeScreens(main_);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"Frame5", "Stats", {{"gradeBar", ""}, {"copiedNote", "Copied:"}}},
    {"", "", {{"Label2_1", "", false}, {"StatusBar1_2", ""}, {"jobPace", "", false}}},
};

}  // namespace

void FrmMainEntriesTest::everyPartOfOursHasItsNameAndCaption() {
    QCOMPARE(test::misfits(*main_->window, kControls), QStringList());
}

void FrmMainEntriesTest::theBoardShowsEachGradeInItsOwnCount() {
    const ByGrade<const char*> counts{{"lGoodFIles", "lCorruptFiles", "lNoextensioN", "lUnknownFiles", "lEncrypted",
                                       "lAccessErrors", "lSmallFiles", "lZeroBytes", "lBadFileName", "lCommon"}};
    for (std::size_t i = 0; i < kGradeCount; ++i)
        main_->job.state.counters.grades.values[i] = static_cast<std::int32_t>(1001 + i);
    main_->window->showState();
    for (std::size_t i = 0; i < kGradeCount; ++i)
        QCOMPARE(main_->text(counts.values[i]), QStringLiteral("1,0%1").arg(i + 1, 2, 10, QLatin1Char('0')));
}

void FrmMainEntriesTest::aboutOpensBesideTheWindow() {
    choose("mnuAbout");
    QVERIFY(isOpen(Screen::About));
    QVERIFY(main_->window->isVisible());
}

void FrmMainEntriesTest::entriesWithoutAFunctionOpenNothing() {
    for (const char* entry : {"mnuBS", "mnuMsgLogs", "mnuView"}) choose(entry);
    QVERIFY(!main_->control<QAction>("mnuBS").isEnabled());
    QVERIFY(!main_->control<QAction>("mnuMsgLogs").isEnabled());
    for (int screen = static_cast<int>(Screen::About); screen <= static_cast<int>(Screen::PreviewBadSector); ++screen)
        QVERIFY(main_->navigator.window(static_cast<Screen>(screen)) == nullptr);
    QVERIFY(main_->window->isVisible());
}

// The entry is switched off; what is behind it works all the same.
void FrmMainEntriesTest::theBadSectorEntryWouldHideTheWindow() {
    main_->control<QAction>("mnuBS").setEnabled(true);
    choose("mnuBS");
    QVERIFY(isOpen(Screen::BadSectors));
    QVERIFY(!main_->window->isVisible());
    test::controlOf<QPushButton>(*main_->navigator.window(Screen::BadSectors), "Command2").click();
    QVERIFY(main_->window->isVisible());
}

void FrmMainEntriesTest::setUpNetworkOpensModal() {
    bool wasModal = false;
    QTimer::singleShot(0, this, [&] {
        wasModal = isOpen(Screen::SetupNetwork) && main_->navigator.window(Screen::SetupNetwork)->isModal();
        main_->navigator.hide(Screen::SetupNetwork);
    });
    choose("openSetupNetwork");
    QVERIFY(wasModal);
    QVERIFY(!isOpen(Screen::SetupNetwork));
}

void FrmMainEntriesTest::badSectorMarkersOpenModal() {
    bool wasModal = false;
    QTimer::singleShot(0, this, [&] {
        wasModal = isOpen(Screen::SectorMarkers) && main_->navigator.window(Screen::SectorMarkers)->isModal();
        main_->navigator.hide(Screen::SectorMarkers);
    });
    choose("openSectorMarkers");
    QVERIFY(wasModal);
    QVERIFY(!isOpen(Screen::SectorMarkers));
}

void FrmMainEntriesTest::databaseHistoryOpensModal() {
    bool wasModal = false;
    QTimer::singleShot(0, this, [&] {
        wasModal = isOpen(Screen::History) && main_->navigator.window(Screen::History)->isModal();
        main_->navigator.hide(Screen::History);
    });
    choose("openHistory");
    QVERIFY(wasModal);
    QVERIFY(!isOpen(Screen::History));
}

// A window that was given no sockets and no network.
void FrmMainEntriesTest::withoutNetworkNothingIsFoundAndNothingSent() {
    for (const char* button : {"Command2", "Command3"}) main_->control<QPushButton>(button).click();
    QCOMPARE(main_->control<QComboBox>("Combo1").currentText(), QStringLiteral("Query"));
}

void FrmMainEntriesTest::theCommonHeadersBoxIsTheOptionOfTheNextTest() {
    auto& box = main_->control<QCheckBox>("chkCommon");
    for (const bool ticked : {false, true}) {
        box.setChecked(ticked);
        QCOMPARE(main_->job.state.options.useCommonHeaders, ticked);
    }
}

void FrmMainEntriesTest::withoutALookSwitchTheLookCannotBeChosen() {
    QVERIFY(!main_->control<QMenu>("mnuLook").isEnabled());
}

void FrmMainEntriesTest::theLookIsChosenInTheMenu() {
    LookSwitch look(*qApp, main_->temp / "app");
    main_->window.reset();
    main_->look = &look;
    main_->open();
    QVERIFY(main_->control<QAction>("lookDesktop").isChecked());
    const std::pair<const char*, LookChoice> entries[] = {
        {"lookDark", LookChoice::Dark}, {"lookLight", LookChoice::Light}, {"lookDesktop", LookChoice::Desktop}};
    for (const auto& [entry, choice] : entries) {
        choose(entry);
        QCOMPARE(look.choice(), choice);
        for (const auto& [other, unused] : entries)
            QCOMPARE(main_->control<QAction>(other).isChecked(), other == entry);
    }
    std::filesystem::remove_all(main_->temp / "app");
    choose("lookLight");
    QVERIFY(main_->text("Label8").startsWith(QStringLiteral("The look lasts until the program ends: ")));
    main_->window.reset();
    main_->look = nullptr;
}

// Its only entry would be the one that hides the toolbar.
void FrmMainEntriesTest::aRightClickNeverHidesTheToolbar() {
    for (const char* place : {"Toolbar1", "Toolbar1_3", "StatusBar1"}) {
        auto& part = main_->control<QWidget>(place);
        QContextMenuEvent rightClick(QContextMenuEvent::Mouse, part.rect().center(),
                                     part.mapToGlobal(part.rect().center()));
        QApplication::sendEvent(&part, &rightClick);
        QVERIFY(QApplication::activePopupWidget() == nullptr);
    }
    QVERIFY(static_cast<QMainWindow&>(*main_->window).createPopupMenu() == nullptr);
    QVERIFY(main_->control<QWidget>("Toolbar1").isVisible());
}

QTEST_MAIN(FrmMainEntriesTest)
#include "frmMain_entries_test.moc"
