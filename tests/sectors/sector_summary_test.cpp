// SPDX-License-Identifier: MIT
#include "sectors/sector_summary.h"

#include <filesystem>

#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"
#include "evidence/sector_notes.h"

namespace quillon {
namespace {

using test::rowOf;

CopyOutcome copied(std::int64_t badBytes) {
    CopyOutcome outcome;
    outcome.copied = true;
    outcome.badBytes = badBytes;
    return outcome;
}

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

// What is counted with the rows is, after each change, what the files one by one give.
TEST_F(SectorSummaryTest, TheCountIsTheSameWithTheRowsAndFileByFile) {
    const auto bothWays = [this] {
        const auto counted = summary();
        const NativePath twin = folder / "twin.sqlite";
        std::filesystem::copy_file(path, twin, std::filesystem::copy_options::overwrite_existing);
        {
            auto database = Database::open(twin, Access::Writing);
            EXPECT_TRUE(
                database->run("DELETE FROM job WHERE key = 'sectors_counted'; "
                              "DELETE FROM by_reason WHERE reason < -1"));
        }
        auto old = EvidenceReader::open(twin);
        EXPECT_EQ(counted, readSectorSummary(*old).value_or(std::nullopt));
        return counted;
    };
    {
        auto store = opened();
        ASSERT_TRUE(store.setJob(job_keys::kSectors, job_keys::kByCopy));
        for (const auto& [id, bad] : std::vector<std::pair<std::int64_t, std::int64_t>>{{1, 512}, {3, 1024}, {4, 0}})
            ASSERT_TRUE(store.setCopy(id, copied(bad)));
        ASSERT_TRUE(store.setCopy(1, copied(2048)));
        ASSERT_TRUE(store.setCopy(1, CopyOutcome()));
        ASSERT_TRUE(store.commit());
    }
    EXPECT_EQ(bothWays(), (SectorSummary{.known = 3, .hurt = 2, .unreadBytes = 3072, .judged = 3, .goodAndWhole = 1}));
    auto store = opened();
    auto first = rows().front();
    EvidenceRow corrupt = first;
    corrupt.grade = Grade::Corrupt;
    ASSERT_TRUE(store.setVerdict(first, corrupt).and_then([&] { return store.remove(3); }));
    EvidenceRow added = rowOf(5, "b", "5.png", Grade::CommonHeader);
    added.extension = "png";
    added.badBytes = 4096;
    ASSERT_TRUE(store.add(added, nullptr).and_then([&] { return store.commit(); }));
    EXPECT_EQ(bothWays(), (SectorSummary{.known = 3, .hurt = 2, .unreadBytes = 6144, .judged = 3, .goodAndWhole = 1}));
    auto notes = SectorNotes::open(path);
    ASSERT_TRUE(notes);
    ASSERT_TRUE(notes->setAllWhole().and_then([&] { return notes->setUnread(2, {{0, 512}}); }));
    ASSERT_TRUE(notes->setUnknown(1).and_then([&] { return notes->commit(); }));
    EXPECT_EQ(reader().jobNumber(job_keys::kSectorsCounted).value_or(1), std::nullopt) << "a scan that is not done";
    const SectorSummary found{.known = 3, .hurt = 1, .unreadBytes = 512, .judged = 3, .goodAndWhole = 1};
    EXPECT_EQ(bothWays(), found);
    ASSERT_TRUE(notes->setOrigin(job_keys::kByScan).and_then([&] { return notes->commit(); }));
    EXPECT_EQ(reader().jobNumber(job_keys::kSectorsCounted).value_or(std::nullopt), 1);
    EXPECT_EQ(bothWays(), found);
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
