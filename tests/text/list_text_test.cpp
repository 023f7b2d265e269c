// SPDX-License-Identifier: MIT
// List text: ordinary names look as anyone expects, and every name that the system can hold comes back.
#include "text/list_text.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "text/fields.h"

namespace quillon {
namespace {

std::u16string unit(unsigned value) {
    return {static_cast<char16_t>(value)};
}

struct Form {
    std::string native;
    std::u16string list;
};

struct Pair {
    std::string name;
    std::string shown;
};

// A valid name in a script or with a sign that people use stands in the list as itself.
TEST(ListText, OrdinaryNamesLookAsAnyoneExpects) {
    const std::array<Form, 8> forms = {{
        {"/data/photo.jpg", u"/data/photo.jpg"},
        {"caf\xC3\xA9", u"caf\u00E9"},
        {"\xD0\x96\xD0\xB0", u"\u0416\u0430"},
        {"\xE6\x97\xA5\xE6\x9C\xAC.txt", u"\u65E5\u672C.txt"},
        {"\xF0\x9F\x98\x80", u"\U0001F600"},
        {" leading blank", u" leading blank"},
        {"-rf", u"-rf"},
        {"a;b|c\"d:e*f?g<h", u"a;b|c\"d:e*f?g<h"},
    }};
    for (const auto& form : forms) {
        EXPECT_EQ(toListText(form.native), form.list) << form.native;
        EXPECT_EQ(toNative(form.list), form.native) << form.native;
    }
}

TEST(ListText, ACommaStandsAsTheGreaterSign) {
    EXPECT_EQ(toListText("a,b,c.txt"), u"a>b>c.txt");
    EXPECT_EQ(toNative(u"a>b>c.txt"), "a,b,c.txt");
    EXPECT_EQ(withCommas(u"a>b>c.txt"), u"a,b,c.txt");
}

// What a row would take for a separator or a line end, and what is not UTF-8, becomes U+DC00 + byte.
TEST(ListText, BytesThatARowCannotCarryBecomeLoneUnits) {
    const std::array<Form, 10> forms = {{
        {"a>b", u"a" + unit(0xDC3E) + u"b"},
        {"a\\b", u"a" + unit(0xDC5C) + u"b"},
        {"a\nb", u"a" + unit(0xDC0A) + u"b"},
        {"a\rb", u"a" + unit(0xDC0D) + u"b"},
        {"\x01\x1F", unit(0xDC01) + unit(0xDC1F)},
        {"bad\xFF", u"bad" + unit(0xDCFF)},
        {"cut\xE6\x97", u"cut" + unit(0xDCE6) + unit(0xDC97)},
        {"overlong\xC0\xAF", u"overlong" + unit(0xDCC0) + unit(0xDCAF)},
        {"surrogate\xED\xB3\xBF", u"surrogate" + unit(0xDCED) + unit(0xDCB3) + unit(0xDCBF)},
        {"beyond\xF4\x90\x80\x80", u"beyond" + unit(0xDCF4) + unit(0xDC90) + unit(0xDC80) + unit(0xDC80)},
    }};
    for (const auto& form : forms) {
        EXPECT_EQ(toListText(form.native), form.list) << form.native;
        EXPECT_EQ(toNative(form.list), form.native) << form.native;
    }
}

TEST(ListText, AnEscapedByteBehindAPairStaysApart) {
    const std::string native = "\xF0\x9F\x98\x80\xFF";  // a character of two units, then an invalid byte
    EXPECT_EQ(toNative(toListText(native)), native);
}

// Half of the names lean to the bytes that matter, so that pairs and cut sequences of them really occur.
std::string randomName(std::mt19937& random, bool awkward) {
    static constexpr std::array<unsigned char, 16> kAwkward = {',',  '>',  '\\', '\n', '\r', ' ',  '.',  0xC3,
                                                               0xA9, 0xED, 0xB0, 0x80, 0xF0, 0x9F, 0x98, 0xFF};
    std::string name(1 + random() % 255, '_');
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < name.size(); ++i, bits >>= 8) {
        if (i % 4 == 0)
            bits = static_cast<std::uint32_t>(random());
        const auto byte = static_cast<unsigned char>(bits & 0xFFU);
        if (awkward)
            name[i] = static_cast<char>(kAwkward[byte % kAwkward.size()]);
        else if (byte != '/' && byte != 0)
            name[i] = static_cast<char>(byte);
    }
    return name;
}

TEST(ListText, TwoHundredThousandRandomNamesComeBack) {
    std::mt19937 random(20261115);
    std::u16string list;
    std::string native;
    for (unsigned i = 0; i < 200000; ++i) {
        const std::string name = randomName(random, i % 2 == 1);
        list.clear();
        appendListText(list, name);
        toNative(list, native);
        ASSERT_EQ(native, name) << "name " << i;
        const bool stray =
            std::any_of(list.begin(), list.end(), [](char16_t c) { return c == u',' || c == u'\\' || c < 0x20; });
        ASSERT_FALSE(stray) << "name " << i;
        const auto commas = std::count(name.begin(), name.end(), ',');
        ASSERT_EQ(std::count(list.begin(), list.end(), u'>'), commas) << "name " << i;
    }
}

TEST(ListText, ANameNeverSplitsItsRow) {
    std::mt19937 random(7);
    for (unsigned i = 0; i < 2000; ++i) {
        const std::u16string row = toListText(randomName(random, true)) + u",15/11/2026, 1234, 32;Ab9x,Header OK";
        ASSERT_EQ(splitFields(std::u16string_view(row)).size(), 5U);
    }
}

TEST(ListText, AppendingKeepsWhatIsThere) {
    std::u16string out = u"kept ";
    appendListText(out, "a,b");
    EXPECT_EQ(out, u"kept a>b");
}

TEST(ListText, ToNativeReplacesOldContents) {
    std::string out = "old";
    toNative(u"new", out);
    EXPECT_EQ(out, "new");
}

TEST(ListText, ReadableShowsWhatAPersonCanRead) {
    EXPECT_EQ(readable(std::string_view("/data/caf\xC3\xA9")), "/data/caf\xC3\xA9");
    EXPECT_EQ(readable(std::string_view("a\nb")),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(readable(std::string_view("a\xFF")), "a\xEF\xBF\xBD");
    EXPECT_EQ(readable(std::string_view("\x7F\xC2\x85")), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(readable(std::u16string_view(u"a>b")), "a,b");
    EXPECT_EQ(readable(std::u16string_view(u"a" + unit(0xDC0A))), "a\xEF\xBF\xBD");
}

// A name cannot pass itself off as another one, nor move the text beside it.
TEST(ListText, CharactersThatHideOrTurnTextAreShownAsTheirNumbers) {
    const std::array<Pair, 10> table = {{
        {"invoice\xE2\x80\xAE"
         "fdp.exe",
         "invoice<U+202E>fdp.exe"},
        {"a\xE2\x80\xA8"
         "b",
         "a<U+2028>b"},
        {"a\xE2\x80\x8F"
         "b",
         "a<U+200F>b"},
        {"a\xE2\x81\xA6"
         "b",
         "a<U+2066>b"},
        {"a\xE2\x80\x8B.txt", "a<U+200B>.txt"},
        {"\xEF\xBB\xBF"
         "a",
         "<U+FEFF>a"},
        {"a\xC2\xAD"
         "b",
         "a<U+00AD>b"},
        {"\xD8\x9C", "<U+061C>"},
        {"\xF3\xA0\x80\xA1", "<U+E0021>"},
        {"\xE1\x85\x9F", "<U+115F>"},
    }};
    for (const auto& [name, shown] : table) {
        EXPECT_EQ(readable(std::string_view(name)), shown);
        EXPECT_EQ(readable(toListText(name)), shown);
    }
}

TEST(ListText, ScriptsAndPicturesThatNeedAJoinerStayWhole) {
    for (const char* name : {"\xD9\x85\xDB\x8C\xE2\x80\x8C\xD8\xAE\xD9\x88\xD8\xA7\xD9\x87\xD9\x85",
                             "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x94\xAC.jpg", "\xE2\x9D\xA4\xEF\xB8\x8F",
                             "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D.txt"})
        EXPECT_EQ(readable(std::string_view(name)), name);
}

struct Pieces {
    std::u16string path;
    std::u16string parent;
    std::u16string name;
    std::u16string extension;
};

TEST(ListText, PathsFallIntoFolderNameAndExtensionAtEitherSeparator) {
    const std::array<Pieces, 12> table = {{
        {u"/a/b/c.txt", u"/a/b", u"c.txt", u"txt"},
        {u"C:\\data\\a>b.txt", u"C:\\data", u"a>b.txt", u"txt"},
        {u"/a\\b/c.D", u"/a\\b", u"c.D", u"D"},
        {u"/a/b\\c.D", u"/a/b", u"c.D", u"D"},
        {u"/x.y/z", u"/x.y", u"z", u""},
        {u"C:\\x.y\\z", u"C:\\x.y", u"z", u""},
        {u"a.tar.gz", u"", u"a.tar.gz", u"gz"},
        {u"/a/.profile", u"/a", u".profile", u"profile"},
        {u"/a/ends.", u"/a", u"ends.", u""},
        {u"/a/", u"/a", u"", u""},
        {u"name", u"", u"name", u""},
        {u"", u"", u"", u""},
    }};
    for (const auto& row : table) {
        const std::string shown = readable(row.path);
        EXPECT_EQ(parentOf(row.path), row.parent) << shown;
        EXPECT_EQ(fileNameOf(row.path), row.name) << shown;
        EXPECT_EQ(extensionOf(row.path), row.extension) << shown;
    }
}

TEST(ListText, TheExtensionKeepsItsCase) {
    EXPECT_EQ(extensionOf(u"/a/PHOTO.JpG"), u"JpG");
}

// A backslash inside a Linux name is escaped, so it ends no component of the list form.
TEST(ListText, AnEscapedBackslashEndsNoComponent) {
    const std::u16string path = toListText("/a/b\\c.txt");
    EXPECT_EQ(fileNameOf(path), u"b" + unit(0xDC5C) + u"c.txt");
    EXPECT_EQ(parentOf(path), u"/a");
}

TEST(ListText, AFoldedNameIsInLowerCaseAndKeepsBytesThatAreNoText) {
    EXPECT_EQ(foldedName("JPG.Dat"), "jpg.dat");
    EXPECT_EQ(foldedName("A\xFF,B>C"), "a\xFF,b>c");
}

}  // namespace
}  // namespace quillon
