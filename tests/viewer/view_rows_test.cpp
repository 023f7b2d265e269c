// SPDX-License-Identifier: MIT
#include "viewer/view_rows.h"

#include "viewer/extension_list.h"
#include "viewer/viewer_fixture.h"

namespace quillon::test {
namespace {

using Texts = std::vector<std::u16string>;

TEST(ViewRowsTest, TheExtensionStandsBehindTheLastDotOfTheNameWithoutBlanks) {
    const std::vector<std::pair<std::u16string, std::u16string>> cases = {
        {u"/s/a.JPG", u"JPG"}, {u"/s/a.tar.gz", u"gz"},     {u"/s.d/noext", u""},
        {u"/s/a. x ", u"x"},   {u"C:\\x.y\\b.Doc", u"Doc"}, {u"/s/ends.", u""}};
    for (const auto& [path, extension] : cases) {
        ViewRows rows;
        rows.add(path);
        EXPECT_EQ(rows.extension(rows.idAt(0)), extension);
    }
}

TEST(ViewRowsTest, RemovedRowsKeepTheirPlacesUntilTheRowsSettle) {
    ViewRows rows;
    for (const char16_t* path : {u"/a.x", u"/b.x", u"/c.y", u"/d.x"}) rows.add(path);
    rows.remove(rows.idAt(1));
    rows.remove(rows.idAt(1));
    EXPECT_EQ(rows.count(), 3);
    EXPECT_EQ(rows.shown(), 4);
    EXPECT_EQ(rows.countOf(u"X"), 2);
    EXPECT_EQ(rows.settledPlace(0), 0);
    EXPECT_EQ(rows.settledPlace(1), 1) << "the place of the next one that stays";
    EXPECT_EQ(rows.settledPlace(3), 2);
    rows.settle();
    EXPECT_EQ(rows.shown(), 3);
    EXPECT_EQ(rows.path(rows.idAt(1)), u"/c.y");
    rows.remove(rows.idAt(1));
    rows.settle();
    EXPECT_EQ(rows.countOf(u"y"), 0);
    EXPECT_EQ(rows.foldedExtensions(), Texts{u"x"});
}

TEST(ViewRowsTest, ALongTextHasABlockOfItsOwn) {
    ViewRows rows;
    const std::u16string longPath(600'000, u'p');
    rows.add(u"/first");
    rows.add(longPath);
    rows.add(u"/last");
    EXPECT_EQ(rows.path(rows.idAt(0)), u"/first");
    EXPECT_EQ(rows.path(rows.idAt(1)), longPath);
    EXPECT_EQ(rows.path(rows.idAt(2)), u"/last");
}

TEST(RowLookupTest, TheFirstOfEqualRowsWinsUntilItIsRemoved) {
    ViewRows rows;
    for (const char16_t* path : {u"/a.x", u"/b.y", u"/a.x", u"/A.x"}) rows.add(path);
    RowLookup lookup(rows, u".X");
    ASSERT_NE(lookup.find(u"/a.x"), nullptr);
    EXPECT_EQ(*lookup.find(u"/a.x"), 0U);
    rows.remove(0);
    EXPECT_EQ(*lookup.find(u"/a.x"), 2U);
    rows.remove(2);
    EXPECT_EQ(lookup.find(u"/a.x"), nullptr);
    EXPECT_EQ(*lookup.find(u"/A.x"), 3U) << "case counts";
    EXPECT_EQ(lookup.find(u"/b.y"), nullptr) << "another extension is not looked at";
}

TEST(ExtensionListTest, EntriesAreSortedInLowerCaseAndOnce) {
    ViewRows rows;
    for (const char16_t* path : {u"/a.pdf", u"/b.JPG", u"/c.Pdf"}) rows.add(path);
    ExtensionList list;
    list.rebuild(rows);
    EXPECT_EQ(list.entries(), (Texts{u"jpg", u"pdf"}));
}

TEST(ExtensionListTest, WithoutRowsTheEntriesStay) {
    ViewRows rows;
    rows.add(u"/a.pdf");
    ExtensionList list;
    list.rebuild(rows);
    rows.clear();
    list.rebuild(rows);
    EXPECT_EQ(list.entries(), Texts{u"pdf"});
}

TEST(ExtensionListTest, AnEmptyExtensionAmongOthersIsAnEntry) {
    ViewRows rows;
    rows.add(u"/a.pdf");
    rows.add(u"/noext");
    ExtensionList list;
    list.rebuild(rows);
    EXPECT_EQ(list.entries(), (Texts{u"", u"pdf"}));
}

TEST(ExtensionListTest, AnEmptyExtensionAloneGivesNoEntry) {
    ViewRows rows;
    rows.add(u"/noext");
    ExtensionList list;
    list.add(u"old");
    list.rebuild(rows);
    EXPECT_TRUE(list.entries().empty());
}

TEST(ExtensionListTest, TheChosenEntryStaysChosenWhileItIsThere) {
    ViewRows rows;
    for (const char16_t* path : {u"/a.pdf", u"/b.jpg"}) rows.add(path);
    ExtensionList list;
    list.rebuild(rows);
    list.choose(1);
    rows.add(u"/c.abc");
    list.rebuild(rows);
    EXPECT_EQ(list.chosenText(), u"pdf");
    EXPECT_EQ(list.chosen(), 2);
    rows.remove(0);
    list.rebuild(rows);
    EXPECT_EQ(list.chosen(), -1);
}

}  // namespace
}  // namespace quillon::test
