// SPDX-License-Identifier: MIT
#include "testing/suggest/term_suggestion.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "testing/header_term.h"

namespace quillon {

namespace {

class TermSuggestionTest : public ::testing::Test {
protected:
    // What varies from file to file: noise behind the bytes that are given.
    HeaderBytes head(const std::string& begin) {
        HeaderBytes bytes{};
        for (char& c : bytes) c = static_cast<char>(random() & 0xFFU);
        std::ranges::copy(begin, bytes.begin());
        return bytes;
    }
    void add(std::vector<HeaderBytes>& to, const std::string& begin, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) to.push_back(head(begin));
    }
    void addOthers(const std::string& begin, std::size_t count, const std::string& extension) {
        add(heads.others, begin, count);
        heads.otherExtensions.resize(heads.others.size(), static_cast<std::uint32_t>(heads.extensions.size()));
        heads.extensions.push_back(extension);
    }
    [[nodiscard]] std::vector<TermSuggestion> suggested() const { return suggestTerms(heads); }

    std::mt19937 random{7};
    SuggestionHeads heads;
};

bool accepts(const TermSuggestion& one, HeaderBytes head) {
    foldHeader(head);
    return CompiledTerm::fromParts(static_cast<double>(one.position), one.term, one.type == 'H').match(head) ==
           MatchResult::Yes;
}

}  // namespace

TEST_F(TermSuggestionTest, TheMarkAtTheStartIsSuggestedFirst) {
    add(heads.listed, "%PDF-1.", 12);
    addOthers("PK\x03\x04", 30, "zip");
    const auto found = suggested();
    ASSERT_FALSE(found.empty());
    EXPECT_LE(found.size(), kMostSuggestions);
    EXPECT_EQ(found[0].position, 1U);
    EXPECT_EQ(found[0].term.substr(0, 4), "%PDF");
    EXPECT_EQ(found[0].type, 'T');
    EXPECT_EQ(found[0].hits, 12U);
    EXPECT_EQ(found[0].listed, 12U);
    EXPECT_EQ(found[0].falseHits, 0U);
    EXPECT_EQ(found[0].others, 30U);
    EXPECT_EQ(found[0].sentence, "all 12 files; none of 30 others");
}

TEST_F(TermSuggestionTest, TheSentenceCountsTheOthersByTheirExtensions) {
    add(heads.listed, "ABCDEFGH", 4);
    add(heads.good, "ABCDEFGH", 2);
    addOthers("ABCDEFGH", 3, "docx");
    addOthers("ABCDEFGH", 1, "xlsx");
    addOthers("\x01\x02", 96, "bin");
    const auto found = suggested();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].falseHits, 4U);
    EXPECT_EQ(found[0].goodHits, 2U);
    EXPECT_EQ(found[0].sentence, "all 4 files, 2 of 2 good ones; also 4 of 100 others: 3 docx, 1 xlsx");
}

TEST_F(TermSuggestionTest, SeveralVariantsComeOutAsTermsThatCoverTogether) {
    add(heads.listed, "MAKERA\x01", 10);
    add(heads.listed, "\x89SECOND", 8);
    add(heads.listed, "THIRD:", 6);
    addOthers("PK\x03\x04", 50, "zip");
    const auto found = suggested();
    ASSERT_GE(found.size(), 3U);
    for (const auto& file : heads.listed)
        EXPECT_TRUE(std::any_of(found.begin(), found.begin() + 3, [&](const auto& one) { return accepts(one, file); }));
}

TEST_F(TermSuggestionTest, AContainersHeaderIsNotFirstWhereAnInnerMarkExists) {
    const std::string zip("PK\x03\x04\x14\0\0\0\0\0", 10);
    for (int i = 0; i < 8; ++i) {
        HeaderBytes one = head(zip);
        std::ranges::copy(std::string("mimetypeapplication/made"), one.begin() + 30);
        heads.listed.push_back(one);
    }
    addOthers(zip, 40, "zip");
    addOthers("RIFF", 60, "wav");
    const auto found = suggested();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].falseHits, 0U) << found[0].term;
    EXPECT_GE(found[0].position, 31U);
}

