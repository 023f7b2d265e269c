// SPDX-License-Identifier: MIT
// A job that goes on with its earlier run reads what that did not, and leaves the list of a job that was never cut
// short. Files are given other bytes behind the back of the job, which change neither size nor time: the grade of a
// file then tells whether it was read again.
#include "job/going_on.h"

#include <algorithm>
#include <filesystem>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "job/driver_fixture.h"

namespace quillon::test {

namespace {

class GoingOnTest : public DriverTest {
protected:
    static constexpr const char* kQuestion =
        "The last run of this job did not complete. Do you want to go on with it? Files that it has read, and that are "
        "the same in size and time, are not read again. No reads all of them.";

    GoingOnTest() {
        state.options.keepEvidence = true;
        state.log.setListener(nullptr);
        termFile("abc", "1,MZ,T\r\n");
        for (const char* name : {"f1", "f2", "f3", "f4", "f5", "f6"}) good(name);
        sourceFile("small.abc", "MZ");
    }

    void good(const std::string& name) const { sourceFile(name + ".abc", "MZ" + std::string(600, name.back())); }
    void bad(const std::string& name) const { sourceFile(name + ".abc", "XX" + std::string(600, name.back())); }

    [[nodiscard]] NativePath evidence() const { return folder / "local/1234.sqlite"; }
    [[nodiscard]] NativePath earlier() const { return folder / "local/1234.sqlite-earlier"; }
    [[nodiscard]] std::string list() const { return folder.read("local/1234.csv"); }
    [[nodiscard]] bool asksToGoOn() const override { return asks; }

    JobEnd resume() {
        state.options.resume = true;
        if (exists("local/1234.csv"))
            expectOverwrite(BoxAnswer::Yes);
        return run();
    }
    static EvidenceStore storeOf(const NativePath& path) {
        auto store = EvidenceStore::open(path);
        EXPECT_TRUE(store) << store.error().text;
        return std::move(*store);
    }
    // As a run that was killed behind so many files.
    static void cut(const NativePath& path, std::int64_t files) {
        auto store = storeOf(path);
        for (std::int64_t id = files + 1; id <= 7; ++id) EXPECT_TRUE(store.remove(id));
        EXPECT_TRUE(store.setJob(job_keys::kEnd, job_keys::kRunning));
        EXPECT_TRUE(store.commit());
    }
    void setJob(const char* key, const std::string& text) const {
        auto store = storeOf(evidence());
        EXPECT_TRUE(store.setJob(key, text));
        EXPECT_TRUE(store.commit());
    }
    [[nodiscard]] EvidenceRow rowOf(const std::string& path) const {
        auto from = EvidenceReader::open(evidence());
        EvidenceRow row;
        EXPECT_TRUE(from && from->findPath(path, row).value_or(false)) << path;
        return row;
    }
    // The files of one folder come in the order of the disk.
    [[nodiscard]] std::string pathOf(std::int64_t id) const {
        auto from = EvidenceReader::open(evidence());
        EvidenceRow row;
        EXPECT_TRUE(from && from->findId(id, row).value_or(false)) << id;
        return row.path();
    }
    [[nodiscard]] std::vector<std::int64_t> figures() const {
        const auto& told = state.resumed.value_or(ResumeFigures());
        return {told.known, told.again, told.changed, told.added, told.gone};
    }
    [[nodiscard]] bool logged(const std::string& text) const {
        return std::ranges::any_of(logTexts(), [&](const std::string& row) { return row.starts_with(text); });
    }

    bool asks = false;
};

using Figures = std::vector<std::int64_t>;

TEST_F(GoingOnTest, AJobThatWasCutShortReadsWhatItHadNotAndLeavesTheSameList) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string whole = list();
    cut(evidence(), 3);
    for (const auto& row : {pathOf(1), pathOf(2), pathOf(3)}) {
        if (row != "small.abc")
            bad(row.substr(0, 2));  // nobody reads it
    }
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(list(), whole);
    EXPECT_EQ(figures(), (Figures{3, 0, 0, 4, 0}));
    EXPECT_EQ(state.resumed->from, "running");
    EXPECT_TRUE(logged("Going on with an earlier run, which knows 3 files"));
    EXPECT_TRUE(logged("Not read again : 3, read again : 0, changed : 0, new : 4, gone : 0"));
}

TEST_F(GoingOnTest, TheNewEvidenceHasTheHeadsThatWereNotReadAgain) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 5);
    std::filesystem::remove(folder / "local/1234.csv");
    EXPECT_EQ(resume(), JobEnd::Complete);
    auto from = EvidenceReader::open(evidence());
    ASSERT_TRUE(from);
    EvidenceRow row;
    int heads = 0;
    while (from->next(row).value_or(false)) {
        EXPECT_EQ(row.row, row.id);
        heads += from->head(row).value_or(nullptr) != nullptr ? 1 : 0;
    }
    EXPECT_EQ(heads, 6);
    EXPECT_EQ(from->jobText(job_keys::kEnd).value(), "complete");
    EXPECT_FALSE(std::filesystem::exists(earlier())) << "the new one knows all of it";
}

