// SPDX-License-Identifier: MIT
#include "job/job_pace.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "platform/dates.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// What a file takes in a pass that has not begun, in times of what it takes in the walk. On warm disks testing takes
// two to four times as long, on those that make one wait rather less, as heads are read ahead.
constexpr double kTestingToWalk = 2.3;
constexpr double kCopyingToWalk = 10;

// The guess counts for so many files of a pass, or for so large a part of them.
constexpr double kGuessFiles = 20;
constexpr double kGuessPart = 0.04;

constexpr double kDoubtInFiles = 1.1;

// A look a second gives as many samples; of a job of days every second one goes, again and again.
constexpr std::size_t kMostSamples = 4096;

bool isListing(const PaceReading& reading) {
    using Pass = PaceReading::Pass;
    return reading.pass == Pass::Walk || (reading.pass == Pass::None && reading.rows == 0);
}

}  // namespace

void PassTimes::add(std::int64_t files, double seconds) {
    if (!samples_.empty() && samples_.back().files == files)
        samples_.pop_back();
    samples_.push_back({files, seconds});
    if (samples_.size() < kMostSamples)
        return;
    for (std::size_t i = 0; i < kMostSamples / 2; ++i) samples_[i] = samples_[2 * i + 1];
    samples_.resize(kMostSamples / 2);
}

double PassTimes::secondsAt(std::int64_t files) const {
    const auto after = std::ranges::lower_bound(samples_, files, {}, &Sample::files);
    if (after == samples_.end())
        return samples_.empty() ? 0 : samples_.back().seconds;
    const Sample from = after == samples_.begin() ? Sample{} : *std::prev(after);
    const double part = static_cast<double>(files - from.files) / static_cast<double>(after->files - from.files);
    return from.seconds + part * (after->seconds - from.seconds);
}

// A pass has begun behind the last look.
void JobPace::begin(const PaceReading& reading) {
    pass_ = reading.pass;
    workOf(pass_) = {};
    workOf(pass_).begun = std::max(reading.begun, lastLook_.value_or(reading.begun));
    if (pass_ != Pass::None && !jobBegun_)
        jobBegun_ = workOf(pass_).begun;
}

void JobPace::look(const PaceReading& reading) {
    if (!jobBegun_ || reading.pass != pass_)
        begin(reading);
    lastLook_ = reading.milliseconds;
    count(reading);
    const Work& work = workOf(pass_);
    const bool counting = pass_ == Pass::FolderTest;
    const bool listing = isListing(reading);
    pace_ = {};
    pace_.done = listing ? reading.listed : work.files;
    pace_.atLeast = counting || listing;
    pace_.files = counting ? reading.met : reading.listed;
    pace_.filesPerSecond = work.seconds > 0 ? static_cast<double>(pace_.done) / work.seconds : 0;
    if (counting || work.files == 0 || work.seconds <= 0)
        return;
    if (pass_ == Pass::None) {
        if (!listing)
            pace_.secondsLeft = left(pass_, reading.listed, 0);
        return;
    }
    pace_.secondsLeft = leftOfAll(reading);
    const double passed = static_cast<double>(reading.milliseconds - *jobBegun_) / 1000;
    pace_.share = passed / (passed + *pace_.secondsLeft);
}

const PassTimes* JobPace::timesBefore() const {
    return pass_ == Pass::Walk ? &folderTest_ : pass_ == Pass::Testing ? &walk_ : nullptr;
}

void JobPace::count(const PaceReading& reading) {
    Work& work = workOf(pass_);
    const Work last = work;
    work.seconds = static_cast<double>(reading.milliseconds - work.begun) / 1000;
    work.files = pass_ == Pass::FolderTest ? reading.met
                 : isListing(reading)      ? reading.listed + reading.skipped
                                           : reading.rows;
    work.before = timesBefore() != nullptr ? timesBefore()->secondsAt(work.files) : 0;
    const auto files = static_cast<double>(work.files - last.files);
    const double before = work.before - last.before;
    const double time = work.seconds - last.seconds;
    work.filesFiles += files * files;
    work.filesBefore += files * before;
    work.beforeBefore += before * before;
    work.filesTime += files * time;
    work.beforeTime += before * time;
    if (pass_ == Pass::FolderTest)
        folderTest_.add(work.files, work.seconds);
    if (pass_ == Pass::Walk)
        walk_.add(reading.listed, work.seconds);
}

