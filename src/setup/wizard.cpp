// SPDX-License-Identifier: MIT
#include "setup/wizard.h"

#include <utility>

#include "platform/folders.h"
#include "platform/user_folder.h"
#include "setup/settings_transfer.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kFirstGuide =
    "First we need to set up a location on this computer where the local copy of the database "
    "and related files will be stored.";
constexpr const char* kArchiveGuide =
    "Now select an archive folder, this is where files are copied to once they are archived. "
    "If other people need access to these files, then make sure you select a shared folder or network share. "
    "Once you are ready, click on the [Next>] button to copy the default settings to the local folders.";
constexpr const char* kNextGuide =
    "Click Next to continue. If there is no database in the folder, the default database will be extracted.";

constexpr const char* kFirstSetUpText =
    "You should use this option if you are setting up the system for the first time. "
    "If you have installed this software on another machine, it is recommended that you set the first machine "
    "to use network sharing, export the settings and databases from that machine and import them into this one..";
constexpr const char* kEditText = "You are about to edit existing settings on this computer.";
constexpr const char* kImportText =
    "You use this setting if there is already an installation on the network and you have exported the settings "
    "to a shared location on that computer or a network share.";

}  // namespace

SetupWizard::SetupWizard(Installation& installation, const Surroundings& surroundings, AlertExchange& alerts,
                         std::shared_ptr<NetworkProvider> network, ScreenHost& host, WarnInLog warnInLog)
    : installation_(installation),
      surroundings_(surroundings),
      alerts_(alerts),
      network_(std::move(network)),
      host_(host),
      warnInLog_(std::move(warnInLog)) {
}

void SetupWizard::load() {
    before_ = installation_;
    fillFromRecord();
    state.currentTab = editingExisting_ ? kLocalPathsTab : kSetupDbTab;
    state.tabEnabled[state.currentTab] = true;
    host_.showState();
}

void SetupWizard::fillFromRecord() {
    const AppSettings& settings = installation_.settings;
    state.copyStatus.clear();
    state.networkStatus.clear();
    state.guide = kFirstGuide;
    state.alertRecipients = {};
    state.zipRecipients = {};
    state.runHeaderTest = state.useSkipList = state.useCommonHeaders = true;  // a person who goes on gets tests
    editingExisting_ = false;
    const bool exists = pathExists(installation_.paths().settingsFile);
    if (exists) {
        chooseMethod(SetupMethod::Manual);  // still with the text of a first set-up
        editingExisting_ = true;
        state.localPath = installation_.folder(SettingsFolder::Local);
        state.archivePath = installation_.folder(SettingsFolder::Archive);
        state.sharedPath = installation_.folder(SettingsFolder::Shared);
        state.runHeaderTest = settings.runHeaderTest == 1;
        state.useSkipList = settings.useSkipList == 1;
        state.useCommonHeaders = settings.useCommonHeaders == 1;
        state.useSharedDb = settings.useSharedDb == 1;
        state.alertRecipients.items.push_back(toUtf8(settings.alertRecipient.trimmed()));
        state.zipRecipients.items.push_back(toUtf8(settings.zipRecipient.trimmed()));
    }
    for (const auto which : {WizardRecipient::Alert, WizardRecipient::Zip}) {
        recipients(which).items.emplace_back(kQueryItem);
        chooseRecipient(which, 0);
    }
    state.browseArchiveEnabled = !state.archivePath.empty();
    state.localPathsNextEnabled = !state.archivePath.empty() && !state.sharedPath.empty();
    state.sharedPathNextEnabled = !state.useSharedDb || !state.sharedPath.empty();
}

void SetupWizard::selectTab(std::size_t tab) {
    if (tab < kWizardTabCount && state.tabEnabled[tab])
        state.currentTab = tab;
    host_.showState();
}

void SetupWizard::goTo(WizardTab tab) {
    state.tabEnabled[tab] = true;
    state.currentTab = tab;
    host_.showState();
}

// A path box is shown only; what fills it is its button.
void SetupWizard::focusBrowse(WizardPath path) {
    constexpr const char* kButtons[] = {"Command2", "Command3", "Command4"};
    host_.focus(kButtons[static_cast<std::size_t>(path)]);
}

void SetupWizard::saveAndRefresh() {
    passOver(installation_.saveSettingsRecord(), "the program goes on with what is in memory");
    installation_.refreshPathVariables();
}

void SetupWizard::showBusy(bool busy) {
    state.busyPointer = busy;
    host_.showState();
}

void SetupWizard::errorBox(const std::string& title, const std::string& text) {
    surroundings_.dialogs.tell(title, text, BoxStyle::Critical);
}

