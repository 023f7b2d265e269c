// SPDX-License-Identifier: MIT
#include "job/job_lists.h"

#include "platform/copy_file.h"
#include "platform/folders.h"

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

template <typename Make>
auto JobLists::replacing(Make make) const -> decltype(make(NativePath())) {
    const auto path = finalPath();
    if (!path)
        return failure(path.error());
    NativePath oldListAt;
    if (pathExists(*path)) {
        const auto moved = kept_.moveAway(*path);
        if (!moved)
            return failure(moved.error());
        oldListAt = *moved;
    }
    const auto oldEvidenceAt = kept_.moveEvidenceAway(*path);
    auto made = make(*path);
    if (made)
        return made;
    if (!oldListAt.empty())
        passOver(renameFile(oldListAt, *path), "the old list is safe under Kept as well");
    if (oldEvidenceAt && *oldEvidenceAt)
        bringBack(**oldEvidenceAt, evidenceBeside(*path));
    return made;
}

Result<ListWriter> JobLists::createFinal() const {
    return replacing([](const NativePath& path) { return ListWriter::create(path); });
}

Result<void> JobLists::copyRawToFinal(EventLoop& loop) const {
    return replacing([&](const NativePath& path) -> Result<void> {
        const auto turning = [&loop](std::uint64_t, std::uint64_t) {
            loop.turn();
            return true;
        };
        const auto copied = FileCopier().copy(rawPath().native(), path.native(), turning);
        if (!copied)
            return failure(copied.error().error);
        return {};
    });
}

}  // namespace quillon
