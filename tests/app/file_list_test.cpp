// SPDX-License-Identifier: MIT
#include "app/file_list.h"

#include <random>

#include <gtest/gtest.h>

#include "support/list_bytes.h"
#include "support/temp_folder.h"
#include "text/list_text.h"

namespace quillon::test {

namespace {

std::vector<std::u16string> linesOf(const std::filesystem::path& path) {
    std::vector<std::u16string> lines;
    auto reader = ListReader::open(path);
    EXPECT_TRUE(reader);
    ListRow row;
    while (reader->next(row)) lines.emplace_back(row.line());
    EXPECT_FALSE(reader->error());
    return lines;
}

using Lines = std::vector<std::u16string>;

class ListReaderTest : public testing::Test {
protected:
    Lines lines(std::string_view bytes) { return linesOf(folder.write("l.csv", bytes)); }
    ListEncoding encoding(std::string_view bytes) { return ListReader::open(folder.write("l.csv", bytes))->encoding(); }

    TempFolder folder;
};

TEST_F(ListReaderTest, SixteenBitTextWithoutAMarkIsRead) {
    const std::string bytes = utf16Bytes(u"/a\u0416,1\r\n/b\xDCFF,2\r\n");
    EXPECT_EQ(lines(bytes), (Lines{u"/a\u0416,1", u"/b\xDCFF,2"}));
    EXPECT_EQ(encoding(bytes), ListEncoding::Utf16);
}

TEST_F(ListReaderTest, SixteenBitTextWithAMarkIsRead) {
    const std::string bytes = "\xFF\xFE" + utf16Bytes(u"/a,1\r\n/b,2\r\n");
    EXPECT_EQ(lines(bytes), (Lines{u"/a,1", u"/b,2"}));
    EXPECT_EQ(encoding(bytes), ListEncoding::Utf16WithMark);
}

TEST_F(ListReaderTest, EightBitTextIsReadByThePage) {
    const std::string bytes = "C:\\a\xE4\x80,1\r\nC:\\b,2\r\n";
    EXPECT_EQ(lines(bytes), (Lines{u"C:\\a\u00E4\u20AC,1", u"C:\\b,2"}));
    EXPECT_EQ(encoding(bytes), ListEncoding::Page);
}

TEST_F(ListReaderTest, ATextOfForeignLettersIsStillSixteenBit) {
    EXPECT_EQ(encoding(utf16Bytes(u"\u4E2D\u6587\u4E2D\u6587,")), ListEncoding::Utf16);
}

TEST_F(ListReaderTest, AZeroByteInAnEightBitListLeavesItEightBit) {
    std::string bytes = "/a,1\r\n/b" + std::string(3, '\0') + ",2\r\n";
    EXPECT_EQ(encoding(bytes), ListEncoding::Page);
    EXPECT_EQ(lines(bytes), (Lines{u"/a,1", std::u16string(u"/b\0\0\0,2", 7)}));
}

// The bytes of U+0A0D are the line end of 8-bit text, and forty of them outweigh all that a row has besides its name.
TEST_F(ListReaderTest, NamesFullOfTheLineEndOfEightBitTextLeaveAListSixteenBit) {
    for (const std::size_t count : {1U, 20U, 40U, 1300U}) {
        const std::u16string row = u"/r/" + std::u16string(count, u'\u0A0D') + u".doc,15/11/2026, 600, 32;Ab9x,Bad";
        EXPECT_EQ(lines(utf16Bytes(row + u"\r\n" + row + u"\r\n")), (Lines{row, row})) << count;
        EXPECT_EQ(lines(utf16Bytes(row)), Lines{row}) << count << ": a list that was cut in its first row";
        EXPECT_EQ(encoding(utf16Bytes(row)), ListEncoding::Utf16) << count;
    }
}

TEST_F(ListReaderTest, NamesWhoseCharactersBeginWithAZeroByteLeaveAListSixteenBit) {
    const std::u16string row = u"/r/" + std::u16string(80, u'\u4E00') + u".doc,15/11/2026, 600, 32;Ab9x";
    EXPECT_EQ(lines(utf16Bytes(row)), Lines{row});
}

TEST_F(ListReaderTest, LongRunsOfZerosLeaveAnEightBitListEightBit) {
    const std::string row = "/r/a.doc,15/11/2026, 600, 32;Ab9x,Header OK\r\n";
    for (const std::size_t zeros : {511U, 512U, 4096U, 30000U}) {
        std::string bytes;
        while (bytes.size() < 20000) bytes += row;
        bytes.replace(1024, zeros, std::string(zeros, '\0'));
        EXPECT_EQ(encoding(bytes), ListEncoding::Page) << zeros;
    }
}

TEST_F(ListReaderTest, WhoeverHasWrittenAListNeedsNoSigns) {
    const auto path = folder.write("l.csv", utf16Bytes(std::u16string(9, u'\u0A0D')));
    EXPECT_EQ(ListReader::open(path)->encoding(), ListEncoding::Page) << "there is no sign of anything else";
    auto reader = ListReader::open(path, ListEncoding::Utf16);
    ListRow row;
    ASSERT_TRUE(reader->next(row));
    EXPECT_EQ(row.line(), std::u16string(9, u'\u0A0D'));
    EXPECT_FALSE(reader->next(row));
}

TEST_F(ListReaderTest, ALineEndCutInHalfAtTheEndIsNone) {
    EXPECT_EQ(lines(utf16Bytes(u"a\r\nb\r")), (Lines{u"a", u"b"}));
    EXPECT_EQ(lines(utf16Bytes(u"a\r\nb\r\n").substr(0, 11)), (Lines{u"a", u"b"}));
    EXPECT_EQ(lines("a\rb\r"), (Lines{u"a\rb"}));
}

TEST_F(ListReaderTest, LinesEndInLfOrCrLfAndTheLastNeedsNoEnd) {
    EXPECT_EQ(lines(utf16Bytes(u"a\r\nb\nc")), (Lines{u"a", u"b", u"c"}));
    EXPECT_EQ(lines("a\r\nb\nc"), (Lines{u"a", u"b", u"c"}));
}

TEST_F(ListReaderTest, BlankLinesAreLines) {
    EXPECT_EQ(lines(utf16Bytes(u"\r\na\r\n\r\n")), (Lines{u"", u"a", u""}));
}

TEST_F(ListReaderTest, AnEmptyListHasNoLines) {
    EXPECT_EQ(lines(""), Lines{});
    EXPECT_EQ(lines("\xFF\xFE"), Lines{});
}

TEST_F(ListReaderTest, AnOddByteAtTheEndIsDropped) {
    EXPECT_EQ(lines(utf16Bytes(u"a,1\r\nb,2\r\n") + "x"), (Lines{u"a,1", u"b,2"}));
    EXPECT_EQ(lines(utf16Bytes(u"a,1\r\nb,") + "2"), (Lines{u"a,1", u"b,"}));
}

TEST_F(ListReaderTest, LinesAreWholeWhereverTheReadsAreCut) {
    for (const std::size_t length : {32766U, 32767U, 32768U, 32769U, 65535U, 65536U, 65537U, 200000U}) {
        const std::u16string longLine(length, u'x');
        for (const char* mark : {"", "\xFF\xFE"})
            EXPECT_EQ(lines(mark + utf16Bytes(longLine + u"\r\nnext\r\n")), (Lines{longLine, u"next"})) << length;
        EXPECT_EQ(lines(std::string(length, 'x') + "\r\nnext\r\n"), (Lines{longLine, u"next"})) << length;
    }
}

TEST_F(ListReaderTest, ALineBeyondAMillionCharactersComesInPieces) {
    const std::u16string endless(2'500'000, u'x');
    auto reader = ListReader::open(folder.write("l.csv", utf16Bytes(endless + u"\r\nnext\r\n")));
    std::size_t total = 0;
    std::u16string last;
    ListRow row;
    while (reader->next(row)) {
        EXPECT_LT(row.line().size(), 1'200'000U) << "memory is bounded";
        last = row.line();
        total += last.size();
    }
    EXPECT_EQ(total, endless.size() + 4);
    EXPECT_EQ(last, u"next");
}

TEST_F(ListReaderTest, AMissingListAndAFolderAreFailures) {
    EXPECT_EQ(ListReader::open(folder / "missing.csv").error().kind, ErrorKind::NotFound);
    EXPECT_FALSE(ListReader::open(folder.path()));
}

class ListWriterTest : public testing::Test {
protected:
    TempFolder folder;
};

TEST_F(ListWriterTest, RowsAreTheirCodeUnitsWithoutAMark) {
    auto writer = ListWriter::create(folder / "l.csv");
    ASSERT_TRUE(writer);
    EXPECT_TRUE(writer->write(ListRow(u"/a\u0416\xDC0A,1")));
    EXPECT_EQ(folder.read("l.csv"), utf16Bytes(u"/a\u0416\xDC0A,1\r\n")) << "a row is in the file when it is written";
    EXPECT_TRUE(writer->write(ListRow(u"/b,2")));
    EXPECT_TRUE(writer->close());
    EXPECT_EQ(folder.read("l.csv"), utf16Bytes(u"/a\u0416\xDC0A,1\r\n/b,2\r\n"));
}

TEST_F(ListWriterTest, OtherEncodingsAreKeptForARetest) {
    auto marked = ListWriter::create(folder / "m.csv", ListEncoding::Utf16WithMark);
    EXPECT_TRUE(marked->write(ListRow(u"a")));
    EXPECT_EQ(folder.read("m.csv"), "\xFF\xFE" + utf16Bytes(u"a\r\n"));
    auto page = ListWriter::create(folder / "p.csv", ListEncoding::Page);
    EXPECT_TRUE(page->write(ListRow(u"\u00E4\u20AC")));
    EXPECT_EQ(folder.read("p.csv"), "\xE4\x80\r\n");
}

TEST_F(ListWriterTest, AListIsCreatedAnew) {
    folder.write("l.csv", "old");
    EXPECT_TRUE(ListWriter::create(folder / "l.csv"));
    EXPECT_EQ(folder.read("l.csv"), "");
    EXPECT_FALSE(ListWriter::create(folder / "no/l.csv"));
}

TEST_F(ListWriterTest, EveryNameRoundTripsThroughAList) {
    std::mt19937 random(7);
    std::vector<std::string> names;
    auto writer = ListWriter::create(folder / "l.csv");
    for (int i = 0; i < 20000; ++i) {
        std::string name;
        for (std::size_t length = 1 + random() % 40; length > 0; --length) {
            const char c = static_cast<char>(random() % 255 + 1);
            name.push_back(c == '/' ? ',' : c);
        }
        names.push_back("/" + name);
        ASSERT_TRUE(writer->write(ListRow(toListText(names.back()) + u",15/11/2026, 1, 32;Ab9x")));
    }
    const auto lines = linesOf(folder / "l.csv");
    ASSERT_EQ(lines.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto comma = lines[i].find(u',');
        ASSERT_EQ(lines[i].substr(comma), u",15/11/2026, 1, 32;Ab9x");
        ASSERT_EQ(toNative(std::u16string_view(lines[i]).substr(0, comma)), names[i]);
    }
}

}  // namespace

}  // namespace quillon::test
