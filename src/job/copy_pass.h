// SPDX-License-Identifier: MIT
#pragma once

// Brings the files of a finished list to a target folder, keeping each file's folders below the target. Every row is
// copied, whatever its grade.

#include <optional>
#include <string>
#include <string_view>

#include "ahead/copies_ahead.h"
#include "ahead/ring.h"
#include "app/file_list.h"
#include "job/job_lists.h"
#include "job/pass_context.h"

namespace quillon {

/// The target file of a source path: the target folder, which ends in "/", and the path without the separators it
/// begins with. No value for a path that would lead out of the target.
[[nodiscard]] std::optional<std::string> copyTarget(const std::string& targetFolder, std::string_view source);

class CopyPass {
public:
    /// All must outlive this. `encoding`: of a list that this job has written; otherwise it is found from the content.
    CopyPass(const PassContext& context, const JobLists& lists, std::optional<ListEncoding> encoding = std::nullopt);

    void run();

private:
    // A row of the list that was looked at ahead of its turn.
    struct AheadRow {
        ListRow row;
        std::optional<CopyError> refused;  // else its copy is asked for
    };

    void notReached();
    void lookAhead(ListReader& list);
    [[nodiscard]] std::optional<CopyError> askForCopy(const std::string& source);
    void copyRow(const AheadRow& ahead);
    [[nodiscard]] tl::expected<void, CopyError> finishFirst();
    void showJobProgress(const std::string& source);
    [[nodiscard]] bool progress(std::uint64_t done, std::uint64_t total);
    [[nodiscard]] bool prepareFolder(const std::string& target);
    [[nodiscard]] bool liesInSource(const NativePath& folder) const;

    PassContext context_;
    const JobLists& lists_;
    std::optional<ListEncoding> encoding_;
    std::string targetFolder_;  // ends in "/"
    NativePath realSource_;     // behind all links; empty for none
    std::string lastFolder_;
    bool lastFolderRefused_ = false;
    Ring<AheadRow> rows_{CopiesAhead::kMost};
    CopiesAhead copies_;
};

}  // namespace quillon
