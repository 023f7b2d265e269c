// SPDX-License-Identifier: MIT
#include "setup/network_setup.h"

#include <utility>

#include <fmt/format.h>

#include "app/folder_structure.h"
#include "app/history_dialogs.h"
#include "app/rule_list_names.h"
#include "app/run_beside.h"
#include "archive/zip_reader.h"
#include "platform/folders.h"
#include "setup/database_folder.h"
#include "setup/folder_repair.h"
#include "setup/share_trial.h"
#include "testing/shared_copy.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr const char* kScreen = "Set up Network";
// The name that an exported or shared settings file has; the import looks for names that end in it.
constexpr const char* kSharedSettingsName = "Settings.dat";
// Looked for in the archive in any case.
constexpr const char* kArchivedSkipList = "skiplist.dat";

enum class SourceFolder { LocalSettings, Application };

// The boxes that copy one file.
struct SingleFile {
    NetworkBoxIndex index;
    SourceFolder from;
    const char* sourceName;
    const char* targetName;
    const char* name;         // in the question
    const char* missingText;  // no source
    const char* failedText;
};

constexpr SingleFile kSingleFiles[] = {
    {kCommonHeadersBox, SourceFolder::LocalSettings, kCommonHeadersFileName, kCommonHeadersFileName, "Common Headers",
     "Unable to find common headers file", "Error copying Common Headers file."},
    {kSettingsBox, SourceFolder::Application, kSettingsFileName, kSharedSettingsName, "Shared Settings Info",
     "Unable to find Settings file", "Error copying settings file."},
    {kSystemMessagesBox, SourceFolder::Application, kErrorsFileName, kErrorsFileName, "Report Messages",
     "Unable to find report messages file", "Error copying report messages file."},
};

const SingleFile& singleFile(NetworkBoxIndex index) {
    return kSingleFiles[index - kCommonHeadersBox];
}

Result<void> mustStand(const NativePath& target) {
    if (!pathExists(target))
        return failure(ErrorKind::NotFound, readable(target.native()) + " is not there");
    return {};
}

}  // namespace

NetworkSetup::NetworkSetup(const Installation& installation, const Surroundings& surroundings, ScreenHost& host)
    : installation_(installation),
      surroundings_(surroundings),
      host_(host),
      kept_(installation, surroundings.clock, KeptBy::Rescue) {
}

void NetworkSetup::setAll(bool ticked) {
    for (std::size_t i = kMainDatabaseBox; i < kSystemMessagesBox; ++i) state.boxes[i].ticked = ticked;
    host_.showState();
}

// A share may take its time. The screen is modal and its commands are switched off meanwhile, so no handler changes
// what the work looks at.
template <typename Work>
auto NetworkSetup::beside(Work work) {
    return answerBeside(surroundings_.loop, std::move(work));
}

void NetworkSetup::copy() {
    if (!beside([this] { return checkFolderStructure(installation_); }))
        repairFolders(installation_, surroundings_);
    const std::string refused = beside([this] { return whatShareRefuses(installation_.paths()); });
    if (!refused.empty())
        surroundings_.dialogs.warn(kShareTrialTitle, shareTrialText(refused));
    if (state.boxes[kSkipListBox].ticked || state.boxes[kCommonHeadersBox].ticked)
        fillInMarkers();
    for (std::size_t i = 0; i < kNetworkBoxCount; ++i) {
        const auto index = static_cast<NetworkBoxIndex>(i);
        if (!state.boxes[i].ticked)
            continue;
        if (index == kMainDatabaseBox)
            copyDatabase();
        else if (index == kSkipListBox)
            copySkipList();
        else
            copySingle(index);
    }
    warnOfLostNote(surroundings_.dialogs, std::exchange(lost_, std::nullopt));
}

void NetworkSetup::tick(NetworkBoxIndex index, bool ticked, bool enabled) {
    state.boxes[index].ticked = ticked;
    state.boxes[index].enabled = enabled;
    host_.showState();
}

bool NetworkSetup::mayReplace(const NativePath& target, const std::string& name) {
    return !beside([&target] { return pathExists(target); }) ||
           surroundings_.dialogs.ask("Overwrite file", "Do you want to overwrite the existing " + name + " file ?");
}

Result<void> NetworkSetup::took(const Result<LostNote>& noted) {
    if (!noted)
        return failure(noted.error());
    if (*noted)
        lost_ = *noted;
    return {};
}

Result<void> NetworkSetup::copyOver(const NativePath& source, const NativePath& target) {
    return beside([&] {
        return took(copyNoted(source, target, kept_, target.parent_path(), changeBy(kScreen))).and_then([&target] {
            return mustStand(target);
        });
    });
}

