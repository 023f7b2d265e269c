// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "app/lost_note.h"
#include "job/pass_context.h"

namespace quillon {

/// Tells in the job's log why a change of the database is missing in its history, if it is: once for each reason.
inline void logLostNote(const PassContext& context, const LostNote& lost) {
    if (!lost)
        return;
    const std::string text = lostNoteText(*lost);
    if (std::ranges::none_of(context.state.log.rows(), [&text](const auto& row) { return row.text == text; }))
        context.log(text, kLightOrange);
}

}  // namespace quillon