TEST_F(GoingOnTest, RowsOfOtherSizeOrTimeAreRead) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 7);
    sourceFile("f1.abc", "XX" + std::string(700, 'l'));
    bad("f2");
    setTimes(folder / "source/f2.abc", 1794744000, 1794744001);
    bad("f3");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(rowOf("f1.abc").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("f2.abc").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("f3.abc").grade, Grade::Good);
    EXPECT_EQ(figures(), (Figures{5, 0, 2, 0, 0}));
}

TEST_F(GoingOnTest, RowsThatWereUnreadOrNotReadableAreReadAgain) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 7);
    {
        auto store = storeOf(evidence());
        auto unread = rowOf("f1.abc");
        FileHead part;
        part.length = 100;
        unread.unread = 412;
        EXPECT_TRUE(store.change(unread, &part));
        auto refused = rowOf("f2.abc");
        refused.grade = Grade::AccessError;
        EXPECT_TRUE(store.change(refused));
        EXPECT_TRUE(store.commit());
    }
    bad("f1");
    bad("f2");
    bad("f3");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(rowOf("f1.abc").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("f2.abc").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("f3.abc").grade, Grade::Good);
    EXPECT_EQ(figures(), (Figures{5, 2, 0, 0, 0}));
}

TEST_F(GoingOnTest, ACompleteJobReadsWhatIsNewChangedOrWasNotGoodAndDropsWhatWent) {
    bad("f2");
    termFile("abc", "1,MZ,T\r\n");
    ASSERT_EQ(run(), JobEnd::Complete);
    good("f2");  // filled by a later pass of an imaging tool
    bad("f3");   // nobody reads it
    sourceFile("f4.abc", "MZ" + std::string(700, 'l'));
    good("f7");
    std::filesystem::remove(folder / "source/f5.abc");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(state.resumed->from, "complete");
    EXPECT_EQ(rowOf("f2.abc").grade, Grade::Good);
    EXPECT_EQ(rowOf("f3.abc").grade, Grade::Good);
    EXPECT_EQ(figures(), (Figures{4, 1, 1, 1, 1}));
    EXPECT_EQ(finalRows().size(), 7U);
}

TEST_F(GoingOnTest, AnotherFileSystemOrSourceIsToldAndEverythingIsRead) {
    for (const auto* const key : {job_keys::kVolume, job_keys::kSource}) {
        state.options.resume = false;
        good("f1");
        if (exists("local/1234.csv"))
            expectOverwrite(BoxAnswer::Yes);
        ASSERT_EQ(run(), JobEnd::Complete);
        cut(evidence(), 7);
        setJob(key, "another");
        setJob(job_keys::kFileSystem, "another");
        bad("f1");
        state.log.clear();
        EXPECT_EQ(resume(), JobEnd::Complete);
        EXPECT_TRUE(logged("The earlier run was of another source or file system : all files are read")) << key;
        EXPECT_EQ(rowOf("f1.abc").grade, Grade::Corrupt) << key;
        EXPECT_EQ(figures()[1], 6) << key;
    }
}

TEST_F(GoingOnTest, KeptHeadsAreGradedByTheRulesOfToday) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 7);
    termFile("abc", "1,XX,T\r\n");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(state.counters[Grade::Corrupt], 6);
    EXPECT_EQ(figures(), (Figures{7, 0, 0, 0, 0}));
}

TEST_F(GoingOnTest, WithoutHeadsGradesAreTakenOverAsLongAsTheRulesAreTheSame) {
    state.options.keepHeads = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string whole = list();
    cut(evidence(), 7);
    bad("f1");
    state.options.keepHeads = true;  // what is not read again has none to keep
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(list(), whole);
    EXPECT_EQ(figures(), (Figures{7, 0, 0, 0, 0}));
    EXPECT_EQ(state.counters.tested, 6);

    cut(evidence(), 7);
    termFile("xyz", "1,XX,T\r\n");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(rowOf("f1.abc").grade, Grade::Corrupt);
    EXPECT_EQ(figures(), (Figures{1, 6, 0, 0, 0}));

    cut(evidence(), 7);
    state.options.useCommonHeaders = true;
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(figures()[1], 6) << "the common headers count now";
}

TEST_F(GoingOnTest, RowsThatTheirDigestDoesNotVouchForAreReadAgain) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 7);
    {
        auto database = Database::open(evidence(), Access::Writing);
        ASSERT_TRUE(database && database->run("UPDATE head_block SET digest = digest + 1"));
    }
    bad("f1");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(rowOf("f1.abc").grade, Grade::Corrupt);
    EXPECT_EQ(figures(), (Figures{1, 6, 0, 0, 0}));
}

TEST_F(GoingOnTest, ARunThatWentOnAndWasCutShortIsGoneOnWithLikeAnyOther) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string whole = list();
    std::filesystem::copy_file(evidence(), earlier());
    cut(earlier(), 5);
    cut(evidence(), 2);
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(list(), whole);
    EXPECT_EQ(figures(), (Figures{5, 0, 0, 2, 0}));
    EXPECT_FALSE(std::filesystem::exists(earlier()));
}

