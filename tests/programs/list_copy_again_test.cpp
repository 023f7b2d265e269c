// SPDX-License-Identifier: MIT
// Files that were copied before: which copies are made again, and what the evidence knows of them afterwards.
#include <filesystem>

#include "answers/copy_outlook.h"
#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "job/older_copies.h"
#include "programs/command_fixture.h"
#include "programs/list_command.h"
#include "support/posix_files.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

// A loop that is told to stop while it turns.
class StoppedLoop final : public EventLoop {
public:
    void turn() override { stopped_ = true; }
    [[nodiscard]] bool stopAsked() const override { return stopped_; }

private:
    bool stopped_ = false;
};

class ListCopyAgainTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        folder.write("source/one.abc", "MZ" + std::string(600, 'x'));
        folder.write("source/two.abc", "MZ" + std::string(600, 'y'));
    }

    int copy(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {
            "copy", "1234", "--to", target().native(), "--app", (folder / "app").native()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        out.str("");
        err.str("");
        return runListCommand(arguments, {out, err, false, false, nullptr});
    }
    [[nodiscard]] NativePath target() const { return folder / "target"; }
    // Below the folder of the test, where a file of the source lands.
    [[nodiscard]] std::string landed(const std::string& name) const {
        return "target" + (folder / "source" / name).native();
    }
    [[nodiscard]] std::string bytesOf(const std::string& name) const { return folder.read(landed(name)); }
    [[nodiscard]] EvidenceReader evidence() const {
        auto reader = EvidenceReader::open(folder / "local/1234.sqlite");
        EXPECT_TRUE(reader);
        return *std::move(reader);
    }
    [[nodiscard]] EvidenceRow rowOf(const std::string& path) const {
        EvidenceRow row;
        EXPECT_TRUE(evidence().findPath(path, row).value_or(false)) << path;
        return row;
    }
    [[nodiscard]] JobFiles files() const { return {"1234", folder / "local/1234.csv", folder / "local/1234.sqlite"}; }
    [[nodiscard]] CopyOrder failedOnly() const {
        CopyOrder order;
        order.target = target();
        order.care.hash = true;
        order.failedOnly = true;
        return order;
    }
    [[nodiscard]] std::int64_t lookedAt() const {
        const JobFiles job = files();
        const CopyOrder order = failedOnly();
        auto copies = FileCopies::begin(job, order);
        std::int64_t count = 0;
        EXPECT_TRUE(copies && copies->eachFile([&](const EvidenceRow&, const CopyTask&) { ++count; }));
        return count;
    }
};

TEST_F(ListCopyAgainTest, ACopyDoesNotTakeAwayWhatARescueMapKnows) {
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    auto row = rowOf("one.abc");
    row.badBytes = 512;
    row.badRanges = "0+512";
    {
        auto store = EvidenceStore::open(folder / "local/1234.sqlite");
        ASSERT_TRUE(store && store->change(row) && store->setJob(job_keys::kSectors, job_keys::kByMap));
        ASSERT_TRUE(store->commit());
    }
    ASSERT_EQ(copy(), 0) << err.str();
    EXPECT_EQ(rowOf("one.abc").copied, 1);
    EXPECT_EQ(rowOf("one.abc").badBytes, 512);
    EXPECT_EQ(rowOf("one.abc").badRanges, "0+512");
    EXPECT_EQ(evidence().jobText(job_keys::kSectors).value(), job_keys::kByMap);
}

