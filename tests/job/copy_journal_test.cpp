// SPDX-License-Identifier: MIT
#include "job/copy_journal.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "job/copy_record.h"
#include "job/older_copies.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

Sha256Digest digestOf(std::string_view bytes) {
    Sha256 hash;
    hash.add(bytes);
    return hash.finish();
}

CopyFacts factsOf(std::string_view bytes) {
    CopyFacts facts;
    facts.size = bytes.size();
    facts.hash = digestOf(bytes);
    facts.sourceModified = FileTime{1'700'000'000, 12};
    return facts;
}

std::string lineOf(const std::string& name, std::string_view bytes) {
    return checkSumLine(hexText(digestOf(bytes)), name);
}

class CopyJournalTest : public testing::Test {
protected:
    [[nodiscard]] NativePath path() const { return copyJournalIn(temp.path(), "1"); }
    [[nodiscard]] std::vector<NotedCopy> read() const {
        std::vector<NotedCopy> copies;
        EXPECT_TRUE(readCopyJournal(path(), [&copies](NotedCopy copy) { copies.push_back(std::move(copy)); }));
        return copies;
    }
    // As a run leaves it that is killed.
    void note(const std::string& name, const CopyFacts& facts) const { CopyJournal(path()).add(name, facts); }
    [[nodiscard]] SettledCopy copyOf(const std::string& name, std::string_view bytes) const {
        return {1, "/source/" + name, (temp / name).native(), factsOf(bytes)};
    }
    [[nodiscard]] Result<CopyRecord> record() const { return CopyRecord::begin(temp.path(), {}, "1"); }

    TempFolder temp;
};

TEST_F(CopyJournalTest, WhatIsNotedComesBackInItsOrder) {
    CopyFacts looked = factsOf("two");
    looked.unread.emplace();
    CopyFacts gaps = factsOf("three");
    gaps.gaps = {{0, 512}, {4096, 8192}};
    note("a/one", factsOf("one"));
    note("odd\nname\\\r", looked);
    note("three", gaps);
    const auto copies = read();
    ASSERT_EQ(copies.size(), 3U);
    EXPECT_EQ(copies[0].name, "a/one");
    EXPECT_EQ(copies[0].facts.hash, digestOf("one"));
    EXPECT_EQ(copies[0].facts.size, 3U);
    EXPECT_EQ(copies[0].facts.sourceModified, (FileTime{1'700'000'000, 12}));
    EXPECT_FALSE(copies[0].facts.unread);
    EXPECT_EQ(copies[1].name, "odd\nname\\\r");
    EXPECT_EQ(copies[1].facts.unread, ByteRanges());
    EXPECT_EQ(copies[2].facts.gaps, gaps.gaps);
    EXPECT_FALSE(copies[2].facts.sourceModified) << "it is to be made again";
}

TEST_F(CopyJournalTest, ALineThatWasCutCostsItselfAlone) {
    for (const char* cut : {"# source 3 17", "# gap 0 51", "9f86d081884c7d659a2feaa0c5", "\xff"}) {
        temp.write("1.sha256-running", lineOf("a", "one") + "# end\n" + cut);
        note("b", factsOf("two"));
        const auto copies = read();
        ASSERT_EQ(copies.size(), 2U) << cut;
        EXPECT_EQ(copies[0].name, "a") << cut;
        EXPECT_FALSE(copies[0].facts.sourceModified) << cut;
        EXPECT_EQ(copies[1].facts.size, 3U) << cut;
        EXPECT_TRUE(copies[1].facts.gaps.empty()) << cut;
    }
}

// A kill or a full disk cuts where it likes; a part of a name is one, too.
TEST_F(CopyJournalTest, OfANoteThatWasCutAnywhereNothingCounts) {
    CopyFacts gaps = factsOf("two");
    gaps.gaps = {{4096, 8192}};
    for (const CopyFacts& facts : {factsOf("two"), gaps}) {
        temp.write("1.sha256-running", "");
        note("a", factsOf("one"));
        const std::size_t whole = temp.read("1.sha256-running").size();
        note("folder/odd\nname.jpg", facts);
        const std::string all = temp.read("1.sha256-running");
        for (std::size_t cut = whole; cut < all.size(); ++cut) {
            temp.write("1.sha256-running", all.substr(0, cut));
            note("c", factsOf("three"));
            std::vector<std::string> names = {"a", "folder/odd\nname.jpg", "c"};
            if (cut + 1 < all.size())  // the end of the last line may be missing
                names.erase(names.begin() + 1);
            std::vector<std::string> found;
            for (const NotedCopy& copy : read()) found.push_back(copy.name);
            EXPECT_EQ(found, names) << "cut at byte " << cut;
            ASSERT_EQ(read().back().facts.size, 5U) << "cut at byte " << cut;
            EXPECT_TRUE(read().back().facts.gaps.empty()) << "cut at byte " << cut;
        }
    }
}

TEST_F(CopyJournalTest, AWriteThatFailsIsTakenBack) {
    note("a", factsOf("one"));
    const std::string before = temp.read("1.sha256-running");
    {
        test::FailingFiles disk;
        disk.failAt(1, {ENOSPC, false, true}, "write");
        note("b", factsOf("two"));
        EXPECT_TRUE(disk.met());
    }
    EXPECT_EQ(temp.read("1.sha256-running"), before);
}

TEST_F(CopyJournalTest, NotesThatCannotBeReadStayForTheNextRun) {
    note("a", factsOf("one"));
    auto ours = record();
    ASSERT_TRUE(ours);
    {
        test::FailingFiles disk;
        disk.refuse("read", EIO);
        EXPECT_FALSE(ours->finish());
    }
    EXPECT_EQ(read().size(), 1U);
}

TEST_F(CopyJournalTest, NothingIsWrittenThroughALink) {
    const NativePath other = temp.write("other", "of the customer");
    std::filesystem::create_symlink(other, path());
    note("a", factsOf("one"));
    EXPECT_EQ(temp.read("other"), "of the customer");
}

TEST_F(CopyJournalTest, WhereItCannotBeWrittenNothingIsNoted) {
    std::filesystem::create_directory(path());
    note("a", factsOf("one"));
    EXPECT_TRUE(read().empty());
    auto lists = record();
    ASSERT_TRUE(lists && lists->note(copyOf("a", "one")) && lists->finish());
    EXPECT_EQ(temp.read("1.sha256"), lineOf("a", "one"));
}

TEST_F(CopyJournalTest, ListsThatStandLeaveNone) {
    auto lists = record();
    ASSERT_TRUE(lists && lists->note(copyOf("a", "one")));
    EXPECT_EQ(read().size(), 1U);
    ASSERT_TRUE(lists->finish());
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(CopyJournalTest, TheLastWordOnEachFileStandsInTheLists) {
    temp.write("1.sha256", lineOf("kept", "k") + lineOf("older", "o") + lineOf("hurt", "whole once"));
    note("older", factsOf("first"));
    note("older", factsOf("second"));
    note("again", factsOf("killed"));
    CopyFacts gaps = factsOf("hurt");
    gaps.gaps = {{0, 512}};
    note("hurt", gaps);
    auto lists = record();
    ASSERT_TRUE(lists && lists->note(copyOf("again", "now")) && lists->finish());
    EXPECT_EQ(temp.read("1.sha256"), lineOf("again", "now") + lineOf("older", "second") + lineOf("kept", "k"));
    EXPECT_EQ(temp.read("1-damaged.sha256"), lineOf("hurt", "hurt"));
    EXPECT_EQ(temp.read("1.gaps.csv"), "path,offset,length\r\n\"hurt\",0,512\r\n");
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(CopyJournalTest, ListsThatAKilledRunHasBegunGoAtTheNextOne) {
    const std::string living = temporaryName();
    std::string killed = living;
    const auto time = killed.rfind('-', killed.rfind('-') - 1);
    const auto number = killed.rfind('-', time - 1);
    killed.replace(number + 1, time - number - 1, "2147483646");  // above any number that a system gives a process
    std::string foreign = killed;
    foreign.insert(number, "-elsewhere");
    for (const std::string& name : {living, killed, foreign}) temp.write(name, "the beginning of a list");
    std::filesystem::create_directory(temp / (killed + "0"));
    auto lists = record();
    ASSERT_TRUE(lists && lists->finish());
    EXPECT_FALSE(pathExists(temp / killed));
    EXPECT_TRUE(pathExists(temp / living)) << "its process goes on";
    EXPECT_TRUE(pathExists(temp / foreign)) << "nobody can tell here whether that process is gone";
    EXPECT_TRUE(pathExists(temp / (killed + "0"))) << "no save makes folders";
}

TEST_F(CopyJournalTest, ACopyIsOfItsSourceOnlyWithSizeAndTime) {
    note("a", factsOf("one"));
    const auto copies = OlderCopies::read(temp.path(), "1");
    ASSERT_TRUE(copies);
    EXPECT_FALSE(copies->isEmpty());
    const std::string place = (temp / "a").native();
    FileStamp source;
    source.size = 3;
    source.modified = {1'700'000'000, 12};
    EXPECT_TRUE(copies->notedOf(place, source));
    EXPECT_FALSE(copies->notedOf((temp / "b").native(), source));
    source.size = 4;
    EXPECT_FALSE(copies->notedOf(place, source));
    source = {{1'700'000'000, 13}, {}, 3, 0};
    EXPECT_FALSE(copies->notedOf(place, source));
}

TEST_F(CopyJournalTest, ACopyOfWhichTheSourceDidNotGiveAllIsNoneToLeaveAlone) {
    temp.write("1.sha256", lineOf("a", "one"));
    CopyFacts hurt = factsOf("hurt");
    hurt.unread = ByteRanges{{0, 512}};
    for (const char* name : {"a", "b"}) note(name, hurt);
    const auto copies = OlderCopies::read(temp.path(), "1");
    ASSERT_TRUE(copies);
    EXPECT_FALSE(copies->isKnown((temp / "a").native())) << "the check sum of an older one is not its own";
    EXPECT_FALSE(copies->isKnown((temp / "b").native()));
}

TEST_F(CopyJournalTest, ACopyWithGapsTakesTheCheckSumOfAWholeOne) {
    temp.write("1.sha256", lineOf("a", "one"));
    CopyFacts gaps = factsOf("hurt");
    gaps.gaps = {{0, 512}};
    note("a", gaps);
    const auto copies = OlderCopies::read(temp.path(), "1");
    ASSERT_TRUE(copies);
    EXPECT_FALSE(copies->isKnown((temp / "a").native()));
}

}  // namespace
}  // namespace quillon
