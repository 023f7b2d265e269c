// SPDX-License-Identifier: MIT
#pragma once

// What several runs of one job have left that were cut short one after the other.

#include "app/event_loop.h"
#include "app/kept_files.h"

namespace quillon {

/// Makes one evidence, beside the list, that knows all that the last runs knew: that of a run which went on with an
/// earlier one, and was cut short itself, is given what the earlier one knew beside it. NotFound: no run has left any.
/// Whatever ends this, nothing is lost and it can be done again. Turns the loop while it works.
[[nodiscard]] Result<void> bringTogether(const NativePath& list, KeptFiles& kept, EventLoop& loop);

/// Gives it the name under which it can be read while another one takes its place, ready to be asked for paths.
[[nodiscard]] Result<void> setAside(const NativePath& list, EventLoop& loop);

}  // namespace quillon
