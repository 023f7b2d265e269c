// SPDX-License-Identifier: MIT
// One press of "Zip", from the first check to the last box.
#include <unordered_map>
#include <utility>

#include "app/list_mark.h"
#include "archive/list_selection.h"
#include "archive/zip_file_lists.h"
#include "messaging/message_log.h"
#include "messaging/notification.h"
#include "platform/copy_file.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kAsItWas = "Cancelled: archive and lists are as they were";

// The number that the zip component has for a name that is none; it is told in words of its own.
std::string errorWords(const FileError& error) {
    const bool badName = error.kind == ErrorKind::NotFound || error.kind == ErrorKind::BadName;
    return badName ? "Invalid file name" : error.text;
}

bool containsWithoutCase(const NativePath& path, const NativePath& part) {
    return !part.empty() && foldedName(path.native()).find(foldedName(part.native())) != std::string::npos;
}

// A list that was left short is told by its mark, in the archive as in its folder.
Result<void> addList(ZipWriter& writer, const NativePath& list) {
    auto added = writer.add(list, list.filename().native());
    if (!added || !isUnfinished(list))
        return added;
    const NativePath mark = unfinishedMark(list);
    return writer.add(mark, mark.filename().native());
}

Result<void> keepList(KeptFiles& kept, const NativePath& list) {
    passOver(syncFile(list), "what cannot come to the medium is not lost by moving it there");
    const auto place = kept.moveAway(list);
    if (!place)
        return failure(place.error());
    return copyMark(list, *place);
}

// Another volume than the one of Kept takes a copy; the file under Kept goes when that is on the medium.
Result<void> bringBack(const NativePath& kept, const NativePath& place) {
    if (pathExists(place))
        return failure(ErrorKind::PermissionDenied, "another one stands under its name");
    if (renameFile(kept, place))
        return {};
    const auto copied =
        FileCopier().copy(kept.native(), place.native(), [](std::uint64_t, std::uint64_t) { return true; });
    if (!copied)
        return failure(saveError(place, copied.error().error));
    if (auto synced = syncFile(place); !synced)
        return synced;
    syncFolder(place.parent_path());
    passOver(removeFile(kept), "one archive more than needed is no loss");
    return {};
}

}  // namespace

/// What one run knows.
struct ZipFileLists::Run {
    Result<NativePath> archive;
    std::optional<std::string> password;
    std::string names;
    std::optional<NativePath> conflict;
    std::optional<NativePath> oldArchiveAt;  // under Kept
    bool cancelled = false;
    std::unordered_map<std::string, bool> inArchive;  // files that the finished archive holds byte for byte
    std::string result = "Zip Processing complete";
    std::string details;  // why nobody answered
    std::string log;

    [[nodiscard]] NativePath archivePath() const { return archive.value_or(NativePath()); }
};

void ZipFileLists::zip() {
    showBusy(true);
    const auto folder = state.rows.empty() ? std::optional<NativePath>() : workingFolder();
    if (state.rows.empty()) {  // also when another press has taken them while the folder was waited for
        showBusy(false);
        surroundings_.dialogs.warn("Error", "Nothing to zip, please select some files.");
        return;
    }
    if (folder)
        runSteps(*folder);
    else
        showNotice(kAsItWas);
    showBusy(false);
}

void ZipFileLists::runSteps(const NativePath& workingFolder) {
    archives_ = workingFolder;
    if (state.jobId.empty()) {
        state.jobId = kUnnamedJob;
        host_.showState();
    }
    Run run;
    state.notice.clear();
    const std::string name = archiveBaseName(state.jobId, state.separator) + ".zip";
    run.archive = childPath(workingFolder, name);
    if (confirmPassword())
        run.password = state.password;
    const bool collected = collectNames(run);
    host_.showState();
    if (!collected || !clearTheWay(run))
        return;
    writeArchive(run);
    if (run.conflict) {
        surroundings_.dialogs.tell("File Confict",
                                   "Potential file conflict removed (" + readable(run.conflict->native()) + ")");
    }
    if (run.cancelled)
        return takeBack(run);
    if (!state.retainLists && !removeLists(run))
        return;
    state.rows.clear();
    state.selectedRow.reset();
    run.log = "Zip notification message Sent to :; " + state.recipients.text() + "; Files in zip : ;" + run.names +
              ";Send message = ;";
    if (state.recipients.index >= 1)
        notify(run);
    finish(run);
}

bool ZipFileLists::confirmPassword() {
    return !state.password.empty() &&
           surroundings_.dialogs.ask(kProgramTitle,
                                     "Are you sure you want to password protect the zip file. "
                                     "If you forget the password, you will not be able to open it.");
}

// False ends the run. Kept: the number of rows is taken before the walk and does not go down with a row that is
// removed, so that a conflict ahead of the last row ends the run without a word; the row is gone and the next press
// runs through (test AConflictAheadOfTheLastRowEndsTheRun).
bool ZipFileLists::collectNames(Run& run) {
    const std::size_t count = state.rows.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (i >= state.rows.size())
            return false;
        const NativePath row = state.rows[i];
        run.names += readable(row.native()) + (i + 1 < state.rows.size() ? "," : "");
        if (run.archive && foldedName(row.native()) == foldedName(run.archive->native())) {
            state.rows.erase(state.rows.begin() + static_cast<std::ptrdiff_t>(i));
            run.conflict = row;
        }
    }
    return true;
}

