// SPDX-License-Identifier: MIT
#include "setup/shared_database.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "archive/file_mask.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "setup/stored_time.h"

namespace quillon {

namespace {

using NamesByFolded = std::unordered_map<std::string, std::string>;

// One name for each folded form: the one in lower case when there is one, else the first.
NamesByFolded byFolded(const std::vector<std::string>& names) {
    NamesByFolded map;
    for (const auto& name : names) {
        const std::string folded = foldedName(name);
        const auto [at, added] = map.emplace(folded, name);
        if (!added && name == folded)
            at->second = name;
    }
    return map;
}

class Refresh {
public:
    Refresh(const Paths& paths, KeptFiles& kept, const std::vector<std::string>& names)
        : paths_(paths),
          kept_(kept),
          chosen_(byFolded(names)),
          local_(byFolded(databaseFiles(paths.localDatabase))),
          probe_(paths.localDatabase) {}

    void one(const std::string& name) {
        const std::string folded = foldedName(name);
        if (chosen_[folded] != name)
            return;  // the same file in another case has been chosen
        const auto shared = modificationTime(paths_.sharedDatabase / name);
        if (!shared) {
            ++counts.missing;
            return;
        }
        const auto at = local_.find(folded);
        const NativePath target = paths_.localDatabase / (at == local_.end() ? folded : at->second);
        const auto time = modificationTime(target);
        if (time && isSameStoredTime(*time, *shared, [this](FileTime wanted) { return probe_.store(wanted); })) {
            ++counts.unchanged;
            return;
        }
        replace(paths_.sharedDatabase / name, target);
    }

    RefreshCounts counts;

private:
    void replace(const NativePath& source, const NativePath& target) {
        if (copyKeepingOld(source, target, kept_))
            ++counts.copied;
        else
            ++counts.failed;
    }

    const Paths& paths_;
    KeptFiles& kept_;
    NamesByFolded chosen_;
    NamesByFolded local_;
    TimeProbe probe_;
};

}  // namespace

std::vector<std::string> databaseFiles(const NativePath& folder) {
    return listByMask(folder, "*.*");
}

OrphanCounts deleteOrphanTermFiles(const Paths& paths, KeptFiles& kept, ProgressHost& host) {
    OrphanCounts counts;
    const auto local = databaseFiles(paths.localDatabase);
    host.currentFile("Comparing databases....");
    host.progressRange(static_cast<std::int64_t>(local.size()));
    const auto shared = byFolded(databaseFiles(paths.sharedDatabase));
    for (const auto& name : local) {
        host.progressValue(static_cast<std::int64_t>(++counts.looked));
        // The listing may have missed what can still be looked up, as in a folder that may not be listed.
        if (shared.contains(foldedName(name)) || pathExists(paths.sharedDatabase / name))
            continue;
        const NativePath file = paths.localDatabase / name;
        if (!pathExists(file))
            continue;
        if (kept.moveAway(file))
            ++counts.removed;
        else
            ++counts.failed;
    }
    return counts;
}

RefreshCounts copyChangedTermFiles(const std::vector<std::string>& names, const Paths& paths, KeptFiles& kept,
                                   ProgressHost& host) {
    if (names.empty())
        return {};
    host.progressRange(static_cast<std::int64_t>(names.size()));
    host.progressValue(0);
    Refresh refresh(paths, kept, names);
    std::int64_t number = 0;
    for (const auto& name : names) {
        host.progressValue(++number);
        refresh.one(name);
    }
    return refresh.counts;
}

bool fetchCommonHeaders(const Paths& paths, KeptFiles& kept) {
    const NativePath local = paths.localSettings / kCommonHeadersFileName;
    const NativePath shared = paths.sharedSettings / kCommonHeadersFileName;
    if (!paths.sharedSettings.empty() && !paths.localSettings.empty() && pathExists(shared))
        passOver(copyKeepingOld(shared, local, kept), "the local list serves when the share fails");
    return !paths.localSettings.empty() && pathExists(local);
}

Result<void> copyKeepingOld(const NativePath& source, const NativePath& target, KeptFiles& kept) {
    const auto time = modificationTime(source);
    if (!time)
        return failure(time.error());
    const auto bytes = readWholeFile(source);
    if (!bytes)
        return failure(bytes.error());
    const auto old = readWholeFile(target);
    if (!old || *old != *bytes) {
        if (const auto copy = kept.copyAway(target); !copy)
            return failure(copy.error());
        if (auto saved = saveWholeFile(target, *bytes, TemporaryPlace::AboveFolder); !saved)
            return saved;
    }
    return setModificationTime(target, *time);
}

}  // namespace quillon
