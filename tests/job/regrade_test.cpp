// SPDX-License-Identifier: MIT
// A list is graded anew from the heads that its evidence keeps.
#include "job/regrade.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <tuple>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "job/driver_fixture.h"
#include "platform/folder_lock.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class RegradeTest : public DriverTest {
protected:
    RegradeTest() {
        state.options.keepEvidence = true;
        state.options.useCommonHeaders = true;
        state.log.setListener(nullptr);
        writeMessages("m");
        loadReportMessages(installation, fake.dialogs, job.kept(), job.messages);
    }

    void writeMessages(const std::string& beginning) const {
        std::string lines;
        for (int i = 1; i <= 10; ++i) lines += beginning + std::to_string(i) + "\r\n";
        folder.write("local/Settings/Errors.dat", lines);
    }
    void sampleFiles() const {
        termFile("abc", "1,MZ,T\r\n");
        sourceFile("good.abc", "MZ" + std::string(600, 'g'));
        sourceFile("sub/bad.abc", std::string(600, 'b'));
        sourceFile("sub/noext", std::string(600, 'n'));
        sourceFile("sub/small.abc", "MZ");
    }
    void takeSourceAway() const { fs::rename(folder / "source", folder / "away"); }
    void bringSourceBack() const { fs::rename(folder / "away", folder / "source"); }
    RegradeResult regrade() { return Regrade(job).run(); }

    [[nodiscard]] EvidenceReader reader() const {
        auto opened = EvidenceReader::open(folder / "local/1234.sqlite");
        EXPECT_TRUE(opened) << opened.error().text;
        return std::move(*opened);
    }
    [[nodiscard]] EvidenceRow rowOf(const std::string& path) const {
        EvidenceRow row;
        EXPECT_TRUE(reader().findPath(path, row).value_or(false)) << path;
        return row;
    }
    [[nodiscard]] std::vector<std::u16string> results() const {
        std::vector<std::u16string> texts;
        for (const auto& row : finalRows()) texts.push_back(row.substr(row.rfind(u',') + 1));
        return texts;
    }

    // The token tells one run from another.
    [[nodiscard]] std::vector<std::u16string> rowsWithoutToken() const {
        auto rows = finalRows();
        for (auto& row : rows) {
            const auto begin = row.find(u';');
            row.erase(begin, row.find(u',', begin) - begin);
        }
        return rows;
    }

    using Fact = std::tuple<std::string, std::optional<Grade>, std::optional<std::string>, std::optional<Reason>,
                            std::string, std::string, std::string>;
    // What the evidence says of each file; every head must be vouched for.
    [[nodiscard]] std::vector<Fact> facts() const {
        auto from = reader();
        std::vector<Fact> all;
        EvidenceRow row;
        while (from.next(row).value_or(false)) {
            all.emplace_back(row.path(), row.grade, row.result, row.reason, row.detail, row.doubt, row.doubtDetail);
            passOver(from.head(row), "damage is counted");
        }
        EXPECT_EQ(from.damaged(), 0);
        return all;
    }
    [[nodiscard]] std::vector<std::string> totals() const {
        auto from = reader();
        std::vector<std::string> all;
        const std::string questions[] = {
            "SELECT extension || ' ' || grade || ' ' || files || ' ' || bytes FROM by_extension WHERE files > 0 ORDER BY 1",
            "SELECT reason || ' ' || extension || ' ' || files FROM by_reason WHERE files > 0 ORDER BY 1",
            "SELECT path || ' ' || good || ' ' || corrupt || ' ' || common_header FROM folder ORDER BY path"};
        for (const auto& question : questions) {
            auto statement = from.prepare(question);
            while (statement && statement->step().value_or(false)) all.emplace_back(statement->text(0));
        }
        return all;
    }
};

// Trees and rules out of few letters, so that terms fit often.
class RandomRules {
public:
    explicit RandomRules(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }
    std::string letters(std::size_t count) {
        std::string text;
        while (text.size() < count) text += "ABCm"[below(4)];
        return text;
    }
    std::string content() {
        static constexpr std::size_t kSizes[] = {0, 100, 511, 512, 513, 2000};
        return letters(kSizes[below(6)]);
    }
    std::string term() { return std::to_string(below(5)) + "," + letters(1 + below(3)) + ",T"; }
    std::string terms() {
        std::string lines;
        for (auto count = 1 + below(3); count > 0; --count) lines += term() + "\r\n";
        return lines;
    }
    std::string commonList() {
        std::string lines;
        for (auto count = 1 + below(3); count > 0; --count) lines += term() + "," + letters(4) + "\r\n";
        return lines;
    }

private:
    std::mt19937 random_;
};