// Least squares of time = a * files + b * time before, neither of them below 0; then both so that they give what the
// pass took. Within one folder the two cannot be told apart: the time before is believed rather.
double JobPace::leftAsSoFar(const Work& work, std::int64_t files) const {
    const double filesFiles = work.filesFiles * kDoubtInFiles;
    const double whole = filesFiles * work.beforeBefore - work.filesBefore * work.filesBefore;
    double a = filesFiles > 0 ? work.filesTime / filesFiles : 0;
    double b = 0;
    if (whole > 0) {
        const double slope = (filesFiles * work.beforeTime - work.filesBefore * work.filesTime) / whole;
        const double each = (work.beforeBefore * work.filesTime - work.filesBefore * work.beforeTime) / whole;
        if (slope > 0) {
            a = std::max(each, 0.0);
            b = each > 0 ? slope : work.beforeTime / work.beforeBefore;
        }
    }
    if (b <= 0)
        return work.seconds * static_cast<double>(files - work.files) / static_cast<double>(work.files);
    const double told = a * static_cast<double>(work.files) + b * work.before;
    if (told <= 0)
        return 0;
    const double beforeLeft = timesBefore() != nullptr ? timesBefore()->secondsAt(files) - work.before : 0;
    const double rest = a * static_cast<double>(files - work.files) + b * std::max(beforeLeft, 0.0);
    return rest * work.seconds / told;
}

// Seconds that a pass still takes for its files. `guess`: of one file.
double JobPace::left(Pass pass, std::int64_t files, double guess) {
    const Work& work = workOf(pass);
    const auto filesLeft = static_cast<double>(std::max<std::int64_t>(files - work.files, 0));
    if (filesLeft <= 0)
        return 0;
    if (work.files == 0)
        return guess * filesLeft;
    const double weight = guess > 0 ? kGuessFiles + kGuessPart * static_cast<double>(files) : 0;
    const double trust = static_cast<double>(work.files) / (static_cast<double>(work.files) + weight);
    return trust * leftAsSoFar(work, files) + (1 - trust) * guess * filesLeft;
}

double JobPace::leftOfAll(const PaceReading& reading) {
    const Work& walk = workOf(Pass::Walk);
    std::int64_t rows = reading.listed;
    double walkLeft = 0;
    if (pass_ == Pass::Walk) {
        // Of the files that the walk has still to look at as many are left out as so far.
        const double kept = static_cast<double>(reading.listed) / static_cast<double>(walk.files);
        rows = std::max(rows, static_cast<std::int64_t>(kept * static_cast<double>(reading.met)));
        walkLeft = left(Pass::Walk, std::max(reading.met, walk.files), 0);
    }
    const double guess = rows > 0 ? (walk.seconds + walkLeft) / static_cast<double>(rows) : 0;
    double seconds = walkLeft;
    if (reading.tests && pass_ != Pass::Copying)
        seconds += left(Pass::Testing, rows, guess * kTestingToWalk);
    if (reading.copies)
        seconds += left(Pass::Copying, rows, guess * kCopyingToWalk);
    return seconds;
}

std::string rateText(double filesPerSecond) {
    if (filesPerSecond >= 1)
        return fmt::format("{} files/s", grouped(static_cast<std::int64_t>(filesPerSecond)));
    return filesPerSecond > 0 ? fmt::format("{:.1f} files/min", filesPerSecond * 60) : std::string("0 files/s");
}

std::string timeLeftText(double seconds) {
    constexpr double kDay = 86400;
    if (seconds < kDay)
        return clockText(static_cast<std::int64_t>(seconds));
    if (seconds >= 10000 * kDay)
        return "more than 10,000 d";
    const auto hours = static_cast<std::int64_t>(seconds) / 3600;
    return fmt::format("{} d {} h", grouped(hours / 24), hours % 24);
}

std::string paceText(const Pace& pace) {
    std::string text;
    const auto add = [&text](const std::string& piece) { text += (text.empty() ? "" : ", ") + piece; };
    if (pace.atLeast && pace.files > 0)
        add("at least " + grouped(pace.files) + " files");
    if (pace.share)
        add(fmt::format("{:.0f} %", *pace.share * 100));
    if (pace.done > 0 && pace.filesPerSecond > 0)
        add(rateText(pace.filesPerSecond));
    if (pace.secondsLeft)
        add(timeLeftText(*pace.secondsLeft) + " left");
    return text;
}

}  // namespace quillon
