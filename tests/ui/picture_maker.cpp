// SPDX-License-Identifier: MIT
// Makes the pictures of the help and the README from the real screens: sets an installation up, runs a job over a tree
// and saves what the main window and every screen behind it show. Run by scripts/make_pictures.sh.
//
//   quillon_picture_maker APPLICATION_FOLDER SOURCE LOOK FOLDER
//
// APPLICATION_FOLDER has the starter database and the help and is set up by this; its path is in the pictures. LOOK is
// "light" or "dark".

#include <cstdio>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "answers/copies_handover.h"
#include "answers/overview_handover.h"
#include "archive/zip_handover.h"
#include "editors/sector_preview.h"
#include "job/job.h"
#include "setup/default_installation.h"
#include "support/yes_dialogs.h"
#include "ui/frmMain.h"
#include "ui/screens.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"
#include "widgets/window_event_loop.h"

using namespace quillon;

namespace {

constexpr const char* kJobId = "2026-0417";

// The time of day stands still, and each look at the milliseconds is one: a figure of speed is the same in every run.
class PictureClock final : public Clock {
public:
    LocalTime now() const override { return {2026, 4, 17, 10, 20, 30, 5, 106}; }
    std::int64_t milliseconds() const override { return ++tick_; }

private:
    mutable std::int64_t tick_ = 1000;
};

template <typename Control>
Control& control(QWidget& window, const char* name) {
    auto* found = window.findChild<Control*>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no control %s", name);
    return *found;
}

class Camera {
public:
    Camera(const ScreenContext& context, QString folder, QString look)
        : context_(context), folder_(std::move(folder)), look_(std::move(look)) {}

    void takeMainWindow(frmMain& window) {
        window.resize(1280, 800);
        window.reloadForm();
        save(window, QStringLiteral("main-start"));
        control<QLineEdit>(window, "Textbox1").setText(QLatin1String(kJobId));
        for (const char* button : {"CommandButton1", "CommandButton3"}) control<QPushButton>(window, button).click();
        save(window, QStringLiteral("main"));
        window.resize(2560, 1440);
        save(window, QStringLiteral("main-large"));
        window.resize(1024, 700);
        save(window, QStringLiteral("main-small"));
        window.resize(1280, 800);
    }

    void takeScreens() {
        take(Screen::SkipList, "skip-list");
        take(Screen::Updatedb, "database");
        take(Screen::CommonHeaders, "common-headers");
        take(Screen::Errors, "messages");
        take(Screen::BadSectors, "bad-sectors");
        take(Screen::SectorMarkers, "sector-markers");
        take(Screen::PreviewBadSector, "bad-sector-preview", SectorPreview{std::string(512, '\xE5')});
        take(Screen::Zip, "zip", ZipHandover{kJobId, "-"});
        take(Screen::SetupNetwork, "setup-network");
        take(Screen::About, "about");
        take(Screen::Help, "help");
    }

    // The corrupt files, and the first of them in the editor.
    void takeViewerAndEditor() {
        QWidget& viewer = open(Screen::ViewList);
        auto& category = control<QComboBox>(viewer, "Combo1");
        category.setCurrentIndex(category.findText(QStringLiteral("Header Corrupt")));
        control<QPushButton>(viewer, "Command2").click();
        control<Grid>(viewer, "iGrid1").setCurrentRow(0);
        save(viewer, QStringLiteral("list"));
        control<QPushButton>(viewer, "Command3").click();
        if (QWidget* editor = context_.navigator.window(Screen::ExtEditor)) {
            // What the files share comes from a thread of its own.
            const auto& shared = control<QLabel>(*editor, "shared_");
            for (int turn = 0; turn < 100 && shared.text().isEmpty(); ++turn)
                QApplication::processEvents(QEventLoop::WaitForMoreEvents);
            save(*editor, QStringLiteral("editor"));
        }
        context_.navigator.unload(Screen::ExtEditor);
        context_.navigator.unload(Screen::ViewList);
    }

    // A folder chosen, and one of its files.
    void takeOverview() {
        QWidget& overview = open(Screen::Overview, OverviewHandover{kJobId, {}});
        auto& files = control<Grid>(overview, "files");
        for (int turn = 0; turn < 1000 && files.rowCount() == 0; ++turn) QApplication::processEvents();
        auto& choice = control<QComboBox>(overview, "fileChoice");
        choice.setCurrentIndex(choice.findText(QStringLiteral("Corrupt")));
        files.setCurrentRow(0);
        save(overview, QStringLiteral("overview"));
        context_.navigator.unload(Screen::Overview);
        take(Screen::Copies, "copies", CopiesHandover{kJobId, {}, "Corrupt", false});
    }

    void takeWizard() {
        QWidget& wizard = open(Screen::SetupWizard);
        auto& tabs = control<QTabWidget>(wizard, "SftTabs1");
        for (int tab = 0; tab < tabs.count(); ++tab) {
            const QSignalBlocker quiet(tabs);  // a tab is looked at, not gone to
            tabs.setTabEnabled(tab, true);
            tabs.setCurrentIndex(tab);
            save(wizard, tab == 0 ? QStringLiteral("setup") : QStringLiteral("setup-%1").arg(tab + 1));
        }
        context_.navigator.unload(Screen::SetupWizard);
    }

    [[nodiscard]] bool failed() const { return failed_; }

private:
    QWidget& open(Screen screen, const std::any& handOver = {}) {
        context_.navigator.open(screen, handOver);
        return *context_.navigator.window(screen);
    }

    void take(Screen screen, const char* name, const std::any& handOver = {}) {
        save(open(screen, handOver), QLatin1String(name));
        context_.navigator.unload(screen);
    }

    void save(QWidget& window, const QString& name) {
        QApplication::setActiveWindow(&window);  // whatever the display has made of it by now
        context_.loop.flush();
        const QString file = folder_ + QLatin1Char('/') + name + QLatin1Char('-') + look_ + QStringLiteral(".png");
        const bool saved = window.grab().save(file, nullptr, 0);  // 0: packed as tightly as can be
        failed_ = failed_ || !saved;
        std::puts(qPrintable(file));
    }

    const ScreenContext& context_;
    QString folder_;
    QString look_;
    bool failed_ = false;
};

int makePictures(QApplication& application, const QStringList& arguments) {
    applyLook(application, arguments[3] == QStringLiteral("dark") ? Look::Dark : Look::Light);
    const PictureClock clock;
    const DateTexts dates("C");
    test::YesDialogs dialogs(fromQtPath(arguments[2]));
    WindowEventLoop loop(clock);
    const Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    Installation installation(fromQtPath(arguments[1]));
    if (!setUpDefaultInstallation(installation))
        return 1;
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), navigator, loop};
    registerScreens(context, job);
    frmMain window(context, job, {});
    Camera camera(context, arguments[4], arguments[3]);
    camera.takeMainWindow(window);
    camera.takeScreens();
    camera.takeViewerAndEditor();
    camera.takeOverview();
    camera.takeWizard();
    return camera.failed() ? 1 : 0;
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0);  // a caret that blinks would be in every other picture
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 5) {
        std::fputs("usage: quillon_picture_maker APPLICATION_FOLDER SOURCE LOOK FOLDER\n", stderr);
        return 2;
    }
    return makePictures(application, arguments);
}
