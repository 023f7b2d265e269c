// SPDX-License-Identifier: MIT
#include "dbcheck/suggestions.h"

#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "dbcheck/command.h"
#include "healthy_heads.h"

namespace quillon {

TEST(Suggestions, ATermLearnedFromTwoThirdsAcceptsTheLastThird) {
    HeaderDatabase database;
    database.terms["aaa"] = {CompiledTerm::fromTermFileLine("1,AAAMARK,T")};
    std::vector<Sample> samples;
    for (const char* const name : {"1", "2", "3"})
        samples.push_back(test::headOf("aaa", name, std::string("AAAMARK") + name));
    samples.push_back(test::headOf("bbb", "4", "something else"));
    for (auto& sample : samples) sample.head = sample.folded;
    const auto all = scoreSuggestions(database, samples);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].extension, "aaa");
    EXPECT_EQ(all[0].score.heldBack, 3U);
    EXPECT_EQ(all[0].score.accepted, 3U);
    EXPECT_EQ(all[0].score.acceptedThree, 3U);
    EXPECT_EQ(all[0].score.others, 3U);
    EXPECT_EQ(all[0].score.falseThree, 0U);
    EXPECT_DOUBLE_EQ(meanPercent(all, &SuggestedScore::acceptedPercent), 100.0);
}

TEST(Suggestions, SuggestNeedsSamples) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runDbcheck({QUILLON_STARTER, "--suggest"}, out, err), kDbcheckUsage);
    EXPECT_NE(err.str().find("--suggest needs --samples"), std::string::npos);
}

}  // namespace quillon
