// SPDX-License-Identifier: MIT
#include "dbcheck/damage.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

Sample sampleOf(const std::string& extension, const std::string& bytes, std::uint64_t size = 4096) {
    Sample sample;
    sample.extension = extension;
    sample.trueSize = size;
    sample.folded.fill(' ');
    std::copy(bytes.begin(), bytes.end(), sample.folded.begin());
    foldHeader(sample.folded);
    return sample;
}

class DamageTest : public testing::Test {
protected:
    DamageTest() {
        folder.write("Database/png.dat", "1,89504E47,H\r\n");
        folder.write("Database/svg.dat", "0,<svg,T\r\n");
        folder.write("Database/tar.dat", "258,ustar,T\r\n");
    }

    DamageScore score(Damage damage, const std::vector<Sample>& samples) {
        const auto database = readHeaderDatabase(folder.path());
        EXPECT_TRUE(database) << (database ? "" : database.error().text);
        const auto scores = scoreDamage(*database, samples);
        return *std::ranges::find(scores, damage, [](const DamageScore& one) { return one.kind.damage; });
    }
    std::size_t good(Damage damage, const Sample& sample) { return score(damage, {sample}).good; }

    test::TempFolder folder;
    const Sample png = sampleOf("png", "\x89PNG");
    const Sample svg = sampleOf("svg", std::string(20, ' ') + "<svg>");
    const Sample tar = sampleOf("tar", std::string(257, ' ') + "ustar");
};

TEST_F(DamageTest, EveryKindIsScoredInItsOrder) {
    const auto scores = scoreDamage(HeaderDatabase{}, {});
    ASSERT_EQ(scores.size(), kDamages.size());
    for (std::size_t i = 0; i < scores.size(); ++i) {
        EXPECT_EQ(scores[i].kind.name, kDamages[i].name);
        EXPECT_EQ(scores[i].recoveredPercent(), 0.0);
    }
}

TEST_F(DamageTest, AMarkAtAFixedPlaceIsLostByAnyShift) {
    for (const Damage shift : {Damage::Shift1, Damage::Shift16, Damage::Shift100, Damage::Shift512})
        EXPECT_EQ(good(shift, png), 0U);
}

TEST_F(DamageTest, AMarkAtAnyPlaceIsFoundBehindAShiftThatLeavesIt) {
    for (const Damage shift : {Damage::Shift1, Damage::Shift16, Damage::Shift100}) EXPECT_EQ(good(shift, svg), 1U);
    EXPECT_EQ(good(Damage::Shift512, svg), 0U);
}

TEST_F(DamageTest, SixteenZerosTakeTheBeginningAlone) {
    EXPECT_EQ(good(Damage::Gone16, png), 0U);
    EXPECT_EQ(good(Damage::Gone16, tar), 1U);
}

TEST_F(DamageTest, WhatOverwritesTheHeadLeavesNothing) {
    for (const Damage damage : {Damage::Zeros, Damage::Ones, Damage::Random, Damage::Text})
        EXPECT_EQ(score(damage, {png, svg, tar}).good, 0U);
    folder.write("Database/png.dat", "0,quick brown,T\r\n1,89504E47,H\r\n");
    EXPECT_EQ(good(Damage::Text, png), 1U);
    folder.write("Database/png.dat", "9,0000,H\r\n1,89504E47,H\r\n");
    EXPECT_EQ(good(Damage::Zeros, png), 1U);
    folder.write("Database/png.dat", "9,FFFF,H\r\n1,89504E47,H\r\n");
    EXPECT_EQ(good(Damage::Ones, png), 1U);
}

TEST_F(DamageTest, ANameByACommonHeaderCountsAsRecovered) {
    folder.write("Settings/CommonHeaders.dat", "1,00000000,H,empty\r\n");
    const auto found = score(Damage::Zeros, {png, svg});
    EXPECT_EQ(found.good, 0U);
    EXPECT_EQ(found.named, 2U);
    EXPECT_DOUBLE_EQ(found.recoveredPercent(), 100.0);
}

TEST_F(DamageTest, AForeignHeadComesFromOutsideTheFamily) {
    EXPECT_EQ(score(Damage::ForeignHead, {png}).samples, 0U) << "there is no other";
    EXPECT_EQ(score(Damage::ForeignHead, {png, png}).samples, 0U) << "of another extension";
    folder.write("Database/apng.dat", "1,89504E47,H\r\n");
    const std::vector<Sample> samples = {png, sampleOf("apng", "\x89PNG")};
    EXPECT_EQ(score(Damage::ForeignHead, samples).good, 2U);
    folder.write("families.tsv", "family\treason\textensions\talso accepts\nPNG\tone format\tpng apng\t\n");
    EXPECT_EQ(score(Damage::ForeignHead, samples).samples, 0U);
}

TEST_F(DamageTest, OnlySamplesThatAreGoodAreDamaged) {
    EXPECT_EQ(score(Damage::Zeros, {png, sampleOf("png", "no picture"), sampleOf("png", "\x89PNG", 511),
                                    sampleOf("unknown", "\x89PNG")})
                  .samples,
              1U);
}

}  // namespace
}  // namespace quillon
