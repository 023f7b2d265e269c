// SPDX-License-Identifier: MIT
// What a person does in the main window apart from running a job.

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

#include "archive/zip_handover.h"
#include "main_window.h"
#include "ui/frmMain.h"
#include "widgets/grid.h"
#include "widgets/qt_dialogs.h"

using namespace quillon;

class FrmMainActionsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void choosingTheSourceShowsItAndEnablesRun();
    void choosingTheSourceTwiceLeavesOneRow();
    void cancellingTheSourceShowsNone();
    void noAtTheOverwriteQuestionGoesBackToTheJobId();
    void choosingTheTargetShowsIt();
    void aDroppedFolderIsASource();
    void aDroppedFolderKeepsTheBytesOfItsName();
    void onlyOneFolderCanBeDropped();
    void aQuestionStandsOverWhatItAsksAbout();
    void theSeparatorEntryAsksAndSaves();
    void AutoUpdateStaysTicked();
    void CheckFoldersHasNoEffect();
    void aClickOnTheLogShowsItsRow();
    void clearLogAsksFirst();
    void openingAScreenBlocksItsEntry();
    void theToolbarOpensTheSameScreens();
    void setUpNetworkOpensFromTheSettingsButtonAndByItsKey();
    void setUpNetworkStaysShutDuringAJob();
    void viewAndZipHideTheWindow();
    void aScreenThatIsMissingLeavesTheWindow();
    void closingAsksAndNoKeepsTheWindow();
    void exitAsksNothingAndUnloadsAllScreens();
    void namesOfRecoveredFilesAreNoMarkUp();

private:
    void countNetworkSetups(int& opened);
    void click(const char* button) { main_->control<QPushButton>(button).click(); }
    /// Drags this over the window, and drops it if the window takes it; true when it did.
    static bool drop(frmMain& window, const QMimeData& data);
    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainActionsTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    std::filesystem::create_directories(main_->temp / "source");
    main_->open();
}

void FrmMainActionsTest::cleanup() {
    test::closeScreens(main_);
}

void FrmMainActionsTest::choosingTheSourceShowsItAndEnablesRun() {
    main_->chooseSource("1234");
    QCOMPARE(main_->text("lblSource"), toQtPath(main_->temp / "source"));
    QVERIFY(main_->control<QPushButton>("CommandButton3").isEnabled());
    QVERIFY(main_->control<QToolButton>("Toolbar1_3").isEnabled());
    QVERIFY(!main_->control<QPushButton>("CommandButton5").isEnabled());
    QVERIFY(!main_->control<QToolButton>("Toolbar1_4").isEnabled());
    QCOMPARE(main_->text("Label8"), QStringLiteral("Ready >"));
}

void FrmMainActionsTest::choosingTheSourceTwiceLeavesOneRow() {
    main_->chooseSource("1234");
    main_->dialogs.expectFolder("Select source", main_->temp / "source");
    main_->control<QToolButton>("Toolbar1_1").click();
    const auto& log = main_->control<Grid>("iGrid1");
    QCOMPARE(log.rowCount(), 1);
    QCOMPARE(log.cell(0, 0), std::string("10:20:30"));
    QCOMPARE(log.cell(0, 1), "Source : " + (main_->temp / "source").string());
}

void FrmMainActionsTest::cancellingTheSourceShowsNone() {
    main_->chooseSource("1234");
    main_->dialogs.expectFolder("Select source", std::nullopt);
    click("CommandButton1");
    QCOMPARE(main_->text("lblSource"), QStringLiteral("None"));
    QVERIFY(!main_->control<QPushButton>("CommandButton3").isEnabled());
    QVERIFY(!main_->control<QToolButton>("Toolbar1_3").isEnabled());
}

void FrmMainActionsTest::noAtTheOverwriteQuestionGoesBackToTheJobId() {
    const std::string list = main_->temp.write("local/1234.csv", "").string();
    main_->dialogs.expectFolder("Select source", main_->temp / "source");
    main_->dialogs.expectBox("Overwrite File List?",
                             "The file (" + list + ") already exists. Do you want to overwrite it?", BoxAnswer::No,
                             BoxStyle::Question, BoxButtons::YesNo);
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    main_->window->activateWindow();
    main_->control<QPushButton>("CommandButton1").setFocus();
    click("CommandButton1");
    QVERIFY(!main_->job.state.options.overwriteConfirmed);
    QCOMPARE(main_->window->focusWidget(), &main_->control<QLineEdit>("Textbox1"));
}

