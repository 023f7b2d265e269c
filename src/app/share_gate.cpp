// SPDX-License-Identifier: MIT
#include "app/share_gate.h"

#include <chrono>

#include "app/turn_until.h"
#include "platform/folders.h"
#include "platform/start_beside.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kUnnoticed{20};

std::string waitText(const NativePath& share) {
    return "The shared folder " + readable(share.native()) +
           " does not answer.\n\nYou can wait for it, or go on with the database of this computer until the program is "
           "started again. What is taught meanwhile stays here, and the share's own files take its place at the first "
           "job that reaches them.";
}

std::string archiveWaitText(const NativePath& folder) {
    return "The archive folder " + readable(folder.native()) +
           " does not answer.\n\nYou can wait for it, or go on with the folder Archives below the local path until the "
           "program is started again.";
}

// Nobody waits for a look that hangs: it has its own copy of the path and is forgotten.
bool answers(const NativePath& path, const std::string& word, const Surroundings& surroundings, ShareWait& wait) {
    const auto answer = startBeside([path] { return pathExists(path); });
    if (!answer || hasCome(*answer, kUnnoticed))
        return true;
    const std::int64_t start = surroundings.clock.milliseconds();
    bool came = false;
    bool shown = false;
    turnUntil(surroundings.loop, [&](std::chrono::milliseconds pause) {
        came = hasCome(*answer, pause);
        if (!came && !shown && surroundings.clock.milliseconds() - start >= kShareSilence) {
            wait.show(word);
            shown = true;
        }
        return came || (shown && wait.goesOn());
    });
    if (shown)
        wait.hide();
    return came;
}

}  // namespace

bool passShareGate(Installation& installation, const Surroundings& surroundings, ShareWait& wait) {
    const NativePath share = installation.paths().sharedPath;
    if (share.empty() || answers(share / "Database", waitText(share), surroundings, wait))
        return true;
    installation.leaveShareOut();
    return false;
}

bool passArchiveGate(Installation& installation, const Surroundings& surroundings, ShareWait& wait) {
    const NativePath folder = installation.paths().zipPath;
    if (folder.empty() || answers(folder, archiveWaitText(folder), surroundings, wait))
        return true;
    installation.leaveArchiveFolderOut();
    return false;
}

}  // namespace quillon
