// SPDX-License-Identifier: MIT
#include "job/sector_scan_step.h"

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "app/kept_files.h"
#include "app/run_beside.h"
#include "job/job_board.h"
#include "platform/folder_lock.h"
#include "platform/folders.h"
#include "sectors/sector_scan.h"
#include "sectors/sector_summary.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kFailuresTold = 100;

// Carries what a scan tells to the thread of the screen, and Stop to the scan.
class ScanRelay final : public ScanHost {
public:
    bool goOn(const ScanCounts& counts) override {
        const std::lock_guard lock(mutex_);
        counts_ = counts;
        return !stopped_;
    }
    void notOpened(const FileError& why) override {
        const std::lock_guard lock(mutex_);
        if (failures_.size() < kFailuresTold)
            failures_.push_back(why.text);
    }

    void stop() { stopped_ = true; }
    [[nodiscard]] ScanCounts counts() {
        const std::lock_guard lock(mutex_);
        return counts_;
    }
    [[nodiscard]] std::vector<std::string> takeFailures() {
        const std::lock_guard lock(mutex_);
        return std::exchange(failures_, {});
    }

private:
    std::mutex mutex_;
    ScanCounts counts_;
    std::vector<std::string> failures_;
    std::atomic<bool> stopped_ = false;
};

class ScanStep {
public:
    ScanStep(const PassContext& context, const Installation& installation, const NativePath& list)
        : context_(context), installation_(installation), evidence_(evidenceBeside(list)) {}

    void run() {
        JobState& state = context_.state;
        state.stopRequested = state.copyCancelled = false;
        state.startTime = context_.surroundings.clock.now();
        begun_ = context_.surroundings.clock.milliseconds();
        const bool fileLineShown = std::exchange(state.fileLineShown, false);
        enterPhase(state, JobPhase::Scanning);
        context_.log("Looking for bad sectors");
        tell(scan());
        state.progress = {false, 100, 0};
        state.texts.pace.clear();
        state.texts.status = "Ready >";
        state.fileLineShown = fileLineShown;
        state.stopRequested = state.copyCancelled = false;
        enterPhase(state, JobPhase::Idle);
    }

private:
    [[nodiscard]] Result<ScanCounts> scan() {
        if (!pathExists(evidence_))
            return failure(ErrorKind::NotFound, "the job has left no evidence to keep them in");
        auto lock = FolderLock::tryToTake(installation_.appFolder());
        if (!lock)
            return failure(lock.error());
        if (!*lock)
            return failure(ErrorKind::PermissionDenied, "another job runs");
        const auto work = [this, paths = installation_.paths()]() -> Result<ScanCounts> {
            const auto markers = loadSectorMarkers(paths);
            if (!markers)
                return failure(markers.error());
            SystemPlaces places;
            return scanSectors(evidence_, *markers, places, relay_);
        };
        show();
        return answerBeside(context_.surroundings.loop, work, [this] { show(); });
    }

    void show() {
        JobState& state = context_.state;
        if (state.stopRequested || context_.surroundings.loop.stopAsked())
            relay_.stop();
        for (const auto& failure : relay_.takeFailures()) context_.log(failure, kLightOrange);
        const ScanCounts counts = relay_.counts();
        state.progress = {true, static_cast<std::int64_t>(counts.bytes), static_cast<std::int64_t>(counts.bytesDone)};
        state.texts.pace = paceOf(counts);
    }

    [[nodiscard]] std::string paceOf(const ScanCounts& counts) const {
        if (counts.bytesDone == 0)
            return {};
        const double done = static_cast<double>(counts.bytesDone) / static_cast<double>(counts.bytes);
        const auto gone = context_.surroundings.clock.milliseconds() - begun_;
        const double seconds = static_cast<double>(gone) / 1000;
        return fmt::format("{}, {} of {}, {} left", percent(done), sizeText(counts.bytesDone), sizeText(counts.bytes),
                           timeLeftText(seconds / done - seconds));
    }

    void tell(const Result<ScanCounts>& scanned) {
        if (!scanned)
            return context_.log("No bad sectors were looked for : " + scanned.error().text, kLightRed);
        const std::int64_t looked = scanned->files - scanned->earlier;
        if (scanned->stopped)
            context_.log("Looking for bad sectors was stopped. The next time goes on from here", kLightOrange);
        else
            context_.log(unreadSectorsText(scanned->hurt, looked, static_cast<std::int64_t>(scanned->unread)),
                         scanned->hurt > 0 ? std::optional(kLightOrange) : std::nullopt);
        if (scanned->earlier > 0)
            context_.log("Looked at by an earlier scan : " + grouped(scanned->earlier) + " files");
        if (scanned->failed > 0)
            context_.log("Files that could not be opened : " + grouped(scanned->failed), kLightOrange);
    }

    const PassContext& context_;
    const Installation& installation_;
    const NativePath evidence_;
    std::int64_t begun_ = 0;
    ScanRelay relay_;
};

Result<std::optional<SectorSummary>> summaryOf(const NativePath& evidence) {
    auto reader = EvidenceReader::open(evidence);
    if (!reader)
        return failure(reader.error());
    return readSectorSummary(*reader);
}

}  // namespace

void lookForBadSectors(const PassContext& context, const Installation& installation, const NativePath& list,
                       ScanOf job) {
    context.state.scansDoneJob = job == ScanOf::DoneJob;
    ScanStep(context, installation, list).run();
    tellSectors(context, list);
}

void tellSectors(const PassContext& context, const NativePath& list) {
    const NativePath evidence = evidenceBeside(list);
    context.state.texts.sectors.clear();
    if (!pathExists(evidence))
        return;
    const auto summary = answerBeside(context.surroundings.loop, [evidence] { return summaryOf(evidence); });
    if (summary && *summary)
        context.state.texts.sectors = summaryText(**summary);
}

}  // namespace quillon
