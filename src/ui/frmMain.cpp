// SPDX-License-Identifier: MIT
// Start sequence, toolbar state and closing of the main window.
#include "ui/frmMain.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "app/version.h"
#include "job/lost_note_log.h"
#include "platform/folders.h"
#include "testing/messages_for.h"
#include "ui/help_window.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"
#include "widgets/window_event_loop.h"

namespace quillon {
namespace {

constexpr int kTimerInterval = 1000;
// Room for the score board and some ten rows of the log.
constexpr QSize kFirstSize(1180, 780);
// How long a stopped job may take to come back before a program that the person has left ends without it.
constexpr std::int64_t kLeavePatience = 2000;

}  // namespace

frmMain::frmMain(const ScreenContext& context, Job& job, MainWindowAlerts alerts, LookSwitch* look)
    : StepWindow(context, Screen::Main, "frmMain", "Quillon Software : Professional"),
      job_(job),
      alerts_(std::move(alerts)),
      look_(look),
      setup_(context.installation, context.surroundings, job_.state),
      logRows_(job_.state.log, context.surroundings.dates),
      timer_(new QTimer(this)) {
    createControls(*this);
    resize(kFirstSize);
    context_.navigator.prepareWindow(*this);
    setAcceptDrops(true);
    timer_->setObjectName(QStringLiteral("Timer1"));
    timer_->setInterval(kTimerInterval);
    iGrid1->rows().setSource(&logRows_);
    connectControls();
    connectOwnOptions();
    connectMenus();
    connectToolbar();
    begin();
    context_.navigator.setMain(this);
}

frmMain::~frmMain() {
    context_.navigator.setMain(nullptr);
}

void frmMain::reloadForm() {
    setup_.loadSeparator();
    mnuViewf->menuAction()->setVisible(false);
    job_.state.texts.copiedCaption.clear();
    job_.state.texts.copied.clear();
    const Version version = programVersion();
    statusPanels[0]->setText(
        QStringLiteral("Ver: %1.%2.%3").arg(version.major).arg(version.minor).arg(version.revision));
    mnuHelp->setEnabled(pathExists(context_.installation.appFolder() / kHelpFileName));
    job_.state.texts.throughput.clear();
    job_.state.texts.jobPercent.clear();
    loadSettings();
    if (!setup_.useDefaults)
        setup_.defaultsTicked(true);
    logLostNote(job_.passContext(), loadMessagesFor(changeByJob(), context_.installation, context_.surroundings.dialogs,
                                                    context_.kept, job_.messages));
    loaded_ = true;
    showState();
    show();
    context_.loop.flush();
}

void frmMain::loadSettings() {
    setup_.loadSettings();
    setup_.loadOwnOptions();
    const int timeWidth =
        fontMetrics().horizontalAdvance(toQt(context_.surroundings.dates.time(context_.surroundings.clock.now()))) + 16;
    // Told are 60 and 330; a locale with a longer time of day gets the room for it.
    iGrid1->setColumns({{"Time", std::max(60, timeWidth), false}, {"Event", 330, false}});
    showState();
}

void frmMain::showMain() {
    show();
    raise();
    activateWindow();
    showState();
}

void frmMain::syncToolbar() {
    toolbarButtons[0]->setEnabled(CommandButton1->isEnabled());
    toolbarButtons[1]->setEnabled(Command1->isEnabled());
    toolbarButtons[5]->setEnabled(CommandButton4->isEnabled());
    toolbarButtons[2]->setEnabled(CommandButton3->isEnabled());
    toolbarButtons[3]->setEnabled(CommandButton5->isEnabled());
    toolbarButtons[4]->setEnabled(CommandButton6->isEnabled());
}

void frmMain::disableToolbar() {
    for (std::size_t i = 0; i < 11; ++i)
        if (i != 5)
            toolbarButtons[i]->setEnabled(false);
}

void frmMain::enableToolbar() {
    for (std::size_t i = 6; i < 11; ++i) toolbarButtons[i]->setEnabled(true);
    syncToolbar();
}

void frmMain::showStatus(const std::string& text) {
    statusPanels[2]->setText(toQt(text));
}

void frmMain::unloadAllForms() {
    if (isUnloaded())
        return;
    markUnloaded();
    if (isJobRunning()) {
        job_.state.stopRequested = true;
        job_.state.copyCancelled = true;
        leaveBy_ = context_.surroundings.clock.milliseconds() + kLeavePatience;
    }
    context_.navigator.leaveWindow(*this);
    context_.navigator.unloadAll();
    close();
    if (!isJobRunning())
        emit shutDown();
}

// The testing pass goes to the end of its list whatever happens. A person who has closed the window does not want a
// process that reads a failing disk for hours without one.
void frmMain::leaveIfAbandoned() {
    if (leaveBy_ != 0 && context_.surroundings.clock.milliseconds() >= leaveBy_)
        emit abandoned();
}

// The question comes at once, also within a job: a job that is to be left stops behind it.
void frmMain::closeEvent(QCloseEvent* event) {
    const bool asks = !isUnloaded() && !qGuiApp->isSavingSession();
    if (asks && !context_.surroundings.dialogs.ask("Exit?", "Exit the program, are you sure?")) {
        event->ignore();
        return;
    }
    event->accept();
    unloadAllForms();
}

}  // namespace quillon
