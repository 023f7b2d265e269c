// SPDX-License-Identifier: MIT
#include "answers/forget_evidence.h"

#include "app/kept_files.h"
#include "platform/folders.h"

namespace quillon {

namespace {

constexpr const char* kKeptFolder = "Kept";

// The file, what a killed job and one that went on with an earlier run left beside it, and further copies of one
// second: "1234.sqlite (2)".
bool belongsTo(const std::string& name, const std::string& evidence) {
    return name == evidence || name == evidence + "-journal" || name == evidence + "-earlier" ||
           name == evidence + "-earlier-journal" || (name.starts_with(evidence + " (") && name.ends_with(')'));
}

Result<std::size_t> removeFrom(const NativePath& folder, const std::string& evidence) {
    std::size_t removed = 0;
    const auto names = listEntries(folder);
    if (!names)
        return failure(names.error());
    for (const auto& name : *names) {
        if (!belongsTo(name, evidence) || !isRegularFile(folder / name))
            continue;
        if (auto gone = removeFile(folder / name); !gone)
            return failure(gone.error());
        ++removed;
    }
    return removed;
}

}  // namespace

Result<std::size_t> forgetEvidence(const NativePath& listFolder, const JobFiles& job) {
    const std::string evidence = job.id + std::string(kEvidenceEnding);
    const NativePath folder = job.evidence.empty() ? listFolder : job.evidence.parent_path();
    if (folder.empty())
        return std::size_t{0};
    std::vector<NativePath> folders{folder};
    const NativePath kept = folder / kKeptFolder;
    if (isFolder(kept)) {
        const auto moments = listEntries(kept);
        if (!moments)
            return failure(moments.error());
        for (const auto& moment : *moments) {
            if (isFolder(kept / moment) && !isLink(kept / moment))
                folders.push_back(kept / moment);
        }
    }
    std::size_t removed = 0;
    for (const auto& place : folders) {
        const auto gone = removeFrom(place, evidence);
        if (!gone)
            return gone;
        removed += *gone;
    }
    return removed;
}

}  // namespace quillon
