// SPDX-License-Identifier: MIT
#include "sectors/sector_summary.h"

#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"
#include "evidence/sector_notes.h"

namespace quillon {
namespace {

using test::rowOf;

class SectorSummaryTest : public test::EvidenceFixture {
protected:
    // Two good files, a corrupt one and one that cannot be judged.
    void SetUp() override {
        auto store = created();
        int number = 0;
        for (const Grade grade : {Grade::Good, Grade::Good, Grade::Corrupt, Grade::Unknown}) {
            ++number;
            EvidenceRow row = rowOf(number, "", std::to_string(number) + ".jpg", grade);
            ASSERT_TRUE(store.add(row, nullptr));
        }
        ASSERT_TRUE(store.finish());
    }
    std::optional<SectorSummary> summary() {
        auto evidence = reader();
        const auto read = readSectorSummary(evidence);
        EXPECT_TRUE(read) << read.error().text;
        return read.value_or(std::nullopt);
    }
};

TEST_F(SectorSummaryTest, WhereNobodyHasLookedNothingIsTold) {
    EXPECT_EQ(summary(), std::nullopt);
}

TEST_F(SectorSummaryTest, AHurtFileIsNotGoodAndWhole) {
    auto notes = SectorNotes::open(path);
    ASSERT_TRUE(notes);
    const std::vector<std::pair<std::int64_t, ByteRanges>> found = {{1, {}}, {2, {{0, 512}}}, {4, {{0, 1024}}}};
    for (const auto& [id, unread] : found) ASSERT_TRUE(notes->setUnread(id, unread));
    ASSERT_TRUE(notes->setOrigin(job_keys::kByScanInPart));
    ASSERT_TRUE(notes->commit());
    EXPECT_EQ(summary(), (SectorSummary{.known = 3, .hurt = 2, .unreadBytes = 1536, .judged = 3, .goodAndWhole = 1}));
}

TEST(SectorSummaryTextTest, TellsFilesBytesAndTheSecondFigure) {
    EXPECT_EQ(unreadSectorsText(12, 43'016, 192'512), "12 files of 43,016 hold unread sectors, 188.0 Kb in all");
    EXPECT_EQ(unreadSectorsText(1, 2, 512), "1 file of 2 holds unread sectors, 512 Bytes in all");
    SectorSummary summary{.known = 3, .hurt = 2, .unreadBytes = 1536, .judged = 4, .goodAndWhole = 1};
    EXPECT_EQ(summaryText(summary),
              "2 files of 3 hold unread sectors, 1.5 Kb in all\nGood and whole as far as known: 25.00%");
    summary.judged = 0;
    EXPECT_EQ(summaryText(summary), "2 files of 3 hold unread sectors, 1.5 Kb in all");
}

}  // namespace
}  // namespace quillon
