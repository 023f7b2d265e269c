// SPDX-License-Identifier: MIT
// A job leaves its evidence beside its list, and the evidence goes where the list goes.
#include "job/job_evidence.h"

#include <algorithm>
#include <filesystem>

#include "evidence/evidence_reader.h"
#include "evidence/job_keys.h"
#include "job/driver_fixture.h"
#include "job/job_setup.h"

namespace quillon::test {

namespace {

class JobEvidenceTest : public DriverTest {
protected:
    JobEvidenceTest() {
        state.options.keepEvidence = true;
        state.log.setListener(nullptr);
        termFile("abc", "1,MZ,T\r\n");
        sourceFile("good.abc", "MZ" + std::string(600, 'g'));
        sourceFile("sub/bad.ABC", std::string(600, 'b'));
        sourceFile("sub/noext", std::string(600, 'n'));
        sourceFile("sub/deep/small.abc", "MZ");
        sourceFile("sub/deep/unknown.zzz", std::string(600, 'u'));
    }

    [[nodiscard]] NativePath evidence() const { return folder / "local/1234.sqlite"; }
    [[nodiscard]] EvidenceReader reader() const { return readerOf(evidence()); }
    static EvidenceReader readerOf(const NativePath& path) {
        auto opened = EvidenceReader::open(path);
        EXPECT_TRUE(opened) << opened.error().text;
        return std::move(*opened);
    }
    static std::vector<EvidenceRow> rowsIn(EvidenceReader from) {
        std::vector<EvidenceRow> rows;
        EvidenceRow row;
        while (from.next(row).value_or(false)) rows.push_back(row);
        return rows;
    }
    [[nodiscard]] EvidenceRow rowOf(const std::string& path) const {
        EvidenceRow row;
        EXPECT_TRUE(reader().findPath(path, row).value_or(false)) << path;
        return row;
    }
    /// Files of this name below Kept.
    [[nodiscard]] int kept(const std::string& name) const {
        if (!exists("local/Kept"))
            return 0;
        const auto files = std::filesystem::recursive_directory_iterator(folder / "local/Kept");
        return static_cast<int>(
            std::count_if(begin(files), end(files), [&](const auto& file) { return file.path().filename() == name; }));
    }
    void runAgain() {
        expectOverwrite(BoxAnswer::Yes);
        EXPECT_EQ(run(), JobEnd::Complete);
    }
};

TEST_F(JobEvidenceTest, EveryFileOfTheListIsThereWithItsGradeTimeAndHead) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const auto rows = rowsIn(reader());
    ASSERT_EQ(rows.size(), 5U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].id, static_cast<std::int64_t>(i) + 1);
        EXPECT_EQ(rows[i].row, rows[i].id);
        EXPECT_EQ(rows[i].modified, 1'794'744'000'123'456'700);
        EXPECT_FALSE(rows[i].result) << "the message of the grade says it";
    }
    EXPECT_EQ(rowOf("good.abc").grade, Grade::Good);
    EXPECT_EQ(rowOf("sub/bad.ABC").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("sub/bad.ABC").extension, "abc");
    EXPECT_EQ(rowOf("sub/bad.ABC").size, 600);
    EXPECT_EQ(rowOf("sub/noext").grade, Grade::NoExtension);
    EXPECT_EQ(rowOf("sub/deep/small.abc").grade, Grade::TooSmall);
    EXPECT_EQ(rowOf("sub/deep/unknown.zzz").grade, Grade::Unknown);

    auto from = reader();
    const auto head = from.head(rowOf("good.abc"));
    ASSERT_TRUE(head && *head != nullptr);
    EXPECT_EQ((*head)->given(), "MZ" + std::string(510, 'g')) << "as it came, nothing folded";
    for (const auto* const unopened : {"sub/noext", "sub/deep/small.abc", "sub/deep/unknown.zzz"})
        EXPECT_FALSE(rowOf(unopened).head) << unopened;
}

