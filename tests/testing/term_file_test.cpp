// SPDX-License-Identifier: MIT
#include "testing/term_file.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"
#include "testing/rule_line.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

HeaderTerm row(const char* offset, const char* term, const char* type) {
    return {PageText{offset}, PageText{term}, PageText{type}};
}

// --- the editors' reading and writing ---

TEST(ParseTermFileTest, ALineGivesOffsetTermAndType) {
    EXPECT_EQ(parseTermFile("1,MZ,T\r\n0,4D5A,H\r\n"),
              (std::vector<HeaderTerm>{row("1", "MZ", "T"), row("0", "4D5A", "H")}));
}

TEST(ParseTermFileTest, LinesOfFewerThanTwoFieldsAreLeftOut) {
    EXPECT_EQ(parseTermFile("\r\nnocomma\r\n1,MZ,T\r\n\r\n"), std::vector<HeaderTerm>{row("1", "MZ", "T")});
}

TEST(ParseTermFileTest, AMissingTypeIsEmptyAndFurtherFieldsAreDropped) {
    EXPECT_EQ(parseTermFile("1,MZ\r\n2,PK,T,more"), (std::vector<HeaderTerm>{row("1", "MZ", ""), row("2", "PK", "T")}));
}

TEST(ParseTermFileTest, PageBytesStayAsTheyAre) {
    EXPECT_EQ(parseTermFile("1,\xFF\x80\xE4,T\r\n"), std::vector<HeaderTerm>{row("1", "\xFF\x80\xE4", "T")});
}

TEST(SaveTermFileTest, ALineIsOffsetTermTypeWithCrLf) {
    const TempFolder folder;
    ASSERT_TRUE(saveTermFile(folder / "abc.dat", {row("1", "MZ", "T"), row("0", "4D5A", "H")}));
    EXPECT_EQ(folder.read("abc.dat"), "1,MZ,T\r\n0,4D5A,H\r\n");
    EXPECT_EQ(*loadTermFile(folder / "abc.dat"), (std::vector<HeaderTerm>{row("1", "MZ", "T"), row("0", "4D5A", "H")}));
}

TEST(SaveTermFileTest, NoRowsGiveAnEmptyFileThatStillMarksTheExtension) {
    const TempFolder folder;
    ASSERT_TRUE(saveTermFile(folder / "Database-of-its-own.dat", {}));
    EXPECT_EQ(folder.read("Database-of-its-own.dat"), "");
    ASSERT_TRUE(saveTermFile(folder / "abc.dat", {}));
    TermFiles files(folder.path());
    const SharedTerms terms = files.find(u"abc");
    ASSERT_NE(terms, nullptr);
    EXPECT_TRUE(terms->empty());
}

TEST(SaveTermFileTest, NothingElseStaysInTheDatabaseFolder) {
    const TempFolder folder;
    fs::create_directory(folder / "Database");
    ASSERT_TRUE(saveTermFile(folder / "Database/abc.dat", {row("1", "MZ", "T")}));
    EXPECT_EQ(*listEntries(folder / "Database"), std::vector<std::string>{"abc.dat"});
}

TEST(LoadTermFileTest, AMissingFileIsAFailure) {
    const TempFolder folder;
    EXPECT_EQ(loadTermFile(folder / "abc.dat").error().kind, ErrorKind::NotFound);
}

TEST(TermFilePathTest, TheExtensionIsFoldedToLowerCase) {
    const TempFolder folder;
    EXPECT_EQ(*termFilePath(folder.path(), "JPG"), folder / "jpg.dat");
    EXPECT_EQ(*termFilePath(folder.path(), "\xC3\x84"), folder / "\xC3\xA4.dat");
}

TEST(TermFilePathTest, AFileUnderAnotherCaseIsTheOneMeant) {
    const TempFolder folder;
    folder.write("JpG.DAT", "");
    EXPECT_EQ(*termFilePath(folder.path(), "jpg"), folder / "JpG.DAT");
    folder.write("jpg.dat", "");
    EXPECT_EQ(*termFilePath(folder.path(), "JPG"), folder / "jpg.dat") << "the one in lower case is the extension's";
}

TEST(TermFilePathTest, AnExtensionNeverLeadsOutOfTheFolder) {
    const TempFolder folder;
    for (const char* extension : {"../x", "a/b", "a\\b", "/etc/passwd"})
        EXPECT_EQ(termFilePath(folder.path(), extension).error().kind, ErrorKind::BadName) << extension;
    EXPECT_FALSE(termFilePath(folder.path(), std::string_view("a\0b", 3)));
    EXPECT_FALSE(termFilePath(folder.path(), std::string(252, 'x')));
    EXPECT_TRUE(termFilePath(folder.path(), std::string(251, 'x')));
}

