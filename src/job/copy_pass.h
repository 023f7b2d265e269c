// SPDX-License-Identifier: MIT
#pragma once

// Brings the files of a finished list to a target folder, keeping each file's folders below the target. Every row is
// copied, whatever its grade.

#include <string>
#include <string_view>

#include "job/job.h"
#include "platform/copy_file.h"

namespace quillon {

/// The target file of a source path: the target folder, which ends in "/", and the path without the separators it
/// begins with. No value for a path that would lead out of the target.
[[nodiscard]] std::optional<std::string> copyTarget(const std::string& targetFolder, std::string_view source);

class CopyPass {
public:
    explicit CopyPass(Job& job) : job_(job) {}

    void run();

private:
    void copyRow(std::u16string_view line, const std::string& targetFolder);
    void showJobProgress(const std::string& source);
    [[nodiscard]] tl::expected<void, CopyError> copyOneFile(const std::string& source, const std::string& target);
    [[nodiscard]] bool progress(std::uint64_t done, std::uint64_t total);
    [[nodiscard]] bool prepareFolder(const std::string& target);
    [[nodiscard]] bool liesInSource(const NativePath& folder) const;

    Job& job_;
    FileCopier copier_;
    std::string source_;
    std::string lastFolder_;
    bool lastFolderRefused_ = false;
    NativePath realSource_;  // behind all links; empty for none
};

}  // namespace quillon
