// SPDX-License-Identifier: MIT
#include "editors/term_search.h"

#include <map>

#include <gtest/gtest.h>

#include "editors/hex_input.h"
#include "support/temp_folder.h"
#include "testing/testing_fixture.h"

namespace quillon::test {
namespace {

class TermSearchTest : public testing::Test {
protected:
    std::string count(const CandidateTerm& candidate) {
        std::vector<std::u16string> files;
        for (const auto& [path, bytes] : heads.files) files.emplace_back(path.begin(), path.end());
        const auto counts = searchTerm(candidate, files, heads);
        return counts ? std::to_string(counts->good) + " good " + std::to_string(counts->bad) + " bad" : "dropped";
    }
    /// "good" or "bad" for one file.
    std::string judge(const CandidateTerm& candidate, const std::string& bytes) {
        heads.files = {{"/f", bytes}};
        return count(candidate) == "1 good 0 bad" ? "good" : "bad";
    }

    MemoryHeads heads;
};

TEST_F(TermSearchTest, MatchesAsTheHeaderTestDoes) {
    struct Case {
        const char* position;
        const char* term;
        bool hexadecimal;
        std::string bytes;
        const char* verdict;
    };
    const std::string at512 = std::string(511, '.') + "Z";
    const std::vector<Case> cases = {
        {"1", "QLX", false, "QLX!", "good"},  {"2", "QLX", false, "QLX!", "bad"},
        {"2", "lx", false, "QLX!", "good"},   {"0", "x!", false, "QLX!", "good"},
        {"abc", "x!", false, "QLX!", "good"}, {"  ", "x!", false, "QLX!", "good"},
        {"2x", "LX", false, "QLX!", "good"},  {"1", "41", true, "a", "good"},
        {"1", "41", true, "A", "good"},       {"1", "41", false, "A", "bad"},
        {"512", "z", false, at512, "good"},   {"512", "zz", false, at512, "bad"},
        {"513", "z", false, at512, "bad"},    {"-3", "QLX", false, "QLX!", "bad"},
        {"5", "  ", false, "QLX!", "good"},   {"1", "\xC3\x84", false, "\xE4", "good"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(judge({one.position, one.term, one.hexadecimal}, one.bytes), one.verdict)
            << one.position << " " << one.term;
}

TEST_F(TermSearchTest, CountsGoodAndBadFiles) {
    heads.files = {{"/1", "QLX"}, {"/2", "none"}, {"/3", "qlx"}};
    EXPECT_EQ(count({"1", "QLX", false}), "2 good 1 bad");
    heads.files.clear();
    EXPECT_EQ(count({"1", "QLX", false}), "0 good 0 bad");
}

TEST_F(TermSearchTest, OneFileThatCannotBeOpenedDropsTheSearch) {
    heads.files = {{"/1", "QLX"}};
    EXPECT_FALSE(searchTerm({"1", "QLX", false}, {u"/1", u"/gone", u"/1"}, heads));
    EXPECT_EQ(heads.asked.size(), 2U);
}

TEST_F(TermSearchTest, EveryFileIsReadOnce) {
    std::vector<std::u16string> files;
    for (int i = 0; i < 3000; ++i) {
        const std::string path = "/f" + std::to_string(i);
        heads.files[path] = "QLX";
        files.emplace_back(path.begin(), path.end());
    }
    EXPECT_EQ(searchTerm({"1", "QLX", false}, files, heads)->good, 3000);
    EXPECT_EQ(heads.asked.size(), 3000U);
}

TEST(TermSearchRealFilesTest, AShortFileIsSearchedInItsBytesAndBlanks) {
    TempFolder folder;
    const std::u16string path = folder.write("tiny.qlx", "AB").u16string();
    SourceFiles heads;
    EXPECT_EQ(searchTerm({"1", "AB  ", false}, {path}, heads)->good, 1);
}

TEST(RepairedPositionTest, GoesToTheFirstHitOnlyWhenNoneLiesBehindThePosition) {
    HeaderBytes head;
    head.fill('.');
    const std::string text = "..QLX...QLX";
    std::copy(text.begin(), text.end(), head.begin());
    const auto repair = [&head](const char* position, const char* term, bool hexadecimal = false) {
        return repairedPosition({position, term, hexadecimal}, head);
    };
    EXPECT_EQ(repair("600", "QLX"), 3);
    EXPECT_EQ(repair("10", "QLX"), 3);
    EXPECT_EQ(repair("4", "QLX"), std::nullopt) << "a later hit leaves the position alone";
    EXPECT_EQ(repair("3", "QLX"), std::nullopt);
    EXPECT_EQ(repair("600", "qlx"), std::nullopt) << "case counts here";
    EXPECT_EQ(repair("0", "QLX"), std::nullopt);
    EXPECT_EQ(repair("-5", "QLX"), std::nullopt);
    EXPECT_EQ(repair("600", "514C58", true), 3);
}

TEST(HexInputTest, TermsAreBroughtIntoTheFormOfTheFiles) {
    EXPECT_EQ(withoutBlanksInCapitals(" d0 cF 11 "), "D0CF11");
    EXPECT_EQ(findHexFault(""), HexFault::None);
    EXPECT_EQ(findHexFault("0AF"), HexFault::OddLength);
    EXPECT_EQ(findHexFault("0AFG"), HexFault::OtherCharacters);
    EXPECT_EQ(findHexFault("\xC3\xA9"), HexFault::OddLength) << "one character of two bytes";
}

}  // namespace
}  // namespace quillon::test
