// SPDX-License-Identifier: MIT
// The viewer over a list with evidence: columns of our own, grading anew from the kept heads, and heads for the editor
// of a source that is away.
#include "viewer/view_evidence.h"

#include <algorithm>
#include <filesystem>

#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "viewer/viewer_fixture.h"

namespace quillon::test {
namespace {

class ViewEvidenceTest : public ViewerTest {
protected:
    ViewEvidenceTest() {
        folders.folder.write("local/Database/qlx.dat", "1,OLD!,T\r\n");
        folders.folder.write("local/Database/pdf.dat", "1,PDF!,T\r\n");
    }
    /// Three corrupt files and a good one of a source that is away; of one of them there is no head.
    void makeEvidence() {
        ASSERT_TRUE(EvidenceStore::create(path()));
        auto store = EvidenceStore::open(path());
        ASSERT_TRUE(store);
        ASSERT_TRUE(store->setJob(job_keys::kSource, "/away"));
        add(*store, "a.qlx", Grade::Corrupt, "QLX!");
        add(*store, "b.pdf", Grade::Corrupt, "%PDF");
        add(*store, "c.qlx", Grade::Good, "OLD!");
        EvidenceRow row = rowOf("d.qlx", Grade::Corrupt);
        ASSERT_TRUE(store->add(row, nullptr));
        ASSERT_TRUE(store->finish());
    }
    static void add(EvidenceStore& store, const std::string& name, Grade grade, const std::string& start) {
        EvidenceRow row = rowOf(name, grade);
        FileHead head;
        head.length = kHeaderBytes;
        head.bytes.fill('x');
        std::ranges::copy(start, head.bytes.begin());
        ASSERT_TRUE(store.add(row, &head));
    }
    static EvidenceRow rowOf(const std::string& name, Grade grade) {
        EvidenceRow row;
        row.row = name.front() - 'a' + 1;
        row.name = name;
        row.extension = name.substr(2);
        row.size = 600;
        row.grade = grade;
        if (grade == Grade::Corrupt) {
            row.reason = Reason::Noise;
            row.detail = "of " + name;
        }
        return row;
    }
    void openCorrupt() {
        filterCorrupt(listRow(u"/away/a.qlx", u"Header Corrupt") + listRow(u"/away/b.pdf", u"Header Corrupt") +
                      listRow(u"/away/c.qlx", u"Header OK") + listRow(u"/away/d.qlx", u"Header Corrupt"));
    }
    void openWithEvidence() {
        makeEvidence();
        openCorrupt();
        folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
        folders.folder.write("local/Database/pdf.dat", "1,%PDF,T\r\n");
    }
    void expectScope(BoxAnswer answer) {
        folders.fake.dialogs.expectBox("Regrade from kept heads",
                                       "Do you want to grade all rows of the list anew? No grades those with the "
                                       "extension qlx alone. The source is not read.",
                                       answer, BoxStyle::Question, BoxButtons::YesNoCancel);
    }
    void expectKept() {
        folders.fake.dialogs.expectBox("Regrade from kept heads",
                                       "1 rows keep their result, as the evidence has no head of theirs to rely on. A "
                                       "retest reads them from the source.",
                                       BoxAnswer::Ok, BoxStyle::Information, BoxButtons::Ok);
    }
    [[nodiscard]] NativePath path() const { return folders.folder / "local/J1.sqlite"; }
    [[nodiscard]] std::string reason(int row) { return viewer.ownCell(viewer.state.rows.idAt(row), 0); }
};

const std::string kNoise = "looks like noise: encrypted, compressed or the middle of something: of ";

TEST_F(ViewEvidenceTest, EachRowTellsItsReason) {
    openWithEvidence();
    EXPECT_TRUE(viewer.state.hasEvidence);
    EXPECT_EQ(reason(0), kNoise + "a.qlx");
    EXPECT_EQ(reason(1), kNoise + "b.pdf");
    EXPECT_EQ(reason(2), kNoise + "d.qlx");
}

TEST_F(ViewEvidenceTest, WithoutEvidenceThereIsNothingToTell) {
    openCorrupt();
    EXPECT_FALSE(viewer.state.hasEvidence);
    EXPECT_EQ(reason(0), "");
    folders.folder.write("local/J1.sqlite", "of something else");
    viewer.filter();
    EXPECT_FALSE(viewer.state.hasEvidence);
}

TEST_F(ViewEvidenceTest, ARegradeOfAllRowsReadsNoSourceAndTellsWhatItCouldNotGrade) {
    openWithEvidence();
    viewer.selectRow(0);
    expectScope(BoxAnswer::Yes);
    expectKept();
    viewer.regradeKept();
    EXPECT_EQ(listNow(), listRow(u"/away/a.qlx", u"Header OK") + listRow(u"/away/b.pdf", u"Header OK") +
                             listRow(u"/away/c.qlx", u"Header Corrupt") + listRow(u"/away/d.qlx", u"Header Corrupt"));
    EXPECT_EQ(paths(), std::vector<std::u16string>{u"/away/d.qlx"}) << "rows of another grade leave the grid";
    EXPECT_EQ(viewer.state.status, "Graded again : 3, with another result : 3, without a head : 1");
    EXPECT_EQ(viewer.state.matching, "Matching :  1");
    EXPECT_TRUE(viewer.state.changed);
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_EQ(host.beeps, 1);
}

TEST_F(ViewEvidenceTest, NoGradesTheRowsOfTheExtensionAlone) {
    openWithEvidence();
    viewer.selectRow(0);
    expectScope(BoxAnswer::No);
    expectKept();
    viewer.regradeKept();
    EXPECT_EQ(listNow(), listRow(u"/away/a.qlx", u"Header OK") + listRow(u"/away/b.pdf", u"Header Corrupt") +
                             listRow(u"/away/c.qlx", u"Header Corrupt") + listRow(u"/away/d.qlx", u"Header Corrupt"));
    EXPECT_EQ(viewer.state.status, "Graded again : 2, with another result : 2, without a head : 1");
    EXPECT_EQ(EvidenceReader::open(path())->jobNumber(job_keys::kRules).value(), 0) << "its rows go by different rules";
    EXPECT_EQ(reason(0), kNoise + "b.pdf");
}

TEST_F(ViewEvidenceTest, CancelLeavesEverythingAsItIs) {
    openWithEvidence();
    viewer.selectRow(0);
    const auto before = listNow();
    expectScope(BoxAnswer::Cancel);
    viewer.regradeKept();
    EXPECT_EQ(listNow(), before);
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(ViewEvidenceTest, TheScreenIsBusyMeanwhileAndCannotBeLeft) {
    openWithEvidence();
    viewer.selectRow(0);
    expectScope(BoxAnswer::Yes);
    expectKept();
    int looks = 0;
    folders.fake.loop.onTurn = [&](int) {
        ++looks;
        EXPECT_TRUE(viewer.state.busy && viewer.state.passRunning);
        EXPECT_EQ(viewer.state.status.find("Graded again : "), 0U);
    };
    viewer.regradeKept();
    EXPECT_GE(looks, 4) << "a turn for each row";
    EXPECT_FALSE(viewer.state.passRunning);
}

TEST_F(ViewEvidenceTest, ARegradeThatFailsSaysWhyAndLeavesTheList) {
    openWithEvidence();
    viewer.selectRow(0);
    const auto before = listNow();
    expectScope(BoxAnswer::Yes);
    std::filesystem::remove(path());
    expectWarning("Regrade from kept heads",
                  "The list stays as it was : " + path().native() + ": there is no evidence");
    viewer.regradeKept();
    EXPECT_EQ(listNow(), before);
    EXPECT_FALSE(viewer.state.hasEvidence);
}

TEST_F(ViewEvidenceTest, TheEditorIsGivenHeadsOfASourceThatIsAwayAlone) {
    openWithEvidence();
    viewer.selectRow(0);
    const auto handover = viewer.openEditor();
    ASSERT_TRUE(handover && handover->keptHead);
    const auto head = handover->keptHead(u"/away/a.qlx");
    ASSERT_TRUE(head);
    EXPECT_EQ(head->given().substr(0, 5), "QLX!x");
    EXPECT_FALSE(handover->keptHead(u"/away/d.qlx")) << "none was kept";
    EXPECT_FALSE(handover->keptHead(u"/away/e.qlx"));
    {
        auto store = EvidenceStore::open(path());
        ASSERT_TRUE(store && store->setJob(job_keys::kSource, folders.folder.path().native()) && store->commit());
    }
    viewer.filter();
    viewer.selectRow(0);
    EXPECT_FALSE(viewer.openEditor()->keptHead) << "the source is there";
}

}  // namespace
}  // namespace quillon::test
