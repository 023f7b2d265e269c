// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace quillon {

/// A wait for somebody else, as for another computer or for a share.
struct PatientWait {
    std::string title;
    std::function<std::string()> text;  ///< what is waited for; asked again and again, as it may change
    std::string leave;                  ///< the words on the button that leaves; empty: it has to be sat out
    /// True when it is over. It waits for that, but not longer than the pause.
    std::function<bool(std::chrono::milliseconds pause)> isOver;
    /// So long nothing tells it, and the screens stay alive without listening.
    std::chrono::milliseconds untold{0};
};

/// What dialogs can do besides where there is somebody to see a wait. Without it a wait is sat out.
class PatientDialogs {
public:
    virtual ~PatientDialogs() = default;

    /// Comes back when the wait is over: true; or when the person has left it: false.
    [[nodiscard]] virtual bool waitFor(const PatientWait& wait) = 0;
    /// A wait that is over by then needs no word: two workstations that save at the same moment have done so.
    [[nodiscard]] virtual std::chrono::milliseconds unnoticed() const { return std::chrono::milliseconds(200); }
};

}  // namespace quillon
