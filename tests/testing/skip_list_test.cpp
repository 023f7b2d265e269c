// SPDX-License-Identifier: MIT
#include "testing/skip_list.h"

#include <gtest/gtest.h>

#include "testing/list_folders.h"

namespace quillon::test {

namespace {

bool skips(const std::vector<std::u16string>& lines, std::u16string_view path) {
    SkipList list;
    list.assign(lines);
    return list.matches(path);
}

// --- patterns ---

TEST(SkipListTest, StarsArePutAroundATermThatLacksThem) {
    SkipList list;
    list.assign({u"thumbs.db", u"*.tmp", u"~*", u"*x*", u"", u"*"});
    EXPECT_EQ(list.patterns(), (std::vector<std::u16string>{u"*thumbs.db*", u"*.tmp*", u"*~*", u"*x*", u"*", u"*"}));
}

TEST(SkipListTest, ATermWithoutWildcardsFitsAnyPathThatHoldsItInAnyCase) {
    EXPECT_TRUE(skips({u"thumbs.db"}, u"/s/a/Thumbs.DB"));
    EXPECT_TRUE(skips({u"THUMBS.db"}, u"/s/thumbs.dbx/file"));
    EXPECT_TRUE(skips({u"thumbs.db"}, u"/s/THUMBS.DB.old/z"));
    EXPECT_FALSE(skips({u"thumbs.db"}, u"/s/thumbs_db"));
    EXPECT_TRUE(skips({u"\u00C4rger"}, u"/s/\u00E4RGER.txt"));
}

TEST(SkipListTest, ATermOfADotAndThreeLettersAlsoSkipsThemInTheMiddleOfAName) {
    EXPECT_TRUE(skips({u".tmp"}, u"/s/a.tmp.doc"));
    EXPECT_TRUE(skips({u".tmp"}, u"/s/folder.tmp/a.doc"));
}

TEST(SkipListTest, ATermThatHoldsABracketIsReadAsTheStartOfASet) {
    EXPECT_TRUE(skips({u"file[12]"}, u"/s/file1"));
    EXPECT_TRUE(skips({u"file[12]"}, u"/s/file2.txt"));
    EXPECT_FALSE(skips({u"file[12]"}, u"/s/file[12]"));
    EXPECT_TRUE(skips({u"file[!0-9]"}, u"/s/fileX"));
    EXPECT_FALSE(skips({u"file[!0-9]"}, u"/s/file7"));
}

TEST(SkipListTest, QuestionMarkIsOneCharacterAndHashOneDigit) {
    EXPECT_TRUE(skips({u"a?c"}, u"/s/abc"));
    EXPECT_FALSE(skips({u"a?c"}, u"/s/ac"));
    EXPECT_TRUE(skips({u"img##.jpg"}, u"/s/IMG42.JPG"));
    EXPECT_FALSE(skips({u"img##.jpg"}, u"/s/IMG4x.JPG"));
}

TEST(SkipListTest, AStarInsideATermIsAnyRun) {
    EXPECT_TRUE(skips({u"cache*.dat"}, u"/s/CACHE/one/two.dat"));
    EXPECT_FALSE(skips({u"cache*.dat"}, u"/s/two.dat/cache"));
}

TEST(SkipListTest, AnEmptyLineMatchesEverything) {
    EXPECT_TRUE(skips({u""}, u"/s/a"));
    EXPECT_TRUE(skips({u"never", u""}, u"/s/a"));
}

TEST(SkipListTest, ATermWithACommaNeverFitsAndOneWithItsReplacementDoes) {
    EXPECT_FALSE(skips({u"a,b"}, u"/s/a>b.txt"));
    EXPECT_TRUE(skips({u"a>b"}, u"/s/a>b.txt"));
}

TEST(SkipListTest, BothSeparatorsAreTheSame) {
    EXPECT_TRUE(skips({u"\\windows\\temp\\"}, u"/s/Windows/Temp/x"));
    EXPECT_TRUE(skips({u"/windows/temp/"}, u"\\s\\Windows\\Temp\\x"));
}

TEST(SkipListTest, APatternThatIsNoneKeepsTheFileUnlessAnEarlierOneFits) {
    EXPECT_FALSE(skips({u"open[", u"abc"}, u"/s/abc")) << "the comparison ends there";
    EXPECT_TRUE(skips({u"abc", u"open["}, u"/s/abc"));
    EXPECT_FALSE(skips({u"[z-a]", u"abc"}, u"/s/abc"));
}

TEST(SkipListTest, AnEmptyListSkipsNothing) {
    SkipList list;
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(list.matches(u"/s/a"));
}

TEST(SkipListTest, ShortAndOverlappingTermsAreFound) {
    EXPECT_TRUE(skips({u"z"}, u"/s/z"));
    EXPECT_TRUE(skips({u"aab"}, u"/s/aaab"));
    EXPECT_TRUE(skips({u"b"}, u"b"));
    EXPECT_TRUE(skips({u"ab"}, u"ab"));
    EXPECT_FALSE(skips({u"ab"}, u"a"));
    EXPECT_FALSE(skips({u"ab"}, u""));
    EXPECT_TRUE(skips({u"[a]"}, u"/s/a"));
    EXPECT_TRUE(skips({u"?"}, u"x"));
    EXPECT_FALSE(skips({u"?"}, u""));
}

TEST(SkipListTest, ManyTermsGiveTheAnswerOfTryingThemOneByOne) {
    std::vector<std::u16string> lines;
    for (char16_t c = u'a'; c <= u'z'; ++c) {
        lines.push_back(std::u16string(u"name-") + c + u".");
        lines.push_back(std::u16string(u"*/") + c + u"?#/*");
    }
    EXPECT_TRUE(skips(lines, u"/s/NAME-q.txt"));
    EXPECT_TRUE(skips(lines, u"/s/qx7/file"));
    EXPECT_FALSE(skips(lines, u"/s/qxx/name-.txt"));
}

// --- loading ---

class LoadSkipListTest : public ListFolders {
protected:
    SkipListState load(bool wanted = true) {
        fetched = fetchSkipList(installation.paths(), kept).has_value();
        return loadSkipList(installation, wanted, list);
    }

