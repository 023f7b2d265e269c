// SPDX-License-Identifier: MIT
#include "support/save_storm.h"

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

// bench/share.sh does the same with other counts, and on a share.
TEST(SaveStormTest, ReadersAmongManySavesSeeOnlyWholeVersions) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "Database");
    const SaveStorm storm;
    const auto counts = runSaveStorm(folder / "Database/jpg.dat", storm);
    EXPECT_EQ(counts.saved, storm.saves);
    EXPECT_EQ(counts.whole, storm.reads);
    EXPECT_EQ(counts.refused + counts.absent + counts.empty + counts.torn, 0U);
    EXPECT_EQ(listEntries(folder / "Database")->size(), 1U);
    EXPECT_EQ(listEntries(folder.path())->size(), 1U) << "a temporary file was left";
}

}  // namespace
}  // namespace quillon::test
