// SPDX-License-Identifier: MIT
// The screen "Job Overview": every control by its name, and what each does.
#include <filesystem>

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "answers/frmOverview_bars.h"
#include "answers/frmOverview_map.h"
#include "support/screen_control.h"
#include "ui/main_window.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"

using namespace quillon;

class FrmOverviewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(main_); }
    void everyControlHasItsNameCaptionAndState();
    void everyControlWithoutACaptionHasAnAccessibleName();
    void theJobIsToldWithQualityAndBase();
    void barsAndLegendsTellTheirCountsInWords();
    void aFolderShowsItsFiles();
    void foldersAreSortedByTheWorst();
    void anExtensionAndAReasonShowTheirFiles();
    void aGradeShowsItsFilesAndShowAllDropsIt();
    void aRowOpensItsHead();
    void theMapIsWalkedByMouse();
    void theMapIsWalkedByKeys();
    void theMapShowsBytes();
    void showInViewerHandsGradeAndExtensionOver();
    void aComparisonShowsWhatDiffers();
    void exportAndReportAskForTheirPlace();
    void theFilesThatAreShownAreHandedToTheCopy();
    void aJobThatIsNotThereIsToldOf();
    void aCaseIsShownAsOne();
    void tabGoesThroughTheControlsInOrder();

private:
    template <typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        return test::controlOf<Control>(*screen_, name);
    }
    [[nodiscard]] QString text(const char* label) const { return control<QLabel>(label).text(); }
    void click(const char* button) const { control<QPushButton>(button).click(); }
    void open();
    [[nodiscard]] QStringList paths() const;
    void chooseRow(const char* grid, const char* name) const;

    std::unique_ptr<test::MainWindow> main_;
    QWidget* screen_ = nullptr;
};

// Two good pictures; below photos a corrupt one and one of a format that no rule knows.
void FrmOverviewTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
    main_->makePictures(2);
    main_->temp.write("source/photos/bad.jpg", std::string(600, '\0'));
    main_->temp.write("source/photos/what.xyz", std::string(600, 'x'));
    main_->open();
    main_->chooseSource("J1");
    main_->control<QPushButton>("CommandButton3").click();
    open();
}

void FrmOverviewTest::open() {
    main_->control<QAction>("openOverview").trigger();
    screen_ = main_->navigator.window(Screen::Overview);
    QVERIFY(screen_ != nullptr);
    QTRY_COMPARE(control<Grid>("files").rowCount(), 4);
    QTRY_COMPARE(text("matching"), QStringLiteral("4 files"));
}

QStringList FrmOverviewTest::paths() const {
    const auto& files = control<Grid>("files");
    QStringList all;
    for (int row = 0; row < files.rowCount(); ++row) all << toQt(files.cell(row, 0));
    return all;
}

void FrmOverviewTest::chooseRow(const char* grid, const char* name) const {
    auto& rows = control<Grid>(grid);
    for (int row = 0; row < rows.rowCount(); ++row)
        if (rows.cell(row, 0) == name)
            rows.setCurrentRow(row);
}

namespace {

const std::vector<test::FrameCase> kControls = {
    {"jobFrame",
     "Job",
     {{"jobName", "Job J1"},
      {"quality", "66.67%"},
      {"qualityBase", "of the 3 files that could be judged; 1 of 4 could not"},
      {"jobOrCase", "Job J1", false},
      {"jobBar", ""},
      {"gradeLegend", ""}}},
    {"foldersFrame", "Folders", {{"folders", ""}}},
    {"mapFrame",
     "Map",
     {{"mapUp", "Up", true, false},
      {"mapFolder", "All files"},
      {"mapArea", "Area: files"},
      {"map", ""},
      {"mapLegend", ""}}},
    {"figuresFrame", "Extensions and reasons", {{"extensions", ""}, {"reasons", ""}}},
    {"filesFrame",
     "Files",
     {{"filter", "All files of the job"},
      {"fileChoice", "All files"},
      {"showAll", "Show All"},
      {"files", ""},
      {"matching", "4 files"},
      {"headName", "Choose a file to see its first bytes"},
      {"head", ""}}},
    {"",
     "",
     {{"remark", "", false},
      {"toViewer", "Show in Viewer"},
      {"compareWith", "Compare with ..."},
      {"exportFiles", "Export ..."},
      {"writeReport", "Report ..."},
      {"copyFiles", "Copy These Files ..."},
      {"copyAgain", "Copy Again What Failed ..."},
      {"done", "Done"}}},
};

}  // namespace

void FrmOverviewTest::everyControlHasItsNameCaptionAndState() {
    QCOMPARE(screen_->objectName(), QStringLiteral("frmOverview"));
    QCOMPARE(screen_->windowTitle(), QStringLiteral("Job Overview"));
    QCOMPARE(test::misfits(*screen_, kControls), QStringList());
}

