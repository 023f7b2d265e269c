// SPDX-License-Identifier: MIT
#include "messaging/message_log.h"

#include "app/folder_structure.h"
#include "app/run_beside.h"
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

// The folders of the logs, and the record in each log.
Result<void> writeRecord(const Paths& paths, const NativePath& appFolder, const std::string& record) {
    if (paths.useSharedDb && !pathExists(fileIn(paths.sharedSettings, kLogFolder)))
        CreateFolderPath(fileIn(paths.sharedSettings, kLogFolder));
    if (!pathExists(appFolder / kAskedFolder))
        CreateFolderPath(fileIn(paths.localSettings, kLogFolder));
    if (auto written = appendRecord(paths.localSettings, record); !written || !paths.useSharedDb)
        return written;
    return appendRecord(paths.sharedSettings, record);
}

}  // namespace

std::string withoutLineBreaks(const std::string& text) {
    std::string line = text;
    for (const char* lineEnd : {"\r\n", "\r", "\n"}) line = replacedAll(std::move(line), lineEnd, kRecordLineBreak);
    return line;
}

Result<void> writeMessageLog(std::string& text, const Installation& installation, const Surroundings& surroundings) {
    text = surroundings.dates.general(surroundings.clock.now()) + ";" + withoutLineBreaks(text);
    const auto write = [paths = installation.paths(), appFolder = installation.appFolder(),
                        record = toPage(text).bytes + "\r\n"] { return writeRecord(paths, appFolder, record); };
    return installation.paths().useSharedDb ? answerBeside(surroundings.loop, write) : write();
}

}  // namespace quillon