void NetworkSetup::warnOf(const char* text, const FileError& error) {
    MessageBox box{"Error", text, BoxStyle::Warning, BoxButtons::Ok};
    box.details = error.text;
    surroundings_.dialogs.show(box);
}

void NetworkSetup::clearBox(NetworkBoxIndex index, const Result<void>& copied, const char* failedText) {
    if (copied)
        tick(index, false);
    else
        warnOf(failedText, copied.error());
}

void NetworkSetup::copySingle(NetworkBoxIndex index) {
    const SingleFile& file = singleFile(index);
    const Paths& paths = installation_.paths();
    const NativePath from = file.from == SourceFolder::Application ? installation_.appFolder() : paths.localSettings;
    const NativePath target = paths.sharedSettings / file.targetName;
    if (!mayReplace(target, file.name)) {
        tick(index, false);
        return;
    }
    if (!pathExists(from / file.sourceName))
        return warn(file.missingText);
    clearBox(index, copyOver(from / file.sourceName, target), file.failedText);
}

void NetworkSetup::copySkipList() {
    const Paths& paths = installation_.paths();
    const NativePath source = paths.localSettings / kSkipListFileName;
    const NativePath target = paths.sharedSettings / kSkipListFileName;
    if (!mayReplace(target, "Skiplist")) {
        tick(kSkipListBox, false);
        return;
    }
    if (!pathExists(source))
        return extractSkipList(target);
    clearBox(kSkipListBox, copyOver(source, target), "Error copying settings file.");  // the same words as for those
}

// The list of bad sector markers is ours and has no box: it goes with the other rules, and never over one that is
// there.
void NetworkSetup::fillInMarkers() {
    const Paths& paths = installation_.paths();
    const NativePath source = fileIn(paths.localSettings, kBadSectorsFileName);
    const NativePath target = fileIn(paths.sharedSettings, kBadSectorsFileName);
    if (target.empty() || !pathExists(source) || beside([&target] { return pathExists(target); }))
        return;
    if (const auto copied = copyOver(source, target); !copied)
        warnOf("Error copying bad sector markers.", copied.error());
}

void NetworkSetup::extractSkipList(const NativePath& target) {
    const NativePath archive = installation_.defaultDatabasePath();
    if (!pathExists(archive)) {
        warn("Unable to find the skip list.");
        tick(kSkipListBox, false, false);
        return;
    }
    std::string names;
    if (const auto listed = listArchive(archive)) {
        for (const auto& name : *listed) names += foldedName(name) + "\r\n";
    }
    if (names.find(kArchivedSkipList) == std::string::npos) {
        warn("Unable to find skiplist in default database zip file");
        tick(kSkipListBox, false, false);
        return;
    }
    ExtractOptions options;
    options.mask = kArchivedSkipList;
    options.useFolders = false;
    options.kept = &kept_;
    const NativePath& folder = installation_.paths().sharedSettings;
    const auto extract = [&] { return extractArchive(archive, folder, options).map([](const Extracted&) {}); };
    const auto extracted = beside([&] {
        return took(changeNoted(folder, target, changeBy(kScreen), extract)).and_then([&] {
            return mustStand(target);
        });
    });
    clearBox(kSkipListBox, extracted, "Error decompressing default skiplist");
}

void NetworkSetup::copyDatabase() {
    const Paths& paths = installation_.paths();
    const auto present = beside([&paths] { return databaseFiles(paths.sharedDatabase); });
    if (!present.empty() && !surroundings_.dialogs.ask("Overwrite shared DB?",
                                                       "A database aready exists in the target folder. "
                                                       "Do you want to overwrite the existing database?")) {
        tick(kMainDatabaseBox, false);
        return;
    }
    const DatabaseFolder shared(paths.sharedDatabase, present);
    const auto names = databaseFiles(paths.localDatabase);
    const auto total = static_cast<std::int64_t>(names.size());
    std::int64_t number = 0;
    Result<void> trapped;
    NotedStep noted(paths.sharedSettings, changeBy(kScreen));
    for (const auto& name : names) {
        state.progress = "Copying file " + plainNumber(++number) + " of " + plainNumber(total);
        host_.showState();
        const auto copied = beside([&] {
            const NativePath target = shared.pathOf(name);
            return noted.change(target, [&] { return copyKeepingOld(paths.localDatabase / name, target, kept_); });
        });
        if (!copied)
            trapped = copied;
        surroundings_.loop.turn();
    }
    if (auto lost = beside([&noted] { return noted.finish(); }))
        lost_ = std::move(lost);
    tick(kMainDatabaseBox, false);
    if (!trapped)
        surroundings_.dialogs.tell(kProgramTitle, fmt::format("{} {}", trapped.error().number(), trapped.error().text));
}

}  // namespace quillon
