// SPDX-License-Identifier: MIT
// The program `quillon`: one window, the main window, and the screens behind it. It reads no command line. Everything
// that lives as long as the process is made here.

#include <cstdlib>

#include <QApplication>

#include "app/application_folder.h"
#include "app/folder_structure.h"
#include "job/job.h"
#include "messaging/alert_exchange.h"
#include "platform/folders.h"
#include "platform/host.h"
#include "setup/default_installation.h"
#include "text/list_text.h"
#include "ui/enter_key.h"
#include "ui/frmMain.h"
#include "ui/help_window.h"
#include "ui/navigator.h"
#include "ui/qt_dialogs.h"
#include "ui/screen_context.h"
#include "ui/theme.h"
#include "ui/window_event_loop.h"

namespace quillon {
namespace {

// A first run sets the default up, so that a job can run at once; the log says where.
void setUpFirstRun(Job& job) {
    Installation& installation = job.installation();
    if (pathExists(installation.paths().settingsFile))
        return;
    const auto done = setUpDefaultInstallation(installation);
    if (done)
        job.log("First run: set up " + readable(done->localPath.native()) + " with the default database");
    else
        job.log("Cannot set up " + readable(installation.appFolder().native()) + ": " + done.error().text, kLightRed);
}

void openFirstScreen(FirstScreen first, Job& job, Navigator& navigator, frmMain& window) {
    if (first == FirstScreen::SetupWizard && navigator.has(Screen::SetupWizard)) {
        // The wizard loads the main window itself when it has finished.
        navigator.openModal(Screen::SetupWizard);
        return;
    }
    if (first == FirstScreen::SetupWizard)
        setUpFirstRun(job);
    window.reloadForm();
}

int runWindow(QApplication& application) {
    applyLook(application, lookOfDesktop());
    const SystemClock clock;
    const DateTexts dates;
    WindowEventLoop loop(clock);
    QtDialogs dialogs([&loop] { loop.refreshScreens(); });
    const Surroundings surroundings{clock, dates, dialogs, loop, hostName()};
    Installation installation(applicationFolder());
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), job, navigator, loop};
    registerScreens(context);
    installEnterKey(application);
    installHelpKey(application, navigator, installation.appFolder() / kHelpFileName);

    UdpSocket server(resolveHost);
    UdpSocket client(resolveHost);
    AlertExchange exchange(AlertScreen::Main, server, client, installation, surroundings,
                           [&job] { return job.state.options.jobId; });
    frmMain window(context, {&exchange, systemNetwork()});
    QObject::connect(&window, &frmMain::shutDown, &application, &QApplication::quit, Qt::QueuedConnection);
    QObject::connect(&window, &frmMain::abandoned, [] { std::_Exit(EXIT_SUCCESS); });
    openFirstScreen(decideFirstScreen(installation), job, navigator, window);
    return window.isVisible() ? QApplication::exec() : EXIT_SUCCESS;
}

}  // namespace
}  // namespace quillon

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillon"));
    QApplication::setDesktopFileName(QStringLiteral("quillon"));
    quillon::raiseOpenFileLimit();
    return quillon::runWindow(application);
}