// An archive that exists goes after a Yes, and its bytes stand under Kept. False ends the run.
bool ZipFileLists::clearTheWay(Run& run) {
    if (!run.archive || !pathExists(*run.archive))
        return true;
    const std::string path = readable(run.archive->native());
    if (!surroundings_.dialogs.ask("Overwrite file",
                                   "The file " + path +
                                       " already exists! "
                                       "Overwriting this zip-file may result with no history of the job. "
                                       "Are you sure you want to overwrite the file " +
                                       path + " ?"))
        return false;
    const auto kept = kept_.moveAway(*run.archive);
    if (!kept)
        zipError(kept.error());
    else
        run.oldArchiveAt = *kept;
    return kept.has_value();
}

void ZipFileLists::takeBack(const Run& run) {
    const auto back = run.oldArchiveAt ? bringBack(*run.oldArchiveAt, *run.archive) : Result<void>();
    if (back)
        return showNotice(kAsItWas);
    showNotice("Cancelled: the lists are as they were, and the old archive is " + readable(run.oldArchiveAt->native()) +
               " (" + back.error().text + ")");
}

void ZipFileLists::zipError(const FileError& error) {
    zipFailed_ = true;
    surroundings_.dialogs.tell("Error", "An error occured : " + errorWords(error), BoxStyle::Information);
}

void ZipFileLists::writeArchive(Run& run) {
    ZipOptions options;
    options.password = run.password;
    options.loop = &surroundings_.loop;
    options.kept = &kept_;
    options.progress = [this](double percent) { showProgress(true, percent); };
    options.cancelled = [this] { return cancelled_; };
    cancelled_ = false;
    state.cancelEnabled = true;
    ZipWriter writer(run.archivePath(), options);
    const std::vector<NativePath> rows = state.rows;  // a second press may empty the grid meanwhile
    for (const auto& row : rows) {
        const auto added = run.archive.and_then([&](const NativePath&) { return addList(writer, row); });
        if (!added)
            zipError(added.error());
        if (zipFailed_)
            break;
    }
    showProgress(true, 0);
    const auto written = writer.finish();
    state.cancelEnabled = false;
    showProgress(false, state.progress);
    run.cancelled = !written && cancelled_;
    if (!written && !run.cancelled)
        zipError(written.error());
    if (!written)
        return;
    state.notice = "Archive written: " + readable(run.archivePath().native());
    if (state.retainLists)
        return;
    const auto equal = equalToFiles(run.archivePath(), writer.inputs(), options);
    for (std::size_t i = 0; i < equal.size(); ++i) run.inArchive[writer.inputs()[i].file.native()] = equal[i];
}

// False when a list could not be removed, which ends the run without a word.
bool ZipFileLists::removeLists(const Run& run) {
    const std::vector<NativePath> rows = state.rows;
    for (const auto& row : rows) {
        if (!containsWithoutCase(row, installation_.paths().localPath) || !pathExists(row))
            continue;
        const auto inArchive = run.inArchive.find(row.native());
        const bool safe = inArchive != run.inArchive.end() && inArchive->second;
        if (!(safe ? removeFile(row) : keepList(kept_, row)))
            return false;
        passOver(markFinished(row), "a mark of no list");
        passOver(kept_.moveEvidenceAway(row), "what stays is no harm");
    }
    return true;
}

void ZipFileLists::notify(Run& run) {
    showBusy(true);
    alerts_.closeSockets();
    const std::string recipient(trimRight(state.recipients.text()));
    const std::string notice = std::exchange(state.notice, "Waiting for " + readable(recipient) + " ...");
    host_.showState();
    const Notified notified =
        sendNotification(alerts_, surroundings_.dialogs,
                         {recipient, "File list " + state.jobId + " complete and zipped.",
                          "File list is complete. Location " + readable(run.archivePath().native())},
                         "Recipent and receiver are the same computer.");
    showNotice(notice);
    switch (notified) {
        case Notified::ThisComputer:
            run.log += " No - unable to send to same computer.";
            break;
        case Notified::Sent:
            run.result = "Zip process completed and notifications sent without any errors";
            run.log += " Yes and acknowledgment received";
            break;
        case Notified::Silent:
            run.result = "Zip process completed without errors. However, notifications were not acknowledged by " +
                         readable(recipient);
            run.details = alerts_.silenceCause();
            if (warnInLog_ && !run.details.empty())
                warnInLog_("No answer from " + readable(recipient) + " : " + run.details);
            run.log += " Yes but no acknowledgment received";
            break;
    }
}

void ZipFileLists::finish(Run& run) {
    passOver(writeMessageLog(run.log, installation_, surroundings_), "messaging never fails because of its log");
    showBusy(false);
    MessageBox box{"Process complete", run.result, BoxStyle::Warning, BoxButtons::Ok};
    box.details = run.details;
    surroundings_.dialogs.show(box);
}

}  // namespace quillon
