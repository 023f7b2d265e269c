// SPDX-License-Identifier: MIT
#include "testing/shared_copy.h"

#include <utility>

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

Result<void> copyKeepingOld(const NativePath& source, const NativePath& target, KeptFiles& kept) {
    const auto theirs = readDataFile(source);
    if (!theirs)
        return failure(theirs.error());
    const auto ours = readWholeFile(target);
    if (ours && *ours == theirs->bytes) {
        passOver(setModificationTime(target, theirs->modified),
                 "the bytes are there; their time is not worth a failure");
        return {};
    }
    if (const auto copy = kept.copyAway(target); !copy)
        return failure(copy.error());
    return saveDataFile(target, *theirs);
}

Result<LostNote> copyNoted(const NativePath& source, const NativePath& target, KeptFiles& kept,
                           const NativePath& settings, DatabaseChange who) {
    NotedStep step(settings, std::move(who));
    auto copied = step.change(target, [&] { return copyKeepingOld(source, target, kept); });
    auto lost = step.finish();
    return copied.map([&lost] { return std::move(lost); });
}

}  // namespace quillon
