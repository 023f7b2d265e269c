// SPDX-License-Identifier: MIT
#pragma once

// All that one job is: options, counters, texts of the score board, phase and progress, log. The front end owns it,
// sets the options as the person changes them and shows the rest; the passes work on it. So a window holds no second
// logic: each field names the control that shows it, and job/job_board tells from the phase which can be used. All
// texts are UTF-8.

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "job/job_pace.h"
#include "job/job_part.h"
#include "platform/copy_terms.h"
#include "platform/dates.h"
#include "platform/file.h"
#include "platform/source_care.h"
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
    bool showProgress = false;  ///< Check1
    int recipientIndex = -1;    ///< Combo1: index of the chosen item
    std::string recipient;      ///< Combo1: its text
    NativePath confirmedList;   ///< the person has said Yes to overwriting this list; lasts for one job
    bool keepEvidence = false;  ///< the job leaves its evidence beside the list
    bool keepHeads = true;      ///< with the first bytes of each tested file
    bool lookAtEnds = false;    ///< chkEnds: and what the ends of the files show
    bool gentle = false;        ///< the source is asked for one thing at a time from the start
    std::optional<std::chrono::seconds> hangLimit;  ///< a head that takes longer counts as unreadable
    int threads = 0;              ///< that read heads of a quick source; 0 leaves the number to the job
    bool resume = false;          ///< the job goes on with its earlier run: what that knew is not read again
    std::optional<JobPart> part;  ///< the job is one of the parts of another; none: it is whole

    bool scanSectors = false;  ///< behind the job its files are read to their ends, and bad sectors are looked for

    std::vector<Grade> copyGrades;  ///< only files of these grades are copied; empty for all
    CopyCare copyCare;              ///< what is done for copies beside the copying
};

/// What ends show goes into the evidence, and only tested files have their ends looked at.
[[nodiscard]] constexpr bool mayLookAtEnds(const JobOptions& options) {
    return options.checkFileQuality && options.keepEvidence;
}
[[nodiscard]] constexpr bool looksAtEnds(const JobOptions& options) {
    return options.lookAtEnds && mayLookAtEnds(options);
}

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
    std::int32_t unreadHeads = 0;      ///< files whose head did not come as a whole; no label of its own
    std::int32_t damagedCopies = 0;    ///< files that were copied with gaps; no label of its own
    std::int32_t lostEvidence = 0;     ///< 1 when the evidence could not be written to its end; no label of its own

    std::int32_t copied = 0;        ///< files that were copied; no label of its own
    std::int32_t graded = 0;        ///< rows that the testing pass read; no label of its own
    std::int32_t notCopied = 0;     ///< rows that the copy pass did not reach; no label of its own
    std::int32_t unreadRules = 0;   ///< term files and rule lists that could not be read; no label of its own
    std::int32_t notFetched = 0;    ///< shared files that could not be fetched; no label of its own
    std::int32_t lostMessages = 0;  ///< lines that a command could not write; no label of its own

    [[nodiscard]] std::int32_t& operator[](Grade grade) { return grades[grade]; }
    [[nodiscard]] std::int32_t operator[](Grade grade) const { return grades[grade]; }

    friend bool operator==(const JobCounters&, const JobCounters&) = default;
};

/// What became of the rows of a list.
struct RowFigures {
    std::int64_t written = 0;
    std::int64_t lost = 0;  ///< could not be written, which was told
};

/// How far a pass came.
enum class PassEnd {
    NotRun,
    Short,  ///< stopped, or it has told that it could not read on
    Whole
};

/// What each pass of the running job counted by itself, for the job's check of its own figures (job/self_check). Apart
/// from the counters, which are what the score board shows.
struct PassFigures {
    std::int64_t met = 0;  ///< files whose names the folder test saw
    RowFigures raw;
    PassEnd testing = PassEnd::NotRun;
    std::int64_t rowsRead = 0;  ///< of the raw list, by the testing pass
    RowFigures list;
    PassEnd copying = PassEnd::NotRun;
    std::int64_t copies = 0;
    std::int64_t leftOut = 0;  ///< rows whose grade was not asked for
};

/// What a job that goes on with an earlier run made of it, in files.
struct ResumeFigures {
    std::string from;        ///< how that ended, as its evidence has it; empty: there is nothing to go on with
    std::int64_t known = 0;  ///< the same as then, and not read again
    std::int64_t again = 0;  ///< the same as then, and read again
    std::int64_t changed = 0;
    std::int64_t added = 0;
    std::int64_t gone = 0;  ///< of the earlier run's; told when all rows have passed
};

/// What came of looking at the ends of files.
struct EndFigures {
    std::int64_t read = 0;
    std::int64_t unread = 0;   ///< the source did not give them
    std::int64_t doubted = 0;  ///< files that their ends speak against
    std::int64_t known = 0;    ///< by an earlier run, and not read again

    friend bool operator==(const EndFigures&, const EndFigures&) = default;
};

