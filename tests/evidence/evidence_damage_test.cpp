// SPDX-License-Identifier: MIT
// Evidence that is damaged, foreign or hostile: a clear word, never a crash, and nothing that is not true.
#include <filesystem>

#include <sqlite3.h>
#include <sys/stat.h>
#include <zstd.h>

#include "evidence/evidence_fixture.h"
#include "evidence/evidence_writer.h"
#include "evidence/sqlite_faults.h"

namespace quillon {
namespace {

using test::headOf;
using test::rowOf;

class EvidenceDamageTest : public test::EvidenceFixture {
protected:
    static constexpr int kFiles = 60;

    std::string wholeBytes() {
        {
            auto store = created();
            fill(store, kFiles);
        }
        return folder.read("1234.sqlite");
    }
    void run(const std::string& sql) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << error;
        sqlite3_free(error);
        sqlite3_close(database);
    }
    std::string refusal() const {
        const auto opened = EvidenceReader::open(path);
        return opened ? "" : opened.error().text;
    }
    // Reads all there is, and compares what a digest vouches for. How many rows that were.
    int vouchedFor() const {
        auto from = EvidenceReader::open(path);
        int count = 0;
        EvidenceRow row;
        while (from && from->next(row).value_or(false)) {
            const auto head = from->head(row);
            if (!head || *head == nullptr)
                continue;
            ++count;
            const int number = static_cast<int>(row.id);
            const EvidenceRow expected = rowOf(number, "pic", "IMG_" + std::to_string(number) + ".jpg");
            EXPECT_EQ(row.path(), expected.path());
            EXPECT_EQ(row.size, expected.size);
            EXPECT_EQ(row.modified, expected.modified);
            EXPECT_EQ(row.attributes, expected.attributes);
            EXPECT_EQ(row.grade, expected.grade);
            EXPECT_EQ(row.result, expected.result);
            EXPECT_EQ(row.unread, expected.unread);
            EXPECT_EQ(**head, headOf(number));
        }
        return count;
    }
};

TEST_F(EvidenceDamageTest, RowsOfAFolderThatIsNotThereAreLeftOutHoweverManyTheyAre) {
    constexpr int kRows = 9000;  // more than are read at once
    {
        auto store = created();
        fill(store, kRows);
    }
    run("UPDATE file SET folder = 99 WHERE id BETWEEN 2 AND 8999");
    const auto left = rows();
    ASSERT_EQ(left.size(), 2U);
    EXPECT_EQ(left[0].id, 1);
    EXPECT_EQ(left[1].id, kRows);
    EXPECT_EQ(left[1].folder, "pic");
}

TEST_F(EvidenceDamageTest, AThousandFlippedBitsGiveNoWrongRow) {
    const std::string whole = wholeBytes();
    std::uint64_t state = 2026;
    int damagedFiles = 0;
    for (int i = 0; i < 1000; ++i) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const std::size_t bit = (state >> 20U) % (whole.size() * 8);
        std::string bytes = whole;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        folder.write("1234.sqlite", bytes);
        const int count = vouchedFor();
        ASSERT_LE(count, kFiles);
        damagedFiles += count < kFiles ? 1 : 0;
        ASSERT_FALSE(HasFailure()) << "bit " << bit;
    }
    EXPECT_GT(damagedFiles, 100) << "those of the heads and of their rows";
}

TEST_F(EvidenceDamageTest, ACutFileGivesAWordOrWhatIsLeft) {
    const std::string whole = wholeBytes();
    for (std::size_t length = 0; length < whole.size(); length += 1499) {
        folder.write("1234.sqlite", whole.substr(0, length));
        EXPECT_LE(vouchedFor(), length < whole.size() / 2 ? 0 : kFiles);
        ASSERT_FALSE(HasFailure()) << length;
    }
}

TEST_F(EvidenceDamageTest, AForeignFileIsRefusedWithAWord) {
    EXPECT_NE(refusal().find("there is no evidence"), std::string::npos);
    for (const std::string& bytes : {std::string(), std::string("SQLite format 3"), std::string(5000, 'x')}) {
        folder.write("1234.sqlite", bytes);
        EXPECT_NE(refusal().find("it is no evidence of a job"), std::string::npos);
    }
    std::filesystem::remove(path);
    run("CREATE TABLE mine (a)");
    EXPECT_NE(refusal().find("it is no evidence of a job"), std::string::npos);
    std::filesystem::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_NE(refusal().find("it is no file"), std::string::npos) << "and nobody waits for it";
}

