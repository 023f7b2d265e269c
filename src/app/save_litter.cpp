// SPDX-License-Identifier: MIT
#include "app/save_litter.h"

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

std::vector<NativePath> findSaveLitter(const std::vector<NativePath>& folders) {
    std::vector<NativePath> litter;
    for (const auto& folder : folders) {
        const auto names = listEntries(folder);
        if (!names)
            continue;
        for (const auto& name : *names) {
            NativePath file = folder / name;
            if (isSaveLitter(file))
                litter.push_back(std::move(file));
        }
    }
    return litter;
}

std::size_t moveUnderKept(const std::vector<NativePath>& litter, KeptFiles& kept) {
    std::size_t moved = 0;
    for (const auto& file : litter) moved += kept.moveAway(file) ? 1U : 0U;
    return moved;
}

std::size_t moveSaveLitterAway(const std::vector<NativePath>& folders, KeptFiles& kept) {
    return moveUnderKept(findSaveLitter(folders), kept);
}

}  // namespace quillon
