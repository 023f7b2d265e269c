// SPDX-License-Identifier: MIT
#include "dbcheck/table_file.h"

#include <gtest/gtest.h>

#include "dbcheck/families.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

TEST(TableFile, FieldsAreFoundByTheNameOfTheirColumn) {
    TempFolder folder;
    const auto table = TableFile::read(folder.write("t.tsv", "path\text\na/b.png\tpng\n\tgif\n"));
    ASSERT_TRUE(table);
    EXPECT_EQ(table->rowCount(), 2U);
    EXPECT_EQ(table->field(0, "ext"), "png");
    EXPECT_EQ(table->field(1, "path"), "");
    EXPECT_EQ(table->field(1, "truth"), "");
    EXPECT_TRUE(table->require({"path", "ext"}));
    EXPECT_FALSE(table->require({"path", "truth"}));
}

TEST(TableFile, ARowOfAnotherLengthIsAFailure) {
    TempFolder folder;
    const auto table = TableFile::read(folder.write("t.tsv", "path\text\npng\n"));
    ASSERT_FALSE(table);
    EXPECT_EQ(table.error().kind, ErrorKind::InvalidArgument);
    EXPECT_NE(table.error().text.find("line 2: 1 fields instead of 2"), std::string::npos) << table.error().text;
}

TEST(TableFile, AnEmptyAndAMissingFileAreFailures) {
    TempFolder folder;
    EXPECT_FALSE(TableFile::read(folder.write("t.tsv", "")));
    const auto missing = TableFile::read(folder / "none.tsv");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::NotFound);
}

TEST(Families, MembersAcceptEachOtherAndTheGuestsOfTheFamily) {
    TempFolder folder;
    const auto families = Families::read(
        folder.write("families.tsv", "family\treason\textensions\talso accepts\nzip\tone container\tzip jar\tdocx\n"));
    ASSERT_TRUE(families);
    EXPECT_TRUE(families->mayAccept("zip", "jar"));
    EXPECT_TRUE(families->mayAccept("jar", "zip"));
    EXPECT_TRUE(families->mayAccept("zip", "docx"));
    EXPECT_FALSE(families->mayAccept("docx", "zip"));
    EXPECT_FALSE(families->mayAccept("zip", "png"));
    ASSERT_EQ(families->all().size(), 1U);
    EXPECT_EQ(families->all()[0].reason, "one container");
}

}  // namespace
}  // namespace quillon
