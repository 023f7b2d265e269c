// SPDX-License-Identifier: MIT
#include "answers/file_export.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillon::test {

namespace {

EvidenceRow sample() {
    EvidenceRow file;
    file.row = 7;
    file.folder = "photos, \"old\"";
    file.name = "caf\xC3\xA9\xFF.jpg";
    file.extension = "jpg";
    file.size = 4096;
    file.attributes = 32;
    file.grade = Grade::Corrupt;
    file.reason = Reason::Shifted;
    file.detail = "its header stands 16 bytes too late";
    return file;
}

TEST(CsvTest, FieldsAreQuotedWhereTheyHaveToBe) {
    EXPECT_EQ(csvField("plain", false), "plain");
    EXPECT_EQ(csvField("a,b", false), "\"a,b\"");
    EXPECT_EQ(csvField("say \"x\"", false), "\"say \"\"x\"\"\"");
    EXPECT_EQ(csvField("two\nlines", false), "\"two\nlines\"");
    EXPECT_EQ(csvField("", false), "");
}

TEST(CsvTest, NothingIsAFormulaForASpreadsheet) {
    for (const std::string text : {"=1+1", "+1", "-1", "@x", "\tx", "\rx", "\nx"}) {
        const auto field = csvField(text, true);
        EXPECT_TRUE(field.starts_with("'") || field.starts_with("\"'")) << field;
        EXPECT_EQ(csvField(text, false).find('\''), std::string::npos);
    }
    EXPECT_EQ(csvField("a=b", true), "a=b");
}

TEST(CsvTest, ARecordHasTheColumnsOfItsHead) {
    EXPECT_EQ(csvHead({}),
              "row,path,name,extension,size,modified,attributes,grade,result,reason,detail,unread,doubt,doubt_detail,"
              "copied,verified,copy_error,bad_bytes\r\n");
    EXPECT_EQ(csvRecord(sample(), {}),
              "7,\"photos, \"\"old\"\"/caf\xC3\xA9\\xFF.jpg\",caf\xC3\xA9\\xFF.jpg,jpg,4096,,32,corrupt,Header Corrupt,"
              "shifted,its header stands 16 bytes too late,0,,,,,,\r\n");
    EXPECT_TRUE(csvHead({true, false}).starts_with("\xEF\xBB\xBFrow,"));
}

TEST(JsonLinesTest, EachFileIsOneObject) {
    const auto line = jsonLine(sample());
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    const auto json = nlohmann::json::parse(line);
    EXPECT_EQ(json["path"], "photos, \"old\"/caf\xC3\xA9\\xFF.jpg");
    EXPECT_EQ(json["grade"], "corrupt");
    EXPECT_EQ(json["modified"], nullptr);
    EXPECT_EQ(json["size"], 4096);
}

}  // namespace

}  // namespace quillon::test
