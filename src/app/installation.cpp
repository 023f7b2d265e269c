// SPDX-License-Identifier: MIT
#include "app/installation.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "app/preferences.h"
#include "platform/whole_file.h"

namespace quillon {

NativePath fileIn(const NativePath& folder, std::string_view name) {
    return folder.empty() ? NativePath{} : folder / name;
}

NativePath pathFromPage(const PageText& text) {
    return NativePath(toUtf8(text));
}

PageText pageFromPath(const NativePath& path) {
    return toPage(std::string_view(path.native()));
}

std::string whyNotInSettings(const NativePath& path) {
    const PageText page = pageFromPath(path);
    if (pathFromPage(page) != path)
        return "it has characters that are not in the 8-bit page of the settings";
    if (page.bytes.size() > kSettingsTextBytes)
        return "it is longer than " + std::to_string(kSettingsTextBytes) + " characters";
    if (page.bytes.ends_with(' '))
        return "it ends in a blank";
    return {};
}

bool mayBeCutInSettings(const NativePath& path) {
    return path.native().find('?') != std::string::npos || pageFromPath(path).bytes.size() == kSettingsTextBytes;
}

namespace {

using PathField = FixedText<kSettingsTextBytes>;

struct FolderRow {
    PathField AppSettings::*field;
    Preference<NativePath> chosen;  // docs/formats/preferences.md
};

constexpr std::array<FolderRow, kSettingsFolders> kFolderRows{{{&AppSettings::localPath, {"folder.local"}},
                                                               {&AppSettings::zipPath, {"folder.archive"}},
                                                               {&AppSettings::sharedPath, {"folder.shared"}}}};

constexpr std::size_t indexOf(SettingsFolder which) {
    return static_cast<std::size_t>(which);
}

}  // namespace

Installation::Installation(NativePath appFolder) : appFolder_(std::move(appFolder)) {
    paths_.settingsFile = appFolder_ / kSettingsFileName;
}

Result<void> Installation::loadSettingsRecord() {
    // The record alone, however much may follow it.
    std::array<char, kSettingsBytes> bytes;
    const auto count = File::openForReading(paths_.settingsFile).and_then([&bytes](File file) {
        return file.read(std::as_writable_bytes(std::span(bytes)));
    });
    if (!count)
        return failure(count.error());
    settings = decodeSettings({bytes.data(), *count});
    const Preferences preferences = readPreferences(appFolder_).value_or(Preferences{});
    for (std::size_t i = 0; i < kSettingsFolders; ++i) {
        chosen_[i] = preferences.get(kFolderRows[i].chosen).value_or(NativePath{});
        remembered_ = remembered_ || !chosen_[i].empty();
    }
    refreshPathVariables();
    return {};
}

Result<void> Installation::saveSettingsRecord() const {
    return rememberFolders().and_then([this] { return saveWholeFile(paths_.settingsFile, encodeSettings(settings)); });
}

// Nearly no installation has such a folder, and then no file is touched.
Result<void> Installation::rememberFolders() const {
    const bool needed =
        std::any_of(chosen_.begin(), chosen_.end(), [](const NativePath& path) { return !path.empty(); });
    if (!needed && !remembered_)
        return {};
    return changePreferences(appFolder_, [this](Preferences& preferences) {
        for (std::size_t i = 0; i < kSettingsFolders; ++i) {
            const NativePath path = folder(static_cast<SettingsFolder>(i));
            if (whyNotInSettings(path).empty())
                preferences.remove(kFolderRows[i].chosen.name);
            else
                preferences.set(kFolderRows[i].chosen, path);
        }
    });
}

NativePath Installation::folder(SettingsFolder which) const {
    const NativePath& chosen = chosen_[indexOf(which)];
    const PathField& field = settings.*kFolderRows[indexOf(which)].field;
    PathField cut;
    cut.assign(pageFromPath(chosen));
    return !chosen.empty() && cut.trimmed() == field.trimmed() ? chosen : pathFromPage(field.trimmed());
}

void Installation::setFolder(SettingsFolder which, const NativePath& path) {
    (settings.*kFolderRows[indexOf(which)].field).assign(pageFromPath(path));
    chosen_[indexOf(which)] = whyNotInSettings(path).empty() ? NativePath{} : path;
    if (which == SettingsFolder::Archive)
        leftOutArchive_.clear();
}

void Installation::refreshPathVariables() {
    if (settings.alertSourcePort == 0)
        settings.alertSourcePort = kDefaultAlertSourcePort;
    if (settings.alertListenPort == 0)
        settings.alertListenPort = kDefaultAlertListenPort;
    paths_.localPath = folder(SettingsFolder::Local);
    paths_.sharedPath = shareLeftOut_ ? NativePath{} : folder(SettingsFolder::Shared);
    paths_.zipPath = folder(SettingsFolder::Archive);
    if (!paths_.zipPath.empty() && paths_.zipPath == leftOutArchive_)
        paths_.zipPath = fileIn(paths_.localPath, "Archives");
    paths_.localSettings = fileIn(paths_.localPath, "Settings");
    paths_.sharedSettings = fileIn(paths_.sharedPath, "Settings");
    paths_.localDatabase = fileIn(paths_.localPath, "Database");
    paths_.sharedDatabase = fileIn(paths_.sharedPath, "Database");
    paths_.useSharedDb = !shareLeftOut_ && settings.useSharedDb == 1;
    const std::string separator = toUtf8(settings.fileListSeparator.trimmed());
    paths_.fileListSeparator = separator.empty() ? "-" : separator;
}

void Installation::leaveShareOut() {
    shareLeftOut_ = true;
    refreshPathVariables();
}

void Installation::leaveArchiveFolderOut() {
    leftOutArchive_ = paths_.zipPath;
    paths_.zipPath = fileIn(paths_.localPath, "Archives");
}

void Installation::takeShareBack() {
    shareLeftOut_ = false;
    refreshPathVariables();
}

}  // namespace quillon