void FrmMainActionsTest::choosingTheTargetShowsIt() {
    std::filesystem::create_directories(main_->temp / "target");
    main_->control<QCheckBox>("chkCopy").setChecked(true);
    main_->dialogs.expectFolder("Select Target", main_->temp / "target");
    click("Command1");
    QCOMPARE(main_->text("lblTarget"), toQtPath(main_->temp / "target"));
}

bool FrmMainActionsTest::drop(frmMain& window, const QMimeData& data) {
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &drop);
    return drop.isAccepted();
}

void FrmMainActionsTest::aDroppedFolderIsASource() {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(toQtPath(main_->temp / "source"))});
    QVERIFY(!drop(*main_->window, data));
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    QVERIFY(drop(*main_->window, data));
    QCOMPARE(main_->text("lblSource"), toQtPath(main_->temp / "source"));
    QVERIFY(main_->control<QPushButton>("CommandButton3").isEnabled());
}

void FrmMainActionsTest::aDroppedFolderKeepsTheBytesOfItsName() {
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    for (const char* name : {"no UTF-8 \xE4 100%25", "\xC3\xA4 #?&", "plain"}) {
        const NativePath folder = main_->temp / name;
        std::filesystem::create_directories(folder);
        QMimeData data;
        const QByteArray bytes = QByteArray::fromStdString(folder.native()).toPercentEncoding("/");
        data.setData(QStringLiteral("text/uri-list"), "file://" + bytes + "/\r\n");
        QVERIFY2(drop(*main_->window, data), name);
        QCOMPARE(main_->job.state.options.source.value_or(NativePath()).native(), folder.native());
    }
}

void FrmMainActionsTest::onlyOneFolderCanBeDropped() {
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    const QUrl folder = QUrl::fromLocalFile(toQtPath(main_->temp / "source"));
    const QUrl file = QUrl::fromLocalFile(toQtPath(main_->temp.write("file", "")));
    const QUrl elsewhere(QStringLiteral("smb://server/source"));
    for (const QList<QUrl>& urls : {QList<QUrl>{folder, folder}, {file}, {elsewhere}, {}}) {
        QMimeData data;
        data.setUrls(urls);
        QVERIFY(!drop(*main_->window, data));
    }
    QCOMPARE(main_->text("lblSource"), QStringLiteral("None"));
}

void FrmMainActionsTest::aQuestionStandsOverWhatItAsksAbout() {
    main_->temp.write("local/1234.csv", "");
    QtDialogs dialogs([this] { main_->loop.refreshScreens(); });
    const Surroundings surroundings{main_->clock, main_->dates, dialogs, main_->loop, "LAB7"};
    Job job(main_->installation, surroundings);
    const ScreenContext context{main_->installation, surroundings, job.kept(), main_->navigator, main_->loop};
    frmMain window(context, job, {});
    window.reloadForm();
    window.findChild<QLineEdit*>(QStringLiteral("Textbox1"))->setText(QStringLiteral("1234"));
    QTimer::singleShot(0, &window, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        QCOMPARE(window.findChild<QLabel*>(QStringLiteral("lblSource"))->text(), toQtPath(main_->temp / "source"));
        QCOMPARE(window.findChild<Grid*>(QStringLiteral("iGrid1"))->rowCount(), 1);
        QVERIFY(window.findChild<QToolButton*>(QStringLiteral("Toolbar1_3"))->isEnabled());
        box->button(QMessageBox::No)->click();
    });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(toQtPath(main_->temp / "source"))});
    QVERIFY(drop(window, data));
    QVERIFY(!job.state.options.overwriteConfirmed);
}

