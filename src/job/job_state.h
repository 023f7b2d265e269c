// SPDX-License-Identifier: MIT
#pragma once

// All that one job is: options, counters, texts of the score board, state of the controls, log. The front end owns it,
// sets the options as the person changes them and shows the rest; the passes work on it. So a window holds no second
// logic: each field names the control that shows it. All texts are UTF-8.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "platform/dates.h"
#include "platform/file.h"
#include "testing/grade.h"

namespace quillon {

/// What the person chose. The passes read each field at the moment they need it, not at the start.
struct JobOptions {
    std::string jobId;                 ///< Textbox1
    std::optional<NativePath> source;  ///< lblSource; none reads "None"
    std::optional<NativePath> target;  ///< lblTarget; none reads "None"
    bool copy = false;                 ///< chkCopy
    bool checkFileQuality = false;     ///< chkFileQuality
    bool useSkipList = false;          ///< chkUseSkip
    bool useSkipListEnabled = true;
    bool useCommonHeaders = false;  ///< chkCommon
    bool useCommonHeadersEnabled = true;
    bool showProgress = false;        ///< Check1
    int recipientIndex = -1;          ///< Combo1: index of the chosen item
    std::string recipient;            ///< Combo1: its text
    bool overwriteConfirmed = false;  ///< the person has said Yes to overwriting this list; lasts for one job
};

/// Counts of the running job. A label always shows its counter with the pattern "#,0".
struct JobCounters {
    std::int32_t folders = 0;          ///< lFOlders
    std::int32_t folderErrors = 0;     ///< lFolderErrors
    std::int32_t files = 0;            ///< lfiles
    std::int32_t skipped = 0;          ///< lSkipped
    std::int32_t rowsRead = 0;         ///< lTested; the copy pass counts its rows here too
    ByGrade<std::int32_t> grades;      ///< files of each grade
    std::int32_t copyErrors = 0;       ///< lCopyErrors
    std::int32_t tested = 0;           ///< files compared with the database; no label of its own
    std::uint64_t totalBytes = 0;      ///< lsize, through sizeLabel
    std::int32_t lostRows = 0;         ///< rows of a list that could not be written; no label of its own
    std::int32_t unlistedFolders = 0;  ///< folders whose entries could not be read; no label of its own

    [[nodiscard]] std::int32_t& operator[](Grade grade) { return grades[grade]; }
    [[nodiscard]] std::int32_t operator[](Grade grade) const { return grades[grade]; }

    friend bool operator==(const JobCounters&, const JobCounters&) = default;
};

/// Labels whose text is more than the format of a counter.
struct JobTexts {
    std::string status;         ///< Label8
    std::string statusPanel;    ///< StatusBar1, panel 3
    std::string quality = "0";  ///< lRPC
    std::string throughput;     ///< Label16
    std::string jobPercent;     ///< Label22
    std::string filePercent;    ///< the percentage of the file in work
    std::string copiedCaption;  ///< Label21
    std::string copied;         ///< lTotCopied
    std::string currentFile;    ///< sFileTU
};

struct ProgressState {
    bool visible = false;
    std::int64_t maximum = 100;
    std::int64_t value = 0;
};

/// Which controls can be used and seen.
struct JobControls {
    bool framesEnabled = true;       ///< Frame1 and Frame3
    bool menusEnabled = true;        ///< mnu and mnuFile
    bool toolbarRestricted = false;  ///< Toolbar1: only Stop can be used
    bool runEnabled = false;         ///< CommandButton3
    bool stopEnabled = false;        ///< CommandButton4
    bool viewEnabled = false;        ///< CommandButton5
    bool zipEnabled = true;          ///< CommandButton6
    bool throughputVisible = true;   ///< Label19 and Label16
    bool currentFileVisible = true;  ///< sFileTU
    bool busyPointer = false;        ///< hourglass
    ProgressState progress;          ///< ProgressBar1
    ProgressState fileProgress;      ///< ProgressBar2
};

/// Colours of log rows, blue in the high byte.
inline constexpr std::uint32_t kLightRed = 0xC0C0FF;
inline constexpr std::uint32_t kLightOrange = 0xC0E0FF;

struct LogRow {
    LocalTime time;                       ///< column "Time"
    std::string text;                     ///< column "Event"
    std::optional<std::uint32_t> colour;  ///< of the row's cells
};

/// Hears of every row of the job log as it is added.
class JobLogListener {
public:
    virtual ~JobLogListener() = default;
    virtual void logRowAdded(const LogRow& row) = 0;
};

/// The job log: iGrid1 of the main window.
class JobLog {
public:
    /// A listener must outlive the log; null for none.
    void setListener(JobLogListener* listener) { listener_ = listener; }
    /// Keeps only the last rows in memory; 0 for all. A command that prints each row needs no more.
    void setLimit(std::size_t rows) { limit_ = rows; }

    void add(LogRow row) {
        if (listener_ != nullptr)
            listener_->logRowAdded(row);
        rows_.push_back(std::move(row));
        if (limit_ != 0 && rows_.size() > limit_)
            rows_.pop_front();
    }
    void removeLast() {
        if (!rows_.empty())
            rows_.pop_back();
    }
    void clear() { rows_.clear(); }
    [[nodiscard]] const std::deque<LogRow>& rows() const { return rows_; }

private:
    std::deque<LogRow> rows_;
    JobLogListener* listener_ = nullptr;
    std::size_t limit_ = 0;
};

/// One job and what is left of the last one.
struct JobState {
    JobOptions options;
    JobCounters counters;
    JobTexts texts;
    JobControls controls;
    JobLog log;

    std::string lossReason;          ///< why the first of the lost rows could not be written
    std::int64_t shownQuality = -1;  ///< the quality label's figure in hundredths of a percent; -1 for none
    bool sizeShown = false;          ///< the size label shows the total size; "0" before
    bool stopRequested = false;      ///< set by Stop, read by the phases
    bool copyCancelled = false;      ///< set by Stop, read by the copy in progress
    bool timerRunning = false;       ///< Timer1
    std::int64_t startTick = 0;      ///< milliseconds, for the throughput
    LocalTime startTime;             ///< for the elapsed-time display
};

}  // namespace quillon
