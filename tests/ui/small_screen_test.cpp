// SPDX-License-Identifier: MIT
// On a screen of 960 x 540, which a Full HD one has at a scale of 2, every screen opens whole inside it, and each of
// its controls can be reached.
#include <QAction>
#include <QScreen>
#include <QScrollArea>
#include <QTest>

#include "ui/main_window.h"
#include "widgets/window_sizes.h"

using namespace quillon;

class SmallScreenTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { test::closeScreens(main_); }
    void theScreenIsSmall();
    void everyScreenOpensInside_data();
    void everyScreenOpensInside();
    void theOverviewOfAJobOpensInside();
    void theMainWindowOpensInside();
    void aWindowOpensInTheSizeThatItWasLeftIn();
    void aSizeOfALargerScreenIsCut();
    void aSizeThatNobodyChangedIsNotKept();

private:
    static void liesInside(const QWidget& window);
    QWidget& open(Screen screen) {
        main_->navigator.open(screen);
        QCoreApplication::processEvents();
        return *main_->navigator.window(screen);
    }
    [[nodiscard]] QString preferences() const {
        const auto file = main_->temp / "app/preferences.ini";
        return std::filesystem::exists(file) ? toQt(main_->temp.read("app/preferences.ini")) : QString();
    }

    std::unique_ptr<test::MainWindow> main_;
};

namespace {

// Frames of window managers take some 4 pixels at the sides and 40 at the top.
constexpr QSize kRoom(952, 500);

bool isWithin(const QSize& size) {
    return size.width() <= kRoom.width() && size.height() <= kRoom.height();
}

}  // namespace

void SmallScreenTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->addScreens();
}

void SmallScreenTest::theScreenIsSmall() {
    QCOMPARE(QGuiApplication::primaryScreen()->availableSize(), QSize(960, 540));
}

void SmallScreenTest::everyScreenOpensInside_data() {
    QTest::addColumn<int>("screen");
    const std::pair<const char*, Screen> screens[] = {
        {"About", Screen::About},
        {"Help", Screen::Help},
        {"ViewList", Screen::ViewList},
        {"ExtEditor", Screen::ExtEditor},
        {"Zip", Screen::Zip},
        {"SetupWizard", Screen::SetupWizard},
        {"SetupNetwork", Screen::SetupNetwork},
        {"SkipList", Screen::SkipList},
        {"Updatedb", Screen::Updatedb},
        {"CommonHeaders", Screen::CommonHeaders},
        {"Errors", Screen::Errors},
        {"BadSectors", Screen::BadSectors},
        {"PreviewBadSector", Screen::PreviewBadSector},
        {"History", Screen::History},
        {"SectorMarkers", Screen::SectorMarkers},
        {"Copies", Screen::Copies},
    };
    for (const auto& [name, screen] : screens) QTest::newRow(name) << static_cast<int>(screen);
}

void SmallScreenTest::everyScreenOpensInside() {
    QFETCH(int, screen);
    main_->open();
    liesInside(open(static_cast<Screen>(screen)));
}

void SmallScreenTest::liesInside(const QWidget& window) {
    QVERIFY2(isWithin(window.size()), qPrintable(QStringLiteral("%1 x %2").arg(window.width()).arg(window.height())));
    // What is wider or higher than its window lies in something that scrolls.
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        if (!part->isVisible() || part->window() != &window)
            continue;
        const QWidget* scrolled = part;
        while (scrolled != &window && qobject_cast<const QAbstractScrollArea*>(scrolled) == nullptr)
            scrolled = scrolled->parentWidget();
        const QRect place(part->mapTo(&window, QPoint()), part->size());
        QVERIFY2(scrolled != &window || window.rect().contains(place), qPrintable(part->objectName()));
    }
}

void SmallScreenTest::theOverviewOfAJobOpensInside() {
    main_->makePictures(2);
    main_->open();
    main_->chooseSource("J1");
    main_->control<QPushButton>("CommandButton3").click();
    main_->control<QAction>("openOverview").trigger();
    QWidget* overview = main_->navigator.window(Screen::Overview);
    QVERIFY(overview != nullptr);
    QTRY_COMPARE(test::controlOf<QLabel>(*overview, "quality").text(), QStringLiteral("100.00%"));
    liesInside(*overview);
}

void SmallScreenTest::theMainWindowOpensInside() {
    const frmMain& window = main_->open();
    QCoreApplication::processEvents();
    QVERIFY(isWithin(window.size()));
    QVERIFY(window.minimumSizeHint().width() <= kRoom.width() && window.minimumSizeHint().height() <= kRoom.height());
}

void SmallScreenTest::aWindowOpensInTheSizeThatItWasLeftIn() {
    for (int again = 0; again < 2; ++again) {
        WindowSizes sizes(main_->temp / "app");
        main_->navigator.setSizes(&sizes);
        QWidget& list = open(Screen::SkipList);
        if (again > 0)
            QCOMPARE(list.size(), QSize(700, 480));
        list.resize(700, 480);
        main_->navigator.unload(Screen::SkipList);
        QCOMPARE(preferences(), QStringLiteral("window.size.frmSkipList=700x480\n"));
        main_->navigator.setSizes(nullptr);
    }
}

void SmallScreenTest::aSizeOfALargerScreenIsCut() {
    WindowSizes sizes(main_->temp / "app");
    main_->navigator.setSizes(&sizes);
    for (const char* stored : {"3000x2000", "nonsense", "-5x7", "900x", "99999999999x1"}) {
        main_->temp.write("app/preferences.ini", std::string("window.size.frmSkipList=") + stored);
        QVERIFY2(isWithin(open(Screen::SkipList).size()), stored);
        main_->navigator.unload(Screen::SkipList);
    }
    main_->temp.write("app/preferences.ini", "window.size.frmSkipList=maximized");
    QVERIFY(open(Screen::SkipList).isMaximized());
    main_->navigator.setSizes(nullptr);
}

void SmallScreenTest::aSizeThatNobodyChangedIsNotKept() {
    WindowSizes sizes(main_->temp / "app");
    main_->navigator.setSizes(&sizes);
    main_->open();
    open(Screen::Zip);
    main_->navigator.unloadAll();
    main_->window->unloadAllForms();
    QCOMPARE(preferences(), QString());
    main_->navigator.setSizes(nullptr);
}

QTEST_MAIN(SmallScreenTest)
#include "small_screen_test.moc"
