// SPDX-License-Identifier: MIT
#pragma once

// The subcommand `quillon-list history`: what was changed in the database, by whom, and taking it back.

#include "app/installation.h"
#include "programs/list_command.h"
#include "programs/list_options.h"

namespace quillon {

/// Writes the newest changes, or does with one of them what `options.history` asks for. Gives the exit status.
[[nodiscard]] Result<int> showHistory(const Installation& installation, const ListCommandOptions& options,
                                      const ListStreams& streams);

}  // namespace quillon
