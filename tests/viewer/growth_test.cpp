// SPDX-License-Identifier: MIT
// What a long list costs: time grows with its rows and no faster, memory stays near the text of the rows. Both are
// compared with themselves or with the text, as absolute figures differ from machine to machine.
#include <malloc.h>

#include <algorithm>
#include <ctime>

#include "viewer/viewer_fixture.h"

namespace quillon::test {
namespace {

class GrowthTest : public ViewerTest {
protected:
    /// Filters and retests a list of so many encrypted files, which no pass has to open. Gives the processor time of
    /// the quicker of two rounds.
    double secondsFor(int files) {
        std::u16string rows;
        std::filesystem::create_directories(folders.folder / "recovered/disk one/folder");
        const std::u16string folder = (folders.folder / "recovered/disk one/folder/").u16string();
        for (int i = 0; i < files; ++i) {
            const std::string number = std::to_string(i);
            rows.append(folder)
                .append(number.begin(), number.end())
                .append(u".qlx,15/11/2026, 600, 16416;Ab9x,File encrypted\r\n");
        }
        writeList(rows);
        open(u"File encrypted");
        viewer.state.maxFiles = std::to_string(files);
        double best = 1e9;
        for (int round = 0; round < 2; ++round) {
            const std::clock_t start = std::clock();
            viewer.filter();
            viewer.selectRow(0);
            viewer.retest();
            best = std::min(best, static_cast<double>(std::clock() - start));
        }
        EXPECT_EQ(viewer.state.rows.count(), files);
        EXPECT_EQ(listNow(), rows);
        return best;
    }
};

// A search of the grid row by row would take sixteen times as long for four times the rows.
TEST_F(GrowthTest, FilterAndRetestGrowWithTheRows) {
    const double few = secondsFor(4000);
    const double many = secondsFor(16000);
    EXPECT_LT(many, 9 * few);
}

TEST_F(GrowthTest, OnlyRowsOfTheExtensionAreLookedUp) {
    ViewRows rows;
    for (int i = 0; i < 1000; ++i) rows.add(i % 10 == 0 ? u"/s/a.qlx" : u"/s/b.jpg");
    RowLookup lookup(rows, u".qlx");
    int found = 0;
    while (const ViewRows::Id* id = lookup.find(u"/s/a.qlx")) {
        rows.remove(*id);
        ++found;
    }
    EXPECT_EQ(found, 100);
    EXPECT_EQ(lookup.find(u"/s/b.jpg"), nullptr);
}

std::size_t heapInUse() {
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

TEST_F(GrowthTest, ARowTakesItsTextAndFiftyBytes) {
    constexpr std::size_t count = 200'000;
    const std::u16string path = u"/recovered/disk one/Documents and Settings/user/Pictures/0123/picture 0123456.jpg";
    const std::size_t before = heapInUse();
    ViewRows rows;
    for (std::size_t i = 0; i < count; ++i) rows.add(path);
    const std::size_t used = heapInUse() - before;
    if (used == 0)
        GTEST_SKIP() << "the allocator of this build does not tell what is in use";
    EXPECT_LT(used, count * (path.size() * sizeof(char16_t) + 50));
}

}  // namespace
}  // namespace quillon::test
