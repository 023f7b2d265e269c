// SPDX-License-Identifier: MIT
#include "editors/bench_heads.h"

#include "editors/history_effect.h"
#include "editors/listed_consensus.h"
#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"
#include "text/list_text.h"

namespace quillon::test {
namespace {

const std::atomic<bool> kGoOn{false};

FileHead headWith(std::string_view bytes) {
    FileHead head;
    head.length = kHeaderBytes;
    head.bytes.fill('-');
    std::ranges::copy(bytes, head.bytes.begin());
    return head;
}

class BenchHeadsTest : public EvidenceFixture {
protected:
    /// One job whose source is source/, with one head for each name; "good" in a name tells the grade.
    void keep(const std::string& job, const std::vector<std::pair<std::string, std::string>>& files) {
        const NativePath place = folder / (job + ".sqlite");
        ASSERT_TRUE(EvidenceStore::create(place));
        auto store = EvidenceStore::open(place, EvidenceStore::Heads::Kept);
        ASSERT_TRUE(store);
        ASSERT_TRUE(store->setJob(job_keys::kSource, (folder / "source").native()));
        int number = 0;
        for (const auto& [name, bytes] : files) {
            EvidenceRow row = rowOf(++number, "", name, name.starts_with("good") ? Grade::Good : Grade::Corrupt);
            row.extension = name.substr(name.rfind('.') + 1);
            const FileHead head = headWith(bytes);
            ASSERT_TRUE(store->add(row, &head));
        }
        ASSERT_TRUE(store->finish());
    }
    [[nodiscard]] BenchWish wish(const std::vector<std::string>& names, const std::string& job = "1") const {
        BenchWish wished{folder.path(), "qlx", job, {}};
        for (const auto& name : names) wished.files.push_back(toListText((folder / "source" / name).native()));
        return wished;
    }
};

TEST_F(BenchHeadsTest, HeadsOfListedFilesComeFromTheEvidenceAndElseFromTheDisk) {
    keep("1", {{"bad.qlx", "KEPT"}, {"good.png", "\x89PNG"}});
    folder.write("source/new.qlx", "ONDISK" + std::string(600, 'x'));
    const Bench bench = loadBench(wish({"bad.qlx", "gone.qlx", "new.qlx"}), kGoOn);
    ASSERT_EQ(bench.raw.size(), 2U);
    EXPECT_EQ(std::string(bench.raw[0].data(), 4), "KEPT");
    EXPECT_EQ(std::string(bench.raw[1].data(), 6), "ONDISK");
    EXPECT_EQ(std::string(bench.listed[0].data(), 4), "kept");
    EXPECT_EQ(bench.known.heads.size(), 2U);
    EXPECT_FALSE(bench.cut);
}

TEST_F(BenchHeadsTest, WithoutEvidenceTheDiskIsAsked) {
    folder.write("source/new.qlx", "ONDISK" + std::string(600, 'x'));
    BenchWish wished = wish({"new.qlx"});
    wished.listFolder.clear();
    EXPECT_EQ(loadBench(wished, kGoOn).raw.size(), 1U);
}

TEST_F(BenchHeadsTest, AtMostSoManyHeadsAreHeld) {
    keep("1", {{"good1.png", "a"}, {"good2.png", "b"}, {"good3.png", "c"}});
    const Bench bench = loadBench(wish({}), kGoOn, 2);
    EXPECT_EQ(bench.known.heads.size(), 2U);
    EXPECT_TRUE(bench.cut);
    const std::atomic<bool> stop{true};
    EXPECT_TRUE(loadBench(wish({}), stop).known.heads.empty());
}

TEST_F(BenchHeadsTest, TextThatOneJobAloneHoldsIsMarked) {
    keep("1", {{"bad1.qlx", "SMITHLTD"}, {"bad2.qlx", "SMITHLTD"}, {"good.png", "\x89PNG"}});
    const auto wished = wish({"bad1.qlx", "bad2.qlx"});
    const auto alone = offerTerms(loadBench(wished, kGoOn), wished);
    ASSERT_FALSE(alone.empty());
    EXPECT_TRUE(alone.front().ofOneJob);
    EXPECT_EQ(alone.front().term.hits, 2U);
    EXPECT_EQ(alone.front().term.others, 1U);
    keep("2", {{"other.qlx", "SMITHLTD"}});
    const auto known = offerTerms(loadBench(wished, kGoOn), wished);
    ASSERT_FALSE(known.empty());
    EXPECT_FALSE(known.front().ofOneJob);
}

TEST_F(BenchHeadsTest, ListedFilesAreComparedByTheirKeptHeadsAndElseByThoseOnTheDisk) {
    keep("1", {{"bad.qlx", "QLX!a"}});
    folder.write("source/bad.qlx", "LATER");
    folder.write("source/new.qlx", "QLX!b");
    const auto found = consensusOf(wish({"bad.qlx", "gone.qlx", "new.qlx"}), kGoOn);
    EXPECT_EQ(found.files, 2U);
    EXPECT_EQ(consensusText(found), "All 2 files share 4 of 512 bytes: 1-4");
}

TEST_F(BenchHeadsTest, AChangeTellsHowManyKeptHeadsWereGoodBeforeAndAfter) {
    keep("1", {{"a.qlx", "QLX!1"}, {"b.qlx", "QLX!2"}, {"c.qlx", "OTHER"}, {"d.png", "QLX!3"}});
    keep("2", {{"e.qlx", "qlx!4"}});
    DatabaseChange change;
    change.files = {{"Database/QLX.dat", "1,OTHER,T\r\n", "1,QLX!,T\r\n1,OTHER,T\r\n"},
                    {"Database/gif.dat", "1,GIF,T\r\n", std::nullopt},
                    {"Settings/SkipList.dat", "a\r\n", "b\r\n"}};
    const auto effects = effectsOf({change, DatabaseChange()}, folder.path(), kGoOn);
    ASSERT_EQ(effects.size(), 2U);
    EXPECT_EQ(effects[0], (std::vector<ChangeEffect>{{"qlx", 4, 1, 4}}));
    EXPECT_TRUE(effects[1].empty());
    EXPECT_EQ(effectText(effects[0]), "Of 4 kept heads of qlx 1 were good before and 4 after");
    EXPECT_EQ(effectText({}), "");
}

TEST_F(BenchHeadsTest, ARemovedTermFileLeavesNoHeadGood) {
    keep("1", {{"a.qlx", "QLX!1"}});
    DatabaseChange change;
    change.files = {{"Database/qlx.dat", "1,QLX!,T\r\n", std::nullopt}};
    EXPECT_EQ(effectsOf({change}, folder.path(), kGoOn)[0], (std::vector<ChangeEffect>{{"qlx", 1, 1, 0}}));
}

TEST_F(BenchHeadsTest, AComparisonThatIsStoppedGivesWhatItHas) {
    folder.write("source/new.qlx", "QLX!b");
    const std::atomic<bool> stop{true};
    EXPECT_EQ(consensusOf(wish({"new.qlx"}), stop).files, 0U);
}

}  // namespace
}  // namespace quillon::test