TEST_F(EvidenceDamageTest, AnotherVersionIsToldAsSuch) {
    wholeBytes();
    run("PRAGMA user_version = 3");
    EXPECT_NE(refusal().find("another version"), std::string::npos);
}

TEST_F(EvidenceDamageTest, TheFirstVersionIsReadAndBroughtUpBeforeItIsWritten) {
    wholeBytes();
    run("ALTER TABLE file DROP COLUMN tail_detail; ALTER TABLE file DROP COLUMN tail; PRAGMA user_version = 1");
    const auto before = rows();
    ASSERT_FALSE(before.empty());
    EXPECT_EQ(answers(path, "PRAGMA user_version"), std::vector<std::string>{"1"}) << "reading changes nothing";
    EvidenceRow row = before.front();
    row.tail = tails::kWhole;
    {
        auto store = opened();
        ASSERT_TRUE(store.setEnd(before.front(), row));
        ASSERT_TRUE(store.commit());
    }
    EXPECT_EQ(answers(path, "PRAGMA user_version"), std::vector<std::string>{"2"});
    EXPECT_EQ(rows().front(), row);
    EXPECT_EQ(rows().back(), before.back());
}

TEST_F(EvidenceDamageTest, WhatTheProgramDidNotPutThereIsRefused) {
    for (const std::string sql :
         {"CREATE TRIGGER t AFTER UPDATE ON file BEGIN DELETE FROM file; END", "CREATE VIEW v AS SELECT 1",
          "CREATE TABLE other (a)", "CREATE INDEX i ON file (name)", "DROP VIEW files",
          "DROP VIEW files; CREATE VIEW files AS SELECT load_extension('x') AS row",
          "DROP TABLE file; CREATE TABLE file (id INTEGER PRIMARY KEY, name TEXT AS (zeroblob(1000000)))",
          "CREATE VIRTUAL TABLE f USING fts5 (a)", "PRAGMA journal_mode = WAL"}) {
        wholeBytes();
        run(sql);
        EXPECT_NE(refusal(), "") << sql;
        EXPECT_FALSE(EvidenceStore::open(path)) << sql;
        std::filesystem::remove(path);
        std::filesystem::remove(path.native() + "-wal");
        std::filesystem::remove(path.native() + "-shm");
    }
}

TEST_F(EvidenceDamageTest, ValuesOfAnyTypeAndSizeAreBounded) {
    wholeBytes();
    run("UPDATE file SET size = 'much', grade = 99, reason = -1, modified = 1e300, row = x'00' WHERE id = 1;"
        "UPDATE file SET name = zeroblob(50000000) WHERE id = 3;"
        "UPDATE head_block SET heads = zeroblob(100000000)");
    auto from = reader();
    EvidenceRow row;
    ASSERT_TRUE(from.next(row).value_or(false));
    EXPECT_EQ(row.size, 0);
    EXPECT_FALSE(row.grade);
    EXPECT_FALSE(row.reason);
    ASSERT_TRUE(from.next(row).value_or(false));
    const auto huge = from.next(row);
    ASSERT_FALSE(huge);
    EXPECT_NE(huge.error().text.find("too large"), std::string::npos) << huge.error().text;
    from.continueBehind(50);
    ASSERT_TRUE(from.next(row).value_or(false));
    const auto head = from.head(row);
    EXPECT_TRUE(!head || *head == nullptr);
}

TEST_F(EvidenceDamageTest, AFrameThatWouldGrowWithoutBoundIsNoFrame) {
    const std::string much(200'000'000, '\0');
    std::string bomb(ZSTD_compressBound(much.size()), '\0');
    bomb.resize(ZSTD_compress(bomb.data(), bomb.size(), much.data(), much.size(), 1));
    HeadFrames frames;
    HeadBlock block;
    EXPECT_FALSE(frames.unpack(bomb, block));
    EXPECT_FALSE(frames.unpack("no frame", block));
    EXPECT_FALSE(frames.unpack({}, block));
}

