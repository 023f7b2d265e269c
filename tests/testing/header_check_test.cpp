// SPDX-License-Identifier: MIT
#include "testing/header_check.h"

#include "testing/testing_fixture.h"

namespace quillon::test {

namespace {

using enum Grade;

class CheckFileTest : public HeaderFixture {};

// --- the row decides ---

TEST_F(CheckFileTest, AFileOf511BytesIsTooSmallAndOneOf512IsTested) {
    termFile("abc", "1,XX,T\r\n");
    heads.files["/s/f"] = "XX";
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 511, 32;Ab9x", u"abc"), u"File too small to test (<512 bytes)");
    EXPECT_TRUE(raised({TooSmall}));
    EXPECT_TRUE(heads.asked.empty());
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 512, 32;Ab9x", u"abc"), u"Header OK");
    EXPECT_TRUE(raised({kTested, Good}));
}

TEST_F(CheckFileTest, ARowOfSizeZeroIsZeroBytesThoughTheFileHasGrown) {
    termFile("abc", "1,XX,T\r\n");
    heads.files["/s/f"] = "XX";
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 0, 32;Ab9x", u"abc"), u"File is zero bytes");
    EXPECT_TRUE(raised({ZeroBytes}));
    EXPECT_TRUE(heads.asked.empty());
}

TEST_F(CheckFileTest, TheSizeIsReadLeniently) {
    termFile("abc", "0,,T\r\n");
    heads.files["/s/f"] = "";
    const auto withSize = [this](const std::u16string& size) { return gradeRow(u"/s/f,," + size + u", 32;", u"abc"); };
    EXPECT_EQ(withSize(u"nonsense"), u"File is zero bytes");
    EXPECT_EQ(withSize(u""), u"File is zero bytes");
    EXPECT_EQ(withSize(u"  5 1 2bytes"), u"Header OK") << "blanks are skipped wherever they stand";
    EXPECT_EQ(withSize(u"511.9"), u"File too small to test (<512 bytes)");
    EXPECT_EQ(withSize(u"0.00004"), u"File is zero bytes") << "four decimals are held";
    EXPECT_EQ(withSize(u"0.0001"), u"File too small to test (<512 bytes)");
    EXPECT_EQ(withSize(u"-600"), u"File too small to test (<512 bytes)");
    EXPECT_EQ(withSize(u" 6000000000"), u"Header OK");
}

TEST_F(CheckFileTest, AttributeValue16416IsEncryptedAndTheFileIsNotTouched) {
    termFile("abc", "1,XX,T\r\n");
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 600, 16416;Ab9x", u"abc"), u"File encrypted");
    EXPECT_TRUE(raised({Encrypted}));
    EXPECT_TRUE(heads.asked.empty());
}

TEST_F(CheckFileTest, AttributeValue8224IsNotEncrypted) {
    termFile("abc", "1,XX,T\r\n");
    heads.files["/s/f"] = "XX";
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 600, 8224;Ab9x", u"abc"), u"Header OK");
}

TEST_F(CheckFileTest, AnAttributeValueAbove16384IsEncryptedWhateverItsBits) {
    EXPECT_EQ(gradeRow(u"/s/f,, 600, 32768;Ab9x", u"abc"), u"File encrypted") << "the bit itself is not set";
    EXPECT_EQ(gradeRow(u"/s/f,, 600, 16384;Ab9x", u"abc"), u"File encrypted");
    EXPECT_EQ(gradeRow(u"/s/f,, 600, 16383;Ab9x", u"abc"), u"Unknown or ambiguous file type");
}

TEST_F(CheckFileTest, ThePartBehindTheSemicolonIsNotLookedAt) {
    EXPECT_EQ(gradeRow(u"/s/f,, 600, 32;99999", u"abc"), u"Unknown or ambiguous file type");
    EXPECT_EQ(gradeRow(u"/s/f,, 600,99999", u"abc"), u"File encrypted") << "no semicolon: the whole field";
}

TEST_F(CheckFileTest, ZeroLengthThenSmallThenEncryptedThenUnreadable) {
    termFile("abc", "1,XX,T\r\n");
    EXPECT_EQ(gradeRow(u"/gone,, 0, 16384;", u"abc"), u"File is zero bytes");
    EXPECT_EQ(gradeRow(u"/gone,, 5, 16384;", u"abc"), u"File too small to test (<512 bytes)");
    EXPECT_EQ(gradeRow(u"/gone,, 600, 16384;", u"abc"), u"File encrypted");
    EXPECT_EQ(gradeRow(u"/gone,, 600, 32;", u"abc"), u"Access error");
}

TEST_F(CheckFileTest, ARowWithTooFewFieldsFailsInTheStepThatNeedsThem) {
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026", u"abc"), u"<failure>");
    EXPECT_EQ(lastError.kind, ErrorKind::Subscript);
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 600", u"abc"), u"<failure>");
    EXPECT_TRUE(raised({}));
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 0", u"abc"), u"File is zero bytes")
        << "the size decides before field 3 is needed";
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 1", u"abc"), u"File too small to test (<512 bytes)");
}

TEST_F(CheckFileTest, AFifthFieldIsIgnored) {
    termFile("abc", "1,XX,T\r\n");
    heads.files["/s/f"] = "XX";
    EXPECT_EQ(gradeRow(u"/s/f,15/11/2026, 600, 32;Ab9x,Header Corrupt", u"abc"), u"Header OK");
}

TEST_F(CheckFileTest, ThePathIsReadWithCommasAndEscapedBytesRestored) {
    termFile("abc", "1,XX,T\r\n");
    heads.files["/s/a,b\n\xFF.abc"] = "XX";
    EXPECT_EQ(gradeRow(u"/s/a>b\xDC0A\xDCFF.abc,, 600, 32;", u"abc"), u"Header OK");
    EXPECT_EQ(heads.asked, std::vector<std::string>{"/s/a,b\n\xFF.abc"});
}

// --- the outcome table ---

TEST_F(CheckFileTest, ATermThatMatchesIsGoodAndTheCommonListIsNotConsulted) {
    termFile("abc", "1,XX,T\r\n");
    EXPECT_EQ(grade("XX rest"), u"Header OK");
    EXPECT_TRUE(raised({kTested, Good}));
    commonHeaders({"1,XX,T,Something"});
    EXPECT_EQ(grade("XX rest"), u"Header OK") << "a term match always beats a common header";
    EXPECT_TRUE(raised({kTested, Good}));
}

TEST_F(CheckFileTest, NoTermMatchAndACommonMatchIsTheCompositeText) {
    termFile("abc", "1,XX,T\r\n");
    commonHeaders({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK rest"), u"Appears to be of file type: : Zip archive");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
}

TEST_F(CheckFileTest, NoMatchAnywhereIsCorrupt) {
    termFile("abc", "1,XX,T\r\n");
    commonHeaders({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("neither"), u"Header Corrupt");
    EXPECT_TRUE(raised({kTested, Corrupt}));
}

TEST_F(CheckFileTest, WithTheBoxClearTheCommonListIsNotConsulted) {
    termFile("abc", "1,XX,T\r\n");
    commonHeaders({"1,PK,T,Zip archive"});
    host.common = false;
    EXPECT_EQ(grade("PK rest"), u"Header Corrupt");
    EXPECT_TRUE(raised({kTested, Corrupt}));
}

TEST_F(CheckFileTest, WithoutATermFileAndWithTheBoxClearAFileIsUnknownAndNotOpened) {
    EXPECT_EQ(grade("anything"), u"Unknown or ambiguous file type");
    EXPECT_TRUE(raised({Unknown})) << "neither the tested nor the access error counter moves";
    EXPECT_TRUE(heads.asked.empty());
}

TEST_F(CheckFileTest, WithoutATermFileACommonMatchIsTheCompositeText) {
    commonHeaders({"0,PK,T,Zip archive"});
    EXPECT_EQ(grade("  PK rest"), u"Appears to be of file type: : Zip archive");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
}

TEST_F(CheckFileTest, WithoutATermFileAndWithoutACommonMatchAFileIsUnknown) {
    commonHeaders({"0,PK,T,Zip archive"});
    EXPECT_EQ(grade("neither"), u"Unknown or ambiguous file type");
    EXPECT_TRUE(raised({kTested, Unknown}));
}

TEST_F(CheckFileTest, AnEmptyTermFileMakesAKnownExtensionWithoutTerms) {
    termFile("abc", "");
    EXPECT_EQ(grade("anything"), u"Header Corrupt") << "box clear";
    EXPECT_TRUE(raised({kTested, Corrupt}));
    commonHeaders({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK"), u"Appears to be of file type: : Zip archive");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
    EXPECT_EQ(grade("neither"), u"Header Corrupt");
    EXPECT_TRUE(raised({kTested, Corrupt}));
}

TEST_F(CheckFileTest, AnExtensionWithoutATermFileIsUnknownEvenIfTheFileCannotBeOpened) {
    EXPECT_EQ(gradeRow(u"/gone,, 600, 32;", u"abc"), u"Unknown or ambiguous file type");
    EXPECT_TRUE(raised({Unknown}));
}

TEST_F(CheckFileTest, AnUnopenableFileIsAnAccessErrorWithALogRow) {
    termFile("abc", "1,XX,T\r\n");
    EXPECT_EQ(gradeRow(u"/s/go>ne.abc,, 600, 32;", u"abc"), u"Access error");
    EXPECT_TRUE(raised({AccessError})) << "the tested counter stays as it was";
    EXPECT_EQ(host.logged, std::vector<std::string>{"Access Error : /s/go,ne.abc"});
}

TEST_F(CheckFileTest, WithTheBoxCheckedAnUnopenableFileOfUnknownTypeIsAnAccessError) {
    commonHeaders({"0,PK,T,Zip archive"});
    EXPECT_EQ(gradeRow(u"/gone,, 600, 32;", u"abc"), u"Access error");
    EXPECT_TRUE(raised({AccessError}));
}

TEST_F(CheckFileTest, AShrunkenFileIsTestedAgainstBlanks) {
    termFile("abc", "3,  ,T\r\n");
    EXPECT_EQ(grade("ab"), u"Header OK") << "the bytes that could not be read are blanks";
    termFile("abd", "512, ,T\r\n");
    EXPECT_EQ(grade("ab", u"abd"), u"Header OK");
}

TEST_F(CheckFileTest, TheFirstRecordInFileOrderDecides) {
    termFile("abc", "-1,XX,T\r\n1,XX,T\r\n");
    EXPECT_EQ(grade("XX"), u"Unknown or ambiguous file type");
    termFile("abd", "1,XX,T\r\n-1,XX,T\r\n");
    EXPECT_EQ(grade("XX", u"abd"), u"Header OK");
}

// --- the composite text ---

TEST_F(CheckFileTest, TheCompositeTextHasNoSeparatorForAFixedPositionWithoutATermFile) {
    commonHeaders({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK"), u"Appears to be of file type:Zip archive");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
}

TEST_F(CheckFileTest, TheCompositeTextHasASeparatorInTheOtherThreeCases) {
    termFile("abc", "1,never,T\r\n");
    commonHeaders({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK", u"abc"), u"Appears to be of file type: : Zip archive");
    commonHeaders({"0,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK", u"abc"), u"Appears to be of file type: : Zip archive");
    EXPECT_EQ(grade("PK", u"none"), u"Appears to be of file type: : Zip archive");
}

TEST_F(CheckFileTest, MessageTenLosesTrailingBlanksAndTheDescriptionItsLeadingOnes) {
    messages[Grade::CommonHeader] = u"  Type of   ";
    termFile("abc", "1,never,T\r\n");
    commonHeaders({"1,PK,T,   Zip archive  "});
    EXPECT_EQ(grade("PK", u"abc"), u"  Type of : Zip archive  ");
    EXPECT_EQ(grade("PK", u"none"), u"  Type ofZip archive  ");
    commonHeaders({"0,PK,T,   Zip archive  "});
    EXPECT_EQ(grade("PK", u"none"), u"  Type of : Zip archive  ");
}

TEST_F(CheckFileTest, AnEmptyDescriptionIsADescription) {
    commonHeaders({"1,PK,T,"});
    EXPECT_EQ(grade("PK"), u"Appears to be of file type:");
}

// --- the failure table ---

TEST_F(CheckFileTest, AnEmptyLineInATermFileGradesGood) {
    termFile("abc", "1,never,T\r\n\r\n1,never,T\r\n");
    EXPECT_EQ(grade("anything"), u"Header OK");
    EXPECT_TRUE(raised({kTested, Good}));
}

TEST_F(CheckFileTest, ALineWithoutACommaInATermFileGradesGood) {
    termFile("abc", "nocomma\r\n");
    EXPECT_EQ(grade("anything"), u"Header OK");
    termFile("abd", "1,XX,T\r\nnocomma\r\n");
    EXPECT_EQ(grade("XX", u"abd"), u"Header OK");
}

TEST_F(CheckFileTest, ATermLineOfTwoFieldsIsHexadecimal) {
    termFile("abc", "1,4D5A\r\n");
    EXPECT_EQ(grade("MZ"), u"Header OK");
    EXPECT_EQ(grade("4D5A"), u"Header Corrupt");
}

TEST_F(CheckFileTest, ANegativePositionGradesUnknown) {
    termFile("abc", "-1,MZ,T\r\n");
    EXPECT_EQ(grade("MZ"), u"Unknown or ambiguous file type");
    EXPECT_TRUE(raised({kTested, Unknown}));
    host.common = true;
    commonList.assign({"1,MZ,T,Never asked"});
    EXPECT_EQ(grade("MZ"), u"Unknown or ambiguous file type") << "the whole search is given up";
    EXPECT_TRUE(raised({kTested, Unknown}));
}

TEST_F(CheckFileTest, ANegativePositionInACommonRecordGradesUnknownThoughATermFileExists) {
    termFile("abc", "1,never,T\r\n");
    commonHeaders({"-5,MZ,T,x", "1,MZ,T,Program"});
    EXPECT_EQ(grade("MZ"), u"Unknown or ambiguous file type");
    EXPECT_TRUE(raised({kTested, Unknown}));
    EXPECT_EQ(grade("MZ", u"none"), u"Unknown or ambiguous file type");
}

TEST_F(CheckFileTest, APositionThatRoundsToZeroIsNoPosition) {
    termFile("abc", "0.4,MZ,T\r\n");
    EXPECT_EQ(grade("MZ"), u"Unknown or ambiguous file type");
    termFile("abd", "0.6,MZ,T\r\n");
    EXPECT_EQ(grade("MZ", u"abd"), u"Header OK") << "rounded to 1";
    termFile("abe", "1.5,Z,T\r\n");
    EXPECT_EQ(grade("MZ", u"abe"), u"Header OK") << "rounded to the even 2";
    termFile("abf", "2.5,Z,T\r\n");
    EXPECT_EQ(grade("MZ", u"abf"), u"Header OK") << "rounded to the even 2";
}

TEST_F(CheckFileTest, ACommonRecordWithoutADescriptionIsCommonWithoutText) {
    commonHeaders({"1,PK,T"});
    EXPECT_EQ(grade("PK"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
    termFile("abc", "1,never,T\r\n");
    EXPECT_EQ(grade("PK"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
    EXPECT_EQ(grade("neither"), u"Header Corrupt") << "a record that does not match does nothing";
}

TEST_F(CheckFileTest, ACommonRecordOfTwoFieldsIsHexadecimalAndHasNoText) {
    commonHeaders({"1,504B"});
    EXPECT_EQ(grade("PK"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
    EXPECT_EQ(grade("504B"), u"Unknown or ambiguous file type");
}

TEST_F(CheckFileTest, ACommonLineOfFewerThanTwoFieldsIsAHitWithoutText) {
    commonHeaders({"", "1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
    commonHeaders({"1,XX,T,x", "nocomma"});
    termFile("abc", "1,never,T\r\n");
    EXPECT_EQ(grade("PK"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
}

TEST_F(CheckFileTest, AnUnloadedCommonListIsAHitWithoutText) {
    host.common = true;
    EXPECT_EQ(grade("anything"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
    termFile("abc", "1,never,T\r\n");
    EXPECT_EQ(grade("anything"), u"");
    EXPECT_TRUE(raised({kTested, CommonHeader}));
}

TEST_F(CheckFileTest, ACommonPositionThatIsNoPlainNumberCountsAsZero) {
    for (const char* position : {"x", "", "1x", "1 2", "nan", "inf", "infinity", "0x1"}) {
        const std::string line = std::string(position) + ",PK,T,Zip";
        commonHeaders({line});
        EXPECT_EQ(grade("   PK", u"none"), u"Appears to be of file type: : Zip") << position;
    }
    commonHeaders({" 4 ,PK,T,Zip"});
    EXPECT_EQ(grade("   PK", u"none"), u"Appears to be of file type:Zip") << "blanks around a number are no matter";
    commonHeaders({"+4,PK,T,Zip"});
    EXPECT_EQ(grade("   PK", u"none"), u"Appears to be of file type:Zip");
}

TEST_F(CheckFileTest, ATermPositionIsReadByItsLeadingNumber) {
    termFile("abc", "4th,PK,T\r\n");
    EXPECT_EQ(grade("   PK"), u"Header OK");
    termFile("abd", "x4,PK,T\r\n");
    EXPECT_EQ(grade("         PK", u"abd"), u"Header OK") << "no number counts as 0, anywhere";
}

TEST_F(CheckFileTest, ATermFileThatCannotBeReadHasNoMatch) {
    std::filesystem::create_directory(folder / "Database/abc.dat");
    EXPECT_EQ(grade("anything"), u"Header Corrupt") << "it exists, so the extension is known";
    EXPECT_TRUE(raised({kTested, Corrupt}));
    commonHeaders({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK"), u"Appears to be of file type: : Zip archive");
}

TEST_F(CheckFileTest, TheMessagesAreThoseOfTheMoment) {
    EXPECT_EQ(grade("x"), u"Unknown or ambiguous file type");
    messages[Grade::Unknown] = u"No idea";
    EXPECT_EQ(grade("x"), u"No idea");
    messages = ReportMessages();
    EXPECT_EQ(grade("x"), u"") << "texts that were never loaded are empty";
}

TEST_F(CheckFileTest, TheBoxIsReadAtTheMomentOfTheTest) {
    commonList.assign({"1,PK,T,Zip archive"});
    EXPECT_EQ(grade("PK"), u"Unknown or ambiguous file type");
    host.common = true;
    EXPECT_EQ(grade("PK"), u"Appears to be of file type:Zip archive");
}

}  // namespace

}  // namespace quillon::test
