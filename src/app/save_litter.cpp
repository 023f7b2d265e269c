// SPDX-License-Identifier: MIT
#include "app/save_litter.h"

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

std::size_t moveSaveLitterAway(const std::vector<NativePath>& folders, KeptFiles& kept) {
    std::size_t moved = 0;
    for (const auto& folder : folders) {
        const auto names = listEntries(folder);
        if (!names)
            continue;
        for (const auto& name : *names) {
            const NativePath file = folder / name;
            if (isSaveLitter(file) && kept.moveAway(file))
                ++moved;
        }
    }
    return moved;
}

}  // namespace quillon
