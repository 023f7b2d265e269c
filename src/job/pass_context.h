// SPDX-License-Identifier: MIT
#pragma once

// What every pass of a job works with: the state that the front end shows, the computer it runs on, and the
// evidence, which hears of what it finds. All else that a pass uses it is given by name.

#include <optional>
#include <string>
#include <string_view>

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

    /// The same about a file or folder, whose path in native bytes goes with the row.
    void logAbout(std::string_view path, const std::string& text,
                  std::optional<std::uint32_t> colour = std::nullopt) const {
        state.log.add({surroundings.clock.now(), text, colour, std::string(path)});
    }

    /// Counts a line of a file beside the list that could not be written; the reason of the first one is kept.
    void lineLost(const FileError& why) const {
        if (++state.counters.lostRows == 1)
            state.lossReason = why.text;
    }

    /// Counts rows that a list lacks as they could not be written or read; the reason of the first one is kept and
    /// told.
    void rowsLost(const FileError& why, std::int32_t count = 1) const {
        if (state.counters.lostRows == 0) {
            state.lossReason = why.text;
            log("Rows are missing from the list : " + why.text, kLightRed);
        }
        state.counters.lostRows += count;
    }

    /// Tells that rules (`what`: their kind) cannot be read, and counts them: grades may lack what they say.
    void rulesNotRead(std::string_view what, const FileError& why) const {
        ++state.counters.unreadRules;
        log(std::string(what) + " cannot be read : " + why.text, kLightOrange);
    }

    /// Stop: the flags that the phases read, and the row in the log.
    void stop() const {
        state.stopRequested = true;
        state.copyCancelled = true;
        log("Process stopped by user");
    }

    /// True when a command was told to stop; the job is then stopped. A window's Stop waits for its place in the job.
    [[nodiscard]] bool stopsAtOnce() const {
        if (!surroundings.loop.stopAsked())
            return false;
        if (!state.stopRequested)
            stop();
        return true;
    }

    /// Counts a row of a list as written, or as lost with its reason. True: it was written.
    [[nodiscard]] bool countRow(RowFigures& rows, const Result<void>& written) const {
        ++(written ? rows.written : rows.lost);
        if (!written)
            rowsLost(written.error());
        return written.has_value();
    }

    /// One turn of the front end's event loop.
    void turn() const { surroundings.loop.turn(); }
};

}  // namespace quillon
