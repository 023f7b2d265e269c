// SPDX-License-Identifier: MIT
// Lists made on other systems, and damaged ones: the viewer shows what it can, and a retest loses nothing.
#include "text/page_text.h"
#include "viewer/viewer_fixture.h"

namespace quillon::test {
namespace {

using Texts = std::vector<std::u16string>;

class ForeignListTest : public ViewerTest {
protected:
    struct Form {
        const char* name;
        std::string (*bytes)(std::u16string_view rows);
    };
    static constexpr Form kForms[] = {
        {"16-bit", [](std::u16string_view rows) { return utf16Bytes(rows); }},
        {"16-bit with a mark", [](std::u16string_view rows) { return "\xFF\xFE" + utf16Bytes(rows); }},
        {"8-bit", [](std::u16string_view rows) { return toPage(rows).bytes; }},
    };

    void filterBytes(const std::string& bytes) {
        folders.folder.write("local/J1.csv", bytes);
        open(u"Header Corrupt");
        viewer.filter();
    }
    [[nodiscard]] std::string bytesNow() const { return folders.folder.read("local/J1.csv"); }
    [[nodiscard]] std::string keptBytes() const { return folders.folder.read(folders.keptName("J1.csv")); }
};

TEST_F(ForeignListTest, PathsOfWindowsShowTheirExtensionsAndAreGradedAccessErrors) {
    folders.folder.write("local/Database/jpg.dat", "1,FFD8,H\r\n");
    for (const Form& form : kForms) {
        const auto rows = [](std::u16string_view result) {
            return listRow(u"C:\\disk.one\\Caf\u00E9.JPG", result) + listRow(u"C:\\disk.one\\none", u"Header Corrupt");
        };
        filterBytes(form.bytes(rows(u"Header Corrupt")));
        ASSERT_EQ(paths(), (Texts{u"C:\\disk.one\\Caf\u00E9.JPG", u"C:\\disk.one\\none"})) << form.name;
        EXPECT_EQ(viewer.state.rows.extension(viewer.state.rows.idAt(0)), u"JPG");
        EXPECT_EQ(viewer.state.extensions.entries(), (Texts{u"", u"jpg"}));
        viewer.selectRow(0);
        EXPECT_EQ(viewer.state.status, "jpg = 1");
        folders.fake.dialogs.expectBox("Source not found",
                                       "The folder of these files is not there:\r\nC:\\disk.one\r\n\r\nA retest now "
                                       "grades each of them as an access error. Connect the source first. Do you want "
                                       "to retest all the same?",
                                       BoxAnswer::Yes);
        viewer.retest();
        EXPECT_EQ(bytesNow(), form.bytes(rows(u"Access error"))) << form.name;
        EXPECT_EQ(viewer.state.rows.count(), 2) << form.name;
    }
}

TEST_F(ForeignListTest, RowsThatTheListLosesByTheRulesStandUnderKept) {
    const std::u16string good = listRow(u"/s/a.qlx", u"Header Corrupt");
    const std::u16string four = u"/s/b.qlx,15/11/2026, 600, 32;Ab9x\r\n";
    const std::u16string six = u"/s/c.qlx,15/11/2026, 600, 32;Ab9x,Header Corrupt,more\r\n";
    const std::u16string overlong = std::u16string(1'050'000, u'p') + u".qlx,15/11/2026\r\n";
    const std::u16string before = good + four + u"\r\n" + overlong + six + good;
    const std::u16string after = good + good;
    int second = 0;
    for (const Form& form : kForms) {
        folders.fake.clock.time.second = ++second;
        const std::string bytes = form.bytes(before);
        filterBytes(bytes);
        EXPECT_EQ(viewer.state.rows.count(), 2) << form.name;
        viewer.retest();
        EXPECT_EQ(bytesNow(), form.bytes(after)) << form.name;
        EXPECT_EQ(folders.folder.read("local/Kept/2026-11-15 10.20.0" + std::to_string(second) + "/J1.csv"), bytes)
            << form.name;
    }
}

TEST_F(ForeignListTest, ARowOfMoreThanAMillionCharactersDoesNotStopTheOthers) {
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    const std::u16string taught = makeFile("good.qlx", "QLX!");
    const std::u16string overlong = listRow(u"/" + std::u16string(1'050'000, u'p') + u".jpg", u"Header Corrupt");
    const std::string bytes = utf16Bytes(overlong + listRow(taught, u"Header Corrupt"));
    filterBytes(bytes);
    ASSERT_GE(viewer.state.rows.count(), 1);
    viewer.selectRow(viewer.state.rows.shown() - 1);
    viewer.retest();
    EXPECT_TRUE(listNow().ends_with(listRow(taught, u"Header OK")));
    EXPECT_EQ(keptBytes(), bytes);
}

TEST_F(ForeignListTest, ACharacterCutInHalfAtTheEndIsPassedOver) {
    const std::u16string row = listRow(u"/s/a.qlx", u"Header Corrupt");
    const std::string bytes = utf16Bytes(row + row);
    for (std::size_t cut = 1; cut < 8; ++cut) {
        filterBytes(bytes.substr(0, bytes.size() - cut));
        const bool lineEndAlone = cut <= 2 * sizeof(char16_t);
        EXPECT_EQ(viewer.state.rows.count(), lineEndAlone ? 2 : 1) << cut;
        viewer.retest();
        const std::u16string_view last = std::u16string_view(row).substr(0, row.size() - (cut + 1) / 2);
        EXPECT_EQ(listNow(), row + (lineEndAlone ? row : std::u16string(last) + u"\r\n")) << cut;
    }
}

TEST_F(ForeignListTest, CharactersOfValueZeroDoNoHarm) {
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    const std::u16string taught = makeFile("good.qlx", "QLX!");
    const std::u16string damaged = listRow(std::u16string(u"/s/bb\0c.qlx", 11), u"Header Corrupt");
    for (const Form& form : kForms) {
        filterBytes(form.bytes(damaged + listRow(taught, u"Header Corrupt")));
        ASSERT_EQ(viewer.state.rows.count(), 2) << form.name;
        viewer.selectRow(1);
        EXPECT_EQ(viewer.state.status, "qlx = 2") << form.name;
        viewer.retest();
        EXPECT_EQ(bytesNow(), form.bytes(listRow(std::u16string(u"/s/bb\0c.qlx", 11), u"Access error") +
                                         listRow(taught, u"Header OK")))
            << form.name;
    }
}

}  // namespace
}  // namespace quillon::test