constexpr const char* kExtensions[] = {".abc", ".DEF", ".g,h", ".xyz", ""};

TEST_F(RegradeTest, WithoutTheSourceTheListIsThatOfANewJobFromTheDisk) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE(seed);
        RandomRules rules(seed);
        const auto newRules = [&](const char* messages) {
            for (const char* name : {"abc", "def", "g,h"}) {
                if (rules.below(3) > 0)
                    termFile(name, rules.terms());
                else
                    fs::remove(folder / ("local/Database/" + std::string(name) + ".dat"));
            }
            folder.write("local/Settings/CommonHeaders.dat", rules.commonList());
            writeMessages(messages);
        };
        fs::remove_all(folder / "source");
        for (int i = 0; i < 150; ++i)
            sourceFile("f" + std::to_string(i % 7) + "/n" + std::to_string(i) + kExtensions[rules.below(5)],
                       rules.content());
        newRules("old");
        loadReportMessages(installation, fake.dialogs, job.kept(), job.messages);
        state.options.useCommonHeaders = true;
        if (seed > 1)
            expectOverwrite(BoxAnswer::Yes);
        ASSERT_EQ(run(), JobEnd::Complete);

        newRules("new, other");
        state.options.useCommonHeaders = rules.below(2) == 0;
        takeSourceAway();
        const RegradeResult result = regrade();
        ASSERT_EQ(result.end, RegradeEnd::Complete) << result.detail;
        EXPECT_EQ(result.counts.rows, 150);
        EXPECT_EQ(result.counts.graded, 150);
        EXPECT_EQ(result.counts.changed, 150) << "each message is another one";
        const auto rows = rowsWithoutToken();
        const auto said = facts();
        const auto sums = totals();
        const auto grades = state.counters.grades;
        const std::string quality = state.texts.quality;

        bringSourceBack();
        expectOverwrite(BoxAnswer::Yes);
        ASSERT_EQ(run(), JobEnd::Complete);
        EXPECT_EQ(rows, rowsWithoutToken());
        EXPECT_EQ(said, facts());
        EXPECT_EQ(sums, totals());
        EXPECT_EQ(grades, state.counters.grades);
        EXPECT_EQ(quality, state.texts.quality);
    }
}

TEST_F(RegradeTest, ATaughtTermMovesTheQuality) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.texts.quality, "50.00%");
    takeSourceAway();
    termFile("abc", "1,MZ,T\r\n1,bbbb,T\r\n");
    const RegradeResult result = regrade();
    ASSERT_EQ(result.end, RegradeEnd::Complete) << result.detail;
    EXPECT_EQ(result.counts, (RegradeCounts{.rows = 4, .graded = 4, .changed = 1}));
    EXPECT_EQ(result.qualityBefore, "50.00%");
    EXPECT_EQ(state.texts.quality, "100.00%");
    EXPECT_EQ(rowOf("sub/bad.abc").grade, Grade::Good);
    EXPECT_FALSE(rowOf("sub/bad.abc").reason) << "a good file needs none";
    auto from = reader();
    EXPECT_EQ(from.jobText(job_keys::kQuality).value(), "100.00%");
    EXPECT_EQ(from.jobNumber(job_keys::kListBytes).value(),
              static_cast<std::int64_t>(fs::file_size(folder / "local/1234.csv")));
    EXPECT_NE(from.jobText(job_keys::kCounters).value().value_or("").find("\"good\":2"), std::string::npos);
}

TEST_F(RegradeTest, FoldersAreCountedWhenTheEvidenceWasAheadOfItsListOrAGradeChanges) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    const auto before = totals();
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    EXPECT_EQ(totals(), before) << "nothing changed";
    {
        // What a regrade by another term leaves that ended early.
        auto store = EvidenceStore::open(folder / "local/1234.sqlite");
        ASSERT_TRUE(store);
        const EvidenceRow was = rowOf("sub/bad.abc");
        EvidenceRow now = was;
        now.grade = Grade::Good;
        now.reason.reset();
        now.detail.clear();
        ASSERT_TRUE(store->setJob(job_keys::kListBytes, std::int64_t{0}));
        ASSERT_TRUE(store->setVerdict(was, now));
        ASSERT_TRUE(store->commit());
    }
    termFile("abc", "1,MZ,T\r\n1,bbbb,T\r\n");
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    const auto ahead = totals();
    EXPECT_NE(std::ranges::find(ahead, "sub 1 0 0"), ahead.end()) << "the verdict stood there already";
    termFile("abc", "1,MZ,T\r\n");
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    EXPECT_EQ(totals(), before);
}

TEST_F(RegradeTest, EveryLineAndItsTokenStay) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string before = folder.read("local/1234.csv");
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    EXPECT_EQ(folder.read("local/1234.csv"), before) << "the same rules";
}