TEST_F(JobEvidenceTest, WhatBecameOfEachCopyIsNoted) {
    state.options.copy = true;
    state.options.target = folder / "target";
    state.options.copyGrades = {Grade::Good, Grade::Corrupt, Grade::NoExtension};
    const auto inTheWay = (folder / "target").native() + (folder / "source/sub/bad.ABC").native();
    std::filesystem::create_directories(inTheWay);
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowOf("good.abc").copied, 1);
    EXPECT_EQ(rowOf("good.abc").copyError, "");
    EXPECT_EQ(rowOf("good.abc").verified, std::nullopt) << "it was not compared";
    EXPECT_EQ(rowOf("sub/noext").copied, 1);
    EXPECT_EQ(rowOf("sub/bad.ABC").copied, 0);
    EXPECT_EQ(rowOf("sub/bad.ABC").copyError, "target: " + inTheWay + ": Is a directory");
    EXPECT_EQ(rowOf("sub/deep/small.abc").copied, std::nullopt) << "its grade was not asked for";
    EXPECT_TRUE(state.gaps.empty());
}

TEST_F(JobEvidenceTest, CopiesThatAreHashedTellWhichBytesTheMediumDidNotGive) {
    std::string bytes = "MZ" + std::string(510, 'g');
    while (bytes.size() < 2048) bytes += "BAD SECTOR";
    sourceFile("marked.abc", bytes.substr(0, 1536) + std::string(100, 'g'));
    state.options.copy = state.options.copyCare.verify = true;
    state.options.target = folder / "target";
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowOf("marked.abc").badBytes, 1024);
    EXPECT_EQ(rowOf("marked.abc").badRanges, "512+1024");
    EXPECT_EQ(rowOf("marked.abc").verified, 1);
    EXPECT_EQ(rowOf("good.abc").badBytes, 0);
    EXPECT_EQ(reader().jobText(job_keys::kSectors).value_or(std::nullopt), "copy");
}

TEST_F(JobEvidenceTest, TheJobTellsOfItself) {
    ASSERT_EQ(run(), JobEnd::Complete);
    auto from = reader();
    EXPECT_EQ(from.jobText(job_keys::kId).value(), "1234");
    EXPECT_EQ(from.jobText(job_keys::kSource).value(), (folder / "source").native());
    EXPECT_EQ(from.jobText(job_keys::kEnd).value(), "complete");
    EXPECT_EQ(from.jobText(job_keys::kHost).value(), "LAB7");
    EXPECT_EQ(from.jobText(job_keys::kQuality).value(), state.texts.quality);
    EXPECT_NE(from.jobText(job_keys::kCounters).value().value_or("").find("\"files\":5"), std::string::npos);
    EXPECT_LE(from.jobNumber(job_keys::kStarted).value(), from.jobNumber(job_keys::kEnded).value());
    EXPECT_EQ(from.jobNumber(job_keys::kListBytes).value(),
              static_cast<std::int64_t>(std::filesystem::file_size(folder / "local/1234.csv")));
    ListDigest digest;
    auto list = ListReader::open(folder / "local/1234.csv");
    ListRow row;
    while (list->next(row)) digest.add(row);
    EXPECT_EQ(from.jobNumber(job_keys::kListDigest).value(), digest.value());
    EXPECT_TRUE(from.jobNumber(job_keys::kRules).value());
}

TEST_F(JobEvidenceTest, TheListIsThatOfAJobWithoutEvidence) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string with = folder.read("local/1234.csv");
    state.options.keepEvidence = false;
    runAgain();
    EXPECT_EQ(folder.read("local/1234.csv"), with);
    EXPECT_FALSE(exists("local/1234.sqlite")) << "the old one went with its list";
    EXPECT_EQ(kept("1234.sqlite"), 1);
}