void FrmOverviewTest::everyControlWithoutACaptionHasAnAccessibleName() {
    for (const char* name :
         {"jobSource", "quality", "jobBar", "gradeLegend", "folders", "mapFolder", "mapArea", "map", "mapLegend",
          "jobOrCase", "extensions", "reasons", "filter", "fileChoice", "files", "head"})
        QVERIFY2(!control<QWidget>(name).accessibleName().isEmpty(), name);
}

void FrmOverviewTest::theJobIsToldWithQualityAndBase() {
    QCOMPARE(text("jobName"), QStringLiteral("Job J1"));
    QCOMPARE(text("jobSource"), toQt((main_->temp / "source").native()));
    QCOMPARE(text("quality"), QStringLiteral("66.67%"));
    QCOMPARE(text("qualityBase"), QStringLiteral("of the 3 files that could be judged; 1 of 4 could not"));
}

void FrmOverviewTest::barsAndLegendsTellTheirCountsInWords() {
    const QString words = QStringLiteral("Good 2, Corrupt 1, Unknown 1");
    QCOMPARE(control<JobBar>("jobBar").accessibleDescription(), words);
    QCOMPARE(control<GradeLegend>("gradeLegend").accessibleDescription(), words);
    QVERIFY(control<MapLegend>("mapLegend").accessibleDescription().contains(QStringLiteral("E: less than 50 %")));
    const auto& tree = control<QTreeView>("folders");
    const QModelIndex root = tree.model()->index(0, 0);
    QCOMPARE(root.siblingAtColumn(1).data().toString(), words);
    QCOMPARE(root.siblingAtColumn(2).data().toString(), QStringLiteral("66.67%"));
}

void FrmOverviewTest::aFolderShowsItsFiles() {
    auto& tree = control<QTreeView>("folders");
    const QModelIndex root = tree.model()->index(0, 0);
    QCOMPARE(root.data().toString(), QStringLiteral("All files"));
    const QModelIndex photos = tree.model()->index(0, 0, root);
    QCOMPARE(photos.data().toString(), QStringLiteral("photos"));
    QCOMPARE(photos.data(Qt::ToolTipRole).toString(), QStringLiteral("<span>photos</span>"));
    QCOMPARE(tree.textElideMode(), Qt::ElideMiddle);
    tree.setCurrentIndex(photos);
    QCOMPARE(paths(), QStringList({QStringLiteral("photos/bad.jpg"), QStringLiteral("photos/what.xyz")}));
    QCOMPARE(text("filter"), QStringLiteral("below photos"));
    QCOMPARE(text("matching"), QStringLiteral("2 files"));
}

void FrmOverviewTest::foldersAreSortedByTheWorst() {
    auto& tree = control<QTreeView>("folders");
    QVERIFY(tree.isSortingEnabled());
    QVERIFY(tree.header()->sectionsClickable());
    tree.sortByColumn(3, Qt::DescendingOrder);
    const QModelIndex photos = tree.model()->index(0, 0, tree.model()->index(0, 0));
    QCOMPARE(photos.siblingAtColumn(3).data().toString(), QStringLiteral("1"));
}

void FrmOverviewTest::anExtensionAndAReasonShowTheirFiles() {
    QCOMPARE(control<Grid>("extensions").cell(0, 0), std::string("All extensions"));
    chooseRow("extensions", "jpg");
    QCOMPARE(paths(),
             QStringList({QStringLiteral("p0.jpg"), QStringLiteral("p1.jpg"), QStringLiteral("photos/bad.jpg")}));
    chooseRow("reasons", "zero-filled");
    QCOMPARE(paths(), QStringList({QStringLiteral("photos/bad.jpg")}));
    QCOMPARE(text("filter"), QStringLiteral(".jpg \u00b7 zero-filled"));
    chooseRow("reasons", "All reasons");
    chooseRow("extensions", "All extensions");
    QCOMPARE(paths().size(), 4);
}

void FrmOverviewTest::aGradeShowsItsFilesAndShowAllDropsIt() {
    auto& choice = control<QComboBox>("fileChoice");
    choice.setCurrentIndex(choice.findText(QStringLiteral("Unknown")));
    QCOMPARE(paths(), QStringList({QStringLiteral("photos/what.xyz")}));
    click("showAll");
    QCOMPARE(choice.currentIndex(), 0);
    QCOMPARE(paths().size(), 4);
}

void FrmOverviewTest::aRowOpensItsHead() {
    control<Grid>("files").setCurrentRow(0);
    QCOMPARE(control<HexView>("head").bytes().substr(0, 4), std::string("\xFF\xD8\xFFx"));
    QCOMPARE(text("headName"), QStringLiteral("p0.jpg: its first 512 bytes"));
}

