// SPDX-License-Identifier: MIT
#pragma once

// A job that goes on with its earlier run: it finds that run's evidence, keeps it readable until its own is whole, and
// tells of each file what need not be read again. Where there is nothing to go on with, everything is read and told to
// be new.
//
// At every moment the list's folder holds all that is known: the evidence stands under its own name, or under that of
// an earlier one beside the new. A run that is cut short is gone on with as often as it takes.

#include <optional>

#include "app/installation.h"
#include "app/surroundings.h"
#include "job/earlier_run.h"
#include "job/evidence_facts.h"
#include "job/job_state.h"
#include "job/known_file.h"

namespace quillon {

class GoingOn {
public:
    /// All must outlive this.
    GoingOn(JobState& state, const Surroundings& surroundings, const Installation& installation,
            const ReportMessages& messages)
        : state_(state), surroundings_(surroundings), installation_(installation), messages_(messages) {}

    /// Another job begins.
    void reset();
    /// The final list will be created next; turns the loop while old evidence is made ready.
    void listComes(const NativePath& list);
    /// It was. A job that begins anew lets go of what was set aside.
    void listCreated(const NativePath& list);

    /// True from the list's creation to the end of a job that has something to go on with.
    [[nodiscard]] bool isOn() const { return run_.has_value(); }
    /// True when the earlier run kept no heads: a file that is not read again has none for the new evidence either.
    [[nodiscard]] bool leavesHeadsOut() const { return run_ && run_->facts().headsLeftOut; }

    /// Counts the row's file, and tells what need not be read again. `modified`: nanoseconds since 1970 UTC, none where
    /// they are not known. `opens`: the test would open the file.
    [[nodiscard]] KnownFile find(const ListRow& row, std::optional<std::int64_t> modified, bool opens);

    /// The job ends. `whole`: its own evidence is, or it was to leave none.
    void end(bool whole);

private:
    void log(std::string text, std::optional<std::uint32_t> colour = std::nullopt);
    [[nodiscard]] KnownFile takenOver();
    void tellFigures();

    JobState& state_;
    const Surroundings& surroundings_;
    const Installation& installation_;
    const ReportMessages& messages_;

    NativePath list_;
    std::optional<EarlierRun> run_;
    std::optional<RowDescriber> describer_;
    RunFacts now_;
    bool samePlace_ = false;
    bool created_ = false;
    std::int64_t files_ = 0;  // of the earlier run
    std::int64_t found_ = 0;  // of these
    EvidenceRow row_;         // the file in work, as it was
    EvidenceRow listed_;      // as it is
};

}  // namespace quillon