    SkipList list;
    bool fetched = false;
};

TEST_F(LoadSkipListTest, EveryLineOfTheLocalFileIsAPattern) {
    folder.write("local/Settings/SkipList.dat", "one\r\n\r\ntw\xF6\r\n");
    EXPECT_EQ(load(), SkipListState::Available);
    EXPECT_EQ(list.patterns(), (std::vector<std::u16string>{u"*one*", u"*", u"*tw\u00F6*"}));
}

TEST_F(LoadSkipListTest, ALoadReplacesTheListOfTheLastJob) {
    list.assign({u"old", u"older"});
    folder.write("local/Settings/SkipList.dat", "one\r\n");
    load();
    EXPECT_EQ(list.patterns(), std::vector<std::u16string>{u"*one*"});
}

TEST_F(LoadSkipListTest, AFileWithoutLinesLeavesTheListAsItWas) {
    list.assign({u"old"});
    folder.write("local/Settings/SkipList.dat", "");
    EXPECT_EQ(load(), SkipListState::Available);
    EXPECT_EQ(list.patterns(), std::vector<std::u16string>{u"*old*"});
}

TEST_F(LoadSkipListTest, WithoutSharingAMissingFileLeavesListAndBox) {
    list.assign({u"old"});
    EXPECT_EQ(load(), SkipListState::Available);
    EXPECT_EQ(list.patterns(), std::vector<std::u16string>{u"*old*"});
}

TEST_F(LoadSkipListTest, NothingIsReadWhenTheBoxIsClear) {
    folder.write("local/Settings/SkipList.dat", "one\r\n");
    load(false);
    EXPECT_TRUE(list.empty());
}

TEST_F(LoadSkipListTest, WithSharingTheSharedFileReplacesTheLocalOne) {
    share();
    folder.write("share/Settings/SkipList.dat", "shared\r\n");
    folder.write("local/Settings/SkipList.dat", "local\r\n");
    EXPECT_EQ(load(), SkipListState::Available);
    EXPECT_EQ(list.patterns(), std::vector<std::u16string>{u"*shared*"});
    EXPECT_EQ(folder.read("local/Settings/SkipList.dat"), "shared\r\n");
    EXPECT_EQ(folder.read(keptName("Settings/SkipList.dat")), "local\r\n");
}

TEST_F(LoadSkipListTest, ASharedFileThatCannotBeCopiedIsAFailureAndTheLocalOneServes) {
    share();
    folder.write("share/Settings/SkipList.dat/inside", "a folder where the list should be");
    folder.write("local/Settings/SkipList.dat", "local\r\n");
    EXPECT_EQ(load(), SkipListState::Available);
    EXPECT_FALSE(fetched);
    EXPECT_EQ(list.patterns(), std::vector<std::u16string>{u"*local*"});
}

TEST_F(LoadSkipListTest, WithSharingTheLocalFileServesWhenTheShareHasNone) {
    share();
    folder.write("local/Settings/SkipList.dat", "local\r\n");
    EXPECT_EQ(load(), SkipListState::Available);
    EXPECT_TRUE(fetched);
    EXPECT_EQ(list.patterns(), std::vector<std::u16string>{u"*local*"});
    EXPECT_FALSE(exists("share/Settings/SkipList.dat"));
}

TEST_F(LoadSkipListTest, WithSharingAndNoFileAnywhereTheListIsMissing) {
    share();
    EXPECT_EQ(load(), SkipListState::Missing);
}

TEST_F(LoadSkipListTest, AvailabilityWithoutSharingSetsTheBoxFromTheSettings) {
    auto answer = checkSkipAvailable(installation);
    EXPECT_FALSE(answer.result);
    EXPECT_TRUE(answer.appliesToBox);
    EXPECT_FALSE(answer.enabled);
    EXPECT_FALSE(answer.ticked);
    EXPECT_STREQ(answer.status, "Skip list disabled - can not load list");
    folder.write("local/Settings/SkipList.dat", "");
    answer = checkSkipAvailable(installation);
    EXPECT_FALSE(answer.result) << "without sharing the result is false";
    EXPECT_TRUE(answer.enabled);
    EXPECT_FALSE(answer.ticked);
    EXPECT_EQ(answer.status, nullptr);
    installation.settings.useSkipList = 1;
    EXPECT_TRUE(checkSkipAvailable(installation).ticked);
}

TEST_F(LoadSkipListTest, AvailabilityWithSharingTellsWhetherAListExistsAndLeavesTheBox) {
    share();
    EXPECT_FALSE(checkSkipAvailable(installation).result);
    EXPECT_FALSE(checkSkipAvailable(installation).appliesToBox);
    folder.write("local/Settings/SkipList.dat", "");
    EXPECT_TRUE(checkSkipAvailable(installation).result);
    std::filesystem::remove(folder / "local/Settings/SkipList.dat");
    folder.write("share/Settings/SkipList.dat", "");
    EXPECT_TRUE(checkSkipAvailable(installation).result);
    EXPECT_FALSE(checkSkipAvailable(installation).appliesToBox);
}

}  // namespace

}  // namespace quillon::test
