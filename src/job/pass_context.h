// SPDX-License-Identifier: MIT
#pragma once

// What every pass of a job works with: the state that the front end shows, the computer it runs on, and the
// evidence, which hears of what it finds. All else that a pass uses it is given by name.

#include <optional>
#include <string>

#include "app/surroundings.h"
#include "job/job_state.h"
#include "platform/result.h"

namespace quillon {

class JobEvidence;

/// All must outlive this and its copies.
struct PassContext {
    JobState& state;
    const Surroundings& surroundings;
    JobEvidence& evidence;

    /// A row in the job log with the time of this moment.
    void log(const std::string& text, std::optional<std::uint32_t> colour = std::nullopt) const {
        state.log.add({surroundings.clock.now(), text, colour});
    }

    /// Counts a row of a list that could not be written; the reason of the first one is kept.
    void rowLost(const FileError& why) const {
        if (++state.counters.lostRows == 1)
            state.lossReason = why.text;
    }

    /// One turn of the front end's event loop.
    void turn() const { surroundings.loop.turn(); }
};

}  // namespace quillon
