// SPDX-License-Identifier: MIT
#include "testing/report_messages.h"

#include <gtest/gtest.h>

#include "support/fake_surroundings.h"
#include "testing/list_folders.h"

namespace quillon::test {

namespace {

const std::string kTenLines = "m1\r\nm2\r\nm3\r\nm4\r\nm5\r\nm6\r\nm7\r\nm8\r\nm9\r\nm10 \r\n";

class ReportMessagesTest : public ListFolders {
protected:
    void load() { loadReportMessages(installation, fake.dialogs, kept, messages); }

    ReportMessages messages;
};

TEST_F(ReportMessagesTest, AtFirstAllTextsAreEmpty) {
    for (const auto& text : messages.values) EXPECT_EQ(text, u"");
}

TEST_F(ReportMessagesTest, TheFallbackTextsAreThese) {
    const auto texts = ReportMessages::fallback().values;
    const std::array<std::u16string, 10> expected = {u"Header OK",
                                                     u"Header Corrupt",
                                                     u"No Extension",
                                                     u"Unknown or ambiguous file type",
                                                     u"File encrypted",
                                                     u"Access error",
                                                     u"File too small to test (<512 bytes)",
                                                     u"File is zero bytes",
                                                     u"Invalid File Name",
                                                     u"Appears to be of file type: "};
    EXPECT_EQ(texts, expected);
}

TEST_F(ReportMessagesTest, TenLinesAreTheMessagesInOrder) {
    folder.write("local/Settings/Errors.dat", kTenLines);
    load();
    EXPECT_EQ(messages[Grade::Good], u"m1");
    EXPECT_EQ(messages[Grade::Corrupt], u"m2");
    EXPECT_EQ(messages[Grade::NoExtension], u"m3");
    EXPECT_EQ(messages[Grade::Unknown], u"m4");
    EXPECT_EQ(messages[Grade::Encrypted], u"m5");
    EXPECT_EQ(messages[Grade::AccessError], u"m6");
    EXPECT_EQ(messages[Grade::TooSmall], u"m7");
    EXPECT_EQ(messages[Grade::ZeroBytes], u"m8");
    EXPECT_EQ(messages[Grade::InvalidName], u"m9");
    EXPECT_EQ(messages[Grade::CommonHeader], u"m10 ") << "lines are taken whole";
}

TEST_F(ReportMessagesTest, AFileOfNineLinesGivesTheTenFallbackTexts) {
    folder.write("local/Settings/Errors.dat", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n");
    load();
    EXPECT_EQ(messages, ReportMessages::fallback());
}

TEST_F(ReportMessagesTest, AMissingOrEmptyFileGivesTheFallbackTexts) {
    load();
    EXPECT_EQ(messages, ReportMessages::fallback());
    messages = {};
    folder.write("local/Settings/Errors.dat", "");
    load();
    EXPECT_EQ(messages, ReportMessages::fallback());
}

TEST_F(ReportMessagesTest, LinesBehindTheTenthAreIgnoredAndTheTenthNeedsNoEnd) {
    folder.write("local/Settings/Errors.dat", kTenLines + "m11\r\n");
    load();
    EXPECT_EQ(messages[Grade::CommonHeader], u"m10 ");
    folder.write("local/Settings/Errors.dat", "a\nb\nc\nd\ne\nf\ng\nh\ni\nj");
    load();
    EXPECT_EQ(messages[Grade::CommonHeader], u"j");
}

TEST_F(ReportMessagesTest, EmptyLinesAreEmptyTexts) {
    folder.write("local/Settings/Errors.dat", "\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n");
    load();
    EXPECT_EQ(messages, ReportMessages());
}

TEST_F(ReportMessagesTest, PageBytesBecomeTheirCharacters) {
    folder.write("local/Settings/Errors.dat", "\x80 \xE4\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10\r\n");
    load();
    EXPECT_EQ(messages[Grade::Good], u"\u20AC \u00E4");
}

TEST_F(ReportMessagesTest, WithoutSharingTheShareIsNotLookedAt) {
    folder.write("share/Settings/Errors.dat", kTenLines);
    load();
    EXPECT_EQ(messages, ReportMessages::fallback());
    EXPECT_FALSE(exists("local/Settings/Errors.dat"));
}

TEST_F(ReportMessagesTest, WithSharingTheSharedFileReplacesTheLocalOne) {
    share();
    folder.write("share/Settings/Errors.dat", kTenLines);
    folder.write("local/Settings/Errors.dat", "old");
    load();
    EXPECT_EQ(messages[Grade::Good], u"m1");
    EXPECT_EQ(folder.read("local/Settings/Errors.dat"), kTenLines);
    EXPECT_EQ(folder.read("share/Settings/Errors.dat"), kTenLines);
    EXPECT_EQ(folder.read(keptName("Settings/Errors.dat")), "old") << "the old bytes are not gone";
}

TEST_F(ReportMessagesTest, WithSharingAMissingSharedFileIsRestoredFromTheLocalOne) {
    share();
    folder.write("local/Settings/Errors.dat", kTenLines);
    load();
    EXPECT_EQ(messages[Grade::Good], u"m1");
    EXPECT_EQ(folder.read("share/Settings/Errors.dat"), kTenLines);
}

TEST_F(ReportMessagesTest, WithSharingAndNoFileAnywhereABoxIsShownAndTheTextsStay) {
    share();
    fake.dialogs.expectBox(
        "Error",
        "The report messages list can not be loaded. You will be unable to use this to test files. "
        "Please either copy the file back to the network share or application folders or contact tech "
        "support.",
        BoxAnswer::Ok, BoxStyle::Critical, BoxButtons::Ok);
    load();
    EXPECT_EQ(messages, ReportMessages()) << "at start-up that means empty";
    messages[Grade::Good] = u"was here";
    fake.dialogs.expectBox(
        "Error",
        "The report messages list can not be loaded. You will be unable to use this to test files. "
        "Please either copy the file back to the network share or application folders or contact tech "
        "support.");
    load();
    EXPECT_EQ(messages[Grade::Good], u"was here");
}

TEST_F(ReportMessagesTest, AShareThatCannotTakeTheFileGivesTheFallbackTexts) {
    share();
    folder.write("local/Settings/Errors.dat", kTenLines);
    std::filesystem::remove_all(folder / "share");
    load();
    EXPECT_EQ(messages, ReportMessages::fallback()) << "any failure on the way gives all ten, without a word";
}

TEST_F(ReportMessagesTest, ASharedFileOfNineLinesGivesTheFallbackTexts) {
    share();
    folder.write("share/Settings/Errors.dat", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n");
    folder.write("local/Settings/Errors.dat", kTenLines);
    load();
    EXPECT_EQ(messages, ReportMessages::fallback());
}

}  // namespace

}  // namespace quillon::test
