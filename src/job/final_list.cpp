// SPDX-License-Identifier: MIT
#include "job/final_list.h"

#include "platform/copy_file.h"
#include "platform/folders.h"

namespace quillon {

namespace {

// Moves an old list away, runs `make` and brings the old list back when that fails.
template <typename Make>
auto replacingList(Job& job, Make make) -> decltype(make(NativePath())) {
    const auto path = job.finalListPath();
    if (!path)
        return failure(path.error());
    NativePath keptAt;
    if (pathExists(*path)) {
        const auto kept = job.kept().moveAway(*path);
        if (!kept)
            return failure(kept.error());
        keptAt = *kept;
    }
    auto made = make(*path);
    if (!made && !keptAt.empty())
        passOver(renameFile(keptAt, *path), "the old list is safe under Kept as well");
    return made;
}

}  // namespace

Result<ListWriter> createFinalList(Job& job) {
    return replacingList(job, [](const NativePath& path) { return ListWriter::create(path); });
}

Result<void> copyToFinalList(Job& job) {
    const std::string rawList = job.installation().rawListPath().native();
    return replacingList(job, [&](const NativePath& path) -> Result<void> {
        const auto copied = FileCopier().copy(rawList, path.native(), [&job](std::uint64_t, std::uint64_t) {
            job.turn();
            return true;
        });
        if (!copied)
            return failure(copied.error().error);
        return {};
    });
}

}  // namespace quillon
