// SPDX-License-Identifier: MIT
#include "dbcheck/command.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;
using testing::HasSubstr;

class DbcheckCommand : public testing::Test {
protected:
    DbcheckCommand() { database_.write("Database/png.dat", "1,89504E47,H\r\n"); }

    int run(std::vector<std::string> arguments) {
        out_.str("");
        err_.str("");
        arguments.insert(arguments.begin(), database_.path().native());
        return runDbcheck(arguments, out_, err_);
    }

    int judge(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--samples", samples_.path().native()});
        return run(std::move(arguments));
    }

    // Two PNG heads, one of them broken, and a GIF head under a name of PNG.
    void writeSamples() {
        samples_.write("png/good.png", "\x89PNG");
        samples_.write("png/bad.png", "no picture");
        samples_.write("_/wrong.png", "GIF89a");
        samples_.write("index.tsv", "path\text\ttrue_size\npng/good.png\tpng\t600\npng/bad.png\tpng\t600\n");
        samples_.write("mislabelled.tsv", "path\text\ttrue_size\ttruth\n_/wrong.png\tpng\t600\tGIF\n");
    }

    TempFolder database_;
    TempFolder samples_;
    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(DbcheckCommand, ACleanDatabaseGivesStatus0) {
    EXPECT_EQ(run({}), kDbcheckGood);
    EXPECT_EQ(out_.str(), "lint: 0 findings in 1 term files\n");
    EXPECT_EQ(err_.str(), "");
}

TEST_F(DbcheckCommand, AFindingGivesStatus1AndNamesItsPlace) {
    database_.write("Database/gif.dat", "1,GIF8,t\r\n");
    EXPECT_EQ(run({}), kDbcheckBad);
    EXPECT_EQ(err_.str(), "dbcheck: Database/gif.dat:1: the type is neither H nor T\n");
}

TEST_F(DbcheckCommand, TooFewTermFilesGiveStatus1) {
    EXPECT_EQ(run({"--min-extensions", "1"}), kDbcheckGood);
    EXPECT_EQ(run({"--min-extensions", "2"}), kDbcheckBad);
    EXPECT_EQ(err_.str(), "dbcheck: 1 term files, at least 2 wanted\n");
}

TEST_F(DbcheckCommand, ThresholdsAreComparedWithTheFigures) {
    writeSamples();
    EXPECT_EQ(judge({"--min-good", "50", "--min-rejected", "100"}), kDbcheckGood);
    EXPECT_THAT(out_.str(), HasSubstr("samples: 2 of known extensions, 1 good (50.00 %)"));
    EXPECT_THAT(out_.str(), HasSubstr("not good: png/bad.png"));
    EXPECT_EQ(judge({"--min-good", "51"}), kDbcheckBad);
    EXPECT_THAT(err_.str(), HasSubstr("good samples: 50.0000 %, the threshold is 51.0000 %"));
    EXPECT_EQ(judge({"--min-named", "50"}), kDbcheckBad);
    EXPECT_THAT(err_.str(), HasSubstr("of them named by a common header: 0.0000 %"));
}

TEST_F(DbcheckCommand, FalseAcceptsAreNamedWithTheirExtensions) {
    writeSamples();
    database_.write("Database/mng.dat", "2,PNG,T\r\n");
    EXPECT_EQ(judge({"--pairs", "--max-false-accepts", "10"}), kDbcheckBad);
    EXPECT_THAT(err_.str(), HasSubstr("false accepts: 50.0000 %, the threshold is 10.0000 %"));
    EXPECT_THAT(out_.str(), HasSubstr("png:1"));
}

TEST_F(DbcheckCommand, DamageIsMeasuredAndHeldToItsThresholds) {
    writeSamples();
    database_.write("Database/png.dat", "0,89504E47,H\r\n");
    EXPECT_EQ(judge({"--damage", "--max-recovered", "zeros", "0", "--max-recovered", "shift-1", "100"}), kDbcheckGood);
    EXPECT_THAT(out_.str(), HasSubstr("zeros             1      0      0      0.00 %"));
    EXPECT_THAT(out_.str(), HasSubstr("shift-1           1      1      0    100.00 %"));
    EXPECT_EQ(judge({"--damage", "--max-recovered", "shift-1", "99"}), kDbcheckBad);
    EXPECT_THAT(err_.str(), HasSubstr("recovered behind the damage shift-1: 100.0000 %, the threshold is 99.0000 %"));
    EXPECT_EQ(judge({"--damage", "--max-recovered", "rain", "0"}), kDbcheckUsage);
    EXPECT_EQ(judge({"--max-recovered", "zeros", "0"}), kDbcheckUsage) << "nothing is damaged";
    EXPECT_EQ(run({"--damage"}), kDbcheckUsage) << "there are no samples";
}

TEST_F(DbcheckCommand, WhatCannotBeReadGivesStatus2) {
    EXPECT_EQ(judge({}), kDbcheckUsage) << "no index.tsv";
    EXPECT_EQ(run({"--nonsense"}), kDbcheckUsage);
    EXPECT_THAT(err_.str(), HasSubstr("usage: dbcheck DATABASE"));
    EXPECT_EQ(run({"--min-good", "101"}), kDbcheckUsage);
    database_.write("families.tsv", "family\treason\n");
    EXPECT_EQ(run({}), kDbcheckUsage);
    std::ostringstream out;
    EXPECT_EQ(runDbcheck({samples_.path().native()}, out, out), kDbcheckUsage) << "no Database folder";
}

TEST_F(DbcheckCommand, TheTableIsPrintedAlone) {
    EXPECT_EQ(run({"--table"}), kDbcheckGood);
    EXPECT_EQ(out_.str().substr(0, 6), "| Kind");
}

TEST_F(DbcheckCommand, HelpIsNoFailure) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runDbcheck({"--help"}, out, err), kDbcheckGood);
    EXPECT_THAT(out.str(), HasSubstr("--samples"));
}

}  // namespace
}  // namespace quillon
