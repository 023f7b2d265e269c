// SPDX-License-Identifier: MIT
// docs/formats/evidence.md tells the truth: its questions are asked, its columns and names compared.
#include <algorithm>

#include <gmock/gmock.h>

#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"
#include "platform/whole_file.h"

namespace quillon {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class EvidencePageTest : public test::EvidenceFixture {
protected:
    static std::string page() { return readWholeFile(QUILLON_SOURCE_FOLDER "/docs/formats/evidence.md").value_or(""); }
    static std::vector<std::string> questions() {
        std::vector<std::string> found;
        const std::string text = page();
        for (auto at = text.find("```sql\n"); at != text.npos; at = text.find("```sql\n", at)) {
            at += 7;
            found.push_back(text.substr(at, text.find("```", at) - at));
        }
        return found;
    }
};

TEST_F(EvidencePageTest, ItsFiveQuestionsHaveTheirAnswers) {
    {
        auto store = created();
        ASSERT_TRUE(store.setJob(job_keys::kStarted, std::int64_t{1'794'744'000'000'000'000}));
        EvidenceRow good = test::rowOf(1, "a", "good.jpg");
        EvidenceRow bad = test::rowOf(2, "a/b", "bad.jpg", Grade::Corrupt);
        bad.reason = Reason::Shifted;
        bad.detail = "16";
        ASSERT_TRUE(store.add(good, nullptr));
        ASSERT_TRUE(store.add(bad, nullptr));
        ASSERT_TRUE(store.finish());
    }
    const auto asked = questions();
    ASSERT_EQ(asked.size(), 5U);
    EXPECT_THAT(answers(path, asked[0]), ElementsAre("a/b/bad.jpg|1002|corrupt|shifted|16"));
    EXPECT_THAT(answers(path, asked[1]), ElementsAre(HasSubstr("|1|50.0"), "a|2|1|50.0", "a/b|1|1|100.0"));
    EXPECT_THAT(answers(path, asked[2]), ElementsAre("jpg|2|1|1|0|50.0"));
    EXPECT_THAT(answers(path, asked[3]), ElementsAre("shifted|its own header, at another position|1|1002"));
    EXPECT_THAT(answers(path, asked[4]),
                ElementsAre("2026-11-15 12:00:00|a/good.jpg", "2026-11-15 12:00:00|a/b/bad.jpg"));
}

TEST_F(EvidencePageTest, TheViewOfFilesHasItsColumnsForGood) {
    created();
    EXPECT_THAT(
        answers(path, "SELECT group_concat(name, ', ') FROM pragma_table_info('files')"),
        ElementsAre("row, path, name, path_bytes, extension, size, modified, attributes, grade, result, reason, "
                    "detail, unread, doubt, doubt_detail, copied, verified, copy_error, bad_bytes"));
}

TEST_F(EvidencePageTest, ItNamesEveryColumnGradeAndReason) {
    created();
    const std::string text = page();
    for (const auto& name :
         answers(path,
                 "SELECT i.name FROM sqlite_schema s, pragma_table_info(s.name) i WHERE s.type = 'table' "
                 "UNION SELECT name FROM grade UNION SELECT name FROM reason"))
        EXPECT_NE(text.find(name), text.npos) << name;
}

TEST_F(EvidencePageTest, TheViewShowsTheResultAndTheBytesOfAPath) {
    {
        auto store = created();
        ASSERT_TRUE(store.setMessage(Grade::Corrupt, "Header Corrupt"));
        EvidenceRow row = test::rowOf(1, "bad\xFF", "x.jpg", Grade::Corrupt);
        EvidenceRow own = test::rowOf(2, "", "y.jpg", Grade::CommonHeader);
        own.result = "Appears to be of file type: : PNG";
        ASSERT_TRUE(store.add(row, nullptr));
        ASSERT_TRUE(store.add(own, nullptr));
        ASSERT_TRUE(store.commit());
    }
    EXPECT_THAT(
        answers(path, "SELECT path, hex(path_bytes), result FROM files"),
        ElementsAre("bad\\xFF/x.jpg|626164FF2F782E6A7067|Header Corrupt", "y.jpg||Appears to be of file type: : PNG"));
}

TEST_F(EvidencePageTest, ItIsKeptAsThePageTells) {
    created();
    EXPECT_THAT(answers(path, "PRAGMA application_id"), ElementsAre("1363952982"));
    EXPECT_THAT(answers(path, "PRAGMA user_version"), ElementsAre("2"));
    EXPECT_THAT(answers(path, "PRAGMA page_size"), ElementsAre("16384"));
    EXPECT_THAT(answers(path, "PRAGMA journal_mode"), ElementsAre("delete"));
}

TEST_F(EvidencePageTest, TheHelpTellsWhatToConcludeFromEachReason) {
    std::string help = readWholeFile(QUILLON_SOURCE_FOLDER "/docs/help/grades.html").value_or("");
    std::ranges::replace(help, '\n', ' ');
    for (const auto& row : kReasons) {
        const std::string conclusion = row.conclusion;
        EXPECT_THAT(help, HasSubstr(conclusion)) << row.name;
    }
}

}  // namespace
}  // namespace quillon