TEST_F(TermSuggestionTest, ZerosAndOneByteRepeatedAreNoTerm) {
    add(heads.listed, std::string(200, '\0'), 5);
    EXPECT_TRUE(std::ranges::none_of(suggested(), [](const auto& one) {
        return one.term.find_first_not_of('0') == std::string::npos && one.type == 'H';
    }));
    heads.listed.clear();
    add(heads.listed, std::string(512, '\xFF'), 5);
    EXPECT_TRUE(suggested().empty());
}

TEST_F(TermSuggestionTest, ATermAnywhereIsFoundWhereItsPlaceVaries) {
    for (std::size_t i = 0; i < 8; ++i) {
        HeaderBytes one = head("");
        std::ranges::copy(std::string("<drawing "), one.begin() + 20 + static_cast<std::ptrdiff_t>(i * 7));
        heads.listed.push_back(one);
    }
    addOthers("<html>", 50, "html");
    const auto found = suggested();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].position, 0U);
    EXPECT_EQ(found[0].term, "<drawing");
    EXPECT_EQ(found[0].hits, 8U);
}

TEST_F(TermSuggestionTest, FilesWithNothingInCommonGiveNoTermForAll) {
    add(heads.listed, "", 6);
    addOthers("", 20, "bin");
    EXPECT_TRUE(std::ranges::none_of(suggested(), [](const auto& one) { return one.hits > 2; }));
    heads.listed.clear();
    EXPECT_TRUE(suggested().empty());
}

TEST_F(TermSuggestionTest, EveryTermMeetsWhatItSays) {
    add(heads.listed, "Mark, with a comma\x1A", 6);
    addOthers("Mark", 4, "other");
    for (const auto& one : suggested()) {
        EXPECT_EQ(std::ranges::count_if(heads.listed, [&](const auto& file) { return accepts(one, file); }),
                  static_cast<std::ptrdiff_t>(one.hits));
        EXPECT_EQ(std::ranges::count_if(heads.others, [&](const auto& file) { return accepts(one, file); }),
                  static_cast<std::ptrdiff_t>(one.falseHits));
        EXPECT_TRUE(one.type == 'H' || one.term.find(',') == std::string::npos) << one.term;
    }
}

TEST_F(TermSuggestionTest, ANumberAmongZerosIsAMarkAtTheStart) {
    using namespace std::string_literals;
    for (const char* size : {"\x21\x34", "\x47\x58", "\x69\x7A"}) add(heads.listed, "\x03\0\0\0"s + size, 1);
    addOthers("PK\x03\x04", 60, "zip");
    const auto found = suggested();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].position, 1U);
    EXPECT_TRUE(accepts(found[0], head("\x03\0\0\0\x50\x60"s))) << found[0].term;
}

TEST_F(TermSuggestionTest, ZerosAloneAreNoMark) {
    using namespace std::string_literals;
    add(heads.listed, std::string(512, '\0'), 5);
    add(heads.listed, "\0\0\0\0\0\0\0\0"s, 5);
    addOthers("PK\x03\x04", 60, "zip");
    for (const auto& one : suggested()) EXPECT_NE(one.term.find_first_not_of('0'), std::string::npos) << one.position;
}

TEST_F(TermSuggestionTest, BytesThatEachFileHasElsewhereAreFound) {
    const std::string mark = "\x86\x48\xC7\x0D\x91\xA7\x82";
    for (std::size_t place = 4; place < 10; ++place) {
        auto one = head("");
        std::ranges::copy(mark, one.begin() + static_cast<std::ptrdiff_t>(place));
        heads.listed.push_back(one);
    }
    addOthers("PK\x03\x04", 60, "zip");
    const auto found = suggested();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].position, 0U);
    EXPECT_EQ(found[0].hits, 6U);
    EXPECT_EQ(found[0].falseHits, 0U);
}

TEST_F(TermSuggestionTest, AFormatThatNamesItselfIsBelievedFromOneFile) {
    add(heads.listed, "<?xml version=\"1.0\"?>\n<kmzdata unit=\"", 1);
    add(heads.listed, "KMZDATA\x01", 1);
    addOthers("<?xml version=\"1.0\"?>\n<html ", 40, "html");
    heads.extension = "kmzdata";
    const auto found = suggested();
    const auto three = std::min<std::size_t>(3, found.size());
    EXPECT_TRUE(std::any_of(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(three), [&](const auto& one) {
        return accepts(one, head("<?xml version='1.0' encoding='utf-8'?>\n<kmzdata>"));
    }));
}

}  // namespace quillon
