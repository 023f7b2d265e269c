// SPDX-License-Identifier: MIT
#include "archive/zip_file_lists.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "app/folder_structure.h"
#include "app/turn_until.h"
#include "archive/list_selection.h"
#include "messaging/recipient_probe.h"
#include "messaging/recipient_query.h"
#include "platform/folders.h"
#include "platform/start_beside.h"
#include "text/list_text.h"

namespace quillon {

namespace {

bool samePath(const NativePath& a, const NativePath& b) {
    return foldedName(a.native()) == foldedName(b.native());
}

// A folder that answers within this time answers at once for a person.
constexpr std::chrono::milliseconds kSeenAtOnce{100};

NativePath defaultArchives(const Paths& paths) {
    return paths.localPath / "Archives";
}

NativePath placeOfArchives(const Paths& paths) {
    return pathExists(paths.zipPath) ? paths.zipPath : defaultArchives(paths);
}

NativePath createdIfMissing(const NativePath& folder) {
    if (!pathExists(folder))
        CreateFolderPath(folder);
    return folder;
}

}  // namespace

ZipFileLists::ZipFileLists(Installation& installation, const Surroundings& surroundings, AlertSender& alerts,
                           ScreenHost& host, WarnInLog warnInLog)
    : installation_(installation),
      surroundings_(surroundings),
      alerts_(alerts),
      host_(host),
      warnInLog_(std::move(warnInLog)),
      kept_(installation, surroundings.clock) {
}

void ZipFileLists::load(ZipHandover job) {
    job_ = std::move(job);
    state.jobId = job_.jobId;
    state.separator = job_.separator;
    fill();
}

void ZipFileLists::fill() {
    fillGrid();
    fillRecipients();
    state.showCompany = false;
    state.recipients.testEnabled = state.recipients.index != 0;
    host_.showState();
}

void ZipFileLists::reload() {
    askedFolder_.clear();
    state.rows.clear();
    fill();
}

void ZipFileLists::fillGrid() {
    state.rows = findLists(installation_.paths().localPath, job_.jobId, job_.separator, state.ignoreSeparator);
    state.selectedRow.reset();
}

void ZipFileLists::fillRecipients() {
    const std::string stored = toUtf8(installation_.settings.zipRecipient.trimmed());
    RecipientBox& box = state.recipients;
    box.items = {kQueryItem};
    box.enabled = true;
    if (stored != kQueryItem)
        box.items.push_back(stored);
    box.index = static_cast<int>(box.items.size()) - 1;
}

void ZipFileLists::setIgnoreSeparator(bool ignore) {
    state.ignoreSeparator = ignore;
    if (!state.rows.empty())
        fillGrid();
    host_.showState();
}

void ZipFileLists::setPassword(const std::string& password) {
    state.password = password;
    if (!password.empty())
        state.retainLists = true;
    host_.showState();
}

void ZipFileLists::addRow(const NativePath& file) {
    const auto same =
        std::find_if(state.rows.begin(), state.rows.end(), [&](const NativePath& row) { return samePath(row, file); });
    if (same == state.rows.end()) {
        state.rows.push_back(file);
        return;
    }
    state.selectedRow = static_cast<std::size_t>(same - state.rows.begin());
    host_.beep();
}

void ZipFileLists::addFiles() {
    FilePick pick;
    pick.title = "Add files to zip";
    pick.startFolder = installation_.paths().localPath;
    pick.multiple = true;
    for (const auto& file : surroundings_.dialogs.pickFiles(pick)) addRow(file);
    host_.showState();
}

void ZipFileLists::removeRow(std::size_t row) {
    if (row >= state.rows.size())
        return;
    const NativePath file = state.rows[row];
    if (!surroundings_.dialogs.ask("Remove file", "Remove file " + readable(file.native()) + "? "))
        return;
    // The rows may have changed while the question stood open.
    const auto at = std::find(state.rows.begin(), state.rows.end(), file);
    if (at != state.rows.end())
        state.rows.erase(at);
    state.selectedRow.reset();
    host_.showState();
}

void ZipFileLists::changeDestination() {
    const Paths& paths = installation_.paths();
    // A folder that does not answer would hold the box that is to choose another one.
    const auto chosen =
        surroundings_.dialogs.pickFolder("Change zip path", waitsForFolder() ? paths.localPath : paths.zipPath);
    const NativePath folder = chosen && !chosen->empty() ? *chosen : defaultArchives(paths);
    if (!waitFor(folder, [folder] { return createdIfMissing(folder); }))
        return;
    installation_.useZipPath(folder);
    askedFolder_.clear();
    if (!surroundings_.dialogs.ask("Change archive location", "Do you want to make these changes permanent ?"))
        return;
    installation_.setFolder(SettingsFolder::Archive, folder);
    passOver(installation_.saveSettingsRecord(), "the program goes on with what is in memory");
}

// The archive folder may lie on a share whose server has gone, and whoever asks it stands still with it. So it is asked
// on a thread of its own, and the screen tells what it knows.
void ZipFileLists::askForFolder() {
    archives_ = askedFolder_ = installation_.paths().zipPath;
    folderCame_ = {};
    auto asked = startBeside([paths = installation_.paths()] { return placeOfArchives(paths); });
    if (!asked)
        return;
    folderCame_ = std::move(*asked);
    if (hasCome(folderCame_, kSeenAtOnce))
        archives_ = folderCame_.get();
}

bool ZipFileLists::waitsForFolder() {
    if (folderCame_.valid() && hasCome(folderCame_, {}))
        archives_ = folderCame_.get();
    return folderCame_.valid();
}

// What the work comes to; null when the person has cancelled the wait for it. Work that hangs is left to itself then.
std::optional<NativePath> ZipFileLists::waitFor(const NativePath& folder, const std::function<NativePath()>& work) {
    auto made = startBeside(work);
    if (!made)
        return work();
    cancelled_ = false;
    const auto isOver = [&](std::chrono::milliseconds pause) { return hasCome(*made, pause) || cancelled_; };
    if (!isOver(kSeenAtOnce)) {
        state.cancelEnabled = true;
        showNotice("Waiting for the archive folder " + readable(folder.native()) + " ...");
        turnUntil(surroundings_.loop, isOver);
        state.cancelEnabled = false;
        showNotice({});
    }
    return hasCome(*made, {}) ? std::optional(made->get()) : std::nullopt;
}

std::optional<NativePath> ZipFileLists::workingFolder() {
    const Paths paths = installation_.paths();
    return waitFor(paths.zipPath, [paths] { return createdIfMissing(placeOfArchives(paths)); });
}

std::string ZipFileLists::noticeLine() {
    if (!state.notice.empty())
        return state.notice;
    if (installation_.paths().zipPath != askedFolder_)
        askForFolder();
    if (waitsForFolder())
        return "The archive folder " + readable(archives_.native()) + " does not answer";
    const std::string job = state.jobId.empty() ? kUnnamedJob : state.jobId;
    return "Archive: " + readable((archives_ / (archiveBaseName(job, state.separator) + ".zip")).native());
}

void ZipFileLists::showNotice(const std::string& text) {
    state.notice = text;
    host_.showState();
}

void ZipFileLists::queryNetwork(std::shared_ptr<NetworkProvider> network) {
    CNetworkEnum computers(std::move(network), surroundings_.loop);
    queryRecipients(computers, recipientScreen());
}

void ZipFileLists::testRecipient(AlertExchange& exchange) {
    quillon::testRecipient(kZipScreenRecipient, exchange, installation_, surroundings_, recipientScreen());
}

RecipientScreen ZipFileLists::recipientScreen() {
    return {alertScreenRules(AlertScreen::Zip), state.recipients, state.busyPointer, nullptr,
            [this] { host_.showState(); },      warnInLog_};
}

void ZipFileLists::showBusy(bool busy) {
    state.busyPointer = busy;
    host_.showState();
}

void ZipFileLists::showProgress(bool visible, double percent) {
    state.progressVisible = visible;
    state.progress = percent;
    host_.showState();
}

}  // namespace quillon
