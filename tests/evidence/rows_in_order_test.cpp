// SPDX-License-Identifier: MIT
#include "evidence/rows_in_order.h"

#include "evidence/evidence_fixture.h"

namespace quillon {
namespace {

class RowsInOrderTest : public test::EvidenceFixture {
protected:
    RowsInOrderTest() {
        auto store = created();
        for (const char* name : {"a", "b", "c", "d"}) {
            EvidenceRow row = test::rowOf(1, name == std::string("c") ? "sub/deep" : "", name);
            EXPECT_TRUE(store.add(row, nullptr));
        }
        EXPECT_TRUE(store.finish());
    }
    // The ids of these files, 0 for none.
    std::vector<std::int64_t> idsOf(const std::vector<std::string>& paths) {
        auto from = reader();
        RowsInOrder rows;
        std::vector<std::int64_t> ids;
        for (const auto& wanted : paths) {
            EvidenceRow row;
            const auto found = rows.find(from, wanted, row);
            EXPECT_TRUE(found) << wanted;
            ids.push_back(found.value_or(false) ? row.id : 0);
        }
        return ids;
    }
};

using Ids = std::vector<std::int64_t>;

TEST_F(RowsInOrderTest, FilesAreFoundInWhateverOrderTheyAreAskedFor) {
    EXPECT_EQ(idsOf({"a", "b", "sub/deep/c", "d"}), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(idsOf({"d", "sub/deep/c", "b", "a", "b"}), (Ids{4, 3, 2, 1, 2}));
    EXPECT_EQ(idsOf({"a", "new", "b", "sub/deep", "sub/deep/x", "d", "behind"}), (Ids{1, 0, 2, 0, 0, 4, 0}));
    EXPECT_EQ(idsOf({"c", "deep/c", "sub/deep/", ""}), (Ids{0, 0, 0, 0})) << "no part of a path is one";
}

TEST_F(RowsInOrderTest, AWriterGetsTheFileWhenItIsLetGo) {
    auto from = reader();
    auto store = opened();
    store.waitForLocks(std::chrono::milliseconds(1));
    RowsInOrder rows;
    EvidenceRow row;
    ASSERT_TRUE(rows.find(from, "a", row).value_or(false));
    row.grade = Grade::Corrupt;
    ASSERT_TRUE(store.change(row));
    rows.letGo(from);
    EXPECT_TRUE(store.commit());
    ASSERT_TRUE(rows.find(from, "b", row).value_or(false)) << "and it goes on where it was";
    EXPECT_EQ(row.id, 2);
}

}  // namespace
}  // namespace quillon
