// SPDX-License-Identifier: MIT
#pragma once

// Brings files in the making to their medium, many at once: one call for a volume costs a fraction of one for each
// file. A volume that cannot say that all is well is asked for each file and for each folder that has new names, so
// that one bad file costs no other; where that takes its time, for many at once.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/arriving_file.h"
#include "platform/result.h"

namespace quillon {

/// Brings all of a volume to its medium; `handle`: of a file or folder on it. True when that is said to have gone well
/// by who can know: a program that serves a volume is not told of such a call, and the system says by itself that all
/// is well. False: each file has to be asked for.
[[nodiscard]] bool syncWholeVolume(int handle);

class VolumeSyncs {
public:
    VolumeSyncs() = default;
    ~VolumeSyncs();
    VolumeSyncs(const VolumeSyncs&) = delete;
    VolumeSyncs& operator=(const VolumeSyncs&) = delete;

    /// Files that have no names yet, and paths of files that got theirs since the last call.
    struct Wish {
        std::vector<const ArrivingFile*> files;
        std::vector<const std::string*> named;
    };
    struct Answer {
        std::vector<Result<void>> files;  ///< what became of each
        std::vector<Result<void>> named;
    };
    /// Throws std::bad_alloc when memory is short.
    [[nodiscard]] Answer sync(const Wish& wish);

private:
    [[nodiscard]] bool syncVolumes(const Wish& wish);
    [[nodiscard]] std::vector<Result<void>> syncEach(const std::vector<const ArrivingFile*>& files,
                                                     const std::vector<std::string_view>& folders);

    // A handle of a file on each volume, by the volume's number. It is kept, as errors of writes are told to a handle
    // that was open before them.
    std::map<std::uint64_t, int> volumes_;
    bool isSlow_ = false;  // where each is asked for
};

}  // namespace quillon
