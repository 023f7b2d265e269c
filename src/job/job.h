// SPDX-License-Identifier: MIT
#pragma once

// The job that a front end owns: its state, the loaded lists, and the few operations that screens share.

#include <optional>
#include <string>
#include <string_view>

#include "ahead/heads_ahead.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"
#include "job/job_state.h"
#include "testing/header_check.h"
#include "testing/skip_list.h"

namespace quillon {

class Job : private HeaderCheckHost {
public:
    /// Both must outlive the job.
    Job(Installation& installation, const Surroundings& surroundings);
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    JobState state;
    ReportMessages messages;
    SkipList skipList;
    CommonList commonList;

    [[nodiscard]] Installation& installation() { return installation_; }
    [[nodiscard]] const Surroundings& surroundings() const { return surroundings_; }
    [[nodiscard]] KeptFiles& kept() { return kept_; }

    /// The header test over the local database: a row and its extension give the report text. It raises the counters of
    /// `state` and logs access errors. The head comes from `heads`, or is read in line. See HeaderCheck::checkFile.
    [[nodiscard]] Result<std::u16string_view> checkFile(const ListRow& row, std::u16string_view extension,
                                                        HeadReader& heads);
    [[nodiscard]] Result<std::u16string_view> checkFile(const ListRow& row, std::u16string_view extension) {
        return checkFile(row, extension, heads_);
    }

    /// Whether checkFile would open the file now. See HeaderCheck::mayOpen.
    [[nodiscard]] bool mayOpen(const ListRow& row);

    /// Heads of source files; who knows the rows to come asks it for theirs.
    [[nodiscard]] HeadsAhead& heads() { return heads_; }

    /// A row in the job log with the time of this moment.
    void log(const std::string& text, std::optional<std::uint32_t> colour = std::nullopt);

    /// Counts a row of a list that could not be written; the reason of the first one is kept.
    void rowLost(const FileError& why);

    /// One turn of the front end's event loop.
    void turn() { surroundings_.loop.turn(); }

    /// `<local root>/<job ID>.csv`; BadName for a job ID that cannot be a file name there.
    [[nodiscard]] Result<NativePath> finalListPath() const;

    /// Lets go of the last source folder, so that nothing of a source stays open when no job runs.
    void releaseSource() { heads_.release(); }

private:
    bool useCommonHeaders() override { return state.options.useCommonHeaders; }
    void raise(Grade grade) override { ++state.counters[grade]; }
    void raiseTested() override { ++state.counters.tested; }
    void logAccessError(const std::string& text) override { log(text, kLightRed); }
    [[nodiscard]] HeaderCheck& headerTest();

    Installation& installation_;
    Surroundings surroundings_;
    KeptFiles kept_;
    HeadsAhead heads_;
    std::string databaseFolder_;
    std::optional<TermFiles> termFiles_;
    std::optional<HeaderCheck> test_;
};

}  // namespace quillon
