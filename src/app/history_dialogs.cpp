// SPDX-License-Identifier: MIT
#include "app/history_dialogs.h"

#include <chrono>
#include <memory>

#include "app/patient_wait.h"
#include "platform/folders.h"
#include "platform/host.h"
#include "platform/start_beside.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kTitle = "Database History";
constexpr std::chrono::milliseconds kLook{200};
// A disk that is busy takes some tenths of a second for a save, and that is nothing to tell.
constexpr std::chrono::milliseconds kUntoldWrite{2000};

// Until an owner was seen, it may as well be the share that does not answer.
std::string waitText(const LeaseWatch& watch, const NativePath& root) {
    const std::string folder = readable(root.native());
    std::string what = "the share " + folder + ".";
    if (watch.hasSeenOwner()) {
        const std::string owner = watch.owner();
        const std::string who = owner.empty()         ? "another computer"
                                : owner == hostName() ? "another program of this computer"
                                                      : readable(std::string_view(owner));
        what = who + ", which is changing the database in " + folder + " at this moment.";
    }
    return "Waiting for " + what + "\r\n\r\nWithout waiting nothing is changed there : it can be done again later.";
}

bool waitedFor(Dialogs& dialogs, const PatientWait& wait) {
    auto* const patient = dynamic_cast<PatientDialogs*>(&dialogs);
    if (patient != nullptr)
        return wait.isOver(patient->unnoticed()) || patient->waitFor(wait);
    while (!wait.isOver(kLook)) {
    }
    return true;
}

std::string writeText(const NativePath& folder) {
    return "Waiting for " + readable(folder.native()) +
           ", which has not answered for some seconds.\r\n\r\nWhat is being saved there has begun, so it has to come "
           "to an end.";
}

}  // namespace

void warnOfLostNote(Dialogs& dialogs, const LostNote& lost) {
    if (lost)
        dialogs.warn(kTitle, "What was changed is saved, but not noted in the history of the database : " + lost->text);
}

FileError turnNotWaitedFor() {
    return {ErrorKind::PathAccess, "another computer was not waited for"};
}

// A turn that comes when nobody waits for it any more is given back at once.
std::optional<DatabaseTurn> waitForTurn(Dialogs& dialogs, const NativePath& settings, LeaseTimes times) {
    if (settings.empty())
        return DatabaseTurn(settings);
    const auto watch = std::make_shared<LeaseWatch>();
    auto turn = startBeside([settings, times, watch] { return DatabaseTurn(settings, times, watch.get()); });
    if (!turn)
        return DatabaseTurn(settings, times);
    const auto isOver = [&turn](std::chrono::milliseconds pause) { return hasCome(*turn, pause); };
    const auto text = [&] { return waitText(*watch, settings.parent_path()); };
    if (waitedFor(dialogs, {kTitle, text, "Do not wait", isOver, {}})) {
        DatabaseTurn come = turn->get();
        come.endBeside();
        return come;
    }
    watch->leave();
    return std::nullopt;
}

void writePatiently(Dialogs& dialogs, const NativePath& folder, const std::function<void()>& work) {
    if (dynamic_cast<PatientDialogs*>(&dialogs) == nullptr)
        return work();
    auto written = startBeside(work);
    if (!written)
        return work();
    const auto isOver = [&written](std::chrono::milliseconds pause) { return hasCome(*written, pause); };
    const auto text = [&folder] { return writeText(folder); };
    while (!waitedFor(dialogs, {kTitle, text, "", isOver, kUntoldWrite})) {
    }
    written->get();
}

Result<DatabaseTurn> waitToWrite(Dialogs& dialogs, const NativePath& settings) {
    auto turn = waitForTurn(dialogs, settings);
    if (!turn)
        return failure(turnNotWaitedFor());
    if (auto refused = turn->refusal())
        return failure(std::move(*refused));
    return std::move(*turn);
}

}  // namespace quillon
