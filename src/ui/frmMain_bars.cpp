// SPDX-License-Identifier: MIT
// Menu bar, toolbar and status bar of the main window.
#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "ui/frmMain_controls.h"
#include "widgets/control_maker.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

QMenu* addMenu(QMainWindow& window, const char* name, const char* caption) {
    QMenu* menu = window.menuBar()->addMenu(QLatin1String(caption));
    menu->setObjectName(QLatin1String(name));
    menu->menuAction()->setObjectName(QLatin1String(name));
    return menu;
}

QAction* addEntry(QMenu& menu, const char* name, const char* caption, const QKeySequence& shortcut = {}) {
    QAction* entry = menu.addAction(QLatin1String(caption));
    entry->setObjectName(QLatin1String(name));
    entry->setShortcut(shortcut);
    return entry;
}

struct ToolbarButton {
    const char* icon;
    const char* toolTip;
};
constexpr std::array<ToolbarButton, kToolbarButtons> kButtons = {{
    {"source", "Browse for drive or folder to test files."},
    {"target", "Select target to copy files to"},
    {"run", "Start the file testing process"},
    {"view", "View existing file list and edit database"},
    {"zip", "Zip files for archiving or emailing"},
    {"stop", "Stop the process!"},
    {"settings", "Settings"},
    {"skiplist", "Edit Skip List"},
    {"database", "Edit Header Database"},
    {"commonheaders", "Edit Common Headers"},
    {"messages", "Edit Report Messages"},
    {"badsectors", "Edit Bad Sector Markers"},
}};

}  // namespace

void frmMainControls::createMenus(QMainWindow& window) {
    mnuFile = addMenu(window, "mnuFile", "&File");
    mnuOpen = addEntry(*mnuFile, "mnuOpen", "&Open Existing", QKeySequence::Open);
    mnuFile->addSeparator();
    mnuExit = addEntry(*mnuFile, "mnuExit", "E&xit", QKeySequence(Qt::CTRL | Qt::Key_Q));
    mnu = addMenu(window, "mnu", "&Menu");
    mnuSettings = addEntry(*mnu, "mnuSettings", "&Settings");
    mnuEdit = addEntry(*mnu, "mnuEdit", "Edit S&kip List");
    mnuDB = addEntry(*mnu, "mnuDB", "Edit &Database");
    mnuEditCommon = addEntry(*mnu, "mnuEditCommon", "Edit &Common Header List");
    mnuBS = addEntry(*mnu, "mnuBS", "Edit &Bad Sector Markers");
    mnuBS->setEnabled(false);
    mnuErrors = addEntry(*mnu, "mnuErrors", "&Report Messages");
    mnuMsgLogs = addEntry(*mnu, "mnuMsgLogs", "&Messaging Logs");
    mnuMsgLogs->setEnabled(false);
    mnuFLS = addEntry(*mnu, "mnuFLS", "File List Se&parator");
    mnuAutoUpdate = addEntry(*mnu, "mnuAutoUpdate", "&Auto Update");
    mnuAutoUpdate->setCheckable(true);
    mnuAutoUpdate->setChecked(true);
    createLooks();
    mnuViewf = addMenu(window, "mnuViewf", "View");
    mnuView = addEntry(*mnuViewf, "mnuView", "View Folder");
    mnuh3 = addMenu(window, "mnuh3", "&Help");
    mnuHelp = addEntry(*mnuh3, "mnuHelp", "&Contents", QKeySequence::HelpContents);
    mnuAbout = addEntry(*mnuh3, "mnuAbout", "&About");
}

void frmMainControls::createLooks() {
    mnuLook = mnu->addMenu(QStringLiteral("&Look"));
    mnuLook->setObjectName(QStringLiteral("mnuLook"));
    mnuLook->menuAction()->setObjectName(QStringLiteral("mnuLook"));
    looks = {addEntry(*mnuLook, "lookDesktop", "As the &desktop"), addEntry(*mnuLook, "lookLight", "&Light"),
             addEntry(*mnuLook, "lookDark", "Da&rk")};
    auto* group = new QActionGroup(mnuLook);
    for (QAction* look : looks) {
        look->setCheckable(true);
        group->addAction(look);
    }
}

void frmMainControls::createToolbar(QMainWindow& window) {
    Toolbar1 = make<QToolBar>("Toolbar1");
    Toolbar1->setWindowTitle(QStringLiteral("Toolbar"));
    Toolbar1->setMovable(false);
    Toolbar1->setContextMenuPolicy(Qt::PreventContextMenu);
    Toolbar1->setIconSize({22, 22});
    window.addToolBar(Toolbar1);
    fillToolbar();
}

void frmMainControls::createStatusBar(QMainWindow& window) {
    auto* bar = make<QStatusBar>("StatusBar1");
    window.setStatusBar(bar);
    bar->setSizeGripEnabled(true);
    const char* names[] = {"StatusBar1_1", "StatusBar1_2", "StatusBar1_3"};
    for (std::size_t i = 0; i < statusPanels.size(); ++i) {
        // What has come of a job may be a long sentence.
        statusPanels[i] = i == 1 ? make<ElidedLabel>(names[i]) : makeLabel(names[i], "");
        statusPanels[i]->setContentsMargins(kSpacing, 0, kSpacing, 0);
        bar->addWidget(statusPanels[i], i == 0 ? 0 : 1);
    }
    jobPace = make<ElidedLabel>("jobPace");
    jobPace->setContentsMargins(kSpacing, 0, kSpacing, 0);
    bar->addWidget(jobPace, 1);
}

void frmMainControls::fillToolbar() {
    for (std::size_t i = 0; i < kButtons.size(); ++i) {
        auto* button = make<QToolButton>(qPrintable(QStringLiteral("Toolbar1_%1").arg(i + 1)));
        button->setIcon(icon(QLatin1String(kButtons[i].icon)));
        button->setToolTip(QLatin1String(kButtons[i].toolTip));
        button->setAccessibleName(button->toolTip());
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        toolbarButtons[i] = button;
        if (i == 6)
            Toolbar1->addSeparator();
        toolbarActions[i] = Toolbar1->addWidget(button);
    }
    // Bad sector markers cannot be edited from here; the button is there and never shown.
    toolbarActions.back()->setVisible(false);
}

}  // namespace quillon
