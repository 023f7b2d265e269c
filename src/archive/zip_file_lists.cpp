// SPDX-License-Identifier: MIT
#include "archive/zip_file_lists.h"

#include <algorithm>
#include <utility>

#include "app/folder_structure.h"
#include "archive/list_selection.h"
#include "messaging/recipient_probe.h"
#include "messaging/recipient_query.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

namespace {

bool samePath(const NativePath& a, const NativePath& b) {
    return foldedName(a.native()) == foldedName(b.native());
}

NativePath defaultArchives(const Paths& paths) {
    return paths.localPath / "Archives";
}

}  // namespace

ZipFileLists::ZipFileLists(Installation& installation, const Surroundings& surroundings, AlertSender& alerts,
                           ScreenHost& host)
    : installation_(installation),
      surroundings_(surroundings),
      alerts_(alerts),
      host_(host),
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
    const auto chosen = surroundings_.dialogs.pickFolder("Change zip path", installation_.paths().zipPath);
    const NativePath folder = chosen && !chosen->empty() ? *chosen : defaultArchives(installation_.paths());
    installation_.useZipPath(folder);
    if (!pathExists(folder))
        CreateFolderPath(folder);
    if (!surroundings_.dialogs.ask("Change archive location", "Do you want to make these changes permanent ?"))
        return;
    installation_.setFolder(SettingsFolder::Archive, folder);
    passOver(installation_.saveSettingsRecord(), "the program goes on with what is in memory");
}

NativePath ZipFileLists::chosenFolder() const {
    const Paths& paths = installation_.paths();
    return pathExists(paths.zipPath) ? paths.zipPath : defaultArchives(paths);
}

NativePath ZipFileLists::workingFolder() const {
    NativePath folder = chosenFolder();
    if (!pathExists(folder))
        CreateFolderPath(folder);
    return folder;
}

std::string ZipFileLists::noticeLine() const {
    if (!state.notice.empty())
        return state.notice;
    const std::string job = state.jobId.empty() ? kUnnamedJob : state.jobId;
    return "Archive: " + readable((chosenFolder() / (archiveBaseName(job, state.separator) + ".zip")).native());
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
            [this] { host_.showState(); }};
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
