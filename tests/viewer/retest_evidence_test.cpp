// SPDX-License-Identifier: MIT
// A retest changes the evidence beside the list in the same step.
#include <algorithm>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "job/list_digest.h"
#include "viewer/viewer_fixture.h"

namespace quillon::test {
namespace {

class RetestEvidenceTest : public ViewerTest {
protected:
    /// Two corrupt files of .qlx, the first of which holds the term that the database learns; and one good .pdf row.
    void openWithTerm() {
        const auto good = makeFile("good.qlx", "QLX!");
        const auto bad = makeFile("bad.qlx", "nope");
        makeEvidence();
        filterCorrupt(listRow(good, u"Header Corrupt") + listRow(u"/s/a.pdf", u"Header OK") +
                      listRow(bad, u"Header Corrupt"));
        folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
        viewer.selectRow(0);
    }
    void makeEvidence() {
        ASSERT_TRUE(EvidenceStore::create(path()));
        auto store = EvidenceStore::open(path());
        ASSERT_TRUE(store);
        ASSERT_TRUE(store->setJob(job_keys::kSource, (folders.folder / "source").native()));
        add(*store, 1, "good.qlx", Grade::Corrupt, "QLX!");
        add(*store, 2, "a.pdf", Grade::Good, "%PDF");
        add(*store, 3, "bad.qlx", Grade::Corrupt, "old!");
        ASSERT_TRUE(store->finish());
    }
    static void add(EvidenceStore& store, std::int64_t line, const std::string& name, Grade grade,
                    const std::string& start) {
        EvidenceRow row;
        row.row = line;
        row.name = name;
        row.extension = name.substr(name.find('.') + 1);
        row.size = 600;
        row.grade = grade;
        row.reason = Reason::Noise;
        const FileHead head = headOf(start);
        ASSERT_TRUE(store.add(row, &head));
    }
    static FileHead headOf(const std::string& start) {
        FileHead head;
        head.length = kHeaderBytes;
        head.bytes.fill('x');
        std::ranges::copy(start, head.bytes.begin());
        return head;
    }
    [[nodiscard]] NativePath path() const { return folders.folder / "local/J1.sqlite"; }
    [[nodiscard]] EvidenceReader reader() const {
        auto opened = EvidenceReader::open(path());
        EXPECT_TRUE(opened) << opened.error().text;
        return std::move(*opened);
    }
    [[nodiscard]] EvidenceRow rowOf(const std::string& name) const {
        EvidenceRow row;
        EXPECT_TRUE(reader().findPath(name, row).value_or(false)) << name;
        return row;
    }
};

TEST_F(RetestEvidenceTest, TheEvidenceSaysWhatTheListSays) {
    openWithTerm();
    viewer.retest();
    EXPECT_EQ(rowOf("good.qlx").grade, Grade::Good);
    EXPECT_FALSE(rowOf("good.qlx").reason);
    EXPECT_EQ(rowOf("bad.qlx").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("a.pdf").grade, Grade::Good);
    auto from = reader();
    for (const auto& [name, start] : {std::pair("good.qlx", "QLX!"), {"bad.qlx", "nope"}, {"a.pdf", "%PDF"}}) {
        const auto head = from.head(rowOf(name));
        ASSERT_TRUE(head && *head != nullptr) << name;
        EXPECT_EQ((*head)->given().substr(0, 4), start) << "as it is now";
    }
    auto totals = from.prepare("SELECT files FROM by_extension WHERE extension = 'qlx' AND grade = 0");
    ASSERT_TRUE(totals && totals->step().value_or(false));
    EXPECT_EQ(totals->integer(0), 1);
}

TEST_F(RetestEvidenceTest, TheEvidenceKnowsTheNewList) {
    openWithTerm();
    viewer.retest();
    ListDigest digest;
    auto list = ListReader::open(folders.folder / "local/J1.csv");
    ListRow row;
    while (list->next(row)) digest.add(row);
    EXPECT_EQ(reader().jobNumber(job_keys::kListDigest).value(), digest.value());
}

TEST_F(RetestEvidenceTest, ALineThatTheRetestLeavesOutMovesTheOthersUp) {
    openWithTerm();
    const std::u16string list = listNow();
    const auto end = list.find(u"\r\n") + 2;
    writeList(list.substr(0, end) + u"torn\r\n" + list.substr(end));
    viewer.retest();
    EXPECT_EQ(rowOf("good.qlx").row, 1);
    EXPECT_EQ(rowOf("bad.qlx").row, 3);
    EXPECT_EQ(rowOf("bad.qlx").grade, Grade::Corrupt);
}

TEST_F(RetestEvidenceTest, DamagedEvidenceDoesNotHinderTheRetest) {
    openWithTerm();
    folders.folder.write("local/J1.sqlite", "no evidence");
    viewer.retest();
    EXPECT_NE(listNow().find(u"Header OK"), std::u16string::npos);
    EXPECT_EQ(folders.folder.read("local/J1.sqlite"), "no evidence");
}

}  // namespace
}  // namespace quillon::test
