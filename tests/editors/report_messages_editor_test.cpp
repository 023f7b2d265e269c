// SPDX-License-Identifier: MIT
#include "editors/report_messages_editor.h"

#include <gtest/gtest.h>

#include "editors/editor_folders.h"

using namespace quillon;
using quillon::test::EditorFolders;

namespace {

constexpr const char* kLocal = "local/Settings/Errors.dat";
constexpr const char* kShared = "share/Settings/Errors.dat";

class ReportMessagesEditorTest : public testing::Test {
protected:
    EditorFolders folders;
    ReportMessages messages;
    ReportMessagesEditor editor{folders.installation, folders.dialogs, folders.kept, messages};
};

const std::array<std::string, 10> kOwnTexts{"Header OK",
                                            "Header Corrupt",
                                            "No Extension",
                                            "Unknown or ambiguous file type",
                                            "File encrypted",
                                            "Access error",
                                            "File too small to test (<512 bytes)",
                                            "File is zero length",
                                            "Bad filename",
                                            "Appears to be of file type : "};

TEST_F(ReportMessagesEditorTest, TheScreenHasItsOwnLabelsAndTexts) {
    EXPECT_EQ(editor.texts, kOwnTexts);
    const std::array<std::string, 10> labels{
        "Header OK",    "Header corrupt",         "No file extension", "Unknown file type", "File encrypted",
        "Access error", "File too small to test", "File zero bytes",   "Bad filename",      "Common Header"};
    for (std::size_t i = 0; i < labels.size(); ++i) EXPECT_EQ(kMessageFields[i].label, labels[i]) << i;
}

TEST_F(ReportMessagesEditorTest, TheTenLinesFillTheBoxesInOrder) {
    folders.folder.write(kLocal, "a\r\nb\r\n\r\nd \r\n e\r\nf\r\ng\r\nh\r\n\xE4\r\nType : \r\neleventh\r\n");
    editor.load();
    EXPECT_EQ(editor.texts,
              (std::array<std::string, 10>{"a", "b", "", "d ", " e", "f", "g", "h", "\xC3\xA4", "Type : "}));
}

TEST_F(ReportMessagesEditorTest, ACommaShiftsTheLaterBoxes) {
    folders.folder.write(kLocal, "Good, really\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\r\ni\r\nj:\r\n");
    editor.load();
    EXPECT_EQ(editor.texts, (std::array<std::string, 10>{"Good", " really", "b", "c", "d", "e", "f", "g", "h", "i"}));
}

TEST_F(ReportMessagesEditorTest, BoxesThatAreNotReachedKeepTheirTexts) {
    editor.load();
    EXPECT_EQ(editor.texts, kOwnTexts);
    folders.folder.write(kLocal, "a\r\nb\r\n");
    editor.load();
    EXPECT_EQ(editor.texts[0], "a");
    EXPECT_EQ(editor.texts[1], "b");
    EXPECT_EQ(editor.texts[2], "No Extension");
}

TEST_F(ReportMessagesEditorTest, TheSharedCopyIsNotReadAndNotWrittenWithSharingOff) {
    folders.folder.write(kShared, "x\r\n");
    editor.load();
    EXPECT_EQ(editor.texts, kOwnTexts);
    EXPECT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(kShared), "x\r\n");
}

constexpr const char* kSaved =
    "Header OK\r\nHeader Corrupt\r\nNo Extension\r\nUnknown or ambiguous file type\r\nFile encrypted\r\nAccess "
    "error\r\n"
    "File too small to test (<512 bytes)\r\nFile is zero length\r\nBad filename\r\n";

struct ColonCase {
    const char* typed;
    const char* stored;
};

TEST_F(ReportMessagesEditorTest, ACommonHeaderMessageIsStoredWithAColonAtItsEnd) {
    for (const auto& [typed, stored] : {ColonCase{"Type", "Type:"},
                                        {"Type  ", "Type:"},
                                        {"Type: ", "Type: "},
                                        {"Type:", "Type:"},
                                        {"", ":"},
                                        {"a:b", "a:b:"}}) {
        editor.texts = kOwnTexts;
        editor.texts[9] = typed;
        ASSERT_TRUE(editor.save()) << typed;
        EXPECT_EQ(folders.bytesOf(kLocal), std::string(kSaved) + stored + "\r\n") << typed;
        EXPECT_EQ(editor.texts[9], stored);
        EXPECT_EQ(toUtf8(toPage(messages[Grade::CommonHeader])), stored);
    }
}

TEST_F(ReportMessagesEditorTest, ASaveLoadsTheMessagesOfTheProgram) {
    editor.texts[0] = "Fine, fine";
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(messages[Grade::Good], u"Fine, fine");
    EXPECT_EQ(messages[Grade::ZeroBytes], u"File is zero length");
}

TEST_F(ReportMessagesEditorTest, WithSharingOnBothFilesAreWritten) {
    folders.share(true);
    editor.load();
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(kLocal), std::string(kSaved) + "Appears to be of file type : \r\n");
    EXPECT_EQ(folders.bytesOf(kShared), folders.bytesOf(kLocal));
}

TEST_F(ReportMessagesEditorTest, AFailureEndsTheSave) {
    folders.share(true);
    std::filesystem::remove_all(folders.folder / "local/Settings");
    editor.load();
    EXPECT_FALSE(editor.save());
    EXPECT_FALSE(folders.has(kShared));
    EXPECT_EQ(messages, ReportMessages{});
    EXPECT_EQ(editor.failure.rfind("Not saved : ", 0), 0U) << editor.failure;
}

TEST_F(ReportMessagesEditorTest, WithoutTheShareTheMessagesAreThoseOfTheLocalFileAndItIsSaid) {
    folders.share(true);
    std::filesystem::remove_all(folders.folder / "share");
    editor.load();
    editor.texts[0] = "Fine \xD0\xB6";
    EXPECT_FALSE(editor.save());
    EXPECT_EQ(folders.bytesOf(kLocal).substr(0, 8), "Fine ?\r\n");
    EXPECT_EQ(messages[Grade::Good], u"Fine ?");
    EXPECT_EQ(messages[Grade::CommonHeader], u"Appears to be of file type : ");
    EXPECT_EQ(editor.failure.rfind("Saved on this computer, not on the share", 0), 0U) << editor.failure;
    std::filesystem::create_directories(folders.folder / "share/Settings");
    EXPECT_TRUE(editor.save());
    EXPECT_EQ(editor.failure, "");
}

TEST_F(ReportMessagesEditorTest, AFileThatTheBoxesCouldNotShowIsKept) {
    const std::string shifted = "Good, really\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\r\ni\r\nj:\r\n";
    folders.folder.write(kLocal, shifted);
    editor.load();
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(folders.keptName("Settings/Errors.dat")), shifted);
}

}  // namespace