void FrmOverviewTest::theMapIsWalkedByMouse() {
    auto& map = control<FolderMap>("map");
    QCOMPARE(map.tileCount(), 2);
    QTest::mouseClick(&map, Qt::LeftButton, {}, map.tileRect(0).center());
    QCOMPARE(text("filter"), QStringLiteral("below photos"));
    QCOMPARE(text("mapFolder"), QStringLiteral("All files"));
    QTest::mouseDClick(&map, Qt::LeftButton, {}, map.tileRect(0).center());
    QCOMPARE(text("mapFolder"), QStringLiteral("photos"));
    QCOMPARE(control<QTreeView>("folders").currentIndex().data().toString(), QStringLiteral("photos"));
    click("mapUp");
    QCOMPARE(text("mapFolder"), QStringLiteral("All files"));
    QVERIFY(!control<QPushButton>("mapUp").isEnabled());
}

void FrmOverviewTest::theMapIsWalkedByKeys() {
    auto& map = control<FolderMap>("map");
    QVERIFY(map.accessibleDescription().startsWith(QStringLiteral("photos: 2 files")));
    QTest::keyClick(&map, Qt::Key_Return);
    QCOMPARE(text("mapFolder"), QStringLiteral("photos"));
    QTest::keyClick(&map, Qt::Key_Backspace);
    QCOMPARE(text("mapFolder"), QStringLiteral("All files"));
    QTest::keyClick(&map, Qt::Key_Right);
    QCOMPARE(map.currentTile(), 1);
    QVERIFY(map.accessibleDescription().startsWith(QStringLiteral("(files here): 2 files")));
    QTest::keyClick(&map, Qt::Key_Return);
    QCOMPARE(text("mapFolder"), QStringLiteral("All files"));
}

void FrmOverviewTest::theMapShowsBytes() {
    auto& area = control<QComboBox>("mapArea");
    QCOMPARE(test::itemsOf(area), QStringList({QStringLiteral("Area: files"), QStringLiteral("Area: bytes")}));
    area.setCurrentIndex(1);
    QVERIFY(control<FolderMap>("map").accessibleDescription().startsWith(QStringLiteral("(files here)")));
}

void FrmOverviewTest::showInViewerHandsGradeAndExtensionOver() {
    chooseRow("extensions", "jpg");
    click("toViewer");
    QVERIFY(main_->navigator.window(Screen::Overview) == nullptr);
    QWidget* const viewer = main_->navigator.window(Screen::ViewList);
    QVERIFY(viewer != nullptr && viewer->isVisible());
    QCOMPARE(test::controlOf<QComboBox>(*viewer, "Combo1").currentText(), QStringLiteral("Header Corrupt"));
    QCOMPARE(test::controlOf<QComboBox>(*viewer, "Combo2").currentText(), QStringLiteral("jpg"));
    QCOMPARE(test::controlOf<Grid>(*viewer, "iGrid1").rowCount(), 1);
}

void FrmOverviewTest::aComparisonShowsWhatDiffers() {
    main_->dialogs.expectFiles("Compare with", {main_->temp / "local/J1.sqlite"});
    click("compareWith");
    QCOMPARE(text("matching"), QStringLiteral("0 gained, 0 lost, 0 moved, 0 better, 0 worse, 4 same"));
    QCOMPARE(text("filter"), QStringLiteral("From J1 to J1"));
    QCOMPARE(control<Grid>("files").columnTitle(1), std::string("Change"));
    const auto isOn = [this](const char* button) { return control<QPushButton>(button).isEnabled(); };
    for (const char* button : {"exportFiles", "copyFiles", "copyAgain"}) QVERIFY2(!isOn(button), button);
    QVERIFY(isOn("compareWith") && isOn("writeReport"));
    click("showAll");
    for (const char* button : {"exportFiles", "copyFiles", "copyAgain"}) QVERIFY2(isOn(button), button);
    QCOMPARE(control<Grid>("files").columnTitle(1), std::string("Size"));
}

void FrmOverviewTest::exportAndReportAskForTheirPlace() {
    main_->dialogs.expectFolder("Export", main_->temp / "");
    main_->dialogs.expectInput(
        "Export", "Name of the file. Its ending tells the form: .csv, .jsonl or .xlsx, a workbook of a spreadsheet.",
        "files.csv", "J1.csv");
    click("exportFiles");
    QCOMPARE(text("remark"), QStringLiteral("Exported to ") + toQt((main_->temp / "files.csv").native()));
    QVERIFY(main_->temp.read("files.csv").find("photos/what.xyz") != std::string::npos);
    main_->dialogs.expectFolder("Report", std::nullopt);
    click("writeReport");
    QVERIFY(screen_->isVisible());
}

