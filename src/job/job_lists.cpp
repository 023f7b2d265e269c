// SPDX-License-Identifier: MIT
#include "job/job_lists.h"

#include "app/list_mark.h"
#include "app/run_beside.h"
#include "platform/copy_file.h"
#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

Result<NativePath> JobLists::finalPath() const {
    if (finalFolder().empty())
        return failure(ErrorKind::BadName, "no local path is set");
    return childPath(finalFolder(), jobId_ + ".csv");
}

namespace {

void bringBack(const NativePath& kept, const NativePath& evidence) {
    passOver(renameFile(kept, evidence), "the old evidence is safe under Kept as well");
    if (pathExists(journalOf(kept)))
        passOver(renameFile(journalOf(kept), journalOf(evidence)), "as above");
}

}  // namespace

// The old list's bytes, its new name and the folders that lead there are on the medium before its place is taken: the
// last of them come there with the new list's mark.
Result<NativePath> JobLists::moveOldAway(const NativePath& list) const {
    passOver(syncFile(list), "what cannot come to the medium is not lost by moving it there");
    auto moved = kept_.moveAway(list);
    if (!moved)
        return moved;
    passOver(copyMark(list, *moved), "the list is kept; the mark beside its old place tells the same until it goes");
    syncFolder(moved->parent_path().parent_path());
    return moved;
}

// Behind a failure. A new list that stays, as the old one cannot come back or there was none, keeps its mark.
void JobLists::putBack(const NativePath& keptAt, const NativePath& list, bool wasUnfinished) {
    if (keptAt.empty() ? pathExists(list) : !renameFile(keptAt, list))
        return;
    if (!keptAt.empty())
        passOver(markFinished(keptAt), "a mark of no list");
    if (!wasUnfinished)
        passOver(markFinished(list), "a mark too many costs a list nothing but trust");
}

template <typename Make>
auto JobLists::replacing(Make make) const -> decltype(make(NativePath())) {
    const auto path = finalPath();
    if (!path)
        return failure(path.error());
    const bool wasUnfinished = isUnfinished(*path);
    NativePath oldListAt;
    if (pathExists(*path)) {
        const auto moved = moveOldAway(*path);
        if (!moved)
            return failure(moved.error());
        oldListAt = *moved;
    }
    const auto oldEvidenceAt = kept_.moveEvidenceAway(*path);
    auto made = markUnfinished(*path).and_then([&] { return make(*path); });
    if (made)
        return made;
    putBack(oldListAt, *path, wasUnfinished);
    if (oldEvidenceAt && *oldEvidenceAt)
        bringBack(**oldEvidenceAt, evidenceBeside(*path));
    return made;
}

Result<ListWriter> JobLists::createFinal() const {
    return replacing([](const NativePath& path) { return ListWriter::create(path); });
}

Result<void> JobLists::finishFinal(ListWriter& list, ListEnd end, EventLoop& loop) const {
    const auto synced = answerBeside(loop, [&list] { return list.sync(); });
    return list.close().and_then([&synced] { return synced; }).and_then([&] {
        return end == ListEnd::Whole ? markFinished(list.path()) : Result<void>();
    });
}

Result<void> JobLists::copyRawToFinal(ListEnd end, EventLoop& loop) const {
    return replacing([&](const NativePath& path) -> Result<void> {
        const auto turning = [&loop](std::uint64_t, std::uint64_t) {
            loop.turn();
            return !loop.stopAsked();
        };
        const auto copied = FileCopier().copy(rawPath().native(), path.native(), turning);
        if (!copied)
            return failure(copied.error().error);
        auto synced = answerBeside(loop, [path] { return syncFile(path); });
        return synced && end == ListEnd::Whole ? markFinished(path) : synced;
    });
}

Result<void> JobLists::removeFinal() const {
    return finalPath().and_then(
        [](const NativePath& path) { return removeFile(path).and_then([&path] { return markFinished(path); }); });
}

}  // namespace quillon