/// Labels whose text is more than the format of a counter.
struct JobTexts {
    std::string status;         ///< Label8
    std::string statusPanel;    ///< StatusBar1, panel 3
    std::string quality = "0";  ///< lRPC
    std::string throughput;     ///< Label16
    std::string pace;           ///< jobPace: share done, files per second and time left
    std::string jobPercent;     ///< Label22
    std::string filePercent;    ///< the percentage of the file in work
    std::string copiedCaption;  ///< Label21
    std::string copied;         ///< lTotCopied
    std::string currentFile;    ///< sFileTU
    std::string sectors;        ///< of gradeBar: how many files hold unread sectors; empty when that is not known
};

/// How far a pass is.
struct JobProgress {
    bool shown = true;  ///< there is progress to look at, or a person wants to see the bar
    std::int64_t maximum = 100;
    std::int64_t value = 0;
};

/// What the job does now. What a phase means for the controls of a front end stands in job/job_board.
enum class JobPhase {
    Idle,
    Checking,    ///< inputs, refresh of the databases, the last questions
    Starting,    ///< nothing more will be asked
    FolderTest,  ///< every folder of the source is entered once
    Walk,        ///< the raw list is written; without testing it also becomes the final one here
    Testing,
    Copying,
    Ends,       ///< the ends of the files are looked at
    Reporting,  ///< the completion report is on its way
    Scanning,   ///< the job is complete, and its files are read to their ends
};
inline constexpr std::size_t kJobPhases = 10;

/// What came of the completion report.
enum class ReportState { NotSent, Acknowledged, NotAcknowledged };

/// Which row of the table of ends a job has come to, see job/job_end.
enum class EndCause : std::uint8_t;

/// What came of the last job.
struct JobOutcome {
    EndCause cause{};
    bool hasList = false;  ///< there is a final list of this job, complete or not
    bool losses = false;
};

/// Colours of log rows, blue in the high byte.
inline constexpr std::uint32_t kLightRed = 0xC0C0FF;
inline constexpr std::uint32_t kLightOrange = 0xC0E0FF;

struct LogRow {
    LocalTime time;                       ///< column "Time"
    std::string text;                     ///< column "Event"
    std::optional<std::uint32_t> colour;  ///< of the row's cells
    std::string path = {};                ///< native bytes of the file or folder it is about; empty for none
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
        if (limit_ != 0 && rows_.size() > limit_) {
            rows_.pop_front();
            ++dropped_;
        }
    }
    void removeLast() {
        if (!rows_.empty())
            rows_.pop_back();
    }
    void clear() {
        rows_.clear();
        dropped_ = 0;
    }
    /// Rows that the limit has taken away.
    [[nodiscard]] std::size_t dropped() const { return dropped_; }
    [[nodiscard]] const std::deque<LogRow>& rows() const { return rows_; }

private:
    std::deque<LogRow> rows_;
    JobLogListener* listener_ = nullptr;
    std::size_t limit_ = 0;
    std::size_t dropped_ = 0;
};

/// One job and what is left of the last one.
struct JobState {
    JobOptions options;
    JobCounters counters;
    PassFigures passes;
    std::vector<std::string> gaps;  ///< what the job's check of its own figures found, when it has ended
    JobTexts texts;
    JobPace pace;
    JobProgress progress;           ///< of the job: ProgressBar1
    std::int64_t fileProgress = 0;  ///< of the file being copied, in percent: ProgressBar2
    JobLog log;

    JobPhase phase = JobPhase::Idle;
    ReportState report = ReportState::NotSent;  ///< of this job; sending that fails is NotAcknowledged
    bool mayRun = false;        ///< a source was chosen, or a job or recount has ended, and there is a job ID
    bool mayView = false;       ///< there may be a list to look at
    bool scansDoneJob = false;  ///< in phase Scanning: the files are those of a job that was done before
    bool recounting = false;    ///< the counts are being read from a list
    bool fetchingList = false;  ///< an existing list is being copied to where lists are kept
    bool fileLineShown = true;  ///< the line of the file in work; a copy that has ended takes it away

    std::optional<JobOutcome> outcome;  ///< none while a job runs, and before the first one

    std::optional<ResumeFigures> resumed;                               ///< none for a job that began anew
    std::optional<EndFigures> ends;                                     ///< none while nobody has looked
    std::shared_ptr<SourceCare> care = std::make_shared<SourceCare>();  ///< how much the source is asked for at once
    bool careTold = false;                                              ///< the log says so

    std::string evidenceLoss;        ///< why the evidence of this job could not be written to its end
    std::string lossReason;          ///< why the first of the lost rows could not be written
    std::int64_t shownQuality = -1;  ///< the quality label's figure in hundredths of a percent; -1 for none
    bool sizeShown = false;          ///< the size label shows the total size; "0" before
    bool stopRequested = false;      ///< set by Stop, read by the phases
    bool copyCancelled = false;      ///< set by Stop, read by the copy in progress
    std::int64_t startTick = 0;      ///< milliseconds, for the throughput
    LocalTime startTime;             ///< for the elapsed-time display
};

}  // namespace quillon