void SetupWizard::chooseMethod(SetupMethod method) {
    state.method = method;
    state.methodNextEnabled = true;
    if (method == SetupMethod::Import)
        state.methodText = kImportText;
    else
        state.methodText = editingExisting_ ? kEditText : kFirstSetUpText;
    host_.showState();
}

void SetupWizard::nextMethod() {
    if (state.method != SetupMethod::Import) {
        goTo(kLocalPathsTab);
        focusBrowse(WizardPath::Local);
        return;
    }
    const SetupWizardState before = state;
    if (!importSettings(installation_, surroundings_.dialogs))
        return;
    // The record that an exit puts back stays the one before the import.
    fillFromRecord();
    proposePathsOfThisComputer(before);
    goTo(kLocalPathsTab);
}

// An imported record has the folders of another computer, or of another person's home. Where they can be neither found
// nor made here, those that the wizard showed before are proposed, else those of a first set-up. Nothing is stored.
void SetupWizard::proposePathsOfThisComputer(const SetupWizardState& before) {
    const auto usable = [](const NativePath& path) { return !path.is_absolute() || canBeFolder(path); };
    const NativePath data = installation_.appFolder() / "Data";
    const auto propose = [&](const char* name, NativePath& shown, const NativePath& earlier, const NativePath& first) {
        if (shown.empty() || usable(shown))
            return;
        const NativePath& better = !earlier.empty() && usable(earlier) ? earlier : first;
        if (whyNotInSettings(better).empty() &&
            surroundings_.dialogs.ask("Import Settings", std::string("The imported ") + name + " " +
                                                             readable(shown.native()) +
                                                             " cannot be used on this computer. Do you want to use " +
                                                             readable(better.native()) + " instead?"))
            shown = better;
    };
    propose("Local Path", state.localPath, before.localPath, data);
    propose("Archive Path", state.archivePath, before.archivePath, data / "Archives");
}

void SetupWizard::keyInPath(WizardPath path) {
    (path == WizardPath::Shared ? state.sharedHintVisible : state.localHintVisible) = true;
    host_.showState();
    host_.beep();
    focusBrowse(path);
}

void SetupWizard::hideHints() {
    state.localHintVisible = false;
    state.sharedHintVisible = false;
    host_.showState();
}

std::optional<NativePath> SetupWizard::browse(const std::string& title, const NativePath& start) {
    auto chosen = surroundings_.dialogs.pickFolder(title, start);
    return chosen && !chosen->empty() ? std::move(chosen) : std::nullopt;
}

void SetupWizard::browseLocalPath() {
    const auto chosen = browse("Select folder for local database..", state.localPath);
    if (!chosen)
        return;
    state.localPath = *chosen;
    state.guide = kArchiveGuide;
    state.browseArchiveEnabled = true;
    host_.showState();
}

void SetupWizard::browseArchivePath() {
    const auto chosen = browse("Select folder to store Archives ..", state.archivePath);
    if (!chosen)
        return;
    state.archivePath = *chosen;
    state.guide = kNextGuide;
    if (!state.localPath.empty())
        state.localPathsNextEnabled = true;
    host_.showState();
}

void SetupWizard::browseSharedPath() {
    const auto chosen = browse("Select folder for Shared database..", state.sharedPath);
    if (!chosen)
        return;
    chosenSharedPath_ = *chosen;
    state.sharedPath = *chosen;
    state.sharedPathNextEnabled = true;
    host_.showState();
}

void SetupWizard::setUseSharedDb(bool use) {
    state.useSharedDb = use;
    state.sharedPathNextEnabled = !use || !chosenSharedPath_.empty();
    host_.showState();
}

void SetupWizard::nextDefaults() {
    AppSettings& settings = installation_.settings;
    settings.runHeaderTest = state.runHeaderTest ? 1 : 0;
    settings.useSkipList = state.useSkipList ? 1 : 0;
    settings.useCommonHeaders = state.useCommonHeaders ? 1 : 0;
    saveAndRefresh();
    goTo(kAlertsTab);
}

void SetupWizard::exportRecord() {
    exportSettings(installation_, surroundings_);
}

WizardEnd SetupWizard::done() {
    installation_.refreshPathVariables();
    passOver(installation_.saveSettingsRecord(), "the program goes on with what is in memory");
    return WizardEnd::Leaves;
}

WizardEnd SetupWizard::exit() {
    if (!surroundings_.dialogs.ask("Exit Setup", "Do you want to exit without saving settings ?"))
        return WizardEnd::Stays;
    installation_ = *before_;
    installation_.refreshPathVariables();
    return WizardEnd::LeavesAndReloads;
}

}  // namespace quillon