void FrmOverviewTest::theFilesThatAreShownAreHandedToTheCopy() {
    for (const auto& [button, again] : {std::pair("copyFiles", false), std::pair("copyAgain", true)}) {
        chooseRow("extensions", "xyz");
        QString what;
        bool isAgain = false;
        // The screen is modal: what is done with it happens within the click.
        QTimer::singleShot(0, this, [&] {
            QWidget* const copies = main_->navigator.window(Screen::Copies);
            what = test::controlOf<QLabel>(*copies, "what").text();
            isAgain = test::controlOf<QCheckBox>(*copies, "failedOnly").isChecked();
            test::controlOf<QPushButton>(*copies, "done").click();
        });
        click(button);
        QCOMPARE(what, QStringLiteral("Job J1: .xyz"));
        QCOMPARE(isAgain, again);
        QVERIFY(main_->navigator.window(Screen::Copies) == nullptr);
    }
    QVERIFY(screen_->isVisible());
}

void FrmOverviewTest::aJobThatIsNotThereIsToldOf() {
    click("done");
    main_->control<QLineEdit>("Textbox1").setText(QStringLiteral("J2"));
    main_->control<QAction>("openOverview").trigger();
    screen_ = main_->navigator.window(Screen::Overview);
    QTRY_COMPARE(text("remark"), QStringLiteral("there is no list and no evidence of \"J2\""));
    for (const char* button :
         {"toViewer", "compareWith", "exportFiles", "writeReport", "copyFiles", "copyAgain", "showAll"})
        QVERIFY2(!control<QPushButton>(button).isEnabled(), button);
    QVERIFY(control<QPushButton>("done").isEnabled());
}

void FrmOverviewTest::aCaseIsShownAsOne() {
    click("done");
    const auto at = [this](const char* name) { return main_->temp / "local" / name; };
    std::filesystem::copy_file(at("J1.sqlite"), at("J1-second.sqlite"));
    open();
    auto& choice = control<QComboBox>("jobOrCase");
    QVERIFY(choice.isVisible());
    QCOMPARE(test::itemsOf(choice), QStringList({QStringLiteral("Job J1"), QStringLiteral("Case J1 (2 jobs)")}));
    auto& tree = control<QTreeView>("folders");
    tree.sortByColumn(0, Qt::DescendingOrder);
    tree.setCurrentIndex(tree.model()->index(0, 0, tree.model()->index(0, 0)));
    choice.setCurrentIndex(1);
    QTRY_COMPARE(text("matching"), QStringLiteral("8 files"));
    QCOMPARE(choice.currentText(), QStringLiteral("Case J1 (2 jobs)"));
    QVERIFY(!control<QLabel>("jobName").isVisible());
    QCOMPARE(text("qualityBase"), QStringLiteral("of the 6 files that could be judged; 2 of 8 could not"));
    QCOMPARE(control<Grid>("extensions").cell(0, 1), std::string("8"));
    const auto isOn = [this](const char* button) { return control<QPushButton>(button).isEnabled(); };
    for (const char* button : {"toViewer", "compareWith", "copyFiles", "copyAgain"}) QVERIFY2(!isOn(button), button);
    QVERIFY(isOn("exportFiles") && isOn("writeReport") && isOn("showAll"));
    const QModelIndex root = tree.model()->index(0, 0);
    const QModelIndex second = tree.model()->index(0, 0, root);
    QCOMPARE(second.data().toString(), QStringLiteral("J1-second"));  // falling, as the title says
    tree.setCurrentIndex(second);
    QCOMPARE(paths().size(), 4);
    QVERIFY(isOn("compareWith") && isOn("copyFiles") && isOn("copyAgain") && !isOn("toViewer"));
    control<Grid>("files").setCurrentRow(0);
    QCOMPARE(control<HexView>("head").bytes().substr(0, 4), std::string("\xFF\xD8\xFFx"));
    tree.setCurrentIndex(tree.model()->index(1, 0, root));
    QVERIFY(isOn("toViewer"));
    screen_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(screen_));
    choice.setFocus();
    QTest::keyClick(&choice, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), &tree);
    choice.setCurrentIndex(0);
    QTRY_COMPARE(text("matching"), QStringLiteral("4 files"));
    QCOMPARE(choice.currentText(), QStringLiteral("Job J1"));
}

void FrmOverviewTest::tabGoesThroughTheControlsInOrder() {
    screen_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(screen_));
    control<QTreeView>("folders").setFocus();
    for (const char* next :
         {"mapArea", "map", "extensions", "reasons", "fileChoice", "showAll", "files", "head", "toViewer",
          "compareWith", "exportFiles", "writeReport", "copyFiles", "copyAgain", "done", "folders"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(next));
    }
}

QTEST_MAIN(FrmOverviewTest)
#include "frmOverview_test.moc"