TEST_F(RegradeTest, RowsOfADamagedBlockKeepTheirTextAndAreCounted) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    {
        auto database = Database::open(folder / "local/1234.sqlite", Access::Writing);
        ASSERT_TRUE(database && database->run("UPDATE head_block SET digest = digest + 1"));
    }
    takeSourceAway();
    writeMessages("new");
    const RegradeResult result = regrade();
    ASSERT_EQ(result.end, RegradeEnd::Complete) << result.detail;
    EXPECT_EQ(result.counts, (RegradeCounts{.rows = 4, .graded = 2, .changed = 2, .kept = 2, .damaged = 2}));
    const std::vector<std::u16string> expected = {u"m1", u"m2", u"new3", u"new7"};
    auto texts = results();
    std::ranges::sort(texts);
    EXPECT_EQ(texts, expected);
}

TEST_F(RegradeTest, WithoutHeadsOnlyRowsThatNeedNoneAreGraded) {
    sampleFiles();
    state.options.keepHeads = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    termFile("abc", "1,bbbb,T\r\n");
    const RegradeResult result = regrade();
    ASSERT_EQ(result.end, RegradeEnd::Complete) << result.detail;
    EXPECT_EQ(result.counts, (RegradeCounts{.rows = 4, .graded = 2, .kept = 2}));
    EXPECT_EQ(state.counters[Grade::Good], 1) << "kept rows count as what they say";
    EXPECT_EQ(state.counters[Grade::Corrupt], 1);
    EXPECT_EQ(reader().jobNumber(job_keys::kRules).value(), 0) << "rows go by different rules";
}

// A kept text is shown as it stands in the list, whatever the messages are now.
TEST_F(RegradeTest, AKeptTextStaysInTheEvidenceToo) {
    sampleFiles();
    state.options.keepHeads = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    writeMessages("new");
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    EXPECT_EQ(rowOf("good.abc").result, "m1");
    EXPECT_FALSE(rowOf("sub/small.abc").result);
}

TEST_F(RegradeTest, TheRestOfAShortHeadIsBlanks) {
    sampleFiles();
    const auto path = sourceFile("cut.abc", "MZ" + std::string(600, 'g'));
    atTurnWhen([this] { return state.counters.files == 5; }, [&] { fs::resize_file(path, 100); });
    ASSERT_EQ(run(), JobEnd::Complete);
    fake.loop.onTurn = nullptr;
    termFile("abc", "101,    ,T\r\n");
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    EXPECT_EQ(rowOf("cut.abc").grade, Grade::Good);
    EXPECT_EQ(rowOf("cut.abc").unread, 412);
    EXPECT_EQ(rowOf("good.abc").grade, Grade::Corrupt);
}

TEST_F(RegradeTest, AListWithoutTestingStaysAsItIs) {
    sampleFiles();
    state.options.checkFileQuality = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string before = folder.read("local/1234.csv");
    EXPECT_EQ(regrade().counts, (RegradeCounts{.rows = 4, .kept = 4}));
    EXPECT_EQ(folder.read("local/1234.csv"), before);
}

TEST_F(RegradeTest, ThereMustBeAListAndItsEvidence) {
    EXPECT_EQ(regrade().end, RegradeEnd::NoList);
    sampleFiles();
    state.options.keepEvidence = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string before = folder.read("local/1234.csv");
    EXPECT_EQ(regrade().end, RegradeEnd::NoEvidence);
    folder.write("local/1234.sqlite", "no database");
    EXPECT_EQ(regrade().end, RegradeEnd::NoEvidence);
    EXPECT_EQ(folder.read("local/1234.csv"), before);
}

TEST_F(RegradeTest, ARunningJobIsNotDisturbed) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    const auto lock = FolderLock::take(folder / "app");
    ASSERT_TRUE(lock);
    EXPECT_EQ(regrade().end, RegradeEnd::Busy);
}

TEST_F(RegradeTest, AListThatWasCutShortStaysMarked) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    folder.write("local/1234.csv.unfinished", "x");
    const RegradeResult result = regrade();
    EXPECT_EQ(result.end, RegradeEnd::Complete);
    EXPECT_TRUE(result.unfinished);
    EXPECT_TRUE(exists("local/1234.csv.unfinished"));
}

TEST_F(RegradeTest, TheOldListGoesUnderKept) {
    sampleFiles();
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string before = folder.read("local/1234.csv");
    termFile("abc", "1,bbbb,T\r\n");
    ASSERT_EQ(regrade().end, RegradeEnd::Complete);
    EXPECT_NE(folder.read("local/1234.csv"), before);
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/1234.csv"), before);
}

}  // namespace

}  // namespace quillon::test