void FrmMainActionsTest::theSeparatorEntryAsksAndSaves() {
    main_->dialogs.expectInput("File list separator", "Enter a file list separator : ", "_", "-");
    main_->control<QAction>("mnuFLS").trigger();
    QCOMPARE(main_->control<QLineEdit>("Text1").text(), QStringLiteral("_"));
    QCOMPARE(main_->installation.paths().fileListSeparator, std::string("_"));
}

void FrmMainActionsTest::AutoUpdateStaysTicked() {
    auto& entry = main_->control<QAction>("mnuAutoUpdate");
    QVERIFY(entry.isChecked());
    entry.trigger();
    QVERIFY(entry.isChecked());
}

void FrmMainActionsTest::CheckFoldersHasNoEffect() {
    const JobCounters before = main_->job.state.counters;
    click("Command5");
    QVERIFY(main_->job.state.counters == before);
    QCOMPARE(main_->control<Grid>("iGrid1").rowCount(), 0);
}

void FrmMainActionsTest::aClickOnTheLogShowsItsRow() {
    main_->chooseSource("1234");
    auto& log = main_->control<Grid>("iGrid1");
    const QRect cell = log.visualRect(log.model()->index(0, 1));
    QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, QPoint(cell.left() + 5, cell.center().y()));
    QCOMPARE(main_->text("sFileTU"), toQt("10:20:30 - Source : " + (main_->temp / "source").string()));
    QVERIFY(main_->control<QLabel>("sFileTU").isVisible());
}

void FrmMainActionsTest::clearLogAsksFirst() {
    click("Command4");
    main_->chooseSource("1234");
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        main_->dialogs.expectBox("Clear log?", "Clear the log?", answer, BoxStyle::Question, BoxButtons::YesNo);
        click("Command4");
        QCOMPARE(main_->control<Grid>("iGrid1").rowCount(), answer == BoxAnswer::Yes ? 0 : 1);
    }
}

void FrmMainActionsTest::openingAScreenBlocksItsEntry() {
    const std::tuple<Screen, const char*, const char*> screens[] = {
        {Screen::SetupWizard, "mnuSettings", "Toolbar1_7"},
        {Screen::SkipList, "mnuEdit", "Toolbar1_8"},
        {Screen::Updatedb, "mnuDB", "Toolbar1_9"},
        {Screen::CommonHeaders, "mnuEditCommon", "Toolbar1_10"},
        {Screen::Errors, "mnuErrors", "Toolbar1_11"}};
    for (const auto& [screen, entryName, buttonName] : screens) {
        auto& entry = main_->control<QAction>(entryName);
        auto& button = main_->control<QToolButton>(buttonName);
        bool seen = false;
        main_->navigator.add(screen, [&, opened = screen](const std::any&) {
            QTimer::singleShot(0, this, [&, opened] {
                seen = !entry.isEnabled() && !button.isEnabled();
                main_->navigator.window(opened)->close();
            });
            return std::make_unique<QWidget>();
        });
        entry.trigger();
        QVERIFY2(seen, entryName);
        QVERIFY(entry.isEnabled());
        QVERIFY(button.isEnabled());
        QVERIFY(main_->navigator.window(screen) == nullptr);
    }
}

void FrmMainActionsTest::theToolbarOpensTheSameScreens() {
    bool opened = false;
    main_->navigator.add(Screen::SkipList, [&](const std::any&) {
        opened = true;
        QTimer::singleShot(0, this, [this] { main_->navigator.window(Screen::SkipList)->close(); });
        return std::make_unique<QWidget>();
    });
    main_->control<QToolButton>("Toolbar1_8").click();
    QVERIFY(opened);
}

// A screen in place of "Set up Network" that counts its openings and closes at once.
void FrmMainActionsTest::countNetworkSetups(int& opened) {
    main_->navigator.add(Screen::SetupNetwork, [this, &opened](const std::any&) {
        ++opened;
        QTimer::singleShot(0, this, [this] { main_->navigator.window(Screen::SetupNetwork)->close(); });
        return std::make_unique<QWidget>();
    });
}

