// SPDX-License-Identifier: MIT
// The program `quillon`: one window, the main window, and the screens behind it. It reads no command line. Everything
// that lives as long as the process is made here.

#include <cstdlib>

#include <QApplication>

#include "app/application_folder.h"
#include "app/folder_structure.h"
#include "job/job.h"
#include "messaging/alert_exchange.h"
#include "platform/host.h"
#include "ui/frmMain.h"
#include "ui/help_window.h"
#include "ui/screens.h"
#include "widgets/enter_key.h"
#include "widgets/navigator.h"
#include "widgets/qt_dialogs.h"
#include "widgets/screen_context.h"
#include "widgets/theme.h"
#include "widgets/window_event_loop.h"

namespace quillon {
namespace {

void openFirstScreen(FirstScreen first, Navigator& navigator, frmMain& window) {
    // The wizard loads the main window itself when it has finished.
    if (first == FirstScreen::SetupWizard)
        navigator.openModal(Screen::SetupWizard);
    else
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
    AlertPorts alertPorts;
    const ScreenContext context{installation, surroundings, job.kept(), navigator, loop, &alertPorts};
    registerScreens(context, job);
    installEnterKey(application);
    installHelpKey(application, navigator, installation.appFolder() / kHelpFileName);

    UdpSocket server(resolveHost);
    UdpSocket client(resolveHost);
    AlertExchange exchange(
        AlertScreen::Main, server, client, installation, surroundings, [&job] { return job.state.options.jobId; },
        &alertPorts);
    frmMain window(context, job, {&exchange, systemNetwork()});
    QObject::connect(&window, &frmMain::shutDown, &application, &QApplication::quit, Qt::QueuedConnection);
    QObject::connect(&window, &frmMain::abandoned, [] { std::_Exit(EXIT_SUCCESS); });
    // The folder check asks the share before there is a window. Settings that are empty or cannot be read name none.
    if (Installation stored = installation; stored.loadSettingsRecord() && stored.paths().useSharedDb) {
        installation = stored;
        askShareFirst(job);
    }
    openFirstScreen(decideFirstScreen(installation), navigator, window);
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
