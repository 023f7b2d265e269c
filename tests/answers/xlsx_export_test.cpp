// SPDX-License-Identifier: MIT
#include "answers/xlsx_export.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

#include "archive/zip_entries.h"
#include "support/temp_folder.h"

namespace quillon::test {

namespace {

class XlsxExportTest : public testing::Test {
protected:
    // The sheets of a workbook of so many files, in their order.
    std::vector<std::string> sheets(int files, std::uint32_t sheetRows) {
        auto workbook = XlsxExport::begin(target, sheetRows);
        EXPECT_TRUE(workbook);
        EvidenceRow file;
        for (int i = 0; i < files; ++i) {
            file.name = "file" + std::to_string(i);
            EXPECT_TRUE(workbook->add(file));
        }
        const auto ended = workbook->addFigures("Folders", "folder", {{"", {}}, {"photos", {}}}).and_then([&] {
            return workbook->finish();
        });
        EXPECT_TRUE(ended) << ended.error().text;
        std::map<std::string, std::string> found;
        EXPECT_TRUE(readEntries(target, [&](std::string_view name, std::string_view piece) {
            if (name.starts_with("xl/worksheets/sheet"))
                found[std::string(name)] += piece;
        }));
        std::vector<std::string> all;
        for (const auto& [name, text] : found) all.push_back(text);
        return all;
    }

    TempFolder folder;
    NativePath target = folder / "list.xlsx";
};

TEST_F(XlsxExportTest, AFullSheetIsFollowedByAFurtherOne) {
    const auto all = sheets(5, 3);
    ASSERT_EQ(all.size(), 4U) << "files 2 + 2 + 1, folders";
    EXPECT_NE(all[0].find("file1<"), std::string::npos);
    EXPECT_EQ(all[0].find("file2<"), std::string::npos);
    EXPECT_NE(all[1].find("file2<"), std::string::npos);
    EXPECT_NE(all[2].find("file4<"), std::string::npos);
    EXPECT_NE(all[3].find("photos<"), std::string::npos);
    for (const auto& sheet : all) EXPECT_NE(sheet.find("<row r=\"1\""), std::string::npos) << "with its columns";
    EXPECT_EQ(sheets(4, 3).size(), 3U) << "none that is empty";
}

TEST_F(XlsxExportTest, TheOldWorkbookStaysUntilTheNewOneIsWhole) {
    folder.write("list.xlsx", "the old one");
    {
        auto workbook = XlsxExport::begin(target);
        ASSERT_TRUE(workbook);
        ASSERT_TRUE(workbook->add({}));
    }
    EXPECT_EQ(folder.read("list.xlsx"), "the old one");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1) << "and nothing beside it";
    EXPECT_FALSE(XlsxExport::begin(folder / "nowhere/list.xlsx"));
}

}  // namespace

}  // namespace quillon::test
