// SPDX-License-Identifier: MIT
// The rules of the job's controls. Every step stands in the order in which the person sees its effects.
#include "job/job_setup.h"

#include <algorithm>
#include <utility>

#include "app/kept_files.h"
#include "app/list_mark.h"
#include "job/job_id.h"
#include "job/statistics.h"
#include "platform/folders.h"
#include "testing/grade_choice.h"
#include "testing/skip_list.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/page_text.h"
#include "text/unicode.h"

namespace quillon {
namespace {

constexpr const char* kPathNotSet = "System path not set!!";

std::string lowerText(std::string_view text) {
    return utf16ToUtf8(lowered(utf8ToUtf16(text)));
}

}  // namespace

std::string cleanSeparator(std::string_view text) {
    const std::string allowed = withoutForbidden(text);
    std::size_t end = 0;
    if (!allowed.empty())
        passOver(nextUtf8(allowed, end), "bytes that are no character have an end too");
    return allowed.substr(0, end);
}

std::string listNameOf(const NativePath& file) {
    const std::string name = file.filename().native();
    return name.substr(0, name.find('.'));
}

bool countsAsContent(std::string_view entryName) {
    if (entryName.starts_with('.'))
        return false;
    const std::string name = lowerText(entryName);
    return name != "recycler" && name != "system volume information";
}

void JobSetup::log(std::string text, std::optional<std::uint32_t> colour) {
    state_.log.add({surroundings_.clock.now(), std::move(text), colour});
}

NativePath JobSetup::listPath(const std::string& name) const {
    const NativePath& folder = installation_.paths().localPath;
    return folder.empty() ? NativePath{} : childPath(folder, name + ".csv").value_or(NativePath{});
}

void JobSetup::jobIdChanged(std::string_view text) {
    std::string id = cleanJobId(text);
    // A character taken away may bare a blank, which the box's own next change cuts.
    for (std::string next = cleanJobId(id); next != id; next = cleanJobId(id)) id = next;
    sourceEnabled = !id.empty();
    if (id.empty())
        state_.mayRun = false;
    state_.mayView = true;
    state_.options.jobId = id;
}

void JobSetup::forgetLastSource() {
    state_.options.confirmedList.clear();
    state_.log.removeLast();
}

FocusAfter JobSetup::pickSource() {
    forgetLastSource();
    return takeSource(surroundings_.dialogs.pickFolder("Select source", state_.options.source.value_or(NativePath{})));
}

FocusAfter JobSetup::dropSource(const NativePath& folder) {
    forgetLastSource();
    return takeSource(folder);
}

FocusAfter JobSetup::takeSource(const std::optional<NativePath>& folder) {
    state_.options.source = folder;
    state_.mayRun = folder.has_value();
    if (folder) {
        log("Source : " + readable(folder->native()));
        state_.mayView = false;
    }
    if (!confirmOverwrite())
        return FocusAfter::JobId;
    state_.texts.status = "Ready >";
    return FocusAfter::Stays;
}

// True when there is nothing to overwrite, or the person wants it.
bool JobSetup::confirmOverwrite() {
    const NativePath list = listPath(state_.options.jobId);
    if (!pathExists(list))
        return true;
    const bool confirmed =
        surroundings_.dialogs.ask("Overwrite File List?", "The file (" + readable(list.native()) +
                                                              ") already exists. Do you want to overwrite it?");
    if (confirmed)
        state_.options.confirmedList = list;
    return confirmed;
}

void JobSetup::pickTarget() {
    const auto folder = surroundings_.dialogs.pickFolder("Select Target", state_.options.target.value_or(NativePath{}));
    if (folder)
        passOver(takeTarget(*folder), "the target before stays");
}

bool JobSetup::takeTarget(const NativePath& folder) {
    const auto entries = listEntries(folder);
    const bool filled = entries && std::any_of(entries->begin(), entries->end(), countsAsContent);
    if (filled && !surroundings_.dialogs.ask("Warning !",
                                             "There are aleady files stored on this drive or folder. "
                                             "Any existing files or folders may be overwritten, "
                                             "do you still want to copy?"))
        return false;
    const std::string shown = "Copy to : " + readable(folder.native());
    if (filled)
        log(shown + " (Overwrite existing files )", kLightOrange);
    else
        log(shown);
    state_.options.target = folder;
    return true;
}

void JobSetup::applySettingDefaults() {
    const AppSettings& settings = installation_.settings;
    recipients.select(0);
    const std::string recipient = toUtf8(settings.alertRecipient.trimmed());
    if (!recipient.empty()) {
        if (recipients.holds(recipient)) {
            recipients.select(1);
        } else if (lowerText(recipient) != lowerText(surroundings_.hostName)) {
            // A recipient that is this computer is not offered: the program would send alerts to itself.
            recipients.items.push_back(recipient);
            recipients.select(static_cast<int>(recipients.items.size()) - 1);
        }
    }
    skipListTicked(settings.useSkipList == 1);
    JobOptions& options = state_.options;
    options.useCommonHeadersEnabled =
        pathExists(installation_.paths().localSettings.empty()
                       ? NativePath{}
                       : fileIn(installation_.paths().localSettings, kCommonHeadersFileName));
    options.useCommonHeaders = options.useCommonHeadersEnabled && settings.useCommonHeaders == 1;
    options.checkFileQuality = settings.runHeaderTest == 1;
}

void JobSetup::loadSeparator() {
    const std::string stored = toUtf8(installation_.settings.fileListSeparator.trimmed());
    separator = stored.empty() ? "-" : stored;
}

// A folder whose name was cut or lost characters on its way into the settings is another folder.
void JobSetup::tellCutFolders() {
    const Paths& paths = installation_.paths();
    const std::pair<const char*, const NativePath*> folders[] = {
        {"Local Path", &paths.localPath}, {"Archive Path", &paths.zipPath}, {"Shared DB Path", &paths.sharedPath}};
    for (const auto& [name, folder] : folders) {
        if (mayBeCutInSettings(*folder))
            log(std::string("The ") + name +
                    " of the settings may have lost characters of its name : " + readable(folder->native()),
                kLightOrange);
    }
}

void JobSetup::loadSettings() {
    tellCutFolders();
    recipients.addQuery();
    state_.texts.status.clear();
    applySettingDefaults();
    if (installation_.paths().localSettings.empty()) {
        state_.texts.status = kPathNotSet;
        state_.options.checkFileQuality = false;
    }
    checkSkip();
    const auto preferences = readPreferences(installation_.appFolder()).value_or(Preferences());
    state_.options.keepEvidence = preferences.get(kKeepsEvidence).value_or(true);
    state_.options.keepHeads = preferences.get(kKeepsHeads).value_or(true);
    resetCounters(state_);
}

void JobSetup::loadOwnOptions() {
    const auto preferences = readPreferences(installation_.appFolder()).value_or(Preferences());
    for (const OwnOption& option : kOwnOptions)
        option.of(state_.options) = preferences.get(option.preference).value_or(false);
    state_.options.copyGrades = gradesNamed(preferences.get(kCopiedGrades).value_or(""));
}

void JobSetup::ownOptionTicked(const OwnOption& option, bool ticked) {
    option.of(state_.options) = ticked;
    store([&](Preferences& preferences) { preferences.set(option.preference, ticked); });
}

void JobSetup::copiedGradesChosen(std::vector<Grade> grades) {
    state_.options.copyGrades = std::move(grades);
    store(
        [this](Preferences& preferences) { preferences.set(kCopiedGrades, namesOfGrades(state_.options.copyGrades)); });
}

void JobSetup::store(const std::function<void(Preferences&)>& choices) {
    const auto stored = changePreferences(installation_.appFolder(), choices);
    if (!stored)
        state_.texts.status = "This lasts until the program ends: " + stored.error().text;
}

// With sharing on the answer changes nothing here, and a share that hangs would hold the window for it.
void JobSetup::checkSkip() {
    if (installation_.paths().useSharedDb)
        return;
    const SkipAvailability skip = checkSkipAvailable(installation_);
    if (skip.appliesToBox) {
        state_.options.useSkipListEnabled = skip.enabled;
        state_.options.useSkipList = skip.ticked;
    }
    if (skip.status != nullptr)
        state_.texts.status = skip.status;
}

void JobSetup::skipListTicked(bool ticked) {
    state_.options.useSkipList = ticked;
    if (ticked)
        checkSkip();
}

void JobSetup::copyTicked(bool ticked) {
    state_.options.copy = ticked;
    targetEnabled = ticked;
}

void JobSetup::defaultsTicked(bool ticked) {
    useDefaults = ticked;
    if (ticked)
        applySettingDefaults();
}

void JobSetup::askSeparator() {
    Dialogs& dialogs = surroundings_.dialogs;
    const auto answer = dialogs.input("File list separator", "Enter a file list separator : ", separator);
    if (!answer || answer->empty()) {
        dialogs.tell("Unchanged", "File list separator remains unchanged", BoxStyle::Information);
        return;
    }
    const std::string before = std::exchange(separator, cleanSeparator(*answer));
    keepSeparator(*answer, before);
}

void JobSetup::keepSeparator(const std::string& answer, const std::string& before) {
    const PageText page = toPage(std::string_view(separator));
    // A character that the settings cannot hold would come back as another one, and is refused like a forbidden one.
    if (separator.empty() || toUtf8(page) != separator) {
        surroundings_.dialogs.warn("File Separator Error", "You may not use the character " + answer +
                                                               " as a separator as this character is reserved by the "
                                                               "system and can not be used in a filename");
        separator = before;
        return;
    }
    installation_.settings.fileListSeparator.assign(page);
    installation_.refreshPathVariables();
    passOver(installation_.saveSettingsRecord(), "the separator counts in memory all the same");
}

std::optional<std::string> JobSetup::openExisting() {
    FilePick pick;
    pick.title = "Open existing file list";
    pick.filter = "File Lists (*.csv)|*.csv|All Files(*.*)";
    pick.startFolder = installation_.paths().localPath;
    pick.defaultSuffix = ".csv";
    const auto files = surroundings_.dialogs.pickFiles(pick);
    if (files.empty())
        return std::nullopt;
    jobIdChanged(listNameOf(files.front()));
    state_.outcome.reset();
    unopened_.clear();
    const std::string& id = state_.options.jobId;
    const NativePath list = id.empty() ? NativePath{} : listPath(id);
    if (list.empty())
        unopened_ = "no job ID or no local path";
    else if (!pathExists(list))
        fetchList(files.front(), list);
    return id;
}

void JobSetup::fetchList(const NativePath& from, const NativePath& to) {
    state_.texts.status = "Copying file, please wait ...";
    state_.fetchingList = true;
    surroundings_.loop.turn();
    const auto turning = [this](std::uint64_t, std::uint64_t) {
        surroundings_.loop.turn();
        return true;
    };
    passOver(copyMark(from, to), "a mark that is missing is missing where the list comes from, too");
    const auto copied = FileCopier().copy(from.native(), to.native(), turning);
    if (copied)
        fetchEvidence(from, to, turning);
    else
        unopened_ = copied.error().error.text;
    state_.fetchingList = false;
    state_.texts.status.clear();
}

void JobSetup::tellUnopened() {
    if (!unopened_.empty())
        state_.texts.status = "The list could not be opened: " + unopened_;
}

// What stood there was that of another list.
void JobSetup::fetchEvidence(const NativePath& from, const NativePath& to, const CopyProgress& turning) {
    const NativePath evidence = evidenceBeside(from);
    passOver(KeptFiles(installation_, surroundings_.clock).moveEvidenceAway(to), "it would only be out of step");
    for (const auto& [file, copy] :
         {std::pair(journalOf(evidence), journalOf(evidenceBeside(to))), std::pair(evidence, evidenceBeside(to))}) {
        if (pathExists(file))
            passOver(FileCopier().copy(file.native(), copy.native(), turning), "a list does without evidence");
    }
}

bool JobSetup::askClearLog() {
    if (state_.log.rows().empty() || !surroundings_.dialogs.ask("Clear log?", "Clear the log?"))
        return state_.log.rows().empty();
    state_.log.clear();
    return true;
}

}  // namespace quillon