// A journal that names a main journal makes SQLite remove the file of that name.
std::string journalThatNames(const std::string& victim, std::size_t pages) {
    const auto number = [](std::uint32_t value) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<char>(value >> static_cast<unsigned>(shift)));
        return bytes;
    };
    const std::string magic = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
    std::string journal =
        magic + number(0) + number(7) + number(static_cast<std::uint32_t>(pages)) + number(512) + number(16384);
    journal.resize(512, '\0');
    std::uint32_t sum = 0;
    for (const char c : victim) sum += static_cast<std::uint32_t>(static_cast<int>(c));
    return journal + number(65537) + victim + number(static_cast<std::uint32_t>(victim.size())) + number(sum) + magic;
}

TEST_F(EvidenceDamageTest, AHostileJournalRemovesNoOtherFile) {
    const std::string whole = wholeBytes();
    const auto victim = folder.write("precious", "a report");
    const std::string journal = journalThatNames(victim.native(), whole.size() / 16384);
    for (const bool writing : {false, true}) {
        folder.write("1234.sqlite", whole);
        folder.write("1234.sqlite-journal", journal);
        if (writing)
            EXPECT_FALSE(EvidenceStore::open(path));
        else
            EXPECT_NE(refusal(), "");
        EXPECT_TRUE(std::filesystem::exists(victim));
    }
    folder.write("1234.sqlite", whole);
    folder.write("1234.sqlite-journal", journal);
    run("SELECT count(*) FROM sqlite_schema");
    EXPECT_FALSE(std::filesystem::exists(victim)) << "this is what it would have done";
}

TEST_F(EvidenceDamageTest, AJournalOrLogOfAnyBytesDoesNoHarm) {
    const std::string whole = wholeBytes();
    for (const char* const end : {"-journal", "-wal", "-shm"}) {
        for (const std::string& bytes : {std::string(), std::string(70'000, '\xff'), whole}) {
            folder.write("1234.sqlite", whole);
            folder.write(std::string("1234.sqlite") + end, bytes);
            vouchedFor();
            std::filesystem::remove(path.native() + end);
        }
    }
}

TEST_F(EvidenceDamageTest, AFullDiskAtEveryWriteCostsTheEvidenceAndLeavesItWhole) {
    bool met = true;
    for (int at = 1; met; ++at) {
        ASSERT_TRUE(EvidenceStore::create(path));
        std::optional<FileError> lost;
        {
            const test::SqliteFaults faults(at);
            EvidenceWriter writer([this] { return EvidenceStore::open(path); }, {});
            ASSERT_TRUE(writer.start());
            for (int i = 1; i <= 20; ++i) {
                const FileHead head = headOf(i);
                ASSERT_TRUE(writer.add(
                    &head, {}, [i](EvidenceRow& row) { row = rowOf(i, "pic", "IMG_" + std::to_string(i) + ".jpg"); }));
            }
            ASSERT_TRUE(writer.change([](EvidenceStore& store) { return store.finish(); }));
            writer.close();
            ASSERT_TRUE(writer.endsWithin(std::chrono::minutes(1)));
            lost = writer.lost();
            met = faults.met();
        }
        EXPECT_EQ(lost.has_value(), met) << "write " << at;
        EXPECT_NE(lost.value_or(FileError{{}, "full"}).text.find("full"), std::string::npos) << lost->text;
        EXPECT_EQ(vouchedFor(), met ? 0 : 20) << "all of a transaction, or nothing";
        run("PRAGMA integrity_check");
        std::filesystem::remove(path);
    }
}

TEST_F(EvidenceDamageTest, AFileThatMayOnlyBeReadIsReadAndNotWritten) {
    wholeBytes();
    const test::SqliteReadsOnly readsOnly;
    EXPECT_EQ(vouchedFor(), kFiles);
    auto store = EvidenceStore::open(path);
    ASSERT_TRUE(store);
    EvidenceRow row = rowOf(500, "", "more");
    const auto added = store->add(row, nullptr);
    ASSERT_FALSE(added);
    EXPECT_NE(added.error().text.find("cannot be written"), std::string::npos) << added.error().text;
}

}  // namespace
}  // namespace quillon
