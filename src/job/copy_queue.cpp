// SPDX-License-Identifier: MIT
#include "job/copy_queue.h"

#include <algorithm>
#include <utility>

#include "app/folder_structure.h"
#include "app/turn_until.h"
#include "platform/folders.h"
#include "text/fields.h"

namespace quillon {

namespace {

bool leadsUp(std::string_view relative) {
    const auto parts = splitFields(relative, '/');
    return std::find(parts.begin(), parts.end(), "..") != parts.end();
}

}  // namespace

std::string withOneSlash(std::string folder) {
    folder.push_back('/');
    while (folder.size() > 1 && folder[folder.size() - 2] == '/') folder.pop_back();
    return folder;
}

std::optional<std::string> copyTarget(const std::string& targetFolder, std::string_view source) {
    const auto first = source.find_first_not_of('/');
    const auto relative = first == source.npos ? std::string_view() : source.substr(first);
    if (relative.empty() || leadsUp(relative))
        return std::nullopt;
    return targetFolder + std::string(relative);
}

CopyQueue::CopyQueue(EventLoop& loop, const NativePath& source, const CopyCare& care, Ended ended,
                     std::shared_ptr<SourceCare> sourceCare)
    : loop_(loop),
      realSource_(source.empty() ? NativePath() : realPath(source)),
      ended_(std::move(ended)),
      keepsFolderTimes_(care.whole),
      copies_(loop.mayStandStill() ? StandingStill::Allowed : StandingStill::Never, care.manner(),
              std::move(sourceCare)),
      settling_(care) {
}

void CopyQueue::ask(CopyTask task) {
    Asked& asked = tasks_.add();
    asked.task = std::move(task);
    asked.refused = refusalOf(asked.task);
    if (!asked.refused)
        copies_.ask(asked.task.source, *asked.task.target);
}

std::optional<CopyError> CopyQueue::refusalOf(const CopyTask& task) {
    if (!task.target)
        return CopyError{CopySide::Source, {ErrorKind::BadName, "no path below a target"}};
    if (!prepareFolder(task)) {
        const std::string text = "the target folder lies in the source, which is never written to";
        return CopyError{CopySide::Target, {ErrorKind::PermissionDenied, text}};
    }
    return std::nullopt;
}

void CopyQueue::finishFirst(const CopyProgress& progress) {
    Asked& asked = tasks_.first();
    if (asked.refused) {
        ended_({asked.task.number, asked.task.source, {}, tl::unexpected<CopyError>(*asked.refused)});
    } else {
        waitFor([&](std::chrono::milliseconds pause) { return copies_.firstEnds(pause, progress); });
        auto copy = copies_.takeFirst();
        if (copy) {
            waitForDisk([this](std::chrono::milliseconds pause) { return settling_.roomWithin(pause); });
            settling_.add(asked.task.number, std::move(asked.task.source), *std::move(copy));
        } else {
            ended_({asked.task.number, asked.task.source, *asked.task.target,
                    tl::unexpected<CopyError>(std::move(copy.error()))});
        }
    }
    tasks_.dropFirst();
    tellEnded();
}

void CopyQueue::finish() {
    copies_.release();
    settling_.close();
    waitForDisk([this](std::chrono::milliseconds pause) { return settling_.endsWithin(pause); });
    tellEnded();
    setFolderTimes();
}

// Of the folder and those above it, as far as both have the same names.
void CopyQueue::noteFolderTimes(NativePath target, NativePath source) {
    while (target.filename() == source.filename() && source.has_relative_path()) {
        const auto time = modificationTime(source);
        if (!time || !folderTimes_.try_emplace(target.native(), *time).second)
            return;
        target = target.parent_path();
        source = source.parent_path();
    }
}

void CopyQueue::setFolderTimes() {
    for (const auto& [folder, time] : folderTimes_)
        passOver(setModificationTime(folder, time), "a volume may keep no such times");
    folderTimes_.clear();
}

template <typename Done>
void CopyQueue::waitFor(Done done) {
    if (!done(kTurnInterval))
        turnUntil(loop_, done);
}

// A sync cannot be cut short, and is no row: a loop that may stand still gets no turns for it.
template <typename Done>
void CopyQueue::waitForDisk(Done done) {
    if (!loop_.mayStandStill())
        return waitFor(done);
    while (!done(std::chrono::seconds(1))) {
    }
}

void CopyQueue::tellEnded() {
    for (const SettledCopy& copy : settling_.takeEnded()) ended_(copy);
}

// Creates the folders that lead to a target, with at most two tries. Consecutive files of one folder ask once. False
// when they would lie in the source: nothing is created there.
bool CopyQueue::prepareFolder(const CopyTask& task) {
    const std::string& target = *task.target;
    const std::string_view folder = std::string_view(target).substr(0, target.rfind('/'));
    if (folder == lastFolder_)
        return !lastFolderRefused_;
    const NativePath parent(folder);
    lastFolder_ = folder;
    lastFolderRefused_ = liesInSource(parent, NativePath(task.source).parent_path());
    if (lastFolderRefused_)
        return false;
    if (keepsFolderTimes_)
        noteFolderTimes(parent, NativePath(task.source).parent_path());
    for (int tries = 0; tries < 2 && !pathExists(parent); ++tries) createFolderChain(target);
    return true;
}

// A target such as "/", or a link in it, may lead back to where the files come from.
bool CopyQueue::liesInSource(const NativePath& folder, const NativePath& ofSource) const {
    const NativePath place = realPath(folder);
    return place == realPath(ofSource) || (!realSource_.empty() && liesIn(place, realSource_));
}

}  // namespace quillon