TEST_F(ListCopyAgainTest, AFileKeepsItsNameWhereANeighbourHasTheRightOne) {
    folder.write("local/Database/qrs.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    const std::string head = "QUILLON-QRS-HEADER";
    folder.write("source/plain", head + std::string(600, '1'));
    folder.write("source/plain.qrs", head + std::string(600, '2'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy({"--right-names"}), 0) << err.str();
    EXPECT_EQ(bytesOf("plain"), head + std::string(600, '1'));
    EXPECT_EQ(bytesOf("plain.qrs"), head + std::string(600, '2'));
}

TEST_F(ListCopyAgainTest, AJobThatGoesOnKnowsTheMarkedSectorsOfCopiesThatStand) {
    std::string marked = "MZ" + std::string(510, 'x');
    for (std::size_t at = 0; at < 512; ++at) marked += "BAD SECTOR "[at % 11];
    folder.write("source/one.abc", marked);
    folder.write("local/Settings/BadSectors.dat", "0,BAD SECTOR ,T,R,BAD SECTOR\r\n");
    std::vector<std::string> wish = {"--yes", "--quiet", "--target", target().native(), "--verify"};
    ASSERT_EQ(job(wish), 0) << err.str();
    ASSERT_EQ(rowOf("one.abc").badBytes, 512);
    ASSERT_EQ(rowOf("two.abc").badBytes, 0);
    setTimes(folder / landed("two.abc"), 1, 1);
    wish.emplace_back("--resume");
    ASSERT_EQ(job(wish), 0) << err.str();
    EXPECT_EQ(rowOf("one.abc").badBytes, 512);
    EXPECT_EQ(rowOf("one.abc").badRanges, "512+512");
    EXPECT_EQ(rowOf("two.abc").badBytes, 0);
    EXPECT_EQ(statOf(folder / landed("two.abc")).st_mtim.tv_sec, 1) << "this one was not touched";
}

TEST_F(ListCopyAgainTest, TheLookAtACopyCanBeGivenUp) {
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy(), 0) << err.str();
    const auto older = OlderCopies::read(target(), "1234");
    ASSERT_TRUE(older);
    const std::string place = (folder / landed("one.abc")).native();
    EXPECT_TRUE(older->isKnown(place));
    EXPECT_TRUE(older->wholeOne(place, [] { return true; }));
    EXPECT_FALSE(older->wholeOne(place, [] { return false; }));
}

TEST_F(ListCopyAgainTest, AStopInALookAsksForNothing) {
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy(), 0) << err.str();
    for (const char* name : {"one.abc", "two.abc"}) setTimes(folder / landed(name), 1, 1);
    const JobFiles job = files();
    const CopyOrder order = failedOnly();
    auto copies = FileCopies::begin(job, order);
    ASSERT_TRUE(copies);
    StoppedLoop loop;
    int ended = 0;
    ASSERT_TRUE(copies->run(loop, [&ended](const SettledCopy&) { ++ended; }));
    EXPECT_TRUE(copies->sums().stopped);
    EXPECT_EQ(copies->sums().files, 0);
    EXPECT_EQ(ended, 0);
    for (const char* name : {"one.abc", "two.abc"}) EXPECT_EQ(statOf(folder / landed(name)).st_mtim.tv_sec, 1) << name;
}

TEST_F(ListCopyAgainTest, TheLookAtAllFilesCanBeGivenUp) {
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    const JobFiles job = files();
    CopyOrder order;
    order.target = target();
    for (const int wanted : {0, 1, 2}) {
        auto copies = FileCopies::begin(job, order);
        ASSERT_TRUE(copies);
        int asked = 0;
        const auto outlook = outlookOf(*copies, target(), [&] { return asked++ < wanted; });
        ASSERT_TRUE(outlook);
        EXPECT_EQ(outlook->files, wanted);
    }
    order.wish.extensions = {"none-has-this"};
    auto copies = FileCopies::begin(job, order);
    ASSERT_TRUE(copies);
    int asked = 0;
    ASSERT_TRUE(outlookOf(*copies, target(), [&asked] { return ++asked < 2; }));
    EXPECT_EQ(asked, 2) << "it went on over files that nobody wants";
}

TEST_F(ListCopyAgainTest, TheLookCountsCopiesThatHaveNoCheckSum) {
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy(), 0) << err.str();
    EXPECT_EQ(lookedAt(), 0);
    fs::remove(target() / "1234.sha256");
    EXPECT_EQ(lookedAt(), 2);
    ASSERT_EQ(copy({"--failed"}), 0) << err.str();
    EXPECT_EQ(out.str(), "2 files copied, 1,204 bytes\n");
    EXPECT_EQ(lookedAt(), 0);
}

}  // namespace
}  // namespace quillon::test
