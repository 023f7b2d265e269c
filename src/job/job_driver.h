// SPDX-License-Identifier: MIT
#pragma once

// One press of Run: the whole job, from the first check to the last notification. The driver calls the phases in a
// fixed order and does none of their work itself.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/lost_note.h"
#include "job/job.h"
#include "job/job_end.h"
#include "messaging/alert_sender.h"
#include "platform/folder_lock.h"

namespace quillon {

class ShareSteps;
struct RefreshSummary;

/// What the driver asks of its screen besides dialogs. A front end without pickers and toolbar leaves it as it is.
class JobHost {
public:
    virtual ~JobHost() = default;
    /// Runs the source picker.
    virtual void pickSource() {}
    /// Puts the focus on the target picker's button.
    virtual void focusTargetPicker() {}
    /// Copies the state of the commands to the toolbar.
    virtual void updateToolbar() {}
    /// True where a person is asked whether a job that was cut short goes on; otherwise the option says it.
    [[nodiscard]] virtual bool asksToGoOn() const { return false; }
};

/// Milliseconds that each phase took.
struct PhaseTimes {
    std::int64_t folderTests = 0;
    std::int64_t fileCount = 0;
    std::int64_t testing = 0;
    std::int64_t copying = 0;
    std::int64_t ends = 0;
};

class JobDriver {
public:
    /// All must outlive this. `alerts` null: nothing is sent.
    JobDriver(Job& job, JobHost& host, AlertSender* alerts)
        : job_(job), context_(job.passContext()), host_(host), alerts_(alerts) {}

    JobEnd run();

    /// Of the last run: its row of the table of ends, and what the system said of a failure (UTF-8, empty for none).
    [[nodiscard]] EndCause cause() const { return cause_; }
    [[nodiscard]] const std::string& detail() const { return detail_; }
    /// True when a final list of the last run stands, complete or not.
    [[nodiscard]] bool listStands() const;

    [[nodiscard]] const PhaseTimes& phaseTimes() const { return times_; }

private:
    enum class Next { GoOn, End };

    [[nodiscard]] JobEnd runSteps();
    void begin();
    [[nodiscard]] bool stopAsked() const { return context_.surroundings.loop.stopAsked(); }
    [[nodiscard]] Next checkTarget();
    [[nodiscard]] std::vector<NativePath> findLitter();
    void moveLitterAway();
    void tellLitter(std::size_t files);
    [[nodiscard]] Next refreshDatabases();
    [[nodiscard]] Next refreshTermFiles(ShareSteps& share);
    void tryUnreadShare();
    void tellRefused(const std::string& refused);
    void tellRefresh(const RefreshSummary& refresh);
    void tellFetched(const Result<LostNote>& fetched);
    [[nodiscard]] Next askWithoutDatabase(std::vector<std::string>& names);
    void refreshRuleLists(ShareSteps& share);
    [[nodiscard]] bool mayReplaceList();
    [[nodiscard]] Next confirmOverwrite();
    void askToGoOn();
    void testFolders();
    [[nodiscard]] Next lockScreen();
    [[nodiscard]] Next walkSource();
    void tellPermissionDenied();
    void testFiles();
    void copyRawList();
    void copyFiles();
    void checkFigures();
    void lookAtEnds();
    void finish();
    void leave();
    [[nodiscard]] Next endsBy(EndCause cause, std::string detail = {});
    [[nodiscard]] JobEnd endEarly();
    [[nodiscard]] EndCause causeBehindPasses() const;
    [[nodiscard]] Result<ListWriter> createRawList();

    void runTimed(std::int64_t& milliseconds, const std::string& start, const std::string& end,
                  const std::function<void()>& phase);
    void report(const FileError& error);
    void reportNotFetched(const FileError& error);
    [[nodiscard]] LocalTime logStart(const std::string& text);
    void logEnd(const std::string& text, const LocalTime& start);

    Job& job_;
    const PassContext context_;
    JobHost& host_;
    AlertSender* alerts_;
    std::optional<FolderLock> lock_;
    std::string step_;
    NativePath askedToGoOn_;  // of this list
    bool listMade_ = false;
    EndCause cause_ = EndCause::Complete;
    std::string detail_;
    PhaseTimes times_;
};

/// The Stop button: asks, and on Yes stops the job.
void askToStop(const PassContext& context);

}  // namespace quillon