TEST_F(GoingOnTest, ACompleteJobWhoseNextRunWasCutShortStillReadsWhatWasNotGood) {
    bad("f1");
    ASSERT_EQ(run(), JobEnd::Complete);
    std::filesystem::copy_file(evidence(), earlier());
    cut(evidence(), 0);
    good("f1");
    bad("f2");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(rowOf("f1.abc").grade, Grade::Good);
    EXPECT_EQ(rowOf("f2.abc").grade, Grade::Good);
    EXPECT_EQ(figures(), (Figures{6, 1, 0, 0, 0}));
}

TEST_F(GoingOnTest, ARunThatWasKilledBeforeItWroteAnythingHidesNothing) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 4);
    const std::string bytes = folder.read("local/1234.sqlite");
    folder.write("local/1234.sqlite-earlier", bytes);
    std::filesystem::remove(evidence());
    EXPECT_EQ(resume(), JobEnd::Complete) << "killed between two names";
    EXPECT_EQ(figures()[0], 4);
    folder.write("local/1234.sqlite-earlier", bytes);
    ASSERT_TRUE(EvidenceStore::create(evidence()));
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(figures()[0], 4);
    folder.write("local/1234.sqlite-earlier", bytes);
    folder.write("local/1234.sqlite", "damaged");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(figures()[0], 4);
}

TEST_F(GoingOnTest, WithoutAnEarlierRunEverythingIsReadAndSaidSo) {
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_TRUE(logged("There is no earlier run to go on with : "));
    ASSERT_TRUE(state.resumed);
    EXPECT_EQ(state.resumed->from, "");
    EXPECT_EQ(state.counters.tested, 6);
    folder.write("local/1234.sqlite", "of something else");
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_TRUE(logged("There is no earlier run to go on with : "));
    EXPECT_EQ(state.counters.tested, 6);
}

TEST_F(GoingOnTest, AJobThatBeginsAnewLeavesNothingToGoOnWith) {
    ASSERT_EQ(run(), JobEnd::Complete);
    folder.write("local/1234.sqlite-earlier", "of a run that was cut short");
    expectOverwrite(BoxAnswer::Yes);
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(std::filesystem::exists(earlier()));
    EXPECT_FALSE(state.resumed);
}

TEST_F(GoingOnTest, AStopInTheWalkLeavesTheEarlierRunAsItWas) {
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 4);
    const std::string before = folder.read("local/1234.sqlite");
    stopWhen([this] { return state.phase == JobPhase::Walk; });
    EXPECT_EQ(resume(), JobEnd::Stopped);
    EXPECT_EQ(folder.read("local/1234.sqlite"), before);
    EXPECT_FALSE(std::filesystem::exists(earlier()));
}

TEST_F(GoingOnTest, AWindowAsksBehindOverwriteFileWhetherAJobThatWasCutShortGoesOn) {
    asks = true;
    state.options.resume = true;  // the answer to an earlier question
    ASSERT_EQ(run(), JobEnd::Complete) << "nothing was cut short yet";
    EXPECT_FALSE(state.resumed);
    cut(evidence(), 4);
    expectOverwrite(BoxAnswer::Yes);
    fake.dialogs.expectBox("Go on with the job?", kQuestion, BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(figures()[0], 4);
    cut(evidence(), 4);
    expectOverwrite(BoxAnswer::Yes);
    fake.dialogs.expectBox("Go on with the job?", kQuestion, BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(state.resumed) << "No reads all of them";
    expectOverwrite(BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete) << "a complete one is not asked about";
}

TEST_F(GoingOnTest, AWindowAsksWhereTheListWasDeletedToo) {
    asks = true;
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string whole = list();
    cut(evidence(), 4);
    std::filesystem::remove(folder / "local/1234.csv");
    fake.dialogs.expectBox("Go on with the job?", kQuestion, BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(list(), whole);
}

TEST_F(GoingOnTest, AWindowDoesNotAskAboutAnotherSourceOrWithoutTesting) {
    asks = true;
    ASSERT_EQ(run(), JobEnd::Complete);
    cut(evidence(), 4);
    state.options.checkFileQuality = false;
    expectOverwrite(BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete);
    state.options.checkFileQuality = true;
    cut(evidence(), 4);
    state.options.source = folder / "target";
    expectOverwrite(BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete);
}

TEST_F(GoingOnTest, AJobWithoutEvidenceGoesOnAllTheSame) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string whole = list();
    const std::string first = pathOf(1) == "small.abc" ? pathOf(2) : pathOf(1);
    cut(evidence(), 4);
    state.options.keepEvidence = false;
    bad(first.substr(0, 2));
    EXPECT_EQ(resume(), JobEnd::Complete);
    EXPECT_EQ(list(), whole);
    EXPECT_FALSE(std::filesystem::exists(evidence())) << "the old one went with its list";
    EXPECT_FALSE(std::filesystem::exists(earlier()));
}

}  // namespace

}  // namespace quillon::test
