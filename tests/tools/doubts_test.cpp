// SPDX-License-Identifier: MIT
#include "dbcheck/doubts.h"

#include <cstdlib>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dbcheck/command.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;
using testing::HasSubstr;

// A web font of 5000 bytes, one that was cut, and a text.
class DoubtScoreTest : public testing::Test {
protected:
    DoubtScoreTest() {
        const std::string font("wOFF\0\1\0\0\0\0\x13\x88", 12);
        folder_.write("woff/whole.woff", font + std::string(500, 'x'));
        folder_.write("woff/cut.woff", font + std::string(500, 'x'));
        folder_.write("txt/a.txt", "text");
        folder_.write(
            "index.tsv",
            "path\text\ttrue_size\nwoff/whole.woff\twoff\t5000\nwoff/cut.woff\twoff\t4096\ntxt/a.txt\ttxt\t4\n");
        folder_.write("odd.tsv", "path\treason\nwoff/cut.woff\tcut by hand\n");
    }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {QUILLON_STARTER, "--doubts", "--samples", folder_.path().native()});
        out_.str("");
        err_.str("");
        return runDbcheck(arguments, out_, err_);
    }

    TempFolder folder_;
    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(DoubtScoreTest, WholeSamplesAreCutAndDoubtedOnesNamed) {
    const auto samples = readSamples(folder_.path(), "index.tsv");
    ASSERT_TRUE(samples) << samples.error().text;
    const auto scores = scoreDoubts(*samples);
    EXPECT_EQ(scores.samples, 3U);
    EXPECT_EQ(scores.doubtedPercent(), 50);
    ASSERT_EQ(scores.formats.size(), 1U);
    const auto& score = scores.formats.at("web font");
    EXPECT_EQ(score.samples, 2U);
    EXPECT_EQ(score.cuts, 20U);
    EXPECT_EQ(score.found, 20U);
    EXPECT_EQ(score.foundPercent(), 100);
    ASSERT_EQ(scores.doubted.size(), 1U);
    EXPECT_EQ(scores.doubted.front(),
              "woff/cut.woff: web font: cut: The header asks for at least 5,000 bytes, the file has "
              "4,096 bytes: 904 bytes missing.");
    EXPECT_EQ(doubtTable(scores),
              "| Format | Samples | Doubted | Cuts found |\n| --- | --- | --- | --- |\n"
              "| web font | 2 | 1 | 100 % |\n");
}

TEST_F(DoubtScoreTest, OddSamplesAreCountedApart) {
    EXPECT_EQ(run({"--max-doubted", "49"}), kDbcheckBad);
    EXPECT_THAT(err_.str(), HasSubstr("doubted samples: 50.0000 %, the threshold is 49.0000 %"));
    EXPECT_EQ(run({"--max-doubted", "0", "--odd", (folder_.path() / "odd.tsv").native()}), kDbcheckGood) << err_.str();
    EXPECT_THAT(out_.str(), HasSubstr("odd samples: 1, doubted 1\n"));
}

TEST_F(DoubtScoreTest, DoubtsAskForSamples) {
    EXPECT_EQ(runDbcheck({QUILLON_STARTER, "--doubts"}, out_, err_), kDbcheckUsage);
    EXPECT_EQ(err_.str(), "dbcheck: --doubts needs --samples\n");
}

TEST(DoubtsOfRealHeads, FewWholeFilesAreDoubtedAndMostCutsFound) {
    const char* const folder = std::getenv("QUILLON_SAMPLES");
    if (folder == nullptr)
        GTEST_SKIP() << "QUILLON_SAMPLES names no folder of sample heads";
    const auto samples = readSamples(folder, "index.tsv");
    const auto odd = readOddSamples(QUILLON_ODD_SAMPLES);
    ASSERT_TRUE(samples && odd);
    const auto scores = scoreDoubts(*samples, *odd);
    EXPECT_LE(scores.doubtedPercent(), 0.3) << testing::PrintToString(scores.doubted);
    const std::map<std::string, double> wanted = {
        {"bitmap", 95},    {"IFF", 95},  {"7-Zip", 95},     {"cabinet", 95}, {"mail store", 95},
        {"web font", 95},  {"font", 95}, {"ELF", 90},       {"SQLite", 80},  {"compound file", 45},
        {"ISO media", 45}, {"RIFF", 90}, {"shapefile", 95}, {"HDF5", 95},
    };
    for (const auto& [format, percent] : wanted) {
        ASSERT_TRUE(scores.formats.contains(format)) << format;
        EXPECT_GE(scores.formats.at(format).foundPercent(), percent) << format;
    }
}

}  // namespace
}  // namespace quillon
