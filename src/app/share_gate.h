// SPDX-License-Identifier: MIT
#pragma once

// A share whose server has gone answers nothing, for minutes or for good, and whoever asks it stands still with it. So
// who is about to ask it on the screen's own thread asks here first.

#include <string>

#include "app/installation.h"
#include "app/surroundings.h"

namespace quillon {

/// Where a person sees that a share does not answer, and may go on without it.
class ShareWait {
public:
    virtual ~ShareWait() = default;
    virtual void show(const std::string& text) = 0;
    virtual void hide() = 0;
    /// The person has chosen to go on locally.
    [[nodiscard]] virtual bool goesOn() const = 0;
};

/// How long a share may keep silent before a word is said.
inline constexpr std::int64_t kShareSilence = 2000;

/// Asks for the shared folders of the settings beside the event loop. True when the share has answered, whatever it
/// said, or when there is none. While it does not, `wait` is shown after two seconds; a person who goes on locally
/// leaves the share out (Installation::leaveShareOut), and the answer is false.
[[nodiscard]] bool passShareGate(Installation& installation, const Surroundings& surroundings, ShareWait& wait);

/// The same for the archive folder, which may be on a share, too. A person who goes on locally has archives go below
/// the local path, where they go without an archive folder (Installation::leaveArchiveFolderOut).
[[nodiscard]] bool passArchiveGate(Installation& installation, const Surroundings& surroundings, ShareWait& wait);

}  // namespace quillon
