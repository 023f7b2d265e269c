// SPDX-License-Identifier: MIT
#include "dbcheck/score.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

Sample sampleOf(const std::string& extension, const std::string& bytes, std::uint64_t size = 4096) {
    Sample sample;
    sample.path = extension + "/" + bytes;
    sample.extension = extension;
    sample.trueSize = size;
    sample.folded.fill(' ');
    std::copy(bytes.begin(), bytes.end(), sample.folded.begin());
    foldHeader(sample.folded);
    return sample;
}

class ScoreTest : public testing::Test {
protected:
    HeaderDatabase database() {
        folder_.write("Database/png.dat", "1,89504E47,H\r\n");
        folder_.write("Database/apng.dat", "1,89504E47,H\r\n");
        folder_.write("Database/txt.dat", "0,P,T\r\n");
        folder_.write("Settings/CommonHeaders.dat", "1,GIF8,T,GIF picture\r\n");
        folder_.write("families.tsv", "family\treason\textensions\talso accepts\nPNG\tone format\tpng apng\t\n");
        auto read = readHeaderDatabase(folder_.path());
        EXPECT_TRUE(read) << (read ? "" : read.error().text);
        return read ? std::move(*read) : HeaderDatabase{};
    }

private:
    TempFolder folder_;
};

TEST_F(ScoreTest, SamplesOfAnExtensionMeetItsTerms) {
    const auto score = scoreSamples(database(), {sampleOf("png", "\x89PNG"), sampleOf("png", "broken")});
    EXPECT_EQ(score.samples, 2U);
    EXPECT_EQ(score.good, 1U);
    EXPECT_EQ(score.missed, std::vector<std::string>{"png/broken"});
    EXPECT_DOUBLE_EQ(score.goodPercent(), 50.0);
    EXPECT_EQ(score.extensions.at("png").samples, 2U);
    EXPECT_EQ(score.extensions.at("png").good, 1U);
}

TEST_F(ScoreTest, SmallSamplesAreLeftOutOnBothSides) {
    const auto score = scoreSamples(database(), {sampleOf("png", "\x89PNG", 511)});
    EXPECT_EQ(score.tooSmall, 1U);
    EXPECT_EQ(score.samples, 0U);
    EXPECT_EQ(score.pairs, 0U);
    EXPECT_DOUBLE_EQ(score.goodPercent(), 100.0);
    EXPECT_DOUBLE_EQ(score.falseAcceptPercent(), 0.0);
}

TEST_F(ScoreTest, AFitOfAForeignTermFileIsAFalseAcceptUnlessInAFamily) {
    const auto score = scoreSamples(database(), {sampleOf("png", "\x89PNG")});
    EXPECT_EQ(score.familyAccepts, 1U) << "apng is of the family";
    EXPECT_EQ(score.pairs, 1U);
    EXPECT_EQ(score.falseAccepts, 1U) << "a P stands anywhere";
    EXPECT_EQ(score.extensions.at("txt").acceptedFrom.at("png"), 1U);
    EXPECT_DOUBLE_EQ(score.falseAcceptPercent(), 100.0);
}

TEST_F(ScoreTest, SamplesOfAnUnknownExtensionStillMeetAllTermFiles) {
    const auto score = scoreSamples(database(), {sampleOf("jpg", "\x89PNG")});
    EXPECT_EQ(score.withoutTermFile, 1U);
    EXPECT_EQ(score.samples, 0U);
    EXPECT_EQ(score.pairs, 3U);
    EXPECT_EQ(score.falseAccepts, 3U);
}

TEST_F(ScoreTest, AMislabelledSampleIsAcceptedNamedOrNeither) {
    const auto score =
        scoreMislabelled(database(), {sampleOf("png", "\x89PNG"), sampleOf("png", "GIF87a"), sampleOf("png", "nothing"),
                                      sampleOf("bmp", "GIF87a"), sampleOf("png", "GIF87a", 100)});
    EXPECT_EQ(score.samples, 4U);
    EXPECT_EQ(score.accepted, std::vector<std::string>{"png/\x89PNG"});
    EXPECT_EQ(score.named, 2U);
    EXPECT_DOUBLE_EQ(score.rejectedPercent(), 75.0);
    EXPECT_NEAR(score.namedPercent(), 66.67, 0.01);
}

}  // namespace
}  // namespace quillon
