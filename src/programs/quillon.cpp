// SPDX-License-Identifier: MIT
// The program `quillon`: one window, the main window, and the screens behind it. Everything that lives as long as the
// process is made here.

#include <cstdlib>
#include <iostream>

#include <QApplication>

#include "app/application_folder.h"
#include "app/folder_structure.h"
#include "job/job.h"
#include "messaging/alert_exchange.h"
#include "platform/host.h"
#include "programs/window_command.h"
#include "ui/frmMain.h"
#include "ui/help_window.h"
#include "ui/screens.h"
#include "widgets/enter_key.h"
#include "widgets/look_switch.h"
#include "widgets/navigator.h"
#include "widgets/qt_dialogs.h"
#include "widgets/screen_context.h"
#include "widgets/window_event_loop.h"
#include "widgets/window_sizes.h"

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
    const SystemClock clock;
    const DateTexts dates;
    WindowEventLoop loop(clock);
    QtDialogs dialogs([&loop] { loop.refreshScreens(); });
    const Surroundings surroundings{clock, dates, dialogs, loop, hostName()};
    Installation installation(applicationFolder());
    LookSwitch look(application, installation.appFolder());
    Job job(installation, surroundings);
    WindowSizes sizes(installation.appFolder());
    Navigator navigator;
    navigator.setSizes(&sizes);
    AlertPorts alertPorts;
    const ScreenContext context{
        installation, surroundings, job.kept(), navigator, loop, &alertPorts, [&job](const std::string& text) {
            job.passContext().log(text, kLightOrange);
        }};
    registerScreens(context, job);
    installEnterKey(application);
    installHelpKey(application, navigator, installation.appFolder() / kHelpFileName);

    UdpSocket server(resolveHost);
    UdpSocket client(resolveHost);
    AlertExchange exchange(
        AlertScreen::Main, server, client, installation, surroundings, [&job] { return job.state.options.jobId; },
        &alertPorts);
    frmMain window(context, job, {&exchange, systemNetwork()}, &look);
    QObject::connect(&window, &frmMain::shutDown, &application, &QApplication::quit, Qt::QueuedConnection);
    QObject::connect(&window, &frmMain::abandoned, [] { std::_Exit(EXIT_SUCCESS); });
    // The folder check asks what may lie on a share before there is a window.
    const auto askFirst = [&installation, &job] {
        if (installation.paths().useSharedDb)
            askShareFirst(job);
        askArchiveFirst(job);
    };
    openFirstScreen(decideFirstScreen(installation, askFirst), navigator, window);
    return window.isVisible() ? QApplication::exec() : EXIT_SUCCESS;
}

// Where there is no display, Qt ends the program by an abort while the application is made: a fatal message is the last
// word that can be had of it.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext& /*where*/, const QString& message) {
    const std::string text = message.toStdString();
    std::cerr << (type == QtFatalMsg ? withoutDisplay(text) : text + "\n") << std::flush;
    if (type == QtFatalMsg)
        std::_Exit(EXIT_FAILURE);
}

}  // namespace
}  // namespace quillon

int main(int argc, char* argv[]) {
    if (const auto answer = quillon::windowAnswer({argv + 1, argv + argc})) {
        std::cout << *answer;
        return EXIT_SUCCESS;
    }
    qInstallMessageHandler(quillon::endWithoutDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(nullptr);
    QApplication::setApplicationName(QStringLiteral("Quillon"));
    QApplication::setDesktopFileName(QStringLiteral("quillon"));
    quillon::raiseOpenFileLimit();
    return quillon::runWindow(application);
}