TEST_F(JobEvidenceTest, WithoutHeadsTheRowsAreVouchedForAllTheSame) {
    state.options.keepHeads = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    auto from = reader();
    const auto row = rowOf("good.abc");
    EXPECT_EQ(from.head(row).value(), nullptr);
    EXPECT_TRUE(from.isVouchedFor(row).value());
}

TEST_F(JobEvidenceTest, WithTestingOffThereAreRowsWithoutGradesAndHeads) {
    state.options.checkFileQuality = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    const auto rows = rowsIn(reader());
    ASSERT_EQ(rows.size(), 5U);
    for (const auto& row : rows) {
        EXPECT_FALSE(row.grade);
        EXPECT_FALSE(row.result);
        EXPECT_FALSE(row.head);
        EXPECT_EQ(row.modified, 1'794'744'000'123'456'700);
    }
}

// The bytes of U+0A0D are the line end of 8-bit text, and these outweigh all else that the list has.
TEST_F(JobEvidenceTest, WithTestingOffNamesOfForeignLineEndsHaveTheirRows) {
    state.options.checkFileQuality = false;
    std::string name;
    for (int i = 0; i < 80; ++i) name += "\xE0\xA8\x8D";
    for (char last = '1'; last <= '9'; ++last) sourceFile(name + last + ".abc", std::string(600, 'x'));
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowsIn(reader()).size(), 14U);
    EXPECT_EQ(rowOf(name + "9.abc").path(), name + "9.abc");
}

TEST_F(JobEvidenceTest, AFileThatEndsEarlyTellsHowManyBytesAreUnread) {
    // The list says 600 bytes; the file gives fewer when its turn comes.
    const auto path = sourceFile("cut.abc", "MZ" + std::string(600, 'g'));
    atTurnWhen([this] { return state.counters.files == 6; }, [&] { std::filesystem::resize_file(path, 100); });
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowOf("cut.abc").unread, 412);
    auto from = reader();
    EXPECT_EQ(from.head(rowOf("cut.abc")).value()->length, 100);
}

TEST_F(JobEvidenceTest, AGoodFileThatItsOwnHeadDoubtsSaysSo) {
    termFile("wav", "1,RIFF,T\r\n");
    using namespace std::string_literals;
    sourceFile("cut.wav", "RIFF\x00\x00\x10\x00WAVEfmt "s + std::string(600, '\0'));
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowOf("cut.wav").grade, Grade::Good);
    EXPECT_EQ(rowOf("cut.wav").doubt, "cut");
    EXPECT_NE(rowOf("cut.wav").doubtDetail, "");
    EXPECT_EQ(rowOf("good.abc").doubt, "");
}

TEST_F(JobEvidenceTest, AReplacedListTakesItsEvidenceAlong) {
    ASSERT_EQ(run(), JobEnd::Complete);
    folder.write("local/1234.sqlite-journal", "");
    sourceFile("more.abc", "MZ" + std::string(600, 'm'));
    runAgain();
    EXPECT_EQ(rowsIn(reader()).size(), 6U);
    EXPECT_EQ(kept("1234.csv"), 1);
    EXPECT_EQ(kept("1234.sqlite"), 1);
    EXPECT_EQ(kept("1234.sqlite-journal"), 1) << "what is to be undone is to be undone there";
}

TEST_F(JobEvidenceTest, AStopInTheWalkLeavesTheOldPair) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string before = folder.read("local/1234.sqlite");
    expectOverwrite(BoxAnswer::Yes);
    stopWhen([this] { return state.phase == JobPhase::Walk; });
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_EQ(folder.read("local/1234.sqlite"), before);
    EXPECT_EQ(kept("1234.sqlite"), 0);
}

TEST_F(JobEvidenceTest, DeletingTheListOfAStoppedJobLeavesItsEvidence) {
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::Yes);
    stopWhen([this] { return state.phase == JobPhase::Testing; });
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_FALSE(exists("local/1234.csv"));
    EXPECT_EQ(reader().jobText(job_keys::kEnd).value(), "stopped");
    EXPECT_EQ(rowsIn(reader()).size(), 5U);
    EXPECT_EQ(state.evidenceLoss, "");
}

