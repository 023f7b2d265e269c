// SPDX-License-Identifier: MIT
#include "job/share_steps.h"

#include "app/progress_relay.h"
#include "app/save_litter.h"
#include "job/board_progress.h"
#include "setup/share_trial.h"
#include "testing/sector_markers.h"

namespace quillon {

// A step that shows its progress in the job's bar.
template <typename Step>
auto ShareSteps::showing(Step step) {
    ProgressRelay relay;
    BoardProgress board(context_.state);
    return answerBeside(
        context_.surroundings.loop, [&] { return step(relay); },
        [&] {
            if (context_.surroundings.loop.stopAsked())
                relay.cancel();
            relay.handOn(board);
        });
}

std::size_t ShareSteps::moveLitterAway() {
    return answerBeside(context_.surroundings.loop, [this] {
        return moveSaveLitterAway({paths().sharedPath, paths().sharedDatabase, paths().sharedSettings}, kept_);
    });
}

OrphanTermFiles ShareSteps::findOrphans() {
    return showing([this](ProgressHost& progress) { return findOrphanTermFiles(paths(), progress); });
}

OrphanCounts ShareSteps::moveAway(const OrphanTermFiles& orphans) {
    return answerBeside(context_.surroundings.loop, [&] { return moveOrphansAway(orphans, paths(), kept_, job_); });
}

std::vector<std::string> ShareSteps::sharedFiles() {
    return answerBeside(context_.surroundings.loop, [this] { return databaseFiles(paths().sharedDatabase); });
}

RefreshCounts ShareSteps::copyChanged(const std::vector<std::string>& names) {
    return showing([&](ProgressHost& progress) { return copyChangedTermFiles(names, paths(), kept_, progress, job_); });
}

std::string ShareSteps::whatIsRefused() {
    return answerBeside(context_.surroundings.loop, [this] { return whatShareRefuses(paths()); });
}

Result<LostNote> ShareSteps::fetchSkips() {
    return answerBeside(context_.surroundings.loop, [this] { return fetchSkipList(paths(), kept_, job_); });
}

SkipListState ShareSteps::loadSkips() {
    SkipList list = skipList_;  // where there is none to load, the one of the last job stays
    const bool wanted = context_.state.options.useSkipList;
    const auto state =
        answerBeside(context_.surroundings.loop, [&] { return loadSkipList(installation_, wanted, list); });
    skipList_ = std::move(list);
    if (state == SkipListState::Unreadable) {
        ++context_.state.counters.unreadRules;
        context_.log("The skip list cannot be read, or is larger than 4 MiB", kLightOrange);
    }
    return state;
}

Result<LostNote> ShareSteps::fetchMarkers() {
    return answerBeside(context_.surroundings.loop, [this] { return fetchSectorMarkers(paths(), kept_, job_); });
}

Result<LostNote> ShareSteps::fetchCommon() {
    return answerBeside(context_.surroundings.loop, [this] { return fetchCommonHeaders(paths(), kept_, job_); });
}

}  // namespace quillon
