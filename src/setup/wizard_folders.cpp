// SPDX-License-Identifier: MIT
// The wizard's steps that create folders and unpack the default database: local paths and shared path.
#include <atomic>
#include <functional>

#include <fmt/format.h>

#include "app/folder_structure.h"
#include "app/history_dialogs.h"
#include "app/kept_files.h"
#include "app/run_beside.h"
#include "archive/zip_reader.h"
#include "platform/folders.h"
#include "setup/database_backup.h"
#include "setup/database_folder.h"
#include "setup/share_trial.h"
#include "setup/wizard.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kNoDefaultDatabase = "Unable to find default Databases, please re-install the application.";

// Runs a step unless one is running: the event loop is turned meanwhile, and a press on a button may come in.
template <typename Step>
void runOnce(Steps& steps, Step step) {
    if (steps.running())
        return;
    const StepGuard guard(steps);
    step();
}

// A path that is not absolute, as an imported record may hold, has no place of its own.
bool existsOrCreated(const NativePath& folder) {
    return folder.is_absolute() && (pathExists(folder) || CreateFolderPath(folder));
}

// What the system says to the first level that is missing; empty where there is nothing to say.
std::string whyNotCreated(const NativePath& folder) {
    if (!folder.is_absolute())
        return readable(folder.native()) + " does not begin at the root of the file system";
    NativePath walked;
    for (const auto& element : folder) {
        walked /= element;
        if (pathExists(walked))
            continue;
        if (const auto made = createFolder(walked); !made)
            return made.error().text;
    }
    return {};
}

void tellNotCreated(const Surroundings& surroundings, const char* title, const char* text, const NativePath& folder) {
    MessageBox box{title, text, BoxStyle::Critical, BoxButtons::Ok};
    box.details = answerBeside(surroundings.loop, [folder] { return whyNotCreated(folder); });
    surroundings.dialogs.show(box);
}

// Whether the shared folders stand after two looks at them, of which the first may create them.
bool sharedFoldersStand(const NativePath& shared) {
    for (int pass = 1; pass <= 2; ++pass) {
        int count = 0;
        if (!existsOrCreated(shared))
            count = 1;
        if (!pathExists(shared / "Database") && CreateFolderPath(shared / "Database"))
            count += 2;
        if (!pathExists(shared / "Settings") && CreateFolderPath(shared / "Settings"))
            count += 4;
        if (count < 1)
            return true;
    }
    return false;
}

}  // namespace

// Packs or unpacks beside the event loop while the bar follows. Other tabs may be used meanwhile: the work goes by the
// installation as it is now.
template <typename Work>
Result<void> SetupWizard::besideWithBar(Work work) {
    const Installation installation = installation_;
    KeptFiles kept(installation, surroundings_.clock, KeptBy::Rescue);
    std::atomic<double> percent{0};
    state.progressVisible = true;
    const auto showBar = [&] {
        state.progress = percent;
        host_.showState();
    };
    showBar();
    auto done = answerBeside(
        surroundings_.loop, [&] { return work(kept, [&percent](double reached) { percent = reached; }); }, showBar);
    surroundings_.loop.turn();
    state.progressVisible = false;
    host_.showState();
    return done;
}

bool SetupWizard::holdsFiles(const NativePath& folder) {
    return !answerBeside(surroundings_.loop, [&folder] { return databaseFiles(folder); }).empty();
}

void SetupWizard::nextLocalPaths() {
    runOnce(folderSteps_, [this] { runLocalPaths(); });
}

void SetupWizard::runLocalPaths() {
    installation_.setFolder(SettingsFolder::Local, state.localPath);
    installation_.setFolder(SettingsFolder::Archive, state.archivePath);
    saveAndRefresh();
    if (!createLocalFolders())
        return;
    const bool extract =
        !holdsFiles(installation_.paths().localDatabase) ||
        surroundings_.dialogs.ask("Overwrite DB?",
                                  "There are files in the local database folders, do you want to replace them?");
    if (extract && !extractLocally())
        return;
    saveAndRefresh();
    goTo(kSharedPathTab);
}

bool SetupWizard::createLocalFolders() {
    struct Wanted {
        NativePath folder;
        const char* text;
    };
    const Wanted wanted[] = {
        {state.localPath / "Database", "Unable to create directory for the Database Folder"},
        {state.localPath / "Settings", "Unable to create directory for the Settings Folder"},
        {state.archivePath, "Unable to create directory for the Archived Lists"},
    };
    for (const auto& [folder, text] : wanted) {
        // The archive folder may be on a share.
        if (!answerBeside(surroundings_.loop, [path = folder] { return existsOrCreated(path); })) {
            tellNotCreated(surroundings_, "Create Folder Structure Error", text, folder);
            return false;
        }
    }
    return true;
}

