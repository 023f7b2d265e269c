// SPDX-License-Identifier: MIT
#include "platform/mounts.h"

#include <sys/sysmacros.h>

#include "platform/whole_file.h"
#include "text/fields.h"

namespace quillon {

// "36 35 98:0 / /mnt rw,noatime shared:1 - ext4 /dev/sdb1 rw": the third field is the volume's number.
std::optional<Mount> mountOf(std::uint64_t volume) {
    const auto table = readWholeFile("/proc/self/mountinfo");
    if (!table)
        return std::nullopt;
    const std::string number = std::to_string(major(volume)) + ":" + std::to_string(minor(volume));
    for (const auto line : splitLines(*table)) {
        const auto fields = splitFields(line, ' ');
        const auto behind = line.find(" - ");
        if (fields.size() < 3 || fields[2] != number || behind == line.npos)
            continue;
        const auto kind = splitFields(line.substr(behind + 3), ' ');
        if (kind.size() >= 2)
            return Mount{std::string(kind[0]), std::string(kind[1]), std::string(kind.size() > 2 ? kind[2] : "")};
    }
    return std::nullopt;
}

}  // namespace quillon