// --- the term files that the header test holds ---

class TermFilesTest : public testing::Test {
protected:
    TermFilesTest() { fs::create_directory(folder / "Database"); }

    void put(const std::string& name, std::string_view bytes) { folder.write("Database/" + name, bytes); }

    // Gives file and folder times of long ago, so that nothing counts as changed just now.
    void age(const std::string& name) {
        ASSERT_TRUE(setModificationTime(folder / ("Database/" + name), {1'600'000'000, 0}));
        ageFolder();
    }
    void ageFolder() { ASSERT_TRUE(setModificationTime(folder / "Database", {1'600'000'000, 0})); }

    // What an extension's terms say to a file that begins with `bytes`: "unknown", "empty", or one letter a record.
    std::string answer(std::u16string_view extension, std::string_view bytes = "MZ") {
        const SharedTerms terms = files.find(extension);
        if (terms == nullptr)
            return "unknown";
        HeaderBytes head;
        head.fill(' ');
        std::copy(bytes.begin(), bytes.end(), head.begin());
        foldHeader(head);
        std::string letters;
        for (const auto& term : *terms) letters += term.match(head) == MatchResult::Yes ? 'y' : 'n';
        return letters.empty() ? "empty" : letters;
    }

    TempFolder folder;
    TermFiles files{folder / "Database"};
};

TEST_F(TermFilesTest, RecordsComeInFileOrder) {
    put("abc.dat", "1,XX,T\r\n1,MZ,T\r\n0,Z,T\r\n");
    EXPECT_EQ(answer(u"abc"), "nyy");
}

TEST_F(TermFilesTest, AFileAboveTheBoundHasNoTermsAndIsToldOnce) {
    std::vector<std::string> told;
    TermFiles telling(folder / "Database", [&told](const FileError& why) { told.push_back(why.text); });
    const std::string line = "1,MZ,T\r\n";
    put("fits.dat", line + std::string(kRuleFileLimit - line.size(), 'x'));
    put("huge.dat", line + std::string(kRuleFileLimit - line.size() + 1, '0'));
    for (int i = 0; i < 3; ++i) {
        const SharedTerms fits = telling.find(u"fits");
        ASSERT_NE(fits, nullptr);
        EXPECT_EQ(fits->size(), 2U);
        const SharedTerms huge = telling.find(u"huge");
        ASSERT_NE(huge, nullptr) << "a type that is known, as that of a file that cannot be opened";
        EXPECT_TRUE(huge->empty());
    }
    ASSERT_EQ(told.size(), 1U);
    EXPECT_NE(told.front().find("huge.dat"), std::string::npos);
}

TEST_F(TermFilesTest, LinesMayEndInLfAndTheLastOneNeedsNoEnd) {
    put("abc.dat", "1,XX,T\n1,MZ,T\n0,Z,T");
    EXPECT_EQ(answer(u"abc"), "nyy");
}

TEST_F(TermFilesTest, TheExtensionIsTakenInAnyCase) {
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    EXPECT_EQ(answer(u"ABC"), "y");
    EXPECT_EQ(answer(u"aBc"), "y");
}

TEST_F(TermFilesTest, AFileThatStandsThereInAnotherCaseIsFound) {
    put("ABC.DAT", "1,MZ,T\r\n");
    put("\xC3\x84.dat", "1,XX,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    EXPECT_EQ(answer(u"\u00E4"), "n");
    EXPECT_EQ(answer(u"\u00C4"), "n");
}

TEST_F(TermFilesTest, OfTwoFilesTheOneInLowerCaseCounts) {
    put("Abc.dat", "1,XX,T\r\n");
    put("abc.dat", "1,MZ,T\r\n");
    put("ABC.dat", "1,XX,T\r\n");
    EXPECT_EQ(answer(u"ABC"), "y");
}

TEST_F(TermFilesTest, AnEditTakesEffectAtTheNextFile) {
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    for (int i = 0; i < 50; ++i) {  // same length, and within one tick of the volume's clock
        put("abc.dat", "1,XX,T\r\n");
        ASSERT_EQ(answer(u"abc"), "n") << i;
        put("abc.dat", "1,MZ,T\r\n");
        ASSERT_EQ(answer(u"abc"), "y") << i;
    }
}

TEST_F(TermFilesTest, AnEditOfAnOldFileTakesEffectThoughItsTimeAndSizeAreKept) {
    put("abc.dat", "1,MZ,T\r\n");
    age("abc.dat");
    EXPECT_EQ(answer(u"abc"), "y");
    EXPECT_EQ(answer(u"abc"), "y");
    put("abc.dat", "1,XX,T\r\n");
    age("abc.dat");
    EXPECT_EQ(answer(u"abc"), "n");
}

TEST_F(TermFilesTest, AFileThatReplacesAnotherByRenameTakesEffect) {
    put("abc.dat", "1,MZ,T\r\n");
    age("abc.dat");
    EXPECT_EQ(answer(u"abc"), "y");
    folder.write("new", "1,XX,T\r\n");
    fs::rename(folder / "new", folder / "Database/abc.dat");
    EXPECT_EQ(answer(u"abc"), "n");
}

TEST_F(TermFilesTest, AFileThatVanishesMakesTheExtensionUnknown) {
    put("abc.dat", "1,MZ,T\r\n");
    age("abc.dat");
    EXPECT_EQ(answer(u"abc"), "y");
    fs::remove(folder / "Database/abc.dat");
    EXPECT_EQ(answer(u"abc"), "unknown");
    EXPECT_EQ(answer(u"abc"), "unknown");
}

TEST_F(TermFilesTest, AFileThatIsCreatedMakesTheExtensionKnown) {
    ageFolder();
    EXPECT_EQ(answer(u"abc"), "unknown");
    EXPECT_EQ(answer(u"abc"), "unknown");
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    put("Xyz.dat", "1,XX,T\r\n");
    EXPECT_EQ(answer(u"XYZ"), "n");
}

TEST_F(TermFilesTest, AFileThatVanishesAndComesBackInAnotherCaseIsFound) {
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    fs::remove(folder / "Database/abc.dat");
    put("ABC.dat", "1,XX,T\r\n");
    EXPECT_EQ(answer(u"abc"), "n");
}

TEST_F(TermFilesTest, WithoutADatabaseFolderNoExtensionIsKnown) {
    fs::remove_all(folder / "Database");
    for (int i = 0; i < 200; ++i) EXPECT_EQ(answer(i % 2 == 0 ? u"abc" : u"xyz"), "unknown");
}

TEST_F(TermFilesTest, ADatabaseFolderThatComesLaterIsFound) {
    fs::remove_all(folder / "Database");
    EXPECT_EQ(answer(u"abc"), "unknown");
    fs::create_directory(folder / "Database");
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
}

TEST_F(TermFilesTest, ADatabaseFolderPutInTheOldOnesPlaceIsSeenSoon) {
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    fs::rename(folder / "Database", folder / "old");
    fs::create_directory(folder / "Database");
    put("abc.dat", "1,XX,T\r\n");
    std::string seen;
    for (int i = 0; i < 100 && seen != "n"; ++i) seen = answer(u"abc");
    EXPECT_EQ(seen, "n");
}

TEST_F(TermFilesTest, ADatabaseFolderThatIsRemovedInTheMiddleKnowsNothing) {
    put("abc.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"abc"), "y");
    fs::remove_all(folder / "Database");
    for (int i = 0; i < 130; ++i) ASSERT_EQ(answer(u"abc"), "unknown") << i;
    fs::create_directory(folder / "Database");
    put("abc.dat", "1,XX,T\r\n");
    std::string seen;
    for (int i = 0; i < 100 && seen != "n"; ++i) seen = answer(u"abc");
    EXPECT_EQ(seen, "n");
}

TEST_F(TermFilesTest, ExtensionsOfAnyTextAreLookedFor) {
    put("a,b.dat", "1,MZ,T\r\n");
    put("new\nline.dat", "1,MZ,T\r\n");
    EXPECT_EQ(answer(u"a,b"), "y");
    EXPECT_EQ(answer(u"new\xDC0Aline"), "y") << "an escaped byte stands for the byte";
    EXPECT_EQ(answer(std::u16string(300, u'x')), "unknown");
    EXPECT_EQ(answer(u"\xDC00"), "unknown");
    EXPECT_EQ(answer(u"."), "unknown");
}

TEST_F(TermFilesTest, AFolderUnderTheNameOfATermFileIsAKnownExtensionWithoutTerms) {
    fs::create_directory(folder / "Database/abc.dat");
    EXPECT_EQ(answer(u"abc"), "empty");
}

TEST_F(TermFilesTest, ManyExtensionsOneAfterTheOtherKeepTheirAnswers) {
    put("abc.dat", "1,MZ,T\r\n");
    for (int i = 0; i < 20000; ++i) {
        std::u16string extension = u"e";
        for (const char c : std::to_string(i)) extension.push_back(static_cast<char16_t>(c));
        ASSERT_EQ(answer(extension), "unknown");
        if (i % 1000 == 0) {
            ASSERT_EQ(answer(u"abc"), "y");
        }
    }
}

}  // namespace

}  // namespace quillon::test
