// SPDX-License-Identifier: MIT
#include "answers/copy_desk.h"

#include <mutex>

#include <fmt/format.h>

#include "app/run_beside.h"
#include "platform/folders.h"
#include "testing/marker_watch.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// The loop of a copy on a thread of its own: it may stand still there, and only Stop ends it.
class BesideLoop final : public EventLoop {
public:
    explicit BesideLoop(const std::atomic<bool>& stop) : stop_(stop) {}
    void turn() override {}
    [[nodiscard]] bool stopAsked() const override { return stop_; }

private:
    const std::atomic<bool>& stop_;
};

}  // namespace

// What the copying thread tells; taken up in the turns of the loop.
struct CopyDesk::Relay {
    std::mutex mutex;
    std::int64_t ended = 0;
    std::int64_t bytes = 0;
    std::vector<std::pair<std::string, std::string>> failures;  // since they were taken last

    void add(const SettledCopy& copy) {
        const std::lock_guard lock(mutex);
        ++ended;
        if (copy.result)
            bytes += static_cast<std::int64_t>(copy.result->size);
        else
            failures.emplace_back(readable(std::string_view(copy.source)), copy.result.error().text());
    }
};

CopyDesk::CopyDesk(const Installation& installation, const Surroundings& surroundings, ScreenHost& host,
                   CopiesHandover handover)
    : installation_(installation), surroundings_(surroundings), host_(host), handover_(std::move(handover)) {
    const bool isPath = handover_.job.find('/') != std::string::npos;
    const std::string id = isPath ? NativePath(handover_.job).stem().native() : handover_.job;
    const std::string job = "Job " + readable(std::string_view(id));
    state.what = handover_.what.empty() ? job + ": all files" : job + ": " + handover_.what;
    state.grades = handover_.wish.grades;
    state.failedOnly = handover_.failedOnly;
    const auto preferences = readPreferences(installation_.appFolder()).value_or(Preferences());
    state.target = preferences.get(kLastCopyTarget);  // a share may hang: the look asks whether it is there
}

void CopyDesk::enter(CopyStage stage, std::string status) {
    state.stage = stage;
    state.status = std::move(status);
    state.trouble = false;
    host_.showState();
}

void CopyDesk::fail(const FileError& why) {
    enter(CopyStage::Ended, why.text);
    state.trouble = true;
}

void CopyDesk::pickTarget() {
    const auto folder = surroundings_.dialogs.pickFolder("Select Target", state.target.value_or(NativePath()));
    if (!folder)
        return;
    state.target = folder;
    const auto stored = changePreferences(installation_.appFolder(),
                                          [&](Preferences& preferences) { preferences.set(kLastCopyTarget, *folder); });
    passOver(stored, "it is asked for again the next time");
}

CopyOrder CopyDesk::order() const {
    CopyOrder order;
    order.target = *state.target;
    order.wish = handover_.wish;
    order.wish.grades = state.grades;
    order.care.hash = order.care.whole = true;
    order.care.verify = state.verify;
    order.care.salvage = state.salvage;
    order.byGrade = state.byGrade;
    order.rightNames = state.rightNames;
    order.database = installation_.paths().localDatabase;
    order.failedOnly = state.failedOnly;
    return order;
}

Result<CopyOutlook> CopyDesk::look() {
    if (!isFolder(order_.target))
        return failure(ErrorKind::NotFound, "The target " + readable(order_.target.native()) + " is not there");
    auto job = findJob(installation_.paths().localPath, handover_.job);
    if (!job)
        return failure(job.error());
    job_ = *std::move(job);
    order_.care.watch = markerWatch(installation_.paths());
    auto copies = FileCopies::begin(job_, order_);
    if (!copies)
        return failure(copies.error());
    copies_.emplace(*std::move(copies));
    return outlookOf(*copies_, order_.target, [this] { return !stopAsked_; });
}

void CopyDesk::copy() {
    if (!state.target)
        pickTarget();
    if (!state.target || isBusy())
        return;
    stopAsked_ = false;
    order_ = order();
    state.findings.clear();
    state.failures.clear();
    ++state.contents;
    enter(CopyStage::Looking, "Looking at the files and the target ...");
    const auto outlook = answerBeside(surroundings_.loop, [this] { return look(); });
    if (stopAsked_)
        return enter(CopyStage::Choosing, "Nothing was copied");
    if (!outlook)
        return fail(outlook.error());
    state.files = outlook->files;
    state.findings = outlook->findings;
    ++state.contents;
    if (outlook->findings.empty())
        runBesideLoop();
    else
        enter(CopyStage::Asking, needText(*outlook));
}

void CopyDesk::goOn() {
    if (state.stage != CopyStage::Asking)
        return;
    stopAsked_ = false;
    runBesideLoop();
}

void CopyDesk::cancel() {
    if (state.stage != CopyStage::Asking)
        return;
    state.findings.clear();
    ++state.contents;
    enter(CopyStage::Choosing, "Nothing was copied");
}

Result<void> CopyDesk::run(Relay& relay) {
    raiseOpenFileLimit();
    BesideLoop loop(stopAsked_);
    return copies_->run(loop, [&relay](const SettledCopy& copy) { relay.add(copy); });
}

void CopyDesk::runBesideLoop() {
    state.done = 0;
    state.findings.clear();
    ++state.contents;
    enter(CopyStage::Copying, "Copying ...");
    Relay relay;
    Result<void> copied;
    runBeside(
        surroundings_.loop, [&] { copied = run(relay); }, [&] { takeNews(relay); });
    takeNews(relay);
    if (!copied)
        return fail(copied.error());
    const CopySums& sums = copies_->sums();
    enter(CopyStage::Ended, sumsText(sums));
    if (!copies_->evidenceLoss().empty())
        state.status += "; the evidence does not know of it: " + copies_->evidenceLoss();
    state.trouble = sums.failed > 0 || sums.damaged > 0 || sums.stopped || !copies_->evidenceLoss().empty();
}

void CopyDesk::takeNews(Relay& relay) {
    const std::lock_guard lock(relay.mutex);
    if (state.done != relay.ended)
        state.status =
            fmt::format("{} of {} files, {} bytes", grouped(relay.ended), grouped(state.files), grouped(relay.bytes));
    state.done = relay.ended;
    for (auto& failure : std::exchange(relay.failures, {})) {
        if (state.failures.size() < kMostFailures)
            state.failures.push_back(std::move(failure));
    }
}

}  // namespace quillon
