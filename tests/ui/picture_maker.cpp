// SPDX-License-Identifier: MIT
// Makes the pictures of the help and the README from the real window: sets an installation up, runs a job over a tree
// and saves what the window shows. Run by scripts/make_pictures.sh.
//
//   quillon_picture_maker DB_ZIP SOURCE LOOK WIDTH HEIGHT PICTURE [--start | --time | --screen NAME]
//
// --start shows the window before a job, --screen another screen behind it; --time runs the job with "Show Progress" on
// and tells its processor time, to be compared with quillon-job over the same tree.

#include <cstdio>
#include <ctime>
#include <map>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "job/job.h"
#include "platform/copy_file.h"
#include "setup/default_installation.h"
#include "support/temp_folder.h"
#include "ui/frmMain.h"
#include "ui/help_window.h"
#include "ui/qt_dialogs.h"
#include "ui/qt_text.h"
#include "ui/theme.h"
#include "ui/window_event_loop.h"

using namespace quillon;

namespace {

// Answers every question by its first button: a picture is made without a person.
class YesDialogs final : public Dialogs {
public:
    BoxAnswer show(const MessageBox& box) override {
        return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
    }
    std::optional<std::string> input(const std::string&, const std::string&, const std::string& initial) override {
        return initial;
    }
    std::optional<NativePath> pickFolder(const std::string&, const NativePath&) override { return source; }
    std::vector<NativePath> pickFiles(const FilePick&) override { return {}; }

    NativePath source;
};

void runJob(frmMain& window) {
    window.findChild<QLineEdit*>(QStringLiteral("Textbox1"))->setText(QStringLiteral("2026-0417"));
    for (const char* button : {"CommandButton1", "CommandButton3"})
        window.findChild<QPushButton*>(QLatin1String(button))->click();
}

// Opens one screen over the main window, as its entry does, and saves what it shows.
bool saveScreen(Navigator& navigator, const QString& name, const QString& file) {
    const std::map<QString, Screen> screens = {
        {QStringLiteral("SkipList"), Screen::SkipList},      {QStringLiteral("CommonHeaders"), Screen::CommonHeaders},
        {QStringLiteral("Updatedb"), Screen::Updatedb},      {QStringLiteral("Errors"), Screen::Errors},
        {QStringLiteral("ViewList"), Screen::ViewList},      {QStringLiteral("Zip"), Screen::Zip},
        {QStringLiteral("SetupWizard"), Screen::SetupWizard}};
    const auto screen = screens.find(name);
    if (screen == screens.end())
        return false;
    navigator.open(screen->second);
    QApplication::processEvents();
    QWidget* window = navigator.window(screen->second);
    return window != nullptr && window->grab().save(file);
}

bool takePicture(frmMain& window, Navigator& navigator, WindowEventLoop& loop, const QStringList& arguments) {
    const QString option = arguments.value(7);
    window.resize(arguments[4].toInt(), arguments[5].toInt());
    window.reloadForm();
    if (option == QStringLiteral("--time"))
        window.findChild<QCheckBox*>(QStringLiteral("Check1"))->setChecked(true);
    const std::clock_t before = std::clock();
    if (option != QStringLiteral("--start"))
        runJob(window);
    if (option == QStringLiteral("--time"))
        std::printf("CPU milliseconds of the job: %ld\n",
                    static_cast<long>((std::clock() - before) * 1000 / CLOCKS_PER_SEC));
    loop.flush();
    if (option == QStringLiteral("--screen"))
        return saveScreen(navigator, arguments.value(8), arguments[6]);
    return window.grab().save(arguments[6]);
}

int makePicture(QApplication& application, const QStringList& arguments) {
    applyLook(application, arguments[3] == QStringLiteral("dark") ? Look::Dark : Look::Light);
    const test::TempFolder temp;
    const NativePath zip = temp / kDefaultDatabaseName;
    if (!copyDataFile(fromQtPath(arguments[1]), zip))
        return 1;
    const SystemClock clock;
    const DateTexts dates("C");
    YesDialogs dialogs;
    dialogs.source = fromQtPath(arguments[2]);
    WindowEventLoop loop(clock);
    const Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    Installation installation(temp.path());
    if (!setUpDefaultInstallation(installation))
        return 1;
    temp.write(kHelpFileName, "");
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), job, navigator, loop};
    registerScreens(context);
    frmMain window(context, {});
    return takePicture(window, navigator, loop, arguments) ? 0 : 1;
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 7) {
        std::fputs(
            "usage: quillon_picture_maker DB_ZIP SOURCE LOOK WIDTH HEIGHT PICTURE [--start | --time | --screen NAME]\n",
            stderr);
        return 2;
    }
    return makePicture(application, arguments);
}
