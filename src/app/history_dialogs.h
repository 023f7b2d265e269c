// SPDX-License-Identifier: MIT
#pragma once

// What a person sees and hears of the history of the database while something else is done.

#include <functional>
#include <optional>

#include "app/database_history.h"
#include "app/dialogs.h"

namespace quillon {

/// A box when there is a reason why a change is missing in the history.
void warnOfLostNote(Dialogs& dialogs, const LostNote& lost);

/// This program's turn at a root, whose settings folder this is (empty for none), waited for on another thread. A wait
/// that a person would notice is told with the name of who has the turn, and may be left, where the dialogs can do so
/// (PatientDialogs): then there is none, and nothing is to be changed.
[[nodiscard]] std::optional<DatabaseTurn> waitForTurn(Dialogs& dialogs, const NativePath& settings,
                                                      LeaseTimes times = {});

/// The same for what is written only in a turn that came: a failure where it was not waited for, others had it all the
/// time, or the share does not answer.
[[nodiscard]] Result<DatabaseTurn> waitToWrite(Dialogs& dialogs, const NativePath& settings);

/// Writes to the database in this folder (empty for none) by `work`, which may hang where that lies on a share: it has
/// a thread of its own, and a wait that a person would notice is told, but cannot be left, as nobody could say then
/// what was written. `work` meets nothing that is shown. Where the dialogs cannot tell a wait (PatientDialogs) it is a
/// plain call.
void writePatiently(Dialogs& dialogs, const NativePath& folder, const std::function<void()>& work);

/// A turn that was not waited for, as the failure of what it was for.
[[nodiscard]] FileError turnNotWaitedFor();

}  // namespace quillon
