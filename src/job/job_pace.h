// SPDX-License-Identifier: MIT
#pragma once

// How fast a job goes, how much of it is done and how long it will still take, from what has been counted so far.
//
// The folder test meets the name of every file, so behind it their number is known, and before it a least one. All
// passes go through the files in one order, and folders that were slow in one pass are mostly slow in the next. So what
// the rest of a pass takes is told from two things: how many files it has, and how long the pass before took for these
// very files. How much each of them tells is found from what the pass took so far. A pass that has not begun is taken
// for a multiple of the walk, and the first files of it are mixed with that guess.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// What is known of a job at a moment.
struct PaceReading {
    enum class Pass { None, FolderTest, Walk, Testing, Copying };
    Pass pass = Pass::None;
    std::int64_t milliseconds = 0;  ///< of a clock that never runs backwards
    std::int64_t begun = 0;         ///< when this pass began, for whoever has not seen it begin
    std::int64_t met = 0;           ///< names of files that the folder test has met
    std::int64_t listed = 0;        ///< files that the walk has listed
    std::int64_t skipped = 0;       ///< files that the walk has left out
    std::int64_t rows = 0;          ///< of the list that this pass has done: tested or copied
    bool tests = false;             ///< the job has such a pass
    bool copies = false;
};

struct Pace {
    double filesPerSecond = 0;          ///< of the pass that runs
    std::int64_t done = 0;              ///< files of the pass that runs
    std::int64_t files = 0;             ///< of the whole job
    bool atLeast = false;               ///< it may have more files than that
    std::optional<double> share;        ///< of the job's time, 0 to 1
    std::optional<double> secondsLeft;  ///< of the job

    friend bool operator==(const Pace&, const Pace&) = default;
};

/// What a pass took until which file.
class PassTimes {
public:
    void add(std::int64_t files, double seconds);
    /// Until this file; 0 when nothing is known.
    [[nodiscard]] double secondsAt(std::int64_t files) const;

private:
    struct Sample {
        std::int64_t files = 0;
        double seconds = 0;
    };
    std::vector<Sample> samples_;  // both numbers grow
};

class JobPace {
public:
    /// A new job, of which nothing is known.
    void begin() { *this = JobPace(); }
    /// Call it at least about once a second. One look in a pass is enough for a first answer.
    void look(const PaceReading& reading);
    [[nodiscard]] const Pace& pace() const { return pace_; }

private:
    using Pass = PaceReading::Pass;
    static constexpr std::size_t kPasses = 5;
    struct Work {
        std::int64_t begun = 0;
        double seconds = 0;
        std::int64_t files = 0;
        double before = 0;  // what the pass before took for these files
        // Sums over all looks of the products of what they saw: files, time of the pass before, time.
        double filesFiles = 0, filesBefore = 0, beforeBefore = 0, filesTime = 0, beforeTime = 0;
    };
    [[nodiscard]] Work& workOf(Pass pass) { return works_[static_cast<std::size_t>(pass)]; }
    [[nodiscard]] const PassTimes* timesBefore() const;
    void count(const PaceReading& reading);
    [[nodiscard]] double left(Pass pass, std::int64_t files, double guess);
    [[nodiscard]] double leftAsSoFar(const Work& work, std::int64_t files) const;
    [[nodiscard]] double leftOfAll(const PaceReading& reading);
    void begin(const PaceReading& reading);

    Pace pace_;
    std::optional<std::int64_t> jobBegun_;
    std::optional<std::int64_t> lastLook_;
    Pass pass_ = Pass::None;
    std::array<Work, kPasses> works_;
    PassTimes folderTest_;  // by the names of files
    PassTimes walk_;        // by the rows of the list
};

/// "1,200 files/s", "6.0 files/min"
[[nodiscard]] std::string rateText(double filesPerSecond);
/// "00:00:30", from a day on "1 d 18 h".
[[nodiscard]] std::string timeLeftText(double seconds);
/// "at least 1,200 files", or "34 %, 1,200 files/s, 00:02:10 left"; empty where nothing is known.
[[nodiscard]] std::string paceText(const Pace& pace);

}  // namespace quillon
