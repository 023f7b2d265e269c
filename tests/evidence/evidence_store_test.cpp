// SPDX-License-Identifier: MIT
// What is written into evidence comes back from it.
#include "evidence/evidence_store.h"

#include <filesystem>
#include <span>

#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"

namespace quillon {
namespace {

using test::headOf;
using test::rowOf;

class EvidenceStoreTest : public test::EvidenceFixture {};

TEST_F(EvidenceStoreTest, EveryColumnComesBack) {
    EvidenceRow row = rowOf(1, "a/b", "x.jpg", Grade::Corrupt);
    row.result = "its own words";
    row.reason = Reason::Shifted;
    row.detail = "by 16 bytes";
    row.unread = 12;
    row.doubt = "short";
    row.doubtDetail = "100 of 2000 bytes";
    row.copied = 1;
    row.verified = 0;
    row.copyError = "disk full";
    row.badBytes = 4096;
    row.badRanges = "0-4095";
    EvidenceRow bare;
    bare.name = "bare";
    const FileHead head = headOf(7, 500);
    {
        auto store = created();
        ASSERT_TRUE(store.add(row, &head));
        ASSERT_TRUE(store.add(bare, nullptr));
        ASSERT_TRUE(store.commit());
    }
    EXPECT_EQ(rows(), (std::vector{row, bare}));
    auto from = reader();
    const auto kept = from.head(row);
    ASSERT_TRUE(kept && *kept != nullptr);
    EXPECT_EQ(**kept, head);
    const auto none = from.head(bare);
    ASSERT_TRUE(none);
    EXPECT_EQ(*none, nullptr);
    EXPECT_EQ(from.damaged(), 0);
}

TEST_F(EvidenceStoreTest, NamesOfAnyBytesComeBackByteForByte) {
    std::vector<EvidenceRow> expected;
    {
        auto store = created();
        int number = 0;
        for (const std::string name : {"plain", "caf\xC3\xA9", "bad\xFF\xFE", "new\nline", "back\\slash", "\\xFF",
                                       "\x01\x7F", "\xC2\x80", "quote'\"", "%s;--", " "}) {
            EvidenceRow row = rowOf(++number, "dir " + name + "/in\\" + name, name);
            const FileHead head = headOf(number);
            ASSERT_TRUE(store.add(row, &head));
            expected.push_back(row);
        }
        ASSERT_TRUE(store.commit());
    }
    EXPECT_EQ(rows(), expected);
    auto from = reader();
    for (const auto& row : expected) {
        EvidenceRow found;
        const auto is = from.findPath(row.path(), found);
        ASSERT_TRUE(is && *is) << row.path();
        EXPECT_EQ(found, row);
        const auto head = from.head(found);
        ASSERT_TRUE(head && *head != nullptr) << row.path();
    }
}

TEST_F(EvidenceStoreTest, FilesAddedTogetherAreThoseAddedOneByOne) {
    const auto fileOf = [](int number) {
        EvidenceRow row = rowOf(number, number % 3 == 0 ? "dir\xFF" : "dir", "f" + std::to_string(number) + "\x01");
        row.result = number % 4 == 0 ? std::optional<std::string>("") : std::nullopt;
        row.badBytes = number % 5 == 0 ? std::optional<std::int64_t>(0) : std::nullopt;
        row.doubt = number % 2 == 0 ? "cut" : "";
        return row;
    };
    std::vector<EvidenceRow> oneByOne;
    std::vector<EvidenceRow> together;
    {
        auto store = created();
        for (int i = 1; i <= 300; ++i) {
            const FileHead head = headOf(i);
            oneByOne.push_back(fileOf(i));
            ASSERT_TRUE(store.add(oneByOne.back(), i % 7 == 0 ? nullptr : &head));
        }
        ASSERT_TRUE(store.finish());
    }
    EXPECT_EQ(rows(), oneByOne);
    const std::string all = "SELECT * FROM file; SELECT * FROM by_extension; SELECT * FROM by_reason";
    const auto before = answers(path, all);
    {
        auto store = created();
        std::vector<FileHead> heads;
        std::vector<EvidenceStore::NewFile> files;
        for (int i = 1; i <= 300; ++i) {
            together.push_back(fileOf(i));
            heads.push_back(headOf(i));
        }
        for (std::size_t i = 0; i < together.size(); ++i)
            files.push_back({&together[i], (i + 1) % 7 == 0 ? nullptr : &heads[i]});
        ASSERT_TRUE(store.add(files));
        ASSERT_TRUE(store.add(std::span<const EvidenceStore::NewFile>()));
        ASSERT_TRUE(store.finish());
    }
    EXPECT_EQ(together, oneByOne);
    EXPECT_EQ(rows(), oneByOne);
    EXPECT_EQ(answers(path, all), before);
}

TEST_F(EvidenceStoreTest, NoFilesTakeNoLock) {
    auto store = created();
    fill(store, 1);
    ASSERT_TRUE(store.finish());
    auto other = Database::open(path, Access::Writing);
    ASSERT_TRUE(other && other->run("BEGIN IMMEDIATE"));
    store.waitForLocks(std::chrono::milliseconds(0));
    EXPECT_TRUE(store.add(std::span<const EvidenceStore::NewFile>()));
    EvidenceRow row = rowOf(2, "pic", "another.jpg");
    EXPECT_FALSE(store.add(row, nullptr)) << "somebody else writes";
}

TEST_F(EvidenceStoreTest, OnlyTheStatementThatAddsSeesTheFilesThatComeTogether) {
    auto store = created();
    fill(store, 1);
    EXPECT_FALSE(reader().prepare("SELECT * FROM offered"));
}

TEST_F(EvidenceStoreTest, TheFileIsItsOwnersAlone) {
    const auto store = created();
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(EvidenceStoreTest, ANameTooLongForTheJournalIsRefused) {
    const auto made = EvidenceStore::create(folder / (std::string(242, 'x') + ".sqlite"));
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error().kind, ErrorKind::BadName);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(EvidenceStoreTest, WhatIsNotCommittedIsNotThere) {
    {
        auto store = created();
        fill(store, 3);
        EvidenceRow row = rowOf(4, "pic", "late.jpg");
        ASSERT_TRUE(store.add(row, nullptr));
    }
    EXPECT_EQ(rows().size(), 3U);
}

TEST_F(EvidenceStoreTest, HeadsOfManyBlocksComeBackAndVouchForTheirRows) {
    constexpr int kFiles = 300;
    {
        auto store = created();
        fill(store, kFiles);
    }
    auto from = reader();
    EvidenceRow row;
    for (int i = 1; i <= kFiles; ++i) {
        const auto more = from.next(row);
        ASSERT_TRUE(more && *more);
        const auto head = from.head(row);
        ASSERT_TRUE(head && *head != nullptr) << i;
        EXPECT_EQ(**head, headOf(i));
    }
    EXPECT_EQ(from.damaged(), 0);
}

TEST_F(EvidenceStoreTest, ABlockGoesOnGrowingBehindACommit) {
    {
        auto store = created();
        for (int i = 1; i <= 5; ++i) {
            EvidenceRow row = rowOf(i, "", std::to_string(i));
            const FileHead head = headOf(i);
            ASSERT_TRUE(store.add(row, &head));
            ASSERT_TRUE(store.commit());
        }
    }
    EXPECT_EQ(answers(path, "SELECT count(*) FROM head_block"), std::vector<std::string>{"1"});
    auto from = reader();
    for (const auto& row : rows()) {
        const auto head = from.head(row);
        ASSERT_TRUE(head && *head != nullptr);
        EXPECT_EQ(**head, headOf(static_cast<int>(row.id)));
    }
}

TEST_F(EvidenceStoreTest, LeftOutHeadsVouchForTheirRowsAllTheSame) {
    {
        auto store = created(EvidenceStore::Heads::LeftOut);
        fill(store, 1000);
    }
    auto from = reader();
    for (const auto& row : rows()) {
        const auto head = from.head(row);
        ASSERT_TRUE(head);
        EXPECT_EQ(*head, nullptr);
        EXPECT_TRUE(from.isVouchedFor(row).value_or(false));
    }
    EXPECT_LT(std::filesystem::file_size(path), 300'000U) << "no heads in it";
}

TEST_F(EvidenceStoreTest, AChangedRowKeepsItsHeadAndIsVouchedFor) {
    {
        auto store = created();
        fill(store, 200);
    }
    {
        auto store = opened();
        for (const int id : {3, 150}) {
            EvidenceRow row = rowOf(id, "pic", "IMG_" + std::to_string(id) + ".jpg", Grade::Corrupt);
            row.id = id;
            row.reason = Reason::Noise;
            ASSERT_TRUE(store.change(row));
        }
        ASSERT_TRUE(store.commit());
    }
    auto from = reader();
    for (const auto& row : rows()) {
        const auto head = from.head(row);
        ASSERT_TRUE(head && *head != nullptr) << row.id;
        EXPECT_EQ(**head, headOf(static_cast<int>(row.id)));
        EXPECT_EQ(row.grade, row.id == 3 || row.id == 150 ? Grade::Corrupt : Grade::Good);
    }
    EXPECT_EQ(answers(path, "SELECT g.name, files FROM by_extension b JOIN grade g ON g.id = b.grade"),
              (std::vector<std::string>{"good|198", "corrupt|2"}));
    EXPECT_EQ(answers(path, "SELECT reason, files FROM reasons"), std::vector<std::string>{"noise|2"});
}

TEST_F(EvidenceStoreTest, TheLastOfTwoVerdictsOnAFileCountsOnce) {
    {
        auto store = created();
        fill(store, 3);
    }
    const auto before = rows();
    {
        auto store = opened();
        for (const auto& [at, grade] :
             {std::pair(2U, Grade::Unknown), std::pair(0U, Grade::Corrupt), std::pair(2U, Grade::Corrupt)}) {
            EvidenceRow now = before.at(at);
            now.grade = grade;
            ASSERT_TRUE(store.setVerdict(before.at(at), now));
        }
        ASSERT_TRUE(store.commit());
    }
    EXPECT_EQ(answers(path, "SELECT g.name, files FROM by_extension b JOIN grade g ON g.id = b.grade WHERE files <> 0"),
              (std::vector<std::string>{"good|1", "corrupt|2"}));
    auto from = reader();
    for (const auto& row : rows()) EXPECT_TRUE(from.isVouchedFor(row).value_or(false)) << row.id;
}

TEST_F(EvidenceStoreTest, AFileThatIsReadAnewGetsANewHead) {
    {
        auto store = created();
        fill(store, 130);
    }
    {
        auto store = opened();
        EvidenceRow row = rowOf(5, "pic", "IMG_5.jpg");
        row.id = 5;
        row.size = 99;
        const FileHead head = headOf(9999);
        ASSERT_TRUE(store.change(row, &head));
        ASSERT_TRUE(store.remove(6));
        EvidenceRow late = rowOf(500, "pic", "late.jpg");
        const FileHead lateHead = headOf(500);
        ASSERT_TRUE(store.add(late, &lateHead));
        EXPECT_EQ(late.id, 131) << "no id is given twice";
        ASSERT_TRUE(store.finish());
    }
    auto from = reader();
    for (const auto& row : rows()) {
        EXPECT_NE(row.id, 6);
        const auto head = from.head(row);
        ASSERT_TRUE(head && *head != nullptr) << row.id;
        const int number = row.id == 5 ? 9999 : row.id == 131 ? 500 : static_cast<int>(row.id);
        EXPECT_EQ(**head, headOf(number)) << row.id;
    }
    EXPECT_EQ(answers(path, "SELECT files FROM folders WHERE path = 'pic'"), std::vector<std::string>{"130"});
}

TEST_F(EvidenceStoreTest, FoldersCountTheirWholeBranch) {
    {
        auto store = created();
        for (const auto* const where : {"", "a", "a", "a/b", "a/b/c/d", "z"}) {
            EvidenceRow row = rowOf(1, where, "x");
            row.size = 10;
            ASSERT_TRUE(store.add(row, nullptr));
        }
        EvidenceRow bad = rowOf(1, "a/b", "y", Grade::Corrupt);
        bad.size = 5;
        ASSERT_TRUE(store.add(bad, nullptr));
        ASSERT_TRUE(store.setFolderError("locked/in", "cannot be entered"));
        ASSERT_TRUE(store.finish());
    }
    EXPECT_EQ(
        answers(path, "SELECT path, files, bytes, good, corrupt, error FROM folders ORDER BY path"),
        (std::vector<std::string>{"|7|65|6|1|", "a|5|45|4|1|", "a/b|3|25|2|1|", "a/b/c|1|10|1|0|", "a/b/c/d|1|10|1|0|",
                                  "locked|0|0|0|0|", "locked/in|0|0|0|0|cannot be entered", "z|1|10|1|0|"}));
}

TEST_F(EvidenceStoreTest, ALineIsFoundByItsNumberOrByItsPath) {
    {
        auto store = created();
        fill(store, 10);
    }
    auto from = reader();
    EvidenceRow row;
    for (const std::int64_t line : {5, 7}) {
        const auto found = from.findLine(line, "pic/IMG_5.jpg", row);
        ASSERT_TRUE(found && *found);
        EXPECT_EQ(row.id, 5);
    }
    const auto none = from.findLine(5, "pic/none.jpg", row);
    ASSERT_TRUE(none);
    EXPECT_FALSE(*none);
}

TEST_F(EvidenceStoreTest, PathsAreFoundInAnyOrderWithAndWithoutTheIndexOverNames) {
    auto store = created();
    fill(store, 20);
    for (const bool indexed : {false, true, false}) {
        ASSERT_TRUE(store.indexNames(indexed));
        auto from = reader();
        for (const int number : {3, 17, 4, 4, 1, 20}) {
            EvidenceRow row;
            const auto found = from.findPath("pic/IMG_" + std::to_string(number) + ".jpg", row);
            ASSERT_TRUE(found && *found) << number;
            EXPECT_EQ(row.id, number);
        }
    }
}

TEST_F(EvidenceStoreTest, TheJobTellsWhatWasSetLast) {
    {
        auto store = created();
        ASSERT_TRUE(store.setJob(job_keys::kEnd, job_keys::kRunning));
        ASSERT_TRUE(store.setJob(job_keys::kEnd, job_keys::kComplete));
        ASSERT_TRUE(store.setJob(job_keys::kListBytes, std::int64_t{77}));
        ASSERT_TRUE(store.commit());
    }
    auto from = reader();
    EXPECT_EQ(from.jobText(job_keys::kEnd).value(), "complete");
    EXPECT_EQ(from.jobNumber(job_keys::kListBytes).value(), 77);
    EXPECT_FALSE(from.jobText(job_keys::kHost).value());
}

TEST_F(EvidenceStoreTest, AReaderAndAWriterDoNotHinderEachOther) {
    auto store = created();
    fill(store, 3);
    auto from = reader();
    EvidenceRow row;
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(from.next(row).value_or(false));
    ASSERT_FALSE(from.next(row).value_or(true));
    EvidenceRow more = rowOf(4, "pic", "more.jpg");
    ASSERT_TRUE(store.add(more, nullptr));
    store.waitForLocks(std::chrono::milliseconds(0));
    ASSERT_TRUE(store.commit());
    EXPECT_TRUE(from.next(row).value_or(false)) << "what came meanwhile";
}

}  // namespace
}  // namespace quillon
