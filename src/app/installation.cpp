// SPDX-License-Identifier: MIT
#include "app/installation.h"

#include <array>
#include <span>
#include <utility>

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
    refreshPathVariables();
    return {};
}

Result<void> Installation::saveSettingsRecord() const {
    return saveWholeFile(paths_.settingsFile, encodeSettings(settings));
}

void Installation::refreshPathVariables() {
    if (settings.alertSourcePort == 0)
        settings.alertSourcePort = kDefaultAlertSourcePort;
    if (settings.alertListenPort == 0)
        settings.alertListenPort = kDefaultAlertListenPort;
    paths_.localPath = pathFromPage(settings.localPath.trimmed());
    paths_.sharedPath = shareLeftOut_ ? NativePath{} : pathFromPage(settings.sharedPath.trimmed());
    paths_.zipPath = pathFromPage(settings.zipPath.trimmed());
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

void Installation::takeShareBack() {
    shareLeftOut_ = false;
    refreshPathVariables();
}

}  // namespace quillon
