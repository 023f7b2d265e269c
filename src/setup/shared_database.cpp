// SPDX-License-Identifier: MIT
#include "setup/shared_database.h"

#include <utility>

#include "platform/folders.h"
#include "setup/stored_time.h"
#include "testing/shared_copy.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

std::string counted(std::size_t number) {
    return grouped(static_cast<std::int64_t>(number));
}

class Refresh {
public:
    Refresh(const Paths& paths, KeptFiles& kept, const std::vector<std::string>& names, const std::string& job)
        : paths_(paths),
          kept_(kept),
          chosen_(paths.sharedDatabase, names),
          local_(paths.localDatabase),
          probe_(paths.localDatabase),
          noted_(paths.localSettings, changeByJob(job)) {}
    Refresh(const Refresh&) = delete;
    Refresh& operator=(const Refresh&) = delete;

    RefreshCounts finish() {
        counts_.lostNote = noted_.finish();
        return counts_;
    }

    void one(const std::string& name) {
        const NativePath source = paths_.sharedDatabase / name;
        if (chosen_.pathOf(name) != source)
            return;  // the same file in another case has been chosen
        const auto shared = modificationTime(source);
        if (!shared) {
            ++counts_.missing;
            return;
        }
        const NativePath target = local_.pathOf(name);
        const auto time = modificationTime(target);
        if (time && isSameStoredTime(*time, *shared, [this](FileTime wanted) { return probe_.store(wanted); })) {
            ++counts_.unchanged;
            return;
        }
        replace(source, target);
    }

private:
    void replace(const NativePath& source, const NativePath& target) {
        if (noted_.change(target, [&] { return copyKeepingOld(source, target, kept_); }))
            ++counts_.copied;
        else
            ++counts_.failed;
    }

    const Paths& paths_;
    KeptFiles& kept_;
    DatabaseFolder chosen_;
    DatabaseFolder local_;
    TimeProbe probe_;
    NotedStep noted_;
    RefreshCounts counts_;
};

}  // namespace

OrphanTermFiles findOrphanTermFiles(const Paths& paths, ProgressHost& host) {
    OrphanTermFiles orphans;
    auto local = databaseFiles(paths.localDatabase);
    host.currentFile("Comparing databases....");
    host.progressRange(static_cast<std::int64_t>(local.size()));
    const auto sharedNames = databaseFiles(paths.sharedDatabase);
    orphans.shareLooksEmpty = sharedNames.empty();
    const DatabaseFolder shared(paths.sharedDatabase, sharedNames);
    for (auto& name : local) {
        host.progressValue(static_cast<std::int64_t>(++orphans.looked));
        // The listing may have missed what can still be looked up, as in a folder that may not be listed.
        if (!shared.contains(name) && !pathExists(paths.sharedDatabase / name))
            orphans.names.push_back(std::move(name));
    }
    return orphans;
}

OrphanCounts moveOrphansAway(const OrphanTermFiles& orphans, const Paths& paths, KeptFiles& kept,
                             const std::string& job) {
    OrphanCounts counts;
    NotedStep noted(paths.localSettings, changeByJob(job));
    for (const auto& name : orphans.names) {
        const NativePath file = paths.localDatabase / name;
        if (!pathExists(file))
            continue;
        if (noted.change(file, [&] { return kept.moveAway(file).map([](const NativePath&) {}); }))
            ++counts.removed;
        else
            ++counts.failed;
    }
    counts.lostNote = noted.finish();
    return counts;
}

RefreshCounts copyChangedTermFiles(const std::vector<std::string>& names, const Paths& paths, KeptFiles& kept,
                                   ProgressHost& host, const std::string& job) {
    if (names.empty())
        return {};
    host.progressRange(static_cast<std::int64_t>(names.size()));
    host.progressValue(0);
    Refresh refresh(paths, kept, names, job);
    std::int64_t number = 0;
    for (const auto& name : names) {
        if (host.cancelled())
            break;
        host.progressValue(++number);
        refresh.one(name);
    }
    return refresh.finish();
}

std::string refreshText(const RefreshSummary& refresh) {
    const std::size_t failed = refresh.fetched.failed + refresh.moved.failed;
    if (refresh.fetched.copied + refresh.moved.removed + failed == 0)
        return {};
    return "Shared database: " + counted(refresh.compared) + " compared, " + counted(refresh.fetched.copied) +
           " fetched, " + counted(refresh.moved.removed) + " removed, " + counted(failed) + " failed";
}

std::string emptyShareText(const OrphanTermFiles& orphans, const Paths& paths) {
    return "The shared database looks empty (" + readable(paths.sharedDatabase.native()) +
           "): " + counted(orphans.names.size()) +
           " term files of this computer are about to move to Kept. Is the share mounted?";
}

Result<LostNote> fetchCommonHeaders(const Paths& paths, KeptFiles& kept, const std::string& job) {
    const NativePath shared = fileIn(paths.sharedSettings, kCommonHeadersFileName);
    if (paths.sharedSettings.empty() || paths.localSettings.empty() || !pathExists(shared))
        return LostNote();
    return copyNoted(shared, fileIn(paths.localSettings, kCommonHeadersFileName), kept, paths.localSettings,
                     changeByJob(job));
}

}  // namespace quillon
