// SPDX-License-Identifier: MIT
// The writer beside a job: all that is handed over comes into the file, and what goes wrong costs the evidence alone.
#include "evidence/evidence_writer.h"

#include <filesystem>
#include <latch>

#include "evidence/evidence_fixture.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;
using test::headOf;
using test::rowOf;

constexpr milliseconds kLong{60'000};

class EvidenceWriterTest : public test::EvidenceFixture {
protected:
    EvidenceWriter::Open opening() const {
        return [path = path]() -> Result<EvidenceStore> {
            if (auto made = EvidenceStore::create(path); !made)
                return failure(made.error());
            return EvidenceStore::open(path);
        };
    }
    static auto as(const EvidenceRow& row) {
        return [row](EvidenceRow& out) {
            EXPECT_EQ(out, EvidenceRow());
            out = row;
        };
    }
    static void take(FileFindings findings, EvidenceRow& row) {
        row.reason = findings.reason;
        row.detail = std::move(findings.detail);
    }
    static void hand(EvidenceWriter& writer, int number) {
        const auto describe = as(rowOf(number, "pic", std::to_string(number)));
        const FileHead head = headOf(number);
        while (!writer.add(&head, {}, describe)) ASSERT_TRUE(writer.roomWithin(kLong));
    }
};

TEST_F(EvidenceWriterTest, ARowThatWasClearedSaysNothing) {
    EvidenceRow row{1,        2, "folder", "name", "jpg", 3, 4,     5, Grade::Corrupt, "text", Reason::Noise,
                    "detail", 6, "doubt",  "",     7,     8, "why", 9, "1-2",          10,     "whole",
                    "words"};
    row.doubtDetail = "doubt";
    clearRow(row);
    EXPECT_EQ(row, EvidenceRow());
}

TEST_F(EvidenceWriterTest, AllThatIsHandedOverComesIntoTheFile) {
    constexpr int kFiles = 1000;
    {
        EvidenceWriter writer(opening(), take);
        ASSERT_TRUE(writer.start());
        for (int i = 1; i <= kFiles; ++i) hand(writer, i);
        ASSERT_TRUE(writer.change([](EvidenceStore& store) { return store.setJob("end", "complete"); }));
        writer.close();
        ASSERT_TRUE(writer.endsWithin(kLong));
        EXPECT_FALSE(writer.lost());
    }
    EXPECT_EQ(rows().size(), std::size_t{kFiles});
    EXPECT_EQ(reader().jobText("end").value(), "complete");
}

TEST_F(EvidenceWriterTest, AWriterThatIsDroppedLeavesAllThatItWasGiven) {
    {
        EvidenceWriter writer(opening(), take);
        ASSERT_TRUE(writer.start());
        for (int i = 1; i <= 10; ++i) hand(writer, i);
    }
    EXPECT_EQ(rows().size(), 10U);
}

TEST_F(EvidenceWriterTest, AFewFilesComeIntoTheFileWithoutMoreOfThem) {
    EvidenceWriter writer(opening(), take);
    ASSERT_TRUE(writer.start());
    for (int i = 1; i <= 3; ++i) hand(writer, i);
    const auto arrived = [this] {
        auto from = EvidenceReader::open(path);
        EvidenceRow row;
        return from && from->next(row).value_or(false);
    };
    const Moment latest = momentNow() + kLong;
    while (!arrived() && momentNow() < latest) EXPECT_FALSE(writer.lost());
    EXPECT_TRUE(arrived());
}

TEST_F(EvidenceWriterTest, WhatIsStillToBeFoundInAHeadIsFoundOnItsWayByTheRulesThatCameWithIt) {
    FileHead head;
    head.length = kHeaderBytes;
    head.bytes.fill('\0');
    std::copy_n("TERM", 4, head.bytes.begin() + 30);
    OpenFindings open;
    open.rules = std::make_shared<const FindingRules>(SectorMarkers(), CommonList(), folder.path());
    open.own = std::make_shared<const std::vector<CompiledTerm>>(1, CompiledTerm::fromTermFileLine("11,TERM,T"));
    open.grade = Grade::Corrupt;
    FileHead shifted = head;
    shifted.bytes[0] = 'x';
    {
        EvidenceWriter writer(opening(), take);
        ASSERT_TRUE(writer.start());
        ASSERT_TRUE(writer.add(&head, open, as(rowOf(1, "pic", "1"))));
        ASSERT_TRUE(writer.add(&shifted, std::exchange(open, {}), as(rowOf(2, "pic", "2"))));
        ASSERT_TRUE(writer.add(&head, {}, as(rowOf(3, "pic", "3"))));
    }
    const auto found = rows();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].reason, Reason::LeadingZeros);
    EXPECT_EQ(found[1].reason, Reason::Shifted);
    EXPECT_EQ(found[1].detail, "its header stands 20 bytes too late");
    EXPECT_EQ(found[2].reason, rowOf(3, "pic", "3").reason) << "a row whose findings came with it keeps them";
}

TEST_F(EvidenceWriterTest, AFullQueueTakesNothingAndTellsWhenThereIsRoom) {
    std::latch mayOpen(1);
    EvidenceWriter writer(
        [&]() -> Result<EvidenceStore> {
            mayOpen.wait();
            return opening()();
        },
        take);
    ASSERT_TRUE(writer.start());
    int taken = 0;
    while (writer.add(nullptr, {}, as(rowOf(taken + 1, "pic", std::to_string(taken + 1))))) ++taken;
    EXPECT_GT(taken, 10'000);
    EXPECT_FALSE(writer.roomWithin(milliseconds(0)));
    mayOpen.count_down();
    EXPECT_TRUE(writer.roomWithin(kLong));
    writer.close();
    ASSERT_TRUE(writer.endsWithin(kLong));
    EXPECT_EQ(rows().size(), static_cast<std::size_t>(taken));
}

TEST_F(EvidenceWriterTest, AFileThatCannotBeMadeCostsTheEvidenceAndTellsWhy) {
    std::filesystem::create_directory(path);
    EvidenceWriter writer(opening(), take);
    ASSERT_TRUE(writer.start());
    hand(writer, 1);
    writer.close();
    ASSERT_TRUE(writer.endsWithin(kLong));
    ASSERT_TRUE(writer.lost());
    EXPECT_NE(writer.lost()->text.find("1234.sqlite"), std::string::npos) << writer.lost()->text;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1) << "no temporary file";
}

}  // namespace
}  // namespace quillon
