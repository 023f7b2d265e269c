// SPDX-License-Identifier: MIT
#pragma once

// What copies leave beside them for whoever gets them: `<job ID>.sha256`, the check sums of the whole ones, and
// `<job ID>-damaged.sha256`, those of copies with gaps. Both stand in the target's root and beside the job's list; and
// `<job ID>.gaps.csv`, which tells the gaps, beside the list, or in the target where there is no list.
// docs/formats/manifest.md.

#include <string>
#include <string_view>
#include <unordered_set>

#include "ahead/copy_settling.h"
#include "job/check_sum_file.h"
#include "job/copy_journal.h"
#include "platform/folders.h"

namespace quillon {

/// Where the check sums of a job's copies stand in a folder.
[[nodiscard]] NativePath manifestIn(const NativePath& folder, const std::string& jobId);
[[nodiscard]] NativePath damagedIn(const NativePath& folder, const std::string& jobId);
[[nodiscard]] NativePath gapsIn(const NativePath& folder, const std::string& jobId);

class CopyRecord {
public:
    /// `target` is made when it is missing. `besideList`: the list's folder; empty for none.
    [[nodiscard]] static Result<CopyRecord> begin(const NativePath& target, const NativePath& besideList,
                                                  const std::string& jobId);

    /// Of a copy that was hashed; one that failed leaves what is told of an older one.
    [[nodiscard]] Result<void> note(const SettledCopy& copy);
    /// The copy got another name than the file had: both as text.
    [[nodiscard]] Result<void> renamed(const std::string& from, const std::string& to);
    /// Gives the lists their names. What a killed run has noted of copies that this one has not made goes in, too.
    [[nodiscard]] Result<void> finish();

private:
    CopyRecord(std::string root, NativePath gapsPath, NativePath journal, CheckSumFile whole, CheckSumFile damaged)
        : root_(std::move(root)),
          gapsPath_(std::move(gapsPath)),
          hasOlderGaps_(pathExists(gapsPath_)),
          whole_(std::move(whole)),
          damaged_(std::move(damaged)),
          journalPath_(std::move(journal)),
          journal_(journalPath_) {}
    [[nodiscard]] Result<void> note(std::string_view name, const CopyFacts& facts);
    [[nodiscard]] Result<void> noteOfKilledRun();
    void noteGaps(std::string_view name, const CopyFacts& facts);
    [[nodiscard]] Result<void> finishGaps();

    std::string root_;  // ends in "/"
    NativePath gapsPath_;
    bool hasOlderGaps_;
    std::string gaps_;                        // rows of this run
    std::unordered_set<std::string> copied_;  // fields of the names that older rows no longer hold for
    CheckSumFile whole_;
    CheckSumFile damaged_;
    NativePath journalPath_;
    CopyJournal journal_;
};

}  // namespace quillon
