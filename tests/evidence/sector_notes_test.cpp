// SPDX-License-Identifier: MIT
#include "evidence/sector_notes.h"

#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"

namespace quillon {
namespace {

using test::headOf;
using test::rowOf;

class SectorNotesTest : public test::EvidenceFixture {
protected:
    void SetUp() override {
        auto store = created();
        for (int number = 1; number <= 3; ++number) {
            EvidenceRow row = rowOf(number, "a", "file" + std::to_string(number));
            const FileHead head = headOf(number);
            ASSERT_TRUE(store.add(row, &head));
        }
        ASSERT_TRUE(store.commit());
    }
    SectorNotes notes() const {
        auto opened = SectorNotes::open(path);
        EXPECT_TRUE(opened) << opened.error().text;
        return std::move(*opened);
    }
};

TEST_F(SectorNotesTest, UnreadBytesAndRangesStandInTheRowAndHeadsStayVouchedFor) {
    {
        auto writing = notes();
        ASSERT_TRUE(writing.setAllWhole());
        ASSERT_TRUE(writing.setUnread(2, {{0, 512}, {4096, 5120}}));
        ASSERT_TRUE(writing.setUnknown(3));
        ASSERT_TRUE(writing.setOrigin(job_keys::kByMap));
        ASSERT_TRUE(writing.commit());
    }
    const auto found = rows();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].badBytes, 0);
    EXPECT_EQ(found[0].badRanges, "");
    EXPECT_EQ(found[1].badBytes, 1536);
    EXPECT_EQ(found[1].badRanges, "0+512,4096+1024");
    EXPECT_EQ(found[2].badBytes, std::nullopt);
    auto from = reader();
    const auto origin = from.jobText(job_keys::kSectors);
    ASSERT_TRUE(origin);
    EXPECT_EQ(*origin, "map");
    for (const auto& row : found) EXPECT_EQ(from.isVouchedFor(row), true) << row.name;
}

TEST_F(SectorNotesTest, WhatWasNotCommittedIsNotThere) {
    {
        auto writing = notes();
        ASSERT_TRUE(writing.setAllWhole());
    }
    for (const auto& row : rows()) EXPECT_EQ(row.badBytes, std::nullopt);
}

TEST_F(SectorNotesTest, AFileOfVeryManyRangesKeepsAThousand) {
    ByteRanges many;
    for (std::uint64_t i = 0; i < 1001; ++i) many.push_back({i * 1024, i * 1024 + 512});
    {
        auto writing = notes();
        ASSERT_TRUE(writing.setUnread(1, many));
        ASSERT_TRUE(writing.commit());
    }
    const auto row = rows().front();
    EXPECT_EQ(row.badBytes, 1001 * 512);
    EXPECT_TRUE(row.badRanges.ends_with(",1022976+512,..."));
}

TEST_F(SectorNotesTest, WhatIsForgottenIsNotKnownOfAnyFile) {
    auto writing = notes();
    ASSERT_TRUE(writing.setAllWhole());
    ASSERT_TRUE(writing.forgetAll());
    ASSERT_TRUE(writing.commit());
    for (const auto& row : rows()) EXPECT_EQ(row.badBytes, std::nullopt);
}

TEST_F(SectorNotesTest, AFileThatIsNoEvidenceIsRefused) {
    EXPECT_EQ(SectorNotes::open(folder / "gone").error().kind, ErrorKind::NotFound);
    EXPECT_EQ(SectorNotes::open(folder.write("text", "no evidence")).error().kind, ErrorKind::PathAccess);
}

}  // namespace
}  // namespace quillon
