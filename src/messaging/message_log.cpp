// SPDX-License-Identifier: MIT
#include "messaging/message_log.h"

#include <vector>

#include "app/folder_structure.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr const char* kLogFolder = "Messaging logs";
constexpr const char* kAskedFolder = "Messageing Logs";
constexpr const char* kLogFile = "logs.dat";

Result<void> appendRecord(const NativePath& settingsFolder, const std::string& record) {
    if (settingsFolder.empty())
        return failure(ErrorKind::BadName, "no settings folder is set");
    return appendToFile(settingsFolder / kLogFolder / kLogFile, record);
}

}  // namespace

std::string withoutLineBreaks(const std::string& text) {
    std::string line = text;
    for (const char* lineEnd : {"\r\n", "\r", "\n"}) line = replacedAll(std::move(line), lineEnd, kRecordLineBreak);
    return line;
}

Result<void> writeMessageLog(std::string& text, const Installation& installation, const Surroundings& surroundings) {
    const Paths& paths = installation.paths();
    text = withoutLineBreaks(text);
    if (paths.useSharedDb && !pathExists(fileIn(paths.sharedSettings, kLogFolder)))
        CreateFolderPath(fileIn(paths.sharedSettings, kLogFolder));
    if (!pathExists(installation.appFolder() / kAskedFolder))
        CreateFolderPath(fileIn(paths.localSettings, kLogFolder));
    text = surroundings.dates.general(surroundings.clock.now()) + ";" + text;
    const std::string record = toPage(text).bytes + "\r\n";
    if (auto written = appendRecord(paths.localSettings, record); !written || !paths.useSharedDb)
        return written;
    return appendRecord(paths.sharedSettings, record);
}

}  // namespace quillon