void FrmMainActionsTest::setUpNetworkOpensFromTheSettingsButtonAndByItsKey() {
    auto& entry = main_->control<QAction>("openSetupNetwork");
    QCOMPARE(entry.text(), QStringLiteral("Set up Network"));
    auto& settings = main_->control<QToolButton>("Toolbar1_7");
    QCOMPARE(settings.contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(settings.actions(), QList<QAction*>{&entry});
    const auto entries = main_->control<QMenu>("mnu").actions();
    QVERIFY2(entries.indexOf(&entry) > entries.indexOf(&main_->control<QAction>("mnuAutoUpdate")),
             "below the entries of the menu's own");
    int opened = 0;
    countNetworkSetups(opened);
    main_->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(main_->window.get()));
    QTest::keyClick(main_->window.get(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(opened, 1);
    entry.trigger();
    QCOMPARE(opened, 2);
    QVERIFY(main_->navigator.window(Screen::SetupNetwork) == nullptr);
}

void FrmMainActionsTest::setUpNetworkStaysShutDuringAJob() {
    int opened = 0;
    countNetworkSetups(opened);
    main_->makePictures(3);
    main_->chooseSource("1234");
    bool pressed = false;
    QTimer::singleShot(0, this, [&] {
        pressed = main_->window->isJobRunning();
        main_->control<QAction>("openSetupNetwork").trigger();
    });
    click("CommandButton3");
    QVERIFY(pressed);
    QCOMPARE(opened, 0);
}

void FrmMainActionsTest::viewAndZipHideTheWindow() {
    ZipHandover handed;
    main_->navigator.add(Screen::ViewList, [](const std::any&) { return std::make_unique<QWidget>(); });
    main_->navigator.add(Screen::Zip, [&](const std::any& handOver) {
        handed = std::any_cast<ZipHandover>(handOver);
        return std::make_unique<QWidget>();
    });
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    for (const char* button : {"CommandButton5", "CommandButton6"}) {
        click(button);
        QVERIFY(!main_->window->isVisible());
        main_->window->showMain();
        QVERIFY(main_->window->isVisible());
    }
    QCOMPARE(handed.jobId, std::string("1234"));
    QCOMPARE(handed.separator, std::string("-"));
}

void FrmMainActionsTest::aScreenThatIsMissingLeavesTheWindow() {
    click("CommandButton6");
    QVERIFY(main_->window->isVisible());
}

void FrmMainActionsTest::closingAsksAndNoKeepsTheWindow() {
    QSignalSpy ended(main_->window.get(), &frmMain::shutDown);
    main_->dialogs.expectBox("Exit?", "Exit the program, are you sure?", BoxAnswer::No, BoxStyle::Question,
                             BoxButtons::YesNo);
    QVERIFY(!main_->window->close());
    QVERIFY(main_->window->isVisible());
    QCOMPARE(ended.count(), 0);
    main_->dialogs.expectBox("Exit?", "Exit the program, are you sure?", BoxAnswer::Yes);
    QVERIFY(main_->window->close());
    QVERIFY(!main_->window->isVisible());
    QCOMPARE(ended.count(), 1);
}

void FrmMainActionsTest::exitAsksNothingAndUnloadsAllScreens() {
    QSignalSpy ended(main_->window.get(), &frmMain::shutDown);
    main_->navigator.add(Screen::ViewList, [](const std::any&) { return std::make_unique<QWidget>(); });
    main_->navigator.open(Screen::ViewList);
    main_->control<QAction>("mnuExit").trigger();
    QCOMPARE(ended.count(), 1);
    QVERIFY(main_->navigator.window(Screen::ViewList) == nullptr);
    QVERIFY(!main_->window->isVisible());
    main_->window->unloadAllForms();
    QCOMPARE(ended.count(), 1);
}

void FrmMainActionsTest::namesOfRecoveredFilesAreNoMarkUp() {
    const NativePath odd = main_->temp / "<b>bold";
    std::filesystem::create_directories(odd);
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("1234"));
    main_->dialogs.expectFolder("Select source", odd);
    click("CommandButton1");
    const auto& label = main_->control<QLabel>("lblSource");
    QCOMPARE(label.text(), toQtPath(odd));
    QCOMPARE(label.textFormat(), Qt::PlainText);
}

QTEST_MAIN(FrmMainActionsTest)
#include "frmMain_actions_test.moc"
