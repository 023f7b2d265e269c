// SPDX-License-Identifier: MIT
#pragma once

// Taking back a change that stands in the history of a database, as a new change. docs/formats/history.md.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/database_history.h"
#include "app/installation.h"
#include "app/kept_files.h"

namespace quillon {

/// Which database: the one of this computer, or the one that it shares with others.
enum class HistoryRoot { Local, Shared };

/// The settings folder of a root; empty when there is none.
[[nodiscard]] NativePath settingsFolderOf(const Paths& paths, HistoryRoot root);

/// The root whose history counts: the share while sharing is on, else this computer.
[[nodiscard]] HistoryRoot rootInUse(const Paths& paths);

/// What bytes become when the change from `before` to `after` is taken back in them: `before` where they are `after`,
/// and else record by record, so that what came later stays. No bytes mean no file.
struct TakenBack {
    std::optional<std::string> bytes;
    bool conflict = false;  ///< the same records were changed again since
};
[[nodiscard]] TakenBack takeBack(std::string_view file, const std::optional<std::string>& before,
                                 const std::optional<std::string>& after, const std::optional<std::string>& now);

/// How a turn at a root is waited for, whose settings folder this is; none when it was not waited for.
using TakeTurn = std::function<std::optional<DatabaseTurn>(const NativePath& settings)>;
[[nodiscard]] std::optional<DatabaseTurn> waitWithoutAWord(const NativePath& settings);

/// Takes a change back, in a turn of its own, and notes it as a change by `screen`. A file that is to be no more goes
/// under Kept. A local copy that was like the shared one before it is like it afterwards. NotFound: there is no such
/// note; PathAccess: the same records were changed again since, so that a later change has to be taken back first.
/// Nothing is written then, and neither when `take` gives no turn. A change that stands no more is a success. Gives why
/// it could not be noted, if so.
[[nodiscard]] Result<LostNote> undoChange(const Installation& installation, KeptFiles& kept, HistoryRoot root,
                                          const std::string& id, const char* screen,
                                          const TakeTurn& take = waitWithoutAWord);

}  // namespace quillon
