// SPDX-License-Identifier: MIT
// Menus and toolbar of the main window, and the way to the other screens.
#include <tuple>

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

#include "ui/frmMain.h"
#include "widgets/look_switch.h"
#include "widgets/qt_text.h"
#include "widgets/window_event_loop.h"
#include "widgets/window_place.h"

namespace quillon {
namespace {

// Toolbar buttons from 0
constexpr std::size_t kSettingsButton = 6;
constexpr std::size_t kSkipListButton = 7;
constexpr std::size_t kDatabaseButton = 8;
constexpr std::size_t kCommonHeadersButton = 9;
constexpr std::size_t kMessagesButton = 10;
constexpr std::size_t kBadSectorsButton = 11;

}  // namespace

void frmMain::connectMenus() {
    step(mnuOpen, &QAction::triggered, [this] {
        if (!setup_.openExisting())
            return;
        upDateAllLabels();
        setup_.tellUnopened();
    });
    connect(mnuExit, &QAction::triggered, this, &frmMain::unloadAllForms);
    connectLooks();
    const std::tuple<QAction*, Screen, std::size_t> modalScreens[] = {
        {mnuSettings, Screen::SetupWizard, kSettingsButton},
        {mnuEdit, Screen::SkipList, kSkipListButton},
        {mnuDB, Screen::Updatedb, kDatabaseButton},
        {mnuEditCommon, Screen::CommonHeaders, kCommonHeadersButton},
        {mnuErrors, Screen::Errors, kMessagesButton}};
    for (const auto& [entry, screen, button] : modalScreens)
        step(entry, &QAction::triggered,
             [this, entry = entry, screen = screen, button = button] { openModalScreen(screen, *entry, button); });
    connect(mnuBS, &QAction::triggered, this, [this] { openAndHide(Screen::BadSectors); });
    step(mnuFLS, &QAction::triggered, [this] { setup_.askSeparator(); });
    // Kept: "Auto Update" is ticked for good (test AutoUpdateStaysTicked).
    connect(mnuAutoUpdate, &QAction::triggered, this, [this] { mnuAutoUpdate->setChecked(true); });
    connect(mnuHelp, &QAction::triggered, this, [this] { context_.navigator.open(Screen::Help); });
    // Not modal: a modal screen would hold a running job up.
    connect(mnuAbout, &QAction::triggered, this, [this] { context_.navigator.open(Screen::About); });
    addEvidenceMenu();
    addOverview();
    addSectorScan();
}

void frmMain::connectLooks() {
    mnuLook->setEnabled(look_ != nullptr);
    if (look_ == nullptr)
        return;
    for (const LookRow& row : kLooks) {
        QAction* entry = looks[static_cast<std::size_t>(row.choice)];
        entry->setChecked(row.choice == look_->choice());
        step(entry, &QAction::triggered, [this, choice = row.choice] {
            if (const auto stored = look_->choose(choice); !stored)
                job_.state.texts.status = "The look lasts until the program ends: " + stored.error().text;
        });
    }
}

// A button does exactly what its control does.
void frmMain::connectToolbar() {
    const std::pair<std::size_t, QPushButton*> controls[] = {{0, CommandButton1}, {1, Command1},
                                                             {2, CommandButton3}, {3, CommandButton5},
                                                             {4, CommandButton6}, {5, CommandButton4}};
    for (const auto& [button, control] : controls)
        connect(toolbarButtons[button], &QToolButton::clicked, control, &QPushButton::click);
    const std::pair<std::size_t, QAction*> entries[] = {
        {kSettingsButton, mnuSettings},        {kSkipListButton, mnuEdit},   {kDatabaseButton, mnuDB},
        {kCommonHeadersButton, mnuEditCommon}, {kMessagesButton, mnuErrors}, {kBadSectorsButton, mnuBS}};
    for (const auto& [button, entry] : entries)
        connect(toolbarButtons[button], &QToolButton::clicked, entry, &QAction::trigger);
    addNetworkSetup();
}

// "Set up Network" is no entry of the menu's own; it stands below them all, in the menu of the Settings button, and has
// a key.
void frmMain::addNetworkSetup() {
    auto* entry = new QAction(QStringLiteral("Set up Network"), this);
    entry->setObjectName(QStringLiteral("openSetupNetwork"));
    entry->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    connect(entry, &QAction::triggered, this, [this] {
        if (!isJobRunning())
            context_.navigator.openModal(Screen::SetupNetwork);
    });
    addAction(entry);
    mnu->addSeparator();
    mnu->addAction(entry);
    addDatabaseScreens();
    QToolButton* settings = toolbarButtons[kSettingsButton];
    settings->addAction(entry);
    settings->setContextMenuPolicy(Qt::ActionsContextMenu);
}

// Ours, behind the told entries.
void frmMain::addDatabaseScreens() {
    const auto add = [this](const char* caption, const char* name, Qt::Key key, Screen screen) {
        QAction* const entry = mnu->addAction(QLatin1String(caption));
        entry->setObjectName(QLatin1String(name));
        entry->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | key));
        step(entry, &QAction::triggered, [this, screen] {
            if (!isJobRunning())
                context_.navigator.openModal(screen);
        });
    };
    add("Database &History", "openHistory", Qt::Key_H, Screen::History);
    add("Bad Sec&tor Markers", "openSectorMarkers", Qt::Key_B, Screen::SectorMarkers);
}

void frmMain::openModalScreen(Screen screen, QAction& entry, std::size_t toolbarButton) {
    toolbarButtons[toolbarButton]->setEnabled(false);
    entry.setEnabled(false);
    context_.navigator.openModal(screen);
    toolbarButtons[toolbarButton]->setEnabled(true);
    entry.setEnabled(true);
}

// A screen that nobody has made yet must not leave the person without a window.
void frmMain::openAndHide(Screen screen, const std::any& handOver) {
    if (!context_.navigator.has(screen))
        return;
    context_.navigator.open(screen, handOver);
    hideInPlace(*this);
}

}  // namespace quillon
