// SPDX-License-Identifier: MIT
#pragma once

// The steps at the start of a job that ask the share. Each runs beside the event loop, so that a share that hangs does
// not hold the window; the job goes on only when the step has ended. What a handler may change meanwhile is not theirs:
// they go by the installation as it was when this was made.

#include <string>
#include <utility>
#include <vector>

#include "app/run_beside.h"
#include "job/pass_context.h"
#include "setup/shared_database.h"
#include "testing/skip_list.h"

namespace quillon {

class ShareSteps {
public:
    /// All but the installation must outlive this. `skipList` is the one of the job.
    ShareSteps(const PassContext& context, const Installation& installation, SkipList& skipList)
        : context_(context),
          installation_(installation),
          kept_(installation_, context.surroundings.clock, KeptBy::Rescue),
          job_(context.state.options.jobId),
          skipList_(skipList) {}
    ShareSteps(const ShareSteps&) = delete;
    ShareSteps& operator=(const ShareSteps&) = delete;

    [[nodiscard]] const Paths& paths() const { return installation_.paths(); }

    /// What killed saves of this computer left in the shared folders goes under Kept; gives the number of files.
    [[nodiscard]] std::size_t moveLitterAway();
    /// Local term files without a shared counterpart; they are where they were.
    [[nodiscard]] OrphanTermFiles findOrphans();
    [[nodiscard]] OrphanCounts moveAway(const OrphanTermFiles& orphans);
    /// The names in the shared database.
    [[nodiscard]] std::vector<std::string> sharedFiles();
    /// A file that cannot be copied is tried again by the next job.
    [[nodiscard]] RefreshCounts copyChanged(const std::vector<std::string>& names);
    /// What this computer cannot do in the share; empty when it can teach the others.
    [[nodiscard]] std::string whatIsRefused();
    [[nodiscard]] Result<LostNote> fetchSkips();
    /// Loads the skip list of the job.
    [[nodiscard]] SkipListState loadSkips();
    [[nodiscard]] Result<LostNote> fetchMarkers();
    [[nodiscard]] Result<LostNote> fetchCommon();

private:
    template <typename Step>
    [[nodiscard]] auto showing(Step step);

    PassContext context_;
    const Installation installation_;
    KeptFiles kept_;
    const std::string job_;
    SkipList& skipList_;
};

}  // namespace quillon