bool SetupWizard::extractLocally() {
    if (!pathExists(installation_.defaultDatabasePath())) {
        errorBox("Setup Error", kNoDefaultDatabase);
        return false;
    }
    const auto extracted = extractTo(state.localPath);
    if (!extracted)
        errorBox("Setup Error", fmt::format("{}\r\n{}", kNoDefaultDatabase, extracted.error().text));
    return extracted.has_value();
}

Result<void> SetupWizard::extractTo(const NativePath& folder) {
    LostNote lost;
    auto done = besideWithBar([&lost, archive = installation_.defaultDatabasePath(), folder](
                                  KeptFiles& kept, const std::function<void(double)>& progress) -> Result<void> {
        ExtractOptions options;
        options.kept = &kept;
        options.progress = progress;
        NotedDatabase noted(folder / "Settings", changeBy("Setup Wizard"));
        const auto extracted = extractArchive(archive, folder, options);
        lost = noted.finish();
        if (!extracted)
            return failure(extracted.error());
        return {};
    });
    warnOfLostNote(surroundings_.dialogs, lost);
    return done;
}

void SetupWizard::nextSharedPath() {
    runOnce(folderSteps_, [this] { runSharedPath(); });
}

void SetupWizard::runSharedPath() {
    const NativePath shared = chosenSharedPath_.empty() ? state.sharedPath : chosenSharedPath_;
    Result<void> trapped;
    if (state.useSharedDb) {
        if (shared.empty()) {
            state.sharedHintVisible = true;
            host_.showState();
            return;
        }
        chosenSharedPath_ = shared;
        if (!fillShare(trapped))
            return;
    }
    storeSharedPath(shared);
    if (!trapped)
        surroundings_.dialogs.warn("Error", trapped.error().text);
}

// False ends the step. A failure that is trapped does not: the settings are saved, and it is told afterwards.
bool SetupWizard::fillShare(Result<void>& trapped) {
    const NativePath shared = chosenSharedPath_;
    if (!createSharedFolders(shared))
        return false;
    Dialogs& dialogs = surroundings_.dialogs;
    tellWhatShareRefuses(shared);
    if (holdsFiles(shared / "Database")) {
        if (!dialogs.ask("Overwrite Existing Files?",
                         "There are already files in this folder. "
                         "Do you want to overwrite any existing header database and settings file ?"))
            return true;
        if (dialogs.ask("Backup Old DB?", "Would you like to make a backup of the current shared DB?"))
            trapped = backUpShare(shared);
        if (!trapped)
            return true;  // nothing is overwritten without the backup that was asked for
    }
    state.copyStatus = "Copying databases to shared folders..";
    host_.showState();
    if (!pathExists(installation_.defaultDatabasePath())) {
        errorBox("DB Error",
                 "The Default database does not exist. Please re-install the application to extract the database.");
        return false;
    }
    trapped = extractTo(shared);
    return true;
}

bool SetupWizard::createSharedFolders(const NativePath& shared) {
    const bool stand = answerBeside(surroundings_.loop, [&shared] { return sharedFoldersStand(shared); });
    if (!stand)
        tellNotCreated(surroundings_, "Error", "Unable to create the shared databases", shared);
    return stand;
}

void SetupWizard::tellWhatShareRefuses(const NativePath& shared) {
    Paths paths;
    paths.sharedDatabase = shared / "Database";
    paths.sharedSettings = shared / "Settings";
    const std::string refused = answerBeside(surroundings_.loop, [&paths] { return whatShareRefuses(paths); });
    if (!refused.empty())
        surroundings_.dialogs.warn(kShareTrialTitle, shareTrialText(refused));
}

Result<void> SetupWizard::backUpShare(const NativePath& shared) {
    state.copyStatus = "Backing up old Database files";
    host_.showState();
    surroundings_.loop.turn();
    Paths paths = installation_.paths();
    paths.sharedPath = shared;  // not stored yet
    showBusy(true);
    auto saved = besideWithBar([&](KeptFiles& kept, const std::function<void(double)>& progress) {
        ZipOptions options;
        options.kept = &kept;
        options.progress = progress;
        return backUpSharedDatabase(paths, surroundings_, options);
    });
    showBusy(false);
    return saved;
}

void SetupWizard::storeSharedPath(const NativePath& shared) {
    installation_.setFolder(SettingsFolder::Shared, shared);
    installation_.settings.useSharedDb = state.useSharedDb ? 1 : 0;
    installation_.takeShareBack();
    saveAndRefresh();
    goTo(kDefaultsTab);
}

}  // namespace quillon
