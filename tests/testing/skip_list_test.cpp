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

struct MatchCase {
    const char* fact;
    std::vector<std::u16string> lines;
    std::u16string_view path;
    bool skipped;
};

const MatchCase kMatchCases[] = {
    {"case does not count", {u"thumbs.db"}, u"/s/a/Thumbs.DB", true},
    {"a term fits in the middle of a folder's name", {u"THUMBS.db"}, u"/s/thumbs.dbx/file", true},
    {"a term fits in the name of a folder above", {u"thumbs.db"}, u"/s/THUMBS.DB.old/z", true},
    {"a dot is no wildcard", {u"thumbs.db"}, u"/s/thumbs_db", false},
    {"letters of the page are folded", {u"\u00C4rger"}, u"/s/\u00E4RGER.txt", true},
    {"a dot and three letters fit in the middle of a name", {u".tmp"}, u"/s/a.tmp.doc", true},
    {"a dot and three letters fit in a folder's name", {u".tmp"}, u"/s/folder.tmp/a.doc", true},

    {"a bracket begins a set", {u"file[12]"}, u"/s/file1", true},
    {"a set has several members", {u"file[12]"}, u"/s/file2.txt", true},
    {"a bracket does not fit itself", {u"file[12]"}, u"/s/file[12]", false},
    {"a set may be negated", {u"file[!0-9]"}, u"/s/fileX", true},
    {"a negated range leaves its members out", {u"file[!0-9]"}, u"/s/file7", false},
    {"a set may have one member", {u"[a]"}, u"/s/a", true},

    {"a question mark is one character", {u"a?c"}, u"/s/abc", true},
    {"a question mark is not nothing", {u"a?c"}, u"/s/ac", false},
    {"a question mark alone", {u"?"}, u"x", true},
    {"a question mark needs a character", {u"?"}, u"", false},
    {"a hash is one digit", {u"img##.jpg"}, u"/s/IMG42.JPG", true},
    {"a hash is no letter", {u"img##.jpg"}, u"/s/IMG4x.JPG", false},
    {"a star inside is any run", {u"cache*.dat"}, u"/s/CACHE/one/two.dat", true},
    {"a star keeps the order", {u"cache*.dat"}, u"/s/two.dat/cache", false},

    {"an empty line fits everything", {u""}, u"/s/a", true},
    {"an empty line fits behind others", {u"never", u""}, u"/s/a", true},
    {"a comma never fits, since no path of a list holds one", {u"a,b"}, u"/s/a>b.txt", false},
    {"the comma's replacement fits", {u"a>b"}, u"/s/a>b.txt", true},
    {"a backslash fits a slash", {u"\\windows\\temp\\"}, u"/s/Windows/Temp/x", true},
    {"a slash fits a backslash", {u"/windows/temp/"}, u"\\s\\Windows\\Temp\\x", true},

    {"a pattern that is none ends the comparison", {u"open[", u"abc"}, u"/s/abc", false},
    {"an earlier pattern fits first", {u"abc", u"open["}, u"/s/abc", true},
    {"a range that runs backwards is none", {u"[z-a]", u"abc"}, u"/s/abc", false},

    {"one character", {u"z"}, u"/s/z", true},
    {"a term that overlaps itself", {u"aab"}, u"/s/aaab", true},
    {"a term of the whole path", {u"ab"}, u"ab", true},
    {"a term longer than the path", {u"ab"}, u"a", false},
    {"a term and no path", {u"ab"}, u"", false},
};

TEST(SkipListTest, APathIsSkippedByTheTermsThatFitIt) {
    for (const MatchCase& one : kMatchCases) EXPECT_EQ(skips(one.lines, one.path), one.skipped) << one.fact;
}

TEST(SkipListTest, AnEmptyListSkipsNothing) {
    SkipList list;
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(list.matches(u"/s/a"));
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