TEST_F(JobEvidenceTest, EvidenceAloneIsKeptWhenAJobBeginsItsOwn) {
    ASSERT_EQ(run(), JobEnd::Complete);
    std::filesystem::remove(folder / "local/1234.csv");
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(kept("1234.sqlite"), 1);
}

TEST_F(JobEvidenceTest, OpenExistingBringsTheEvidenceBesideTheList) {
    ASSERT_EQ(run(), JobEnd::Complete);
    for (const char* end : {".csv", ".sqlite"}) {
        std::filesystem::create_directory(folder / "stick");
        std::filesystem::rename(folder / (std::string("local/1234") + end), folder / (std::string("stick/1234") + end));
    }
    folder.write("local/1234.sqlite", "of another list");
    fake.dialogs.expectFiles("Open existing file list", {folder / "stick/1234.csv"});
    EXPECT_TRUE(JobSetup(installation, fake.surroundings, state).openExisting());
    EXPECT_EQ(rowsIn(reader()).size(), 5U);
    EXPECT_EQ(kept("1234.sqlite"), 1);
    EXPECT_EQ(std::filesystem::status(evidence()).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(JobEvidenceTest, AFolderThatIsMovedTakesItsEvidenceAlong) {
    ASSERT_EQ(run(), JobEnd::Complete);
    std::filesystem::rename(folder / "local", folder / "elsewhere");
    EXPECT_EQ(rowsIn(readerOf(folder / "elsewhere/1234.sqlite")).size(), 5U);
}

TEST_F(JobEvidenceTest, ALossCostsTheEvidenceAloneAndIsToldOnce) {
    state.options.jobId = std::string(245, 'j');  // the list's name fits, the journal's does not
    ASSERT_EQ(run(), JobEnd::Complete);
    const auto texts = logTexts();
    EXPECT_EQ(
        std::ranges::count_if(texts, [](const std::string& text) { return text.starts_with("Evidence lost : "); }), 1);
    EXPECT_EQ(state.counters.lostEvidence, 1);
    EXPECT_EQ(exitStatus(EndCause::Complete, state, false), kExitLosses);
    EXPECT_EQ(rowsOf("local/" + state.options.jobId + ".csv").size(), 5U);
    state.options.jobId = "1234";
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.counters.lostEvidence, 0);
}

TEST_F(JobEvidenceTest, AFolderThatCannotBeEnteredIsNoted) {
    job.passContext().evidence.begin();
    job.passContext().evidence.folderFailed((folder / "source/shut").native() + "/", "cannot be entered");
    folder.write("local/1234.csv", "");
    job.passContext().evidence.listCreated(folder / "local/1234.csv");
    job.passContext().evidence.end(job_keys::kComplete);
    auto from = reader();
    auto found = from.prepare("SELECT path FROM folder WHERE error = 'cannot be entered'");
    ASSERT_TRUE(found && found->step().value_or(false));
    EXPECT_EQ(found->text(0), "shut");
}

TEST_F(JobEvidenceTest, NamesOfAnyBytesComeThroughTheWholeJob) {
    const std::string names[] = {"a,b>c\\d\xFF.abc", "new\nline.abc", "\xE2\x82\xAC.abc", "\x01.abc"};
    for (const auto& name : names) sourceFile(name, "MZ" + std::string(600, 'x'));
    ASSERT_EQ(run(), JobEnd::Complete);
    auto from = reader();
    for (const auto& name : names) {
        const EvidenceRow row = rowOf(name);
        EXPECT_EQ(row.name, name);
        EXPECT_TRUE(row.modified);
        EXPECT_NE(from.head(row).value_or(nullptr), nullptr) << name;
    }
}

}  // namespace

}  // namespace quillon::test
