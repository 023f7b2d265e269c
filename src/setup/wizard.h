// SPDX-License-Identifier: MIT
#pragma once

// The work behind "Setup Wizard": sets an installation up, or edits its settings, tab by tab. Each "Next >" saves the
// record, enables the next tab and goes there; nothing is rolled back. Files that an extraction overwrites go under
// Kept first.

#include <memory>
#include <optional>
#include <string>

#include "app/installation.h"
#include "app/screen_host.h"
#include "app/step_guard.h"
#include "app/surroundings.h"
#include "messaging/alert_exchange.h"
#include "messaging/network_enum.h"
#include "messaging/recipient_box.h"
#include "setup/wizard_state.h"

namespace quillon {

/// The display-only boxes for paths.
enum class WizardPath { Local, Archive, Shared };

/// The two recipient boxes.
enum class WizardRecipient { Alert, Zip };

/// What becomes of the screen behind a step that may end the wizard.
enum class WizardEnd {
    Stays,
    Leaves,           ///< the main window comes up
    LeavesAndReloads  ///< its start sequence runs again
};

class SetupWizard {
public:
    /// All must outlive this.
    SetupWizard(Installation& installation, const Surroundings& surroundings, AlertExchange& alerts,
                std::shared_ptr<NetworkProvider> network, ScreenHost& host, WarnInLog warnInLog = {});

    SetupWizardState state;

    /// The screen comes up. With a settings file its record is edited, from the second tab on.
    ///
    /// Kept: "Next >" of the local paths asks for an archive path and a shared one (test
    /// LocalPathsNextAsksForTheSharedPathAtLoad). Kept: an edit opens with the text for a first set-up (test
    /// AnEditOpensWithTheTextOfAFirstSetUp).
    void load();
    /// A click on a tab that is enabled.
    void selectTab(std::size_t tab);

    void chooseMethod(SetupMethod method);  ///< Option1
    void nextMethod();                      ///< Command1

    /// A key press in Text1, Text2 or Text3: a hint shows until `hideHints`, which Timer1 calls.
    void keyInPath(WizardPath path);
    void hideHints();

    void browseLocalPath();    ///< Command2
    void browseArchivePath();  ///< Command3
    void nextLocalPaths();     ///< Command6

    void browseSharedPath();  ///< Command4
    /// Check5. Kept: only a path that was browsed for counts, not a stored one (test
    /// TickingSharingAgainAsksForABrowsedPath).
    void setUseSharedDb(bool use);
    /// Command7. Kept: the folders are looked at a second time when one was created, not when one failed; a creation of
    /// Database or Settings that fails passes without a word (test
    /// AFailedCreationBelowTheSharedRootPassesWithoutAWord). Kept: the shared folder is filled from db.zip, not from
    /// the local database (test TheShareIsFilledFromTheArchive).
    void nextSharedPath();

    void nextDefaults();  ///< Command8; the separator is neither shown nor stored

    void chooseRecipient(WizardRecipient which, int index);  ///< Combo1, Combo2
    void pressRecipientButton(WizardRecipient which);        ///< Command9, Command10: queries or tests by the caption
    void revertRecipient(WizardRecipient which);             ///< Command13, Command15
    void nextAlerts();                                       ///< Command11; "Query" is stored as such

    void exportRecord();             ///< Command12
    [[nodiscard]] WizardEnd done();  ///< Command14
    [[nodiscard]] WizardEnd exit();  ///< Command5; the file keeps what the steps have written

private:
    void fillFromRecord();
    [[nodiscard]] RecipientBox& recipients(WizardRecipient which);
    void goTo(WizardTab tab);
    void focusBrowse(WizardPath path);
    void saveAndRefresh();
    void showBusy(bool busy);
    void errorBox(const std::string& title, const std::string& text);
    [[nodiscard]] std::optional<NativePath> browse(const std::string& title, const NativePath& start);
    void proposePathsOfThisComputer(const SetupWizardState& before);

    void runLocalPaths();
    [[nodiscard]] bool createLocalFolders();
    [[nodiscard]] bool extractLocally();
    [[nodiscard]] Result<void> extractTo(const NativePath& folder);
    template <typename Work>
    [[nodiscard]] Result<void> besideWithBar(Work work);

    void runSharedPath();
    [[nodiscard]] bool fillShare(Result<void>& trapped);
    [[nodiscard]] bool createSharedFolders(const NativePath& shared);
    void tellWhatShareRefuses(const NativePath& shared);
    [[nodiscard]] bool holdsFiles(const NativePath& folder);
    [[nodiscard]] Result<void> backUpShare(const NativePath& shared);
    void storeSharedPath(const NativePath& shared);

    Installation& installation_;
    const Surroundings& surroundings_;
    AlertExchange& alerts_;
    std::shared_ptr<NetworkProvider> network_;
    ScreenHost& host_;
    WarnInLog warnInLog_;
    std::optional<Installation> before_;  // as the wizard found it
    bool editingExisting_ = false;
    NativePath chosenSharedPath_;
    Steps folderSteps_;  // a step turns the event loop; a second press waits for nothing
};

}  // namespace quillon
