// SPDX-License-Identifier: MIT
#include "job/job_pace.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

using Pass = PaceReading::Pass;

// A job over a tree whose folders differ in all that they can: how many files, and what each file of them takes. The
// clock goes by what the script says; a fifth of a second apart, and at the first file of a pass, somebody looks.
class ScriptedJob {
public:
    /// `unlike`: by how much a folder's files may be slower or quicker in the testing pass than in the walk.
    ScriptedJob(unsigned seed, double testingToWalk, double unlike) : random_(seed) {
        for (int folder = 0; folder < 300; ++folder) {
            const auto files = static_cast<int>(std::exp(uniform(0, 7.5)));
            const double cost = std::exp(uniform(-1.2, 1.2));
            const double testing = std::exp(uniform(-std::log(unlike), std::log(unlike)));
            for (int file = 0; file < files; ++file) {
                costs_.push_back(cost * uniform(0.5, 1.5));
                testing_.push_back(costs_.back() * testing);
            }
        }
        walk_ = 40'000.0 / static_cast<double>(costs_.size());
        test_ = walk_ * testingToWalk;
    }

    /// The largest error of the whole time it told, from a third of the job on, as a part of the whole time.
    double worstError() {
        run();
        double worst = 0;
        for (const auto& [at, total] : told_) {
            if (at >= now_ / 3)
                worst = std::max(worst, std::abs(total - now_) / now_);
        }
        EXPECT_GT(told_.size(), 50U);
        return worst;
    }

private:
    double uniform(double from, double to) { return std::uniform_real_distribution(from, to)(random_); }

    void run() {
        reading_.tests = true;
        pass(Pass::FolderTest, walk_ * 0.2, costs_, reading_.met);
        pass(Pass::Walk, walk_, costs_, reading_.listed);
        pass(Pass::Testing, test_, testing_, reading_.rows);
    }
    void pass(Pass kind, double each, const std::vector<double>& costs, std::int64_t& count) {
        reading_.pass = kind;
        if (kind == Pass::Testing)
            reading_.begun = static_cast<std::int64_t>(now_);  // as a job notes it
        for (const double cost : costs) {
            now_ += each * cost;
            ++count;
            if (now_ >= next_ || count == 1)
                look();
        }
    }
    void look() {
        next_ = now_ + 200;
        reading_.milliseconds = static_cast<std::int64_t>(now_);
        pace_.look(reading_);
        if (pace_.pace().secondsLeft)
            told_.emplace_back(now_, now_ + *pace_.pace().secondsLeft * 1000);
    }

    std::mt19937 random_;
    std::vector<double> costs_;  // of each file, in the order of the walk
    std::vector<double> testing_;
    double walk_ = 0;
    double test_ = 0;
    double now_ = 0;  // milliseconds
    double next_ = 0;
    PaceReading reading_;
    JobPace pace_;
    std::vector<std::pair<double, double>> told_;
};

TEST(JobPace, FromAThirdOnTheTimeIsRightWithinAQuarterWhereFoldersDifferWildly) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        for (const double testing : {2.0, 3.0, 6.0})
            EXPECT_LE(ScriptedJob(seed, testing, 1).worstError(), 0.25) << "seed " << seed << ", testing " << testing;
    }
}

TEST(JobPace, FoldersThatTheWalkFoundQuickMayBeSlowToTest) {
    for (unsigned seed = 1; seed <= 100; ++seed)
        EXPECT_LE(ScriptedJob(seed, 3, 1.5).worstError(), 0.25) << "seed " << seed;
}

TEST(JobPace, TheFolderTestTellsALeastNumber) {
    JobPace pace;
    pace.look({.pass = Pass::FolderTest, .milliseconds = 1000, .begun = 1000, .met = 0, .tests = true});
    EXPECT_EQ(paceText(pace.pace()), "");
    pace.look({.pass = Pass::FolderTest, .milliseconds = 2000, .met = 1200, .tests = true});
    EXPECT_EQ(paceText(pace.pace()), "at least 1,200 files, 1,200 files/s");
}

TEST(JobPace, TheWalkTellsShareAndTimeLeftOfTheWholeJob) {
    JobPace pace;
    pace.look({.pass = Pass::Walk, .milliseconds = 0, .met = 1000});
    pace.look({.pass = Pass::Walk, .milliseconds = 10'000, .met = 1000, .listed = 200, .skipped = 50});
    EXPECT_EQ(paceText(pace.pace()), "at least 200 files, 25 %, 20 files/s, 00:00:30 left");
}

TEST(JobPace, APassGoesByWhatItTookSoFar) {
    JobPace pace;
    pace.look({.pass = Pass::Testing, .milliseconds = 5'000, .begun = 5'000, .listed = 1000, .tests = true});
    pace.look({.pass = Pass::Testing, .milliseconds = 15'000, .listed = 1000, .rows = 250, .tests = true});
    EXPECT_EQ(paceText(pace.pace()), "25 %, 25 files/s, 00:00:30 left");
}

TEST(JobPace, TheFirstFilesOfAPassDoNotUpsetTheGuess) {
    JobPace pace;
    pace.look({.pass = Pass::Walk, .milliseconds = 0, .met = 10'000, .tests = true});
    pace.look({.pass = Pass::Walk, .milliseconds = 10'000, .met = 10'000, .listed = 10'000, .tests = true});
    EXPECT_NEAR(*pace.pace().secondsLeft, 23, 0.1);
    pace.look({.pass = Pass::Testing, .milliseconds = 10'000, .listed = 10'000, .tests = true});
    pace.look({.pass = Pass::Testing, .milliseconds = 10'200, .listed = 10'000, .rows = 1, .tests = true});
    EXPECT_LT(*pace.pace().secondsLeft, 60) << "one slow file is no pace";
}

TEST(JobPace, AFinishedPassLeavesNothing) {
    JobPace pace;
    pace.look({.pass = Pass::Copying, .milliseconds = 0, .listed = 10, .copies = true});
    pace.look({.pass = Pass::Copying, .milliseconds = 1000, .listed = 10, .rows = 10, .copies = true});
    EXPECT_EQ(paceText(pace.pace()), "100 %, 10 files/s, 00:00:00 left");
}

TEST(JobPace, ANewJobKnowsNothingOfTheLast) {
    JobPace pace;
    pace.look({.pass = Pass::Walk, .milliseconds = 10'000, .met = 1000, .listed = 250});
    pace.begin();
    EXPECT_EQ(pace.pace(), Pace());
}

}  // namespace

}  // namespace quillon::test
